#include "imaging/tiff/tiff_metadata.h"

#include "imaging/base/image_error.h"
#include "imaging/exif/tiff_patcher.h"
#include "imaging/exif/tiff_tags.h"
#include "imaging/exif/xmp_patch.h"

#include <algorithm>
#include <mutex>
#include <string>

#include <exiv2/exiv2.hpp>

namespace kestrova::imaging {

namespace {

// Exiv2 is to take the XMP packet for bytes like any other: it would read it in a time that grows with the
// square of its length, and refuse a file whose packet is broken. So it gets the packet under a tag that
// means nothing to it.
constexpr std::uint16_t hiddenXmpTag = 0xFFFF;
constexpr const char* hiddenXmpKey = "Exif.Image.0xffff";

Bytes withHiddenXmp(ByteView file) {
  Bytes copy(file.begin(), file.end());
  auto patcher = TiffPatcher::open(copy);
  if (!patcher) throw ImageError("no TIFF 6.0");
  const auto packet = patcher->reader().find(patcher->reader().firstDirectory(), tag::xmp);
  if (packet) patcher->set(packet->typeField - sizeof(std::uint16_t), hiddenXmpTag);
  return copy;
}

std::mutex& exivMutex() {
  static std::mutex mutex;
  return mutex;
}

void prepareExiv() {
  static std::once_flag prepared;
  std::call_once(prepared, [] {
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
    Exiv2::XmpParser::initialize();
  });
}

auto openTiff(ByteView file) {
  auto image = Exiv2::ImageFactory::open(file.data(), static_cast<long>(file.size()));
  if (image.get() == nullptr || image->imageType() != Exiv2::ImageType::tiff)
    throw ImageError("not a TIFF 6.0 file");
  image->readMetadata();
  return image;
}

/// Whether a tag is about another picture than the first, or about where such pictures are.
bool isAboutOtherPictures(const Exiv2::Exifdatum& tag) {
  const std::string group = tag.groupName();
  return group == "Thumbnail" || group == "Image2" || group == "Image3" || group.starts_with("SubImage") ||
         group.starts_with("SubThumb") || tag.key() == "Exif.Image.SubIFDs";
}

void eraseOtherPictures(Exiv2::ExifData& exif) {
  for (auto tag = exif.begin(); tag != exif.end();) {
    tag = isAboutOtherPictures(*tag) ? exif.erase(tag) : std::next(tag);
  }
}

Bytes bytesOf(const Exiv2::Exifdatum& tag) {
  Bytes bytes(static_cast<std::size_t>(std::max<long>(tag.size(), 0)));
  if (!bytes.empty()) tag.copy(bytes.data(), Exiv2::invalidByteOrder);
  return bytes;
}

/// Takes the packet out, as it is in the file except for what the edit changes.
std::string takeXmpPacket(Exiv2::ExifData& exif, const MetadataEdit& edit) {
  const auto tag = exif.findKey(Exiv2::ExifKey(hiddenXmpKey));
  if (tag == exif.end()) return {};
  Bytes packet = bytesOf(*tag);
  exif.erase(tag);
  editXmp(packet, edit);
  return {packet.begin(), packet.end()};
}

}  // namespace

Bytes withMetadata(const Bytes& result, ByteView source, const MetadataEdit& edit,
                   std::optional<std::int64_t> orientation) {
  const std::lock_guard lock(exivMutex());
  prepareExiv();
  const Bytes readable = withHiddenXmp(source);
  const auto from = openTiff(readable);
  const auto to = openTiff(result);
  Exiv2::ExifData exif = from->exifData();
  eraseOtherPictures(exif);
  if (orientation) exif["Exif.Image.Orientation"] = static_cast<std::uint16_t>(*orientation);
  const std::string packet = takeXmpPacket(exif, edit);
  to->setByteOrder(from->byteOrder());
  to->setExifData(exif);
  to->setIptcData(from->iptcData());
  to->xmpData().setPacket(packet);  // setXmpPacket would read it
  to->writeXmpFromPacket(true);
  to->writeMetadata();
  Exiv2::BasicIo& io = to->io();
  Bytes written(static_cast<std::size_t>(io.size()));
  if (io.open() != 0 ||
      io.read(written.data(), static_cast<long>(written.size())) != static_cast<long>(written.size())) {
    throw ImageError("the metadata cannot be written");
  }
  return written;
}

}  // namespace kestrova::imaging
