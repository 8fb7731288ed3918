#include "toolkit/tiff_codec.h"

#include "imaging/image_limits.h"
#include "toolkit/image_codec.h"

#include <QColorSpace>
#include <algorithm>
#include <cstring>
#include <memory>

#include <tiffio.h>

namespace kestrova {

namespace {

/// A file in memory, for libtiff to read or to write. `contents` is what has been written.
struct MemoryFile {
  ByteView readable;
  Bytes contents;
  std::uint64_t position = 0;

  ByteView bytes() const { return contents.empty() ? readable : ByteView(contents); }
};

MemoryFile& memory(thandle_t handle) { return *static_cast<MemoryFile*>(handle); }

tmsize_t readMemory(thandle_t handle, void* to, tmsize_t size) {
  MemoryFile& file = memory(handle);
  const ByteView bytes = file.bytes();
  const std::uint64_t start = std::min<std::uint64_t>(file.position, bytes.size());
  const std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(size), bytes.size() - start);
  if (count > 0) std::memcpy(to, bytes.data() + start, count);
  file.position = start + count;
  return static_cast<tmsize_t>(count);
}

tmsize_t writeMemory(thandle_t handle, void* from, tmsize_t size) {
  MemoryFile& file = memory(handle);
  const std::uint64_t end = file.position + static_cast<std::uint64_t>(size);
  if (end > file.contents.size()) file.contents.resize(end);
  std::memcpy(file.contents.data() + file.position, from, static_cast<std::size_t>(size));
  file.position = end;
  return size;
}

toff_t seekMemory(thandle_t handle, toff_t offset, int whence) {
  MemoryFile& file = memory(handle);
  const std::uint64_t base = whence == SEEK_SET   ? 0
                             : whence == SEEK_CUR ? file.position
                                                  : file.bytes().size();
  return file.position = base + offset;
}

int closeMemory(thandle_t) { return 0; }
toff_t sizeOfMemory(thandle_t handle) { return memory(handle).bytes().size(); }

/// Failures are told by results; nobody reads libtiff's own messages.
int keepQuiet(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
using TiffHandle = std::unique_ptr<TIFF, CloseTiff>;

TiffHandle openTiff(MemoryFile& file, const char* mode) {
  struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
  };
  const std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), imaging::maxWorkingBytes);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), keepQuiet, nullptr);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), keepQuiet, nullptr);
  return TiffHandle(TIFFClientOpenExt("memory", mode, &file, readMemory, writeMemory, seekMemory, closeMemory,
                                      sizeOfMemory, nullptr, nullptr, options.get()));
}

class RgbaReader {
 public:
  explicit RgbaReader(TIFF* tiff) {
    char reason[1024] = "";
    begun_ = TIFFRGBAImageBegin(&image_, tiff, 1, reason) != 0;
  }
  ~RgbaReader() {
    if (begun_) TIFFRGBAImageEnd(&image_);
  }
  RgbaReader(const RgbaReader&) = delete;
  RgbaReader& operator=(const RgbaReader&) = delete;

  std::int64_t pixels() const { return begun_ ? std::int64_t{image_.width} * image_.height : 0; }

  QImage read() {
    if (!begun_ || !isDecodableSize(image_.width, image_.height, 4)) return {};
    // libtiff gives premultiplied red, green, blue and alpha, in this order in the memory of a little-endian
    // machine.
    QImage page(static_cast<int>(image_.width), static_cast<int>(image_.height),
                image_.alpha != 0 ? QImage::Format_RGBA8888_Premultiplied : QImage::Format_RGBX8888);
    if (page.isNull()) return page;
    image_.orientation = image_.req_orientation = ORIENTATION_TOPLEFT;  // rows as they are stored
    auto* const raster = reinterpret_cast<std::uint32_t*>(page.bits());
    return TIFFRGBAImageGet(&image_, raster, image_.width, image_.height) != 0 ? page : QImage();
  }

 private:
  TIFFRGBAImage image_{};
  bool begun_ = false;
};

void setColorSpace(QImage& page, TIFF* tiff) {
  std::uint32_t size = 0;
  const char* profile = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_ICCPROFILE, &size, &profile) == 0) return;
  page.setColorSpace(QColorSpace::fromIccProfile(QByteArray(profile, static_cast<qsizetype>(size))));
}

/// libtiff takes what is to be written as bytes without alpha or with alpha that nothing is multiplied by.
QImage writable(const QImage& image) {
  if (image.format() == QImage::Format_Grayscale8) return image;
  return image.convertToFormat(image.hasAlphaChannel() ? QImage::Format_RGBA8888 : QImage::Format_RGB888);
}

int samplesPerPixel(const QImage& image) { return image.depth() / 8; }

void setFields(TIFF* tiff, const QImage& page) {
  const int samples = samplesPerPixel(page);
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(page.width()));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(page.height()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, samples == 1 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
  const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
  if (samples == 4) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  const QByteArray profile = page.colorSpace().iccProfile();
  if (!profile.isEmpty()) {
    TIFFSetField(tiff, TIFFTAG_ICCPROFILE, static_cast<std::uint32_t>(profile.size()), profile.constData());
  }
}

bool writePage(TIFF* tiff, const QImage& image) {
  QImage page = writable(image);
  if (page.isNull()) return false;
  setFields(tiff, page);
  for (int y = 0; y < page.height(); ++y) {
    if (TIFFWriteScanline(tiff, page.scanLine(y), static_cast<std::uint32_t>(y), 0) < 0) return false;
  }
  return TIFFWriteDirectory(tiff) != 0;
}

}  // namespace

std::vector<QImage> decodeTiff(ByteView file, std::size_t atMostPages) {
  MemoryFile source{file, {}, 0};
  const TiffHandle tiff = openTiff(source, "rm");
  if (!tiff) return {};
  std::vector<QImage> pages;
  std::int64_t pixels = 0;
  do {
    RgbaReader reader(tiff.get());
    pixels += reader.pixels();
    QImage page = isDecodableSize(pixels, 1, 4) ? reader.read() : QImage();
    if (page.isNull()) return {};
    setColorSpace(page, tiff.get());
    pages.push_back(std::move(page));
  } while (pages.size() < atMostPages && TIFFReadDirectory(tiff.get()) != 0);
  return pages;
}

std::optional<Bytes> encodeTiff(std::span<const QImage> images) {
  if (images.empty()) return std::nullopt;
  MemoryFile target;
  TiffHandle tiff = openTiff(target, "w");
  if (!tiff) return std::nullopt;
  for (const QImage& image : images) {
    if (!writePage(tiff.get(), image)) return std::nullopt;
  }
  tiff.reset();
  return std::move(target.contents);
}

}  // namespace kestrova
