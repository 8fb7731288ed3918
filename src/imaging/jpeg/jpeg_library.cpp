#include "imaging/jpeg/jpeg_library.h"

#include <algorithm>
#include <new>
#include <utility>

#include <jerror.h>

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
  errors_.guarded([this] { jpeg_create_compress(&info_); });
  info_.mem->max_memory_to_use = maxWorkingBytes;
  info_.client_data = this;
  destination_.init_destination = [](j_compress_ptr) {};
  destination_.empty_output_buffer = grow;
  destination_.term_destination = [](j_compress_ptr) {};
  bytes_.resize(1 << 20);
  destination_.next_output_byte = bytes_.data();
  destination_.free_in_buffer = bytes_.size();
  info_.dest = &destination_;
}

boolean JpegCompressor::grow(j_compress_ptr info) {
  auto* self = static_cast<JpegCompressor*>(info->client_data);
  const std::size_t filled = self->bytes_.size();
  bool grown = true;
  try {
    self->bytes_.resize(2 * filled);
  } catch (const std::bad_alloc&) {
    grown = false;
  }
  if (!grown) ERREXIT1(info, JERR_OUT_OF_MEMORY, 0);
  self->destination_.next_output_byte = self->bytes_.data() + filled;
  self->destination_.free_in_buffer = filled;
  return TRUE;
}

Bytes JpegCompressor::take() {
  bytes_.resize(bytes_.size() - destination_.free_in_buffer);
  return std::move(bytes_);
}

}  // namespace kestrova::imaging
