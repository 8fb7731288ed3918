#include "toolkit/jpeg_codec.h"

#include "toolkit/image_codec.h"
#include "toolkit/jpeg_segments.h"

#include <QColorSpace>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <memory>

#include <turbojpeg.h>

namespace kestrova {

namespace {

struct CloseHandle {
  void operator()(void* handle) const { tjDestroy(handle); }
};
using TurboHandle = std::unique_ptr<void, CloseHandle>;

struct FreeBuffer {
  void operator()(unsigned char* buffer) const { tjFree(buffer); }
};
using TurboBuffer = std::unique_ptr<unsigned char, FreeBuffer>;

struct Header {
  int width = 0;
  int height = 0;
  int subsampling = 0;
  int colorspace = 0;
  bool isGray() const { return colorspace == TJCS_GRAY; }
  bool isCmyk() const { return colorspace == TJCS_CMYK || colorspace == TJCS_YCCK; }
};

/// CMYK stands in the image's four bytes a pixel; Adobe's programs, and all that follow them, store it
/// inverted.
void convertFromCmyk(QImage& image, bool inverted) {
  for (int y = 0; y < image.height(); ++y) {
    uchar* const row = image.scanLine(y);
    for (uchar* p = row; p != row + qsizetype{4} * image.width(); p += 4) {
      const int black = inverted ? p[3] : 255 - p[3];
      for (int i = 0; i < 3; ++i) p[i] = static_cast<uchar>((inverted ? p[i] : 255 - p[i]) * black / 255);
      p[3] = 255;
    }
  }
}

void setColorSpace(QImage& image, ByteView file) {
  const Bytes profile = iccProfile(file);
  if (profile.empty()) return;
  const auto* data = reinterpret_cast<const char*>(profile.data());
  image.setColorSpace(QColorSpace::fromIccProfile(QByteArray(data, static_cast<qsizetype>(profile.size()))));
}

QImage withoutTransparency(const QImage& image) {
  if (!image.hasAlphaChannel()) return image;
  QImage opaque(image.size(), QImage::Format_RGBX8888);
  opaque.fill(Qt::white);
  opaque.setColorSpace(image.colorSpace());
  QPainter(&opaque).drawImage(0, 0, image);
  return opaque;
}

}  // namespace

QImage decodeJpeg(ByteView file) {
  const TurboHandle turbo(tjInitDecompress());
  Header header;
  if (!turbo || tjDecompressHeader3(turbo.get(), file.data(), file.size(), &header.width, &header.height,
                                    &header.subsampling, &header.colorspace) != 0) {
    return {};
  }
  if (!isDecodableSize(header.width, header.height, 4)) return {};
  QImage image(header.width, header.height,
               header.isGray() ? QImage::Format_Grayscale8 : QImage::Format_RGBX8888);
  if (image.isNull()) return {};
  const int format = header.isGray() ? TJPF_GRAY : header.isCmyk() ? TJPF_CMYK : TJPF_RGBA;
  if (tjDecompress2(turbo.get(), file.data(), file.size(), image.bits(), header.width,
                    static_cast<int>(image.bytesPerLine()), header.height, format,
                    TJFLAG_STOPONWARNING | TJFLAG_LIMITSCANS | TJFLAG_ACCURATEDCT) != 0) {
    return {};
  }
  if (header.isCmyk()) convertFromCmyk(image, hasAdobeSegment(file));
  setColorSpace(image, file);
  return image;
}

std::optional<Bytes> encodeJpeg(const QImage& image, float quality) {
  const TurboHandle turbo(tjInitCompress());
  if (!turbo || image.isNull()) return std::nullopt;
  const bool gray = image.format() == QImage::Format_Grayscale8;
  const QImage source = gray ? image : withoutTransparency(image).convertToFormat(QImage::Format_RGBX8888);
  const int subsampling = gray ? TJSAMP_GRAY : quality < 1.0F ? TJSAMP_420 : TJSAMP_444;
  const int percent = std::clamp(static_cast<int>(std::lround(quality * 100)), 1, 100);
  unsigned char* data = nullptr;
  unsigned long size = 0;
  const int failed = tjCompress2(
      turbo.get(), source.constBits(), source.width(), static_cast<int>(source.bytesPerLine()),
      source.height(), gray ? TJPF_GRAY : TJPF_RGBX, &data, &size, subsampling, percent, TJFLAG_ACCURATEDCT);
  const TurboBuffer owned(data);
  if (failed != 0) return std::nullopt;
  const QByteArray profile = image.colorSpace().iccProfile();
  return withIccProfile(ByteView(data, size),
                        ByteView(reinterpret_cast<const std::uint8_t*>(profile.constData()),
                                 static_cast<std::size_t>(profile.size())));
}

}  // namespace kestrova
