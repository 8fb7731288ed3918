#include "support/sample_media.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <stdexcept>

#include <jpeglib.h>
#include <png.h>

namespace kestrova::test {
namespace {

Bytes encodedJpeg(int width, int height, unsigned seed, bool progressive) {
  Bytes pixels = samplePixels(width, height, seed);
  jpeg_error_mgr errors{};  // ends the program on an error
  jpeg_compress_struct info{};
  info.err = jpeg_std_error(&errors);
  jpeg_create_compress(&info);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&info, &data, &size);
  info.image_width = static_cast<JDIMENSION>(width);
  info.image_height = static_cast<JDIMENSION>(height);
  info.input_components = 3;
  info.in_color_space = JCS_RGB;
  jpeg_set_defaults(&info);  // 4:2:0
  jpeg_set_quality(&info, 90, TRUE);
  if (progressive) jpeg_simple_progression(&info);
  jpeg_start_compress(&info, TRUE);
  while (info.next_scanline < info.image_height) {
    JSAMPROW row = pixels.data() + std::size_t{3} * info.next_scanline * info.image_width;
    jpeg_write_scanlines(&info, &row, 1);
  }
  jpeg_finish_compress(&info);
  jpeg_destroy_compress(&info);
  const std::unique_ptr<unsigned char, decltype(&std::free)> owner(data, &std::free);
  return {data, data + size};
}

Bytes encodedPng(const SamplePhoto& photo) {
  const Bytes pixels = samplePixels(photo.width, photo.height, photo.seed);
  png_image image{};
  image.version = PNG_IMAGE_VERSION;
  image.format = PNG_FORMAT_RGB;
  image.width = static_cast<png_uint_32>(photo.width);
  image.height = static_cast<png_uint_32>(photo.height);
  png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
  Bytes png(size);
  if (!png_image_write_to_memory(&image, png.data(), &size, 0, pixels.data(), 0, nullptr)) {
    throw std::runtime_error(image.message);
  }
  png.resize(size);
  return png;
}

}  // namespace

Bytes samplePixels(int width, int height, unsigned seed) {
  Bytes pixels;
  pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 3);
  const double ring = 0.12 + 0.01 * (seed % 17);
  const double centreX = width * 0.35;
  const double centreY = height * 0.6;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      const double wave = std::sin(std::hypot(x - centreX, y - centreY) * ring + seed);
      const auto rings = static_cast<std::uint8_t>(128 + 100 * wave);
      const auto along = static_cast<std::uint8_t>(x * 255 / width);
      const auto down = static_cast<std::uint8_t>(y * 255 / height);
      if (x < width / 8 && y < height / 8) {
        pixels.insert(pixels.end(), {230, 20, 20});
      } else if (x >= width / 2 && y < height / 16) {
        pixels.insert(pixels.end(), {20, 20, 230});
      } else {
        pixels.insert(pixels.end(), {rings, along, down});
      }
    }
  }
  return pixels;
}

TiffBlock exifBlock(const SamplePhoto& photo) {
  TiffBlock block;
  block.bigEndian = photo.bigEndian;
  if (photo.descriptionBytes > 0)
    block.image.push_back(tiffText(0x010E, std::string(photo.descriptionBytes - 1, 'd')));
  block.image.push_back(tiffText(0x010F, "Kestrova"));
  block.image.push_back(tiffText(0x0110, "Sample"));
  if (photo.orientation)
    block.image.push_back(tiffShort(0x0112, static_cast<std::uint64_t>(*photo.orientation)));
  block.exif.push_back({.tag = 0x9000, .type = TiffType::undefined, .values = {'0', '2', '3', '0'}});
  if (!photo.taken.empty()) block.exif.push_back(tiffText(0x9003, photo.taken));
  if (!photo.digitized.empty()) block.exif.push_back(tiffText(0x9004, photo.digitized));
  if (photo.makerNoteBytes > 0) block.exif.push_back(tiffFiller(0x927C, photo.makerNoteBytes));
  if (!photo.makerNote.empty()) {
    block.exif.push_back({.tag = 0x927C,
                          .type = TiffType::undefined,
                          .values = {photo.makerNote.begin(), photo.makerNote.end()}});
  }
  if (photo.exifPixelSize) {
    block.exif.push_back(tiffLong(0xA002, static_cast<std::uint64_t>(photo.width)));
    block.exif.push_back(tiffLong(0xA003, static_cast<std::uint64_t>(photo.height)));
  }
  if (photo.thumbnail)
    block.thumbnail = encodedJpeg(160, 160 * photo.height / photo.width, photo.seed, false);
  return block;
}

Bytes jpegPhoto(const SamplePhoto& photo) {
  const Bytes jpeg = encodedJpeg(photo.width, photo.height, photo.seed, photo.progressive);
  return photo.exif ? withSegments(jpeg, {exifSegment(exifBlock(photo).encode())}) : jpeg;
}

Bytes pngPhoto(const SamplePhoto& photo) {
  const Bytes png = encodedPng(photo);
  return photo.exif ? withChunks(png, {pngChunk("eXIf", exifBlock(photo).encode())}) : png;
}

Bytes tiffPhoto(const SamplePhoto& photo) {
  const auto height = static_cast<std::uint64_t>(photo.height);
  TiffBlock file = photo.exif ? exifBlock(photo) : TiffBlock{};
  file.bigEndian = photo.bigEndian;
  file.bigTiff = photo.bigTiff;
  file.thumbnail.clear();
  file.pixels = samplePixels(photo.width, photo.height, photo.seed);
  file.image.push_back(tiffLong(0x0100, static_cast<std::uint64_t>(photo.width)));
  file.image.push_back(tiffLong(0x0101, height));
  file.image.push_back({.tag = 0x0102, .type = TiffType::shortInt, .values = {8, 8, 8}});
  file.image.push_back(tiffShort(0x0103, 1));  // no compression
  file.image.push_back(tiffShort(0x0106, 2));  // red, green, blue
  file.image.push_back(tiffShort(0x0115, 3));
  file.image.push_back(tiffLong(0x0116, height));
  return file.encode();
}

void claimSize(TiffBlock& file, std::uint64_t width, std::uint64_t height, std::uint64_t compression) {
  file.pixels = Bytes(200, 0);
  file.image.insert(file.image.end(), {tiffLong(0x0100, width), tiffLong(0x0101, height),
                                       tiffShort(0x0102, 8), tiffShort(0x0103, compression),
                                       tiffShort(0x0106, 1), tiffShort(0x0115, 1), tiffLong(0x0116, height)});
}

Bytes videoFile(std::size_t size, unsigned seed) {
  constexpr std::size_t fileTypeBox = 24;
  Bytes video;
  video.reserve(std::max<std::size_t>(size, 32));
  appendBigEndian(video, fileTypeBox, 4);
  appendText(video, "ftypisom");
  appendBigEndian(video, 512, 4);
  appendText(video, "isommp42");
  appendBigEndian(video, size > fileTypeBox ? size - fileTypeBox : 0, 4);
  appendText(video, "mdat");
  std::uint32_t noise = seed;
  while (video.size() < size) {
    noise = noise * 1664525U + 1013904223U;
    video.push_back(static_cast<std::uint8_t>(noise >> 24));
  }
  video.resize(size);
  return video;
}

}  // namespace kestrova::test
