#include "imaging/jpeg/jpeg_library.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace kestrova::imaging {

JpegErrors::JpegErrors(Stopped stopped) : stopped_(std::move(stopped)) {
  jpeg_std_error(&manager_);
  manager_.error_exit = leave;
  manager_.emit_message = [](j_common_ptr info, int level) {
    if (level < 0) leave(info);
  };
  manager_.output_message = [](j_common_ptr) {};
  progress_.progress_monitor = leaveIfStopped;
}

void JpegErrors::leave(j_common_ptr info) {
  info->err->format_message(info, self(info).message_.data());
  std::longjmp(self(info).escape_, 1);
}

void JpegErrors::leaveIfStopped(j_common_ptr info) {
  JpegErrors& errors = self(info);
  if (!errors.stopped_ || !errors.stopped_()) return;
  errors.isInterrupted_ = true;
  std::longjmp(errors.escape_, 1);
}

void JpegErrors::throwReason() const {
  if (isInterrupted_) throw Interrupted();
  throw ImageError(message_.data());
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

JpegCompressor::JpegCompressor(const Stopped& stopped) : errors_(stopped) {
  info_.err = errors_.manager();
  errors_.guarded([this] {
    jpeg_create_compress(&info_);
    info_.progress = errors_.progress();
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
