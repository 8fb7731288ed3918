#include "imaging/jpeg/jpeg_decoder.h"

#include "imaging/jpeg/jpeg_segments.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>

namespace kestrova::imaging {

struct JpegDecoder::Band {
  Band(const jpeg_component_info& component, std::size_t index) : component_(index) {
    const auto stride = static_cast<std::size_t>(component.width_in_blocks) *
                        static_cast<std::size_t>(component.DCT_scaled_size);
    const int rows = component.v_samp_factor * component.DCT_scaled_size;
    samples_.resize(stride * static_cast<std::size_t>(rows));
    for (int i = 0; i < rows; ++i) rows_.push_back(samples_.data() + stride * static_cast<std::size_t>(i));
    left_ = component.downsampled_height;
  }

  JSAMPARRAY rows() { return rows_.data(); }

  void give(const TakeRow& take) {
    const std::size_t count = std::min<std::size_t>(left_, rows_.size());
    for (std::size_t i = 0; i < count; ++i) take(component_, rows_[i]);
    left_ -= count;
  }

 private:
  std::size_t component_;
  std::size_t left_;  ///< rows of the plane that have not been decoded
  Bytes samples_;
  std::vector<JSAMPROW> rows_;
};

JpegDecoder::JpegDecoder(ByteView file, const Options& options) : errors_(options.stopped) {
  info_.err = errors_.manager();
  errors_.guarded([this] { jpeg_create_decompress(&info_); });
  info_.progress = errors_.progress();
  info_.mem->max_memory_to_use = maxWorkingBytes;
  try {
    errors_.guarded([&] {
      jpeg_mem_src(&info_, file.data(), file.size());
      if (options.readsProfile) jpeg_save_markers(&info_, jpeg_marker::app2, mostPayloadBytes);
      jpeg_read_header(&info_, TRUE);
    });
    requireAffordable(info_.image_width, info_.image_height);
    if (options.readsProfile) readProfile();
  } catch (...) {
    jpeg_destroy_decompress(&info_);
    throw;
  }
}

JpegFormat JpegDecoder::format() const {
  JpegFormat format{
      .colorSpace = info_.jpeg_color_space, .progressive = info_.progressive_mode == TRUE, .components = {}};
  for (int i = 0; i < info_.num_components; ++i) {
    const auto& component = info_.comp_info[i];
    format.components.push_back({.id = component.component_id,
                                 .horizontal = component.h_samp_factor,
                                 .vertical = component.v_samp_factor});
  }
  return format;
}

void JpegDecoder::readProfile() {
  JOCTET* data = nullptr;
  unsigned size = 0;
  try {
    errors_.guarded([&] { jpeg_read_icc_profile(&info_, &data, &size); });
  } catch (const ImageError&) {
    return;  // the pixels may still be valid
  }
  const std::unique_ptr<JOCTET, decltype(&std::free)> owner(data, &std::free);
  profile_.assign(data, data + size);
}

void JpegDecoder::start(int eighths) {
  errors_.guarded([&] {
    info_.scale_num = static_cast<unsigned>(eighths);
    info_.scale_denom = 8;
    info_.raw_data_out = TRUE;
    info_.out_color_space = info_.jpeg_color_space;
    jpeg_start_decompress(&info_);
  });
}

JpegDecoder::Plane JpegDecoder::plane(std::size_t component) const {
  const auto& info = info_.comp_info[component];
  const double blockScale = info.DCT_scaled_size / 8.0;
  return {.width = static_cast<int>(info.downsampled_width),
          .height = static_cast<int>(info.downsampled_height),
          .samplesPerPixelX = blockScale * info.h_samp_factor / info_.max_h_samp_factor,
          .samplesPerPixelY = blockScale * info.v_samp_factor / info_.max_v_samp_factor};
}

void JpegDecoder::decode(const TakeRow& take) {
  std::vector<Band> bands;
  std::array<JSAMPARRAY, MAX_COMPONENTS> rows{};
  for (int i = 0; i < info_.num_components; ++i) {
    bands.emplace_back(info_.comp_info[i], static_cast<std::size_t>(i));
    rows[static_cast<std::size_t>(i)] = bands.back().rows();
  }
  const auto lines = static_cast<JDIMENSION>(info_.max_v_samp_factor * info_.min_DCT_scaled_size);
  while (info_.output_scanline < info_.output_height) {
    errors_.guarded([&] { jpeg_read_raw_data(&info_, rows.data(), lines); });
    for (auto& band : bands) band.give(take);
  }
  errors_.guarded([this] { jpeg_finish_decompress(&info_); });
}

void verifyJpeg(ByteView file, const Stopped& stopped) {
  JpegDecoder decoder(file, {.stopped = stopped});
  decoder.start(1);
  decoder.decode([](std::size_t, const std::uint8_t*) {});
}

}  // namespace kestrova::imaging
