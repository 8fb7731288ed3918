#include "imaging/jpeg/jpeg_encoder.h"

#include <algorithm>
#include <array>
#include <vector>

namespace kestrova::imaging {

namespace {

void configure(jpeg_compress_struct& info, const JpegFormat& format, const PixelSize& size, int quality) {
  info.image_width = static_cast<JDIMENSION>(size.width);
  info.image_height = static_cast<JDIMENSION>(size.height);
  info.input_components = static_cast<int>(format.components.size());
  info.in_color_space = format.colorSpace;
  jpeg_set_defaults(&info);
  jpeg_set_colorspace(&info, format.colorSpace);
  jpeg_set_quality(&info, quality, TRUE);
  for (std::size_t i = 0; i < format.components.size(); ++i) {
    info.comp_info[i].component_id = format.components[i].id;
    info.comp_info[i].h_samp_factor = format.components[i].horizontal;
    info.comp_info[i].v_samp_factor = format.components[i].vertical;
  }
  info.raw_data_in = TRUE;
  info.write_JFIF_header = FALSE;
  info.write_Adobe_marker = FALSE;
  if (format.progressive) jpeg_simple_progression(&info);
}

/// Fills the last block of each row by repeating the last sample, as encoders do.
void padRight(Raster& plane) {
  const std::int64_t padded = (plane.width() + 7) / 8 * 8;
  for (std::int64_t y = 0; y < plane.height(); ++y) {
    std::uint8_t* row = plane.row(y);
    std::fill(row + plane.width(), row + padded, row[plane.width() - 1]);
  }
}

/// Points to the `count` rows from `first` on; the last row is used for those below it.
void pointTo(const Raster& plane, std::int64_t first, std::int64_t count, std::vector<JSAMPROW>& rows) {
  rows.clear();
  for (std::int64_t y = first; y < first + count; ++y) {
    rows.push_back(const_cast<JSAMPROW>(plane.row(std::min(y, plane.height() - 1))));
  }
}

}  // namespace

std::int64_t planeExtent(std::int64_t pixels, int samplingFactor, int maxSamplingFactor) {
  return (pixels * samplingFactor + maxSamplingFactor - 1) / maxSamplingFactor;
}

Bytes encodeJpeg(JpegPlanes& picture, int quality, const Stopped& stopped) {
  std::vector<Raster>& planes = picture.planes;
  for (Raster& plane : planes) padRight(plane);
  JpegCompressor compressor(stopped);
  auto& info = compressor.info();
  compressor.errors().guarded([&] {
    configure(info, picture.format, picture.size, quality);
    jpeg_start_compress(&info, TRUE);
  });
  std::vector<std::vector<JSAMPROW>> rows(planes.size());
  std::array<JSAMPARRAY, MAX_COMPONENTS> bands{};
  for (std::int64_t band = 0; info.next_scanline < info.image_height; ++band) {
    for (std::size_t i = 0; i < planes.size(); ++i) {
      const std::int64_t count = DCTSIZE * picture.format.components[i].vertical;
      pointTo(planes[i], band * count, count, rows[i]);
      bands[i] = rows[i].data();
    }
    const auto lines = static_cast<JDIMENSION>(DCTSIZE * info.max_v_samp_factor);
    compressor.errors().guarded([&] { jpeg_write_raw_data(&info, bands.data(), lines); });
  }
  compressor.errors().guarded([&] { jpeg_finish_compress(&info); });
  return compressor.bytes();
}

}  // namespace kestrova::imaging
