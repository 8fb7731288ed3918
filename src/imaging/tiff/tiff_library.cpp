#include "imaging/tiff/tiff_library.h"

#include "imaging/base/image_error.h"
#include "imaging/base/image_limits.h"

#include <algorithm>
#include <array>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>

namespace kestrova::imaging {

TiffHandle::TiffHandle(ByteView file) : file_(file) { open("r"); }

TiffHandle::TiffHandle(ByteView file, std::uint64_t directory) : TiffHandle(file) {
  if (directory != TIFFCurrentDirOffset(tiff_)) check(TIFFSetSubDirectory(tiff_, directory) == 1);
}

TiffHandle::TiffHandle(bool bigEndian) : writing_(true) { open(bigEndian ? "wb" : "wl"); }

TiffHandle::~TiffHandle() {
  if (tiff_ != nullptr) TIFFClose(tiff_);
}

void TiffHandle::open(const char* mode) {
  const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                 &TIFFOpenOptionsFree);
  if (!options) throw std::bad_alloc();
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), maxWorkingBytes);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, this);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), onWarning, this);
  tiff_ = TIFFClientOpenExt(
      "photo", mode, this, read, write, seek, [](thandle_t) { return 0; }, size, map,
      [](thandle_t, void*, toff_t) {}, options.get());
  if (tiff_ == nullptr) check(false);
}

void TiffHandle::check(bool done) const {
  if (failed_ || !done) throw ImageError(error_.empty() ? "the TIFF cannot be read" : error_);
}

Bytes TiffHandle::finish() {
  check(TIFFWriteDirectory(tiff_) == 1);
  TIFFClose(std::exchange(tiff_, nullptr));
  check();
  return std::move(written_);
}

std::uint16_t TiffHandle::number16(std::uint32_t tag, std::uint16_t otherwise) {
  std::uint16_t value = otherwise;
  return TIFFGetFieldDefaulted(tiff_, tag, &value) == 1 ? value : otherwise;
}

std::uint32_t TiffHandle::number32(std::uint32_t tag, std::uint32_t otherwise) {
  std::uint32_t value = otherwise;
  return TIFFGetFieldDefaulted(tiff_, tag, &value) == 1 ? value : otherwise;
}

tmsize_t TiffHandle::read(thandle_t handle, void* to, tmsize_t count) {
  TiffHandle& file = self(handle);
  const ByteView all = file.writing_ ? ByteView(file.written_) : file.file_;
  const std::uint64_t begin = std::min<std::uint64_t>(file.position_, all.size());
  const std::size_t length =
      std::min(static_cast<std::size_t>(std::max<tmsize_t>(count, 0)), all.size() - begin);
  if (length > 0) std::memcpy(to, all.data() + begin, length);
  file.position_ = begin + length;
  return static_cast<tmsize_t>(length);
}

tmsize_t TiffHandle::write(thandle_t handle, void* from, tmsize_t count) {
  TiffHandle& file = self(handle);
  const std::uint64_t end = file.position_ + static_cast<std::uint64_t>(count);
  if (!file.writing_ || end > 2 * static_cast<std::uint64_t>(maxWorkingBytes)) return -1;
  try {
    if (end > file.written_.size()) file.written_.resize(end);
  } catch (const std::bad_alloc&) {
    return -1;
  }
  std::memcpy(file.written_.data() + file.position_, from, static_cast<std::size_t>(count));
  file.position_ = end;
  return count;
}

toff_t TiffHandle::seek(thandle_t handle, toff_t offset, int whence) {
  TiffHandle& file = self(handle);
  if (whence == SEEK_CUR) offset += file.position_;
  if (whence == SEEK_END) offset += size(handle);
  return file.position_ = offset;
}

toff_t TiffHandle::size(thandle_t handle) {
  const TiffHandle& file = self(handle);
  return file.writing_ ? file.written_.size() : file.file_.size();
}

int TiffHandle::map(thandle_t handle, void** base, toff_t* size) {
  const TiffHandle& file = self(handle);
  if (file.writing_) return 0;
  *base = const_cast<std::uint8_t*>(file.file_.data());
  *size = file.file_.size();
  return 1;
}

int TiffHandle::onError(TIFF*, void* user, const char* module, const char* format, va_list arguments) {
  TiffHandle& file = *static_cast<TiffHandle*>(user);
  if (std::exchange(file.failed_, true)) return 1;
  std::array<char, 200> text{};
  std::vsnprintf(text.data(), text.size(), format, arguments);
  file.error_ = std::string(module == nullptr ? "TIFF" : module) + ": " + text.data();
  return 1;
}

int TiffHandle::onWarning(TIFF* tiff, void* user, const char* module, const char* format, va_list arguments) {
  const std::string_view name = module == nullptr ? "" : module;
  return name == "JPEGLib" ? onError(tiff, user, module, format, arguments) : 1;
}

}  // namespace kestrova::imaging
