#include "imaging/jpeg/jpeg_metadata.h"

#include "imaging/exif/photoshop_resources.h"
#include "imaging/exif/xmp_patch.h"
#include "imaging/jpeg/multi_picture.h"

#include <algorithm>
#include <string_view>

namespace kestrova::imaging {

namespace {

using namespace std::string_view_literals;

constexpr auto xmpName = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr auto multiPictureName = "MPF\0"sv;
constexpr auto extensionName = "JFXX\0"sv;
constexpr auto jfifName = "JFIF\0"sv;
constexpr auto photoshopName = "Photoshop 3.0\0"sv;
constexpr auto flashPixName = "FPXR\0"sv;
constexpr auto filmName = "ftyp"sv;          ///< near the beginning of ISO base media
constexpr std::size_t jfifBytes = 14;        ///< of a JFIF segment without a preview
constexpr std::ptrdiff_t jfifDensityAt = 8;  ///< two bytes across, two down
constexpr std::size_t segmentHeader = 4;

/// A marker segment on its way into the result.
struct Segment {
  std::uint8_t marker = 0;
  Bytes payload;

  /// Whether it is called that, by its marker and its first bytes.
  bool is(std::uint8_t expected, std::string_view name) const {
    return marker == expected && isNamed(payload, name);
  }
};

Segment copyOf(ByteView file, const JpegSegment& segment) {
  const ByteView payload = file.subspan(segment.offset, segment.length);
  return {segment.marker, Bytes(payload.begin(), payload.end())};
}

/// Further pictures of the file, and where they go.
class Trailer {
 public:
  Trailer(ByteView file, const JpegOutline& outline, const PreviewMaker& turnPreview)
      : imageEnd_(outline.imageEnd),
        bytes_(file.begin() + static_cast<std::ptrdiff_t>(outline.imageEnd), file.end()) {
    for (const auto& segment : outline.metadata) {
      const ByteView payload = file.subspan(segment.offset, segment.length);
      if (!index_ && segment.marker == app2 && isNamed(payload, multiPictureName))
        readIndex(file, segment, payload);
    }
    if (!turnPreview) return;
    if (index_ && !turnAll(turnPreview)) leaveOut();
    turnUnnamed(turnPreview);
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

  bool turnAll(const PreviewMaker& turnPreview) {
    return std::ranges::all_of(index_->pictures(), [&](const FurtherPicture& picture) {
      return remakeJpeg(bytesOf(picture), turnPreview);
    });
  }

  /// Pictures that no index names. In a film there are none that are looked at.
  void turnUnnamed(const PreviewMaker& turnPreview) {
    const auto film = std::search(bytes_.begin(), bytes_.end(), filmName.begin(), filmName.end());
    auto rest = std::span(bytes_).first(static_cast<std::size_t>(film - bytes_.begin()));
    auto pictures = index_ ? index_->pictures() : std::vector<FurtherPicture>();
    std::ranges::sort(pictures, std::ranges::less{}, &FurtherPicture::offset);
    std::size_t begin = 0;
    for (const auto& picture : pictures) {
      const std::size_t end = std::min(picture.offset - imageEnd_, rest.size());
      if (begin < end) remakeEmbeddedJpegs(rest.subspan(begin, end - begin), turnPreview);
      begin = std::max(begin, std::min(end + picture.length, rest.size()));
    }
    remakeEmbeddedJpegs(rest.subspan(begin), turnPreview);
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

/// Takes out the previews that are not made over.
void dropPreviews(Segment& segment) {
  Bytes& payload = segment.payload;
  if (segment.is(app0, jfifName) && payload.size() > jfifBytes) {
    payload.resize(jfifBytes);
    payload[jfifBytes - 2] = payload[jfifBytes - 1] = 0;
  }
  if (segment.is(app13, photoshopName)) dropPhotoshopPreviews(payload, photoshopName.size());
}

/// An XMP packet may become longer than a segment holds; then it stays as it was.
void editXmpSegment(Segment& segment, const MetadataEdit& edit) {
  Bytes edited = segment.payload;
  editXmp(edited, edit);
  if (edited.size() <= mostPayloadBytes) segment.payload = std::move(edited);
}

void editSegment(Segment& segment, const MetadataEdit& edit) {
  if (segment.is(app1, exifName)) editExif(std::span(segment.payload).subspan(exifName.size()), edit);
  if (segment.is(app1, xmpName)) editXmpSegment(segment, edit);
  if (edit.turnPreview) dropPreviews(segment);
  if (edit.exif.exchangesAxes && segment.is(app0, jfifName) && segment.payload.size() >= jfifBytes) {
    const auto density = segment.payload.begin() + jfifDensityAt;
    std::swap_ranges(density, density + 2, density + 2);
  }
}

std::vector<Segment> editedSegments(ByteView file, const JpegOutline& outline, const Trailer& trailer,
                                    const MetadataEdit& edit) {
  std::vector<Segment> segments;
  for (const auto& each : outline.metadata) {
    Segment segment = copyOf(file, each);
    if (edit.turnPreview && segment.is(app0, extensionName)) continue;
    if (segment.is(app2, multiPictureName) && !trailer.keeps(each)) continue;
    editSegment(segment, edit);
    segments.push_back(std::move(segment));
  }
  return segments;
}

/// What a segment may hold of a preview that nothing is known about but that it is a JPEG, and that may go
/// through several such segments. A FlashPix stream has a header of its own in each.
std::span<std::uint8_t> unknownPart(Segment& segment) {
  constexpr std::size_t streamHeader = 13;
  const bool isKnown = segment.marker < app2 || segment.marker > app15 || segment.marker == app13 ||
                       segment.marker == app14 || segment.is(app2, profileName) ||
                       segment.is(app2, multiPictureName);
  if (isKnown) return {};
  const std::span<std::uint8_t> bytes(segment.payload);
  return segment.is(app2, flashPixName) ? bytes.subspan(std::min(streamHeader, bytes.size())) : bytes;
}

void turnUnknownPreviews(std::vector<Segment>& segments, const PreviewMaker& turnPreview) {
  Bytes joined;
  for (auto& segment : segments) {
    const auto part = unknownPart(segment);
    joined.insert(joined.end(), part.begin(), part.end());
  }
  remakeEmbeddedJpegs(joined, turnPreview);
  auto position = joined.begin();
  for (auto& segment : segments) {
    const auto part = unknownPart(segment);
    const auto end = position + static_cast<std::ptrdiff_t>(part.size());
    std::copy(position, end, part.begin());
    position = end;
  }
}

}  // namespace

Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const MetadataEdit& edit) {
  const Trailer trailer(file, outline, edit.turnPreview);
  auto segments = editedSegments(file, outline, trailer, edit);
  if (edit.turnPreview) turnUnknownPreviews(segments, edit.turnPreview);
  Bytes result(pixels.begin(), pixels.begin() + 2);
  result.reserve(file.size() - outline.imageEnd + pixels.size() + (outline.metadata.empty() ? 0 : 1 << 17));
  std::size_t indexBase = 0;
  for (const auto& segment : segments) {
    if (segment.is(app2, multiPictureName))
      indexBase = result.size() + segmentHeader + multiPictureName.size();
    appendSegment(result, segment.marker, segment.payload);
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
    if (segment.marker == app1 && isNamed(payload, exifName))
      patchExif(payload.subspan(exifName.size()), patch);
  }
}

}  // namespace kestrova::imaging
