#pragma once

#include "imaging/base/image_error.h"
#include "imaging/base/interruption.h"
#include "platform/bytes.h"

#include <array>
#include <csetjmp>
#include <cstddef>
#include <cstdio>
#include <vector>

// After <cstdio>, which it needs.
#include <jpeglib.h>

// What is needed to use libjpeg from C++: errors and warnings become ImageError, a stop becomes Interrupted,
// and memory is freed.
namespace kestrova::imaging {

/// How libjpeg's work ends early: its error manager and its progress monitor. A warning counts as an error: a
/// photo that decodes only in part is not decoded.
class JpegErrors {
 public:
  explicit JpegErrors(Stopped stopped);
  JpegErrors(const JpegErrors&) = delete;
  JpegErrors& operator=(const JpegErrors&) = delete;

  jpeg_error_mgr* manager() { return &manager_; }
  /// Called for every row of blocks in every pass.
  jpeg_progress_mgr* progress() { return &progress_; }

  /// Runs `call`, which calls libjpeg and has no objects with destructors: libjpeg leaves it with longjmp.
  /// Throws ImageError or Interrupted from here, so that no C frame is unwound.
  template <class Call>
  [[gnu::noinline]] void guarded(const Call& call) {
    if (setjmp(escape_) != 0) throwReason();
    call();
  }

 private:
  static JpegErrors& self(j_common_ptr info) { return *reinterpret_cast<JpegErrors*>(info->err); }
  static void leave(j_common_ptr info);
  static void leaveIfStopped(j_common_ptr info);
  [[noreturn]] void throwReason() const;

  jpeg_error_mgr manager_{};  // first: libjpeg's pointer to it leads to the whole
  jpeg_progress_mgr progress_{};
  Stopped stopped_;
  bool isInterrupted_ = false;
  std::jmp_buf escape_{};
  std::array<char, JMSG_LENGTH_MAX> message_{};
};

struct JpegComponent {
  int id = 0;
  int horizontal = 1;  ///< sampling factors
  int vertical = 1;
};

/// The properties, apart from pixels, that two JPEGs of one kind share.
struct JpegFormat {
  J_COLOR_SPACE colorSpace = JCS_UNKNOWN;
  bool progressive = false;
  std::vector<JpegComponent> components;

  int maxHorizontal() const;
  int maxVertical() const;
};

/// A compressor that writes into memory.
class JpegCompressor {
 public:
  explicit JpegCompressor(const Stopped& stopped = {});
  ~JpegCompressor();
  JpegCompressor(const JpegCompressor&) = delete;
  JpegCompressor& operator=(const JpegCompressor&) = delete;

  jpeg_compress_struct& info() { return info_; }
  JpegErrors& errors() { return errors_; }
  /// What was written, after the compressor has finished.
  Bytes bytes() const { return {written_, written_ + size_}; }

 private:
  JpegErrors errors_;
  jpeg_compress_struct info_{};
  unsigned char* written_ = nullptr;
  unsigned long size_ = 0;
};

}  // namespace kestrova::imaging
