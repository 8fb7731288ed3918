#include "imaging/jpeg/jpeg_pixels.h"

#include "imaging/base/image_error.h"
#include "imaging/jpeg/jpeg_outline.h"

namespace kestrova::imaging {

namespace {

/// What one APP2 segment holds of a profile (ICC.1, annex B.4); there are at most 255 of them.
constexpr std::size_t profileBytesPerSegment = mostPayloadBytes - 14;
constexpr std::size_t mostProfileBytes = 255 * profileBytesPerSegment;

ByteView requireWhole(ByteView file) {
  outlineJpeg(file);
  return file;
}

J_COLOR_SPACE decodedColors(J_COLOR_SPACE stored) {
  if (stored == JCS_GRAYSCALE) return JCS_GRAYSCALE;
  return stored == JCS_CMYK || stored == JCS_YCCK ? JCS_CMYK : JCS_EXT_RGBA;
}

J_COLOR_SPACE colorsOf(const JpegPixels& pixels) {
  if (pixels.pixelBytes == 1) return JCS_GRAYSCALE;
  return pixels.pixelBytes == 3 ? JCS_RGB : JCS_EXT_RGBX;
}

void configure(jpeg_compress_struct& info, const JpegPixels& pixels, const JpegSettings& settings) {
  info.image_width = static_cast<JDIMENSION>(pixels.size.width);
  info.image_height = static_cast<JDIMENSION>(pixels.size.height);
  info.input_components = pixels.pixelBytes;
  info.in_color_space = colorsOf(pixels);
  jpeg_set_defaults(&info);
  jpeg_set_quality(&info, settings.quality, TRUE);
  if (pixels.pixelBytes == 1) return;
  info.comp_info[0].h_samp_factor = settings.pixelsPerColorX;
  info.comp_info[0].v_samp_factor = settings.pixelsPerColorY;
}

}  // namespace

JpegPixelDecoder::JpegPixelDecoder(ByteView file)
    : decoder_(requireWhole(file), {.readsProfile = true}),
      colorSpace_(decodedColors(decoder_.info().jpeg_color_space)) {}

void JpegPixelDecoder::decode(const RowAt& rowAt) {
  auto& info = decoder_.info();
  decoder_.errors().guarded([&] {
    info.out_color_space = colorSpace_;
    jpeg_start_decompress(&info);
  });
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = rowAt(info.output_scanline);
    decoder_.errors().guarded([&] { jpeg_read_scanlines(&info, &row, 1); });
    if (colorSpace_ == JCS_CMYK) convertFromCmyk(row);
  }
  decoder_.errors().guarded([&] { jpeg_finish_decompress(&info); });
}

/// Adobe's programs, and those that follow them, store the inks inverted.
void JpegPixelDecoder::convertFromCmyk(std::uint8_t* row) {
  const bool isInverted = decoder_.info().saw_Adobe_marker == TRUE;
  const auto paper = [&](std::uint8_t ink) { return isInverted ? ink : 255 - ink; };
  std::uint8_t* const end = row + 4 * size().width;
  for (std::uint8_t* pixel = row; pixel != end; pixel += 4) {
    const int light = paper(pixel[3]);
    for (int i = 0; i < 3; ++i) pixel[i] = static_cast<std::uint8_t>(paper(pixel[i]) * light / 255);
    pixel[3] = 255;
  }
}

Bytes encodePixels(const JpegPixels& pixels, const JpegSettings& settings) {
  JpegCompressor compressor;
  auto& info = compressor.info();
  compressor.errors().guarded([&] {
    configure(info, pixels, settings);
    jpeg_start_compress(&info, TRUE);
    if (!settings.profile.empty() && settings.profile.size() <= mostProfileBytes) {
      jpeg_write_icc_profile(&info, settings.profile.data(), static_cast<unsigned>(settings.profile.size()));
    }
  });
  while (info.next_scanline < info.image_height) {
    auto* row = const_cast<JSAMPROW>(pixels.rowAt(info.next_scanline));
    compressor.errors().guarded([&] { jpeg_write_scanlines(&info, &row, 1); });
  }
  compressor.errors().guarded([&] { jpeg_finish_compress(&info); });
  return compressor.bytes();
}

}  // namespace kestrova::imaging
