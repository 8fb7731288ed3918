#include "imaging/exif/photoshop_resources.h"

#include "imaging/jpeg/jpeg_outline.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace kestrova::imaging {

namespace {

using namespace std::string_view_literals;

constexpr auto signature = "8BIM"sv;

bool isPreview(unsigned id) { return id == 1033 || id == 1036; }

constexpr std::size_t even(std::size_t count) { return (count + 1) / 2 * 2; }

struct Resource {
  unsigned id = 0;
  std::size_t end = 0;  ///< just behind it; 0 when it does not lie whole in the bytes
};

/// The resource that begins there: signature, number, name (a counted string), length, data; parts padded to
/// even lengths.
Resource resourceAt(ByteView bytes, std::size_t position) {
  const ByteView rest = bytes.subspan(position);
  if (!isNamed(rest, signature) || rest.size() < 12) return {};
  const unsigned id = unsigned{rest[4]} << 8 | rest[5];
  const std::size_t lengthAt = 6 + even(std::size_t{1} + rest[6]);
  if (rest.size() < lengthAt + 4) return {};
  std::size_t length = 0;
  for (std::size_t i = 0; i < 4; ++i) length = length << 8 | rest[lengthAt + i];
  const std::size_t size = lengthAt + 4 + length;
  if (size > rest.size()) return {};
  return {id, position + std::min(even(size), rest.size())};
}

}  // namespace

void dropPhotoshopPreviews(Bytes& resources, std::size_t begin) {
  std::size_t position = begin;
  while (true) {
    const Resource resource = resourceAt(resources, position);
    if (resource.end == 0) return;
    if (isPreview(resource.id)) {
      resources.erase(resources.begin() + static_cast<std::ptrdiff_t>(position),
                      resources.begin() + static_cast<std::ptrdiff_t>(resource.end));
    } else {
      position = resource.end;
    }
  }
}

}  // namespace kestrova::imaging
