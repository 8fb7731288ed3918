#include "imaging/jpeg/jpeg_metadata.h"

#include "imaging/base/begins_with.h"
#include "imaging/exif/exif_block.h"
#include "imaging/exif/xmp_patch.h"
#include "imaging/jpeg/jpeg_trailer.h"

#include <algorithm>
#include <string_view>

namespace kestrova::imaging {

namespace {

using namespace std::string_view_literals;

constexpr auto xmpName = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr auto jfifName = "JFIF\0"sv;
constexpr std::size_t jfifBytes = 14;        ///< of a JFIF segment without a thumbnail
constexpr std::ptrdiff_t jfifDensityAt = 8;  ///< two bytes across, two down
constexpr std::size_t segmentHeader = 4;     ///< marker and length

void editXmpSegment(Bytes& payload, const MetadataEdit& edit) {
  Bytes edited = payload;
  editXmp(edited, edit);
  // It may have become too long for a segment.
  if (edited.size() <= mostPayloadBytes) payload = std::move(edited);
}

/// The payload of a segment, updated to the new pixels.
Bytes editedPayload(std::uint8_t marker, ByteView source, const MetadataEdit& edit) {
  Bytes payload(source.begin(), source.end());
  if (marker == jpeg_marker::app1) {
    if (const std::size_t name = exifNameLength(payload)) editExif(std::span(payload).subspan(name), edit);
    if (beginsWith(payload, xmpName)) editXmpSegment(payload, edit);
  }
  const bool isJfif =
      marker == jpeg_marker::app0 && beginsWith(payload, jfifName) && payload.size() >= jfifBytes;
  if (isJfif && edit.exif.exchangesAxes) {
    const auto density = payload.begin() + jfifDensityAt;
    std::swap_ranges(density, density + 2, density + 2);
  }
  return payload;
}

std::size_t metadataBytes(const JpegOutline& outline) {
  std::size_t bytes = 0;
  for (const auto& segment : outline.metadata) bytes += segmentHeader + segment.length;
  return bytes;
}

}  // namespace

Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const MetadataEdit& edit) {
  JpegTrailer trailer(file, outline);
  if (edit.turnPreview) trailer.turnPictures(edit.turnPreview);
  Bytes result(pixels.begin(), pixels.begin() + 2);  // the start-of-image marker
  result.reserve(metadataBytes(outline) + pixels.size() + trailer.bytes().size());
  std::optional<std::size_t> index;
  for (const auto& segment : outline.metadata) {
    throwIfStopped(edit.stopped);
    if (trailer.leavesOut(segment)) continue;
    if (trailer.isIndex(segment)) index = result.size() + segmentHeader;
    appendSegment(result, segment.marker, editedPayload(segment.marker, segment.in(file), edit));
  }
  result.insert(result.end(), pixels.begin() + 2, pixels.end());
  if (index) trailer.writeIndex(result, *index);
  result.insert(result.end(), trailer.bytes().begin(), trailer.bytes().end());
  return result;
}

void patchJpeg(Bytes& file, const JpegOutline& outline, const ExifPatch& patch) {
  for (const auto& segment : outline.metadata) {
    const auto payload = std::span(file).subspan(segment.offset, segment.length);
    const std::size_t name = segment.marker == jpeg_marker::app1 ? exifNameLength(payload) : 0;
    if (name > 0) patchExif(payload.subspan(name), patch);
  }
}

}  // namespace kestrova::imaging
