#include "scan/companions.h"

#include "scan/media_classification.h"

#include <algorithm>
#include <array>
#include <span>

namespace kestrova {

namespace {

constexpr std::array<std::string_view, 5> sidecarExtensions{"xmp", "aae", "thm", "pp3", "dop"};
constexpr std::array<std::string_view, 2> stillExtensions{"heic", "heif"};
constexpr std::array<std::string_view, 3> filmExtensions{"mov", "mp4", "m4v"};

bool hasExtension(std::string_view name, std::span<const std::string_view> extensions) {
  const std::string_view extension = extensionOfName(name);
  const auto isSame = [extension](std::string_view other) {
    return std::ranges::equal(extension, other, [](char a, char b) {
      return (a >= 'A' && a <= 'Z' ? static_cast<char>(a + ('a' - 'A')) : a) == b;
    });
  };
  return std::ranges::any_of(extensions, isSame);
}

std::string_view stemOf(std::string_view name) { return name.substr(0, name.rfind('.')); }

/// A path to the first dot of its name: in the order of the walk, paths that begin with it follow each other.
std::string_view groupOf(std::string_view path) {
  const auto name = path.rfind('/') + 1;
  const auto dot = path.find('.', name);
  return dot == std::string_view::npos ? path : path.substr(0, dot + 1);
}

}  // namespace

void Companions::see(std::string_view path, bool isTaken) {
  const std::string_view group = groupOf(path);
  if (group != group_) {
    finish();
    group_ = group;
  }
  files_.push_back({.name = std::string(path), .isTaken = isTaken});
}

void Companions::finish() {
  for (const File& file : files_) {
    const bool isSidecar = !file.isTaken && hasExtension(file.name, sidecarExtensions);
    const bool isVideo = file.isTaken && hasExtension(file.name, filmExtensions);
    if (isSidecar && isBeside(file.name)) ++sidecars_;
    if (isVideo && hasStillLeftBehind(file.name)) ++videosWithoutStill_;
  }
  files_.clear();
  group_.clear();
}

// IMG_1.xmp and IMG_1.JPG.xmp both belong to IMG_1.JPG.
bool Companions::isBeside(std::string_view sidecar) const {
  const std::string_view stem = stemOf(sidecar);
  return std::ranges::any_of(files_, [stem](const File& file) {
    return file.isTaken && (file.name == stem || stemOf(file.name) == stem);
  });
}

bool Companions::hasStillLeftBehind(std::string_view video) const {
  return std::ranges::any_of(files_, [stem = stemOf(video)](const File& file) {
    return !file.isTaken && hasExtension(file.name, stillExtensions) && stemOf(file.name) == stem;
  });
}

}  // namespace kestrova
