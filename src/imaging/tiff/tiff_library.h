#pragma once

#include "imaging/base/raster.h"
#include "platform/bytes.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <tiffio.h>

// What is needed to use libtiff on memory, from several threads, and silently.
namespace kestrova::imaging {

/// An open TIFF in memory. Any error that libtiff reports, and any warning of its JPEG codec, is kept and
/// thrown as ImageError by `check`; its warnings about tags are ignored, as they say nothing about the
/// pixels.
class TiffHandle {
 public:
  /// Opens for reading, at the first directory; throws ImageError if there is none. The file must outlive the
  /// handle.
  explicit TiffHandle(ByteView file);
  /// Opens at the directory at that offset.
  TiffHandle(ByteView file, std::uint64_t directory);
  /// Opens for writing a file of that byte order.
  explicit TiffHandle(bool bigEndian);
  ~TiffHandle();
  TiffHandle(const TiffHandle&) = delete;
  TiffHandle& operator=(const TiffHandle&) = delete;

  TIFF* get() { return tiff_; }
  /// Throws the first error so far; throws too when `done` is false.
  void check(bool done = true) const;
  /// Ends writing and returns the file.
  Bytes finish();

  /// The value of a tag that holds one number; `otherwise` if it is missing and has no default.
  std::uint16_t number16(std::uint32_t tag, std::uint16_t otherwise = 0);
  std::uint32_t number32(std::uint32_t tag, std::uint32_t otherwise = 0);

 private:
  void open(const char* mode);
  static TiffHandle& self(thandle_t handle) { return *static_cast<TiffHandle*>(handle); }
  static tmsize_t read(thandle_t handle, void* to, tmsize_t count);
  static tmsize_t write(thandle_t handle, void* from, tmsize_t count);
  static toff_t seek(thandle_t handle, toff_t offset, int whence);
  static toff_t size(thandle_t handle);
  static int map(thandle_t handle, void** base, toff_t* size);
  static int onError(TIFF* tiff, void* user, const char* module, const char* format, va_list arguments);
  static int onWarning(TIFF* tiff, void* user, const char* module, const char* format, va_list arguments);

  bool writing_ = false;
  ByteView file_;
  Bytes written_;
  std::uint64_t position_ = 0;
  bool failed_ = false;
  std::string error_;
  TIFF* tiff_ = nullptr;
};

}  // namespace kestrova::imaging
