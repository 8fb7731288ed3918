#include "imaging/jpeg/jpeg_library.h"

#include <algorithm>
#include <cstdlib>

namespace kestrova::imaging {

JpegErrors::JpegErrors() {
  jpeg_std_error(&manager_);
  manager_.error_exit = leave;
  manager_.emit_message = [](j_common_ptr info, int level) {
    if (level < 0) leave(info);
  };
  manager_.output_message = [](j_common_ptr) {};
}

void JpegErrors::leave(j_common_ptr info) {
  auto* errors = reinterpret_cast<JpegErrors*>(info->err);
  info->err->format_message(info, errors->message_.data());
  std::longjmp(errors->escape_, 1);
}

int JpegFormat::maxHorizontal() const {
  int most = 1;
  for (const auto& component : components) most = std::max(most, component.horizontal);
  return most;
}

int JpegFormat::maxVertical() const {
  int most = 1;
  for (const auto& component : components) most = std::max(most, component.vertical);
  return most;
}

JpegCompressor::JpegCompressor() {
  info_.err = errors_.manager();
  errors_.guarded([this] {
    jpeg_create_compress(&info_);
    info_.mem->max_memory_to_use = maxWorkingBytes;
    jpeg_mem_dest(&info_, &written_, &size_);
  });
}

JpegCompressor::~JpegCompressor() {
  // The buffer moves as it grows; after an error only this pointer is up to date.
  info_.dest->term_destination(&info_);
  jpeg_destroy_compress(&info_);
  std::free(written_);
}

}  // namespace kestrova::imaging
