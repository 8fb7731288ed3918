#include "imaging/jpeg/jpeg_trailer.h"

#include "imaging/base/begins_with.h"
#include "imaging/jpeg/jpeg_properties.h"

#include <algorithm>
#include <string_view>
#include <vector>

namespace kestrova::imaging {

namespace {

constexpr std::string_view indexName("MPF\0", 4);

/// At most so many further pictures are turned: each one may take as long as the photo itself.
constexpr std::size_t mostTurnedPictures = 16;

bool holdsIndex(ByteView file, const JpegSegment& segment) {
  return segment.marker == jpeg_marker::app2 && beginsWith(segment.in(file), indexName);
}

bool overlap(std::vector<FurtherPicture> pictures) {
  std::ranges::sort(pictures, std::ranges::less{}, &FurtherPicture::offset);
  const auto reachesNext = [](const FurtherPicture& one, const FurtherPicture& next) {
    return one.offset + one.length > next.offset;
  };
  return std::ranges::adjacent_find(pictures, reachesNext) != pictures.end();
}

}  // namespace

JpegTrailer::JpegTrailer(ByteView file, const JpegOutline& outline)
    : file_(file),
      imageEnd_(outline.imageEnd),
      bytes_(file.begin() + static_cast<std::ptrdiff_t>(outline.imageEnd), file.end()) {
  const auto found = std::ranges::find_if(
      outline.metadata, [&](const JpegSegment& segment) { return holdsIndex(file, segment); });
  if (found == outline.metadata.end()) return;
  indexSegment_ = *found;
  const ByteView payload = found->in(file);
  index_ = MultiPictureIndex::read(payload.subspan(indexName.size()), found->offset + indexName.size(),
                                   imageEnd_, file.size());
}

void JpegTrailer::turnPictures(const PreviewTurner& turn) {
  if (!index_ || turnAll(turn)) return;
  removePictures();
  index_.reset();
}

bool JpegTrailer::turnAll(const PreviewTurner& turn) {
  const auto& pictures = index_->pictures();
  if (pictures.size() > mostTurnedPictures || overlap(pictures)) return false;
  return std::ranges::all_of(pictures, [&](const FurtherPicture& picture) {
    const auto bytes = bytesOf(picture);
    const bool hasOrientation = beginsLikeJpeg(bytes) && readJpegProperties(bytes).orientation;
    return hasOrientation || turn(bytes) > 0;
  });
}

void JpegTrailer::removePictures() {
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
}

std::span<std::uint8_t> JpegTrailer::bytesOf(const FurtherPicture& picture) {
  return std::span(bytes_).subspan(picture.offset - imageEnd_, picture.length);
}

bool JpegTrailer::leavesOut(const JpegSegment& segment) const {
  return holdsIndex(file_, segment) && !isIndex(segment);
}

void JpegTrailer::writeIndex(Bytes& file, std::size_t payload) const {
  std::vector<FurtherPicture> pictures = index_->pictures();
  for (auto& picture : pictures) picture.offset = picture.offset - imageEnd_ + file.size();
  const std::size_t base = payload + indexName.size();
  const auto block = std::span(file).subspan(base, indexSegment_.length - indexName.size());
  index_->write(block, base, file.size(), pictures);
}

}  // namespace kestrova::imaging
