#include "imaging/jpeg_metadata.h"

#include "imaging/multi_picture.h"
#include "imaging/photo_properties.h"
#include "imaging/photoshop_resources.h"
#include "imaging/xmp_patch.h"

#include <algorithm>
#include <string_view>

namespace kestrova::imaging {

namespace {

using namespace std::string_view_literals;

constexpr std::uint8_t app0 = 0xE0;
constexpr std::uint8_t app1 = 0xE1;
constexpr std::uint8_t app2 = 0xE2;
constexpr std::uint8_t app13 = 0xED;
constexpr auto exifName = "Exif\0\0"sv;
constexpr auto xmpName = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr auto multiPictureName = "MPF\0"sv;
constexpr auto extensionName = "JFXX\0"sv;
constexpr auto jfifName = "JFIF\0"sv;
constexpr std::size_t jfifBytes = 14;  ///< of a JFIF segment without a preview
constexpr std::size_t segmentHeader = 4;

/// Whether the segment is called that, by its marker and its first bytes.
bool is(const JpegSegment& segment, ByteView payload, std::uint8_t marker, std::string_view name) {
  return segment.marker == marker && isNamed(payload, name);
}

/// Further pictures of the file, and where they go.
class Trailer {
 public:
  Trailer(ByteView file, const JpegOutline& outline, const PreviewMaker& turnPreview)
      : imageEnd_(outline.imageEnd),
        bytes_(file.begin() + static_cast<std::ptrdiff_t>(outline.imageEnd), file.end()) {
    for (const auto& segment : outline.metadata) {
      const ByteView payload = file.subspan(segment.offset, segment.length);
      if (!index_ && is(segment, payload, app2, multiPictureName)) readIndex(file, segment, payload);
    }
    if (index_ && turnPreview && !turnAll(turnPreview)) leaveOut();
  }

  /// Whether the segment holds the index that goes with the trailer.
  bool keeps(const JpegSegment& index) const { return index_ && index.offset == indexOffset_; }
  const Bytes& bytes() const { return bytes_; }

  /// Points the index, which stands at `base` in `file`, to the pictures behind a first picture of that
  /// length.
  void writeIndex(Bytes& file, std::size_t base, std::size_t firstLength) const {
    if (!index_) return;
    std::vector<FurtherPicture> pictures = index_->pictures();
    for (auto& picture : pictures) picture.offset = picture.offset - imageEnd_ + firstLength;
    index_->write(std::span(file).subspan(base, indexLength_), base, firstLength, pictures);
  }

 private:
  void readIndex(ByteView file, const JpegSegment& segment, ByteView payload) {
    indexOffset_ = segment.offset;
    indexLength_ = payload.size() - multiPictureName.size();
    Bytes block(payload.begin() + static_cast<std::ptrdiff_t>(multiPictureName.size()), payload.end());
    index_ = MultiPictureIndex::read(block, segment.offset + multiPictureName.size(), imageEnd_, file.size());
  }

  std::span<std::uint8_t> bytesOf(const FurtherPicture& picture) {
    return std::span(bytes_).subspan(picture.offset - imageEnd_, picture.length);
  }

  /// A picture with an orientation of its own is shown by that, and stays as it is.
  bool turnAll(const PreviewMaker& turnPreview) {
    return std::ranges::all_of(index_->pictures(), [&](const FurtherPicture& picture) {
      const auto bytes = bytesOf(picture);
      const auto properties = readPhotoProperties(bytes);
      return (properties && properties->orientation) || turnPreview(bytes) > 0;
    });
  }

  void leaveOut() {
    auto pictures = index_->pictures();
    std::ranges::sort(pictures, std::ranges::greater{}, &FurtherPicture::offset);
    std::size_t end = bytes_.size();
    for (const auto& picture : pictures) {
      const std::size_t begin = picture.offset - imageEnd_;
      const std::size_t stop = std::min(begin + picture.length, end);
      if (begin >= stop) continue;
      bytes_.erase(bytes_.begin() + static_cast<std::ptrdiff_t>(begin),
                   bytes_.begin() + static_cast<std::ptrdiff_t>(stop));
      end = begin;
    }
    index_.reset();
  }

  std::size_t imageEnd_;
  Bytes bytes_;
  std::optional<MultiPictureIndex> index_;
  std::size_t indexOffset_ = 0;  ///< of the segment's payload, in the source
  std::size_t indexLength_ = 0;
};

void editExif(std::span<std::uint8_t> payload, const JpegMetadataEdit& edit) {
  const auto block = payload.subspan(exifName.size());
  if (edit.turnPreview) remakePreview(block, edit.turnPreview);
  patchExif(block, edit.exif);
}

/// Takes out the previews that are not made over.
void dropPreviews(const JpegSegment& segment, Bytes& payload) {
  if (is(segment, payload, app0, jfifName) && payload.size() > jfifBytes) {
    payload.resize(jfifBytes);
    payload[jfifBytes - 2] = payload[jfifBytes - 1] = 0;
  }
  if (segment.marker == app13) dropPhotoshopPreviews(payload);
}

void appendSegment(Bytes& file, std::uint8_t marker, ByteView payload) {
  const std::size_t length = payload.size() + 2;
  file.insert(file.end(), {0xFF, marker, static_cast<std::uint8_t>(length >> 8),
                           static_cast<std::uint8_t>(length & 0xFF)});
  file.insert(file.end(), payload.begin(), payload.end());
}

}  // namespace

Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const JpegMetadataEdit& edit) {
  const Trailer trailer(file, outline, edit.turnPreview);
  Bytes result(pixels.begin(), pixels.begin() + 2);
  result.reserve(file.size() - outline.imageEnd + pixels.size() + (outline.metadata.empty() ? 0 : 1 << 17));
  std::size_t indexBase = 0;
  for (const auto& segment : outline.metadata) {
    Bytes payload(file.begin() + static_cast<std::ptrdiff_t>(segment.offset),
                  file.begin() + static_cast<std::ptrdiff_t>(segment.offset + segment.length));
    if (edit.turnPreview && is(segment, payload, app0, extensionName)) continue;
    if (is(segment, payload, app2, multiPictureName)) {
      if (!trailer.keeps(segment)) continue;
      indexBase = result.size() + segmentHeader + multiPictureName.size();
    }
    if (is(segment, payload, app1, exifName)) editExif(payload, edit);
    if (edit.turnPreview) dropPreviews(segment, payload);
    if (edit.turnPreview && is(segment, payload, app1, xmpName)) resetXmpOrientation(payload);
    appendSegment(result, segment.marker, payload);
  }
  result.insert(result.end(), pixels.begin() + 2, pixels.end());
  const std::size_t firstLength = result.size();
  trailer.writeIndex(result, indexBase, firstLength);
  result.insert(result.end(), trailer.bytes().begin(), trailer.bytes().end());
  return result;
}

void patchJpeg(Bytes& file, const JpegOutline& outline, const ExifPatch& patch) {
  for (const auto& segment : outline.metadata) {
    const auto payload = std::span(file).subspan(segment.offset, segment.length);
    if (is(segment, payload, app1, exifName)) patchExif(payload.subspan(exifName.size()), patch);
  }
}

}  // namespace kestrova::imaging
