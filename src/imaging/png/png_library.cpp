#include "imaging/png/png_library.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <new>

namespace kestrova::imaging {

void PngErrors::leave(png_structp png, png_const_charp message) {
  auto* errors = static_cast<PngErrors*>(png_get_error_ptr(png));
  std::strncpy(errors->message_.data(), message, errors->message_.size() - 1);
  std::longjmp(errors->escape_, 1);
}

int PngFormat::channels() const {
  if (colorType == PNG_COLOR_TYPE_PALETTE) return 1;
  return ((colorType & PNG_COLOR_MASK_COLOR) != 0 ? 3 : 1) +
         ((colorType & PNG_COLOR_MASK_ALPHA) != 0 ? 1 : 0);
}

PngDecoder::PngDecoder(ByteView file, Wants wants) : rest_(file) {
  const auto onWarning = wants == Wants::pixels ? PngErrors::leave : PngErrors::ignore;
  png_ = png_create_read_struct(PNG_LIBPNG_VER_STRING, &errors_, PngErrors::leave, onWarning);
  if (png_ == nullptr) throw std::bad_alloc();
  try {
    errors_.guarded([&] { readHeaders(wants); });
    requireAffordable(format_.size.width, format_.size.height, format_.pixelBytes());
  } catch (...) {
    png_destroy_read_struct(&png_, &info_, nullptr);
    throw;
  }
}

void PngDecoder::readHeaders(Wants wants) {
  info_ = png_create_info_struct(png_);
  png_set_read_fn(png_, this, read);
  png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  png_set_crc_action(png_, PNG_CRC_QUIET_USE, PNG_CRC_QUIET_USE);
  // A damaged comment does not damage the picture: only the chunks that the pixels depend on are checked.
  constexpr int allButPixels = -1;
  png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_NEVER, nullptr, allButPixels);
  if (wants == Wants::profile) {
    constexpr png_byte profileChunk[] = "iCCP";
    png_set_keep_unknown_chunks(png_, PNG_HANDLE_CHUNK_AS_DEFAULT, profileChunk, 1);
  }
  png_set_chunk_malloc_max(png_, 0);
  png_read_info(png_, info_);
  readFormat();
}

void PngDecoder::readFormat() {
  format_.size = {png_get_image_width(png_, info_), png_get_image_height(png_, info_)};
  format_.bitDepth = png_get_bit_depth(png_, info_);
  format_.colorType = png_get_color_type(png_, info_);
  format_.interlace = png_get_interlace_type(png_, info_);
}

void PngDecoder::read(png_structp png, png_bytep to, std::size_t count) {
  auto* self = static_cast<PngDecoder*>(png_get_io_ptr(png));
  if (count > self->rest_.size()) png_error(png, "the PNG is cut off");
  std::memcpy(to, self->rest_.data(), count);
  self->rest_ = self->rest_.subspan(count);
}

std::vector<png_color> PngDecoder::palette() {
  png_colorp colors = nullptr;
  int count = 0;
  if (png_get_PLTE(png_, info_, &colors, &count) == 0) return {};
  return {colors, colors + count};
}

Bytes PngDecoder::profile() {
  png_charp name = nullptr;
  png_bytep data = nullptr;
  png_uint_32 size = 0;
  int compression = 0;
  if (png_get_iCCP(png_, info_, &name, &compression, &data, &size) == 0) return {};
  return {data, data + size};
}

Bytes pngProfile(ByteView file) {
  try {
    return PngDecoder(file, PngDecoder::Wants::profile).profile();
  } catch (const ImageError&) {
    return {};
  }
}

void PngDecoder::expand() {
  const bool hasTransparency = png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
  errors_.guarded([this] { png_set_expand(png_); });
  if (format_.colorType == PNG_COLOR_TYPE_PALETTE) format_.colorType = PNG_COLOR_TYPE_RGB;
  if (hasTransparency) format_.colorType |= PNG_COLOR_MASK_ALPHA;
  format_.bitDepth = std::max(format_.bitDepth, 8);
}

void PngDecoder::decode(const TakeRow& take, const Stopped& stopped) {
  int passes = 1;
  errors_.guarded([&] {
    png_set_packing(png_);
    if (format_.bitDepth == 16 && std::endian::native == std::endian::little) png_set_swap(png_);
    passes = png_set_interlace_handling(png_);
    png_read_update_info(png_, info_);
  });
  const auto rowBytes =
      static_cast<std::size_t>(format_.size.width) * static_cast<std::size_t>(format_.pixelBytes());
  if (png_get_rowbytes(png_, info_) != rowBytes) throw ImageError("the PNG's rows have an unexpected length");
  if (passes > 1) {
    decodeInterlaced(passes, take, stopped);
  } else {
    decodeRows(take, stopped);
  }
  errors_.guarded([&] { png_read_end(png_, nullptr); });
}

void PngDecoder::decodeRows(const TakeRow& take, const Stopped& stopped) {
  Bytes row(png_get_rowbytes(png_, info_));
  for (std::int64_t y = 0; y < format_.size.height; ++y) {
    throwIfStopped(stopped);
    errors_.guarded([&] { png_read_row(png_, row.data(), nullptr); });
    take(row.data());
  }
}

void PngDecoder::decodeInterlaced(int passes, const TakeRow& take, const Stopped& stopped) {
  Raster raster(format_.size.width, format_.size.height, format_.pixelBytes());
  errors_.guarded([&] {
    for (int pass = 0; pass < passes; ++pass) {
      for (std::int64_t y = 0; y < raster.height(); ++y) {
        throwIfStopped(stopped);
        png_read_row(png_, raster.row(y), nullptr);
      }
    }
  });
  for (std::int64_t y = 0; y < raster.height(); ++y) take(raster.row(y));
}

namespace {

/// A libpng writer into memory.
class PngEncoder {
 public:
  PngEncoder() {
    png_ = png_create_write_struct(PNG_LIBPNG_VER_STRING, &errors_, PngErrors::leave, PngErrors::leave);
    if (png_ == nullptr) throw std::bad_alloc();
    png_set_write_fn(png_, this, write, [](png_structp) {});
  }
  ~PngEncoder() { png_destroy_write_struct(&png_, &info_); }
  PngEncoder(const PngEncoder&) = delete;
  PngEncoder& operator=(const PngEncoder&) = delete;

  Bytes encode(const PngPicture& picture, const Stopped& stopped) {
    errors_.guarded([&] {
      begin(picture.format, picture.palette);
      const int passes = png_set_interlace_handling(png_);
      for (int pass = 0; pass < passes; ++pass) {
        for (std::int64_t y = 0; y < picture.raster.height(); ++y) {
          throwIfStopped(stopped);
          png_write_row(png_, picture.raster.row(y));
        }
      }
      png_write_end(png_, info_);
    });
    return std::move(bytes_);
  }

 private:
  void begin(const PngFormat& format, const std::vector<png_color>& palette) {
    info_ = png_create_info_struct(png_);
    png_set_user_limits(png_, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_IHDR(png_, info_, static_cast<png_uint_32>(format.size.width),
                 static_cast<png_uint_32>(format.size.height), format.bitDepth, format.colorType,
                 format.interlace, PNG_COMPRESSION_TYPE_BASE, PNG_FILTER_TYPE_BASE);
    if (format.colorType == PNG_COLOR_TYPE_PALETTE) {
      png_set_PLTE(png_, info_, palette.data(), static_cast<int>(palette.size()));
    }
    png_write_info(png_, info_);
    png_set_packing(png_);
    if (format.bitDepth == 16 && std::endian::native == std::endian::little) png_set_swap(png_);
  }

  static void write(png_structp png, png_bytep data, std::size_t count) {
    auto* self = static_cast<PngEncoder*>(png_get_io_ptr(png));
    bool stored = true;
    try {
      self->bytes_.insert(self->bytes_.end(), data, data + count);
    } catch (const std::bad_alloc&) {
      stored = false;
    }
    if (!stored) png_error(png, "not enough memory");
  }

  PngErrors errors_;
  png_structp png_ = nullptr;
  png_infop info_ = nullptr;
  Bytes bytes_;
};

}  // namespace

Bytes encodePng(const PngPicture& picture, const Stopped& stopped) {
  return PngEncoder().encode(picture, stopped);
}

}  // namespace kestrova::imaging
