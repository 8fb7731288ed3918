#include "imaging/jpeg/jpeg_metadata.h"

#include "imaging/exif/tiff_reader.h"
#include "imaging/exif/xmp_patch.h"
#include "imaging/jpeg/multi_picture.h"

#include <algorithm>
#include <string_view>

namespace kestrova::imaging {

namespace {

using namespace std::string_view_literals;

constexpr auto xmpName = "http://ns.adobe.com/xap/1.0/\0"sv;
constexpr auto multiPictureName = "MPF\0"sv;
constexpr auto jfifName = "JFIF\0"sv;
constexpr std::size_t jfifBytes = 14;        ///< of a JFIF segment without a preview
constexpr std::ptrdiff_t jfifDensityAt = 8;  ///< two bytes across, two down
constexpr std::size_t segmentHeader = 4;

/// More further pictures than this are not turned: each one costs as much as the photo itself.
constexpr std::size_t mostTurnedPictures = 16;

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

/// Whether a picture states an orientation of its own, by which it is shown.
bool statesOrientation(ByteView jpeg) {
  constexpr std::uint16_t orientationTag = 0x0112;
  const auto outline = outlineJpeg(jpeg);
  if (!outline) return false;
  for (const auto& segment : outline->metadata) {
    const ByteView payload = jpeg.subspan(segment.offset, segment.length);
    if (segment.marker != app1 || !isNamed(payload, exifName)) continue;
    const auto tiff = TiffReader::open(payload.subspan(exifName.size()));
    bool found = false;
    if (tiff) {
      tiff->visitEntries(tiff->firstDirectory(), [&](const auto& entry) {
        const auto value = entry.tag == orientationTag ? tiff->integer(entry).value_or(0) : 0;
        found |= value >= 1 && value <= 8;
      });
    }
    return found;
  }
  return false;
}

bool overlap(std::vector<FurtherPicture> pictures) {
  std::ranges::sort(pictures, std::ranges::less{}, &FurtherPicture::offset);
  const auto reachesNext = [](const FurtherPicture& one, const FurtherPicture& next) {
    return one.offset + one.length > next.offset;
  };
  return std::ranges::adjacent_find(pictures, reachesNext) != pictures.end();
}

/// Further pictures of the file, and where they go.
class Trailer {
 public:
  Trailer(ByteView file, const JpegOutline& outline, const PreviewTurner& turnPreview)
      : imageEnd_(outline.imageEnd),
        bytes_(file.begin() + static_cast<std::ptrdiff_t>(outline.imageEnd), file.end()) {
    for (const auto& segment : outline.metadata) {
      const ByteView payload = file.subspan(segment.offset, segment.length);
      if (!index_ && segment.marker == app2 && isNamed(payload, multiPictureName))
        readIndex(file, segment, payload);
    }
    if (turnPreview && index_ && !turnAll(turnPreview)) leaveOut();
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

  bool turnAll(const PreviewTurner& turnPreview) {
    const auto& pictures = index_->pictures();
    if (pictures.size() > mostTurnedPictures || overlap(pictures)) return false;
    return std::ranges::all_of(pictures, [&](const FurtherPicture& picture) {
      const auto bytes = bytesOf(picture);
      return statesOrientation(bytes) || turnPreview(bytes) > 0;
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

/// An XMP packet may become longer than a segment holds; then it stays as it was.
void editXmpSegment(Segment& segment, const MetadataEdit& edit) {
  Bytes edited = segment.payload;
  editXmp(edited, edit);
  if (edited.size() <= mostPayloadBytes) segment.payload = std::move(edited);
}

void editSegment(Segment& segment, const MetadataEdit& edit) {
  if (segment.is(app1, exifName)) editExif(std::span(segment.payload).subspan(exifName.size()), edit);
  if (segment.is(app1, xmpName)) editXmpSegment(segment, edit);
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
    if (segment.is(app2, multiPictureName) && !trailer.keeps(each)) continue;
    editSegment(segment, edit);
    segments.push_back(std::move(segment));
  }
  return segments;
}

}  // namespace

Bytes joinJpeg(ByteView file, const JpegOutline& outline, ByteView pixels, const MetadataEdit& edit) {
  const Trailer trailer(file, outline, edit.turnPreview);
  const auto segments = editedSegments(file, outline, trailer, edit);
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
