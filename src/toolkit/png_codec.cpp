#include "toolkit/png_codec.h"

#include "toolkit/image_codec.h"

#include <QBuffer>
#include <QColorSpace>
#include <QImageWriter>
#include <bit>
#include <cstring>
#include <vector>

#include <png.h>

namespace kestrova {

namespace {

/// One decoding. libpng leaves its functions by longjmp when something is wrong: whatever has to be released
/// is a member, and the functions that call libpng have no such locals.
class PngReader {
 public:
  explicit PngReader(ByteView file)
      : unread_(file), png_(png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, giveUp, keepQuiet)) {
    if (png_ != nullptr) info_ = png_create_info_struct(png_);
  }
  ~PngReader() { png_destroy_read_struct(&png_, &info_, nullptr); }
  PngReader(const PngReader&) = delete;
  PngReader& operator=(const PngReader&) = delete;

  QImage read() {
    if (info_ == nullptr || !readHeader() || !makeImage() || !readPixels()) return {};
    if (!profile_.isEmpty()) image_.setColorSpace(QColorSpace::fromIccProfile(profile_));
    return image_;
  }

 private:
  static void giveUp(png_structp png, png_const_charp) { png_longjmp(png, 1); }
  static void keepQuiet(png_structp, png_const_charp) {}

  static void readBytes(png_structp png, png_bytep to, std::size_t count) {
    ByteView& unread = static_cast<PngReader*>(png_get_io_ptr(png))->unread_;
    if (count > unread.size()) png_error(png, "the file is cut off");
    std::memcpy(to, unread.data(), count);
    unread = unread.subspan(count);
  }

  bool readHeader() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_set_read_fn(png_, this, readBytes);
    png_read_info(png_, info_);
    chooseLayout();
    png_read_update_info(png_, info_);
    return true;
  }

  /// Palettes and samples of less than 8 bits become whole bytes, colours four samples a pixel.
  void chooseLayout() {
    png_set_expand(png_);
    if (std::endian::native == std::endian::little) png_set_swap(png_);
    hasAlpha_ = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_ALPHA) != 0 ||
                png_get_valid(png_, info_, PNG_INFO_tRNS) != 0;
    const bool gray = (png_get_color_type(png_, info_) & PNG_COLOR_MASK_COLOR) == 0;
    if (gray && !hasAlpha_) return;
    png_set_gray_to_rgb(png_);
    if (!hasAlpha_) png_set_add_alpha(png_, 0xffff, PNG_FILLER_AFTER);
  }

  QImage::Format format() const {
    const bool deep = png_get_bit_depth(png_, info_) == 16;
    if (png_get_channels(png_, info_) == 1)
      return deep ? QImage::Format_Grayscale16 : QImage::Format_Grayscale8;
    if (deep) return hasAlpha_ ? QImage::Format_RGBA64 : QImage::Format_RGBX64;
    return hasAlpha_ ? QImage::Format_RGBA8888 : QImage::Format_RGBX8888;
  }

  bool makeImage() {
    const auto width = png_get_image_width(png_, info_);
    const auto height = png_get_image_height(png_, info_);
    const int pixelBytes = png_get_channels(png_, info_) * png_get_bit_depth(png_, info_) / 8;
    if (!isDecodableSize(width, height, pixelBytes)) return false;
    image_ = QImage(static_cast<int>(width), static_cast<int>(height), format());
    for (int y = 0; y < image_.height(); ++y) rows_.push_back(image_.scanLine(y));
    keepProfile();
    return !image_.isNull();
  }

  void keepProfile() {
    png_charp name = nullptr;
    png_bytep profile = nullptr;
    png_uint_32 size = 0;
    int compression = 0;
    if (png_get_iCCP(png_, info_, &name, &compression, &profile, &size) == 0) return;
    profile_ = QByteArray(reinterpret_cast<const char*>(profile), static_cast<qsizetype>(size));
  }

  bool readPixels() {
    if (setjmp(png_jmpbuf(png_)) != 0) return false;
    png_read_image(png_, rows_.data());
    png_read_end(png_, nullptr);
    return true;
  }

  ByteView unread_;
  png_structp png_;
  png_infop info_ = nullptr;
  bool hasAlpha_ = false;
  QImage image_;
  std::vector<png_bytep> rows_;
  QByteArray profile_;
};

}  // namespace

QImage decodePng(ByteView file) { return PngReader(file).read(); }

std::optional<Bytes> encodePng(const QImage& image) {
  QByteArray file;
  QBuffer buffer(&file);
  if (image.isNull() || !QImageWriter(&buffer, "png").write(image)) return std::nullopt;
  return Bytes(file.begin(), file.end());
}

}  // namespace kestrova
