#include "imaging/tiff/tiff_encoder.h"

#include "imaging/tiff/tiff_library.h"

#include <algorithm>
#include <array>
#include <initializer_list>

namespace kestrova::imaging {

namespace {

constexpr int jpegQuality = 90;

bool isFax(std::uint16_t compression) {
  return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTFAX3 ||
         compression == COMPRESSION_CCITTFAX4;
}

std::uint16_t writableCompression(const TiffFormat& format) {
  const bool possible = TIFFIsCODECConfigured(format.compression) != 0 &&
                        (!isFax(format.compression) || format.bitsPerSample == 1) &&
                        (format.compression != COMPRESSION_JPEG || format.bitsPerSample == 8) &&
                        format.compression != COMPRESSION_OJPEG;
  return possible ? format.compression : std::uint16_t{COMPRESSION_LZW};
}

void setFormat(TIFF* tiff, const TiffFormat& format, std::uint16_t compression) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(format.size.width));
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(format.size.height));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, format.bitsPerSample);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, format.samplesPerPixel);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, format.photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, format.hasPlanes() ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
  if (!format.extraSamples.empty()) {
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, static_cast<int>(format.extraSamples.size()),
                 format.extraSamples.data());
  }
  if (format.hasPalette()) {
    const auto& map = format.colorMap;
    TIFFSetField(tiff, TIFFTAG_COLORMAP, map[0].data(), map[1].data(), map[2].data());
  }
}

/// The settings of one compression.
void setCodec(TIFF* tiff, const TiffFormat& format, std::uint16_t compression) {
  if (compression == COMPRESSION_JPEG) {
    TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, jpegQuality);
    TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  }
  if (format.predictor == PREDICTOR_HORIZONTAL &&
      TIFFFindField(tiff, TIFFTAG_PREDICTOR, TIFF_ANY) != nullptr) {
    TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  }
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
}

std::size_t samplesPerRow(const TiffFormat& format) {
  return static_cast<std::size_t>(format.size.width * format.samplesPerPlane());
}

/// Packs the samples of a row, one byte each, to less than 8 bits.
void packRow(const TiffFormat& format, const std::uint8_t* samples, Bytes& packed) {
  const auto step = static_cast<std::size_t>(format.planes());
  std::ranges::fill(packed, std::uint8_t{0});
  for (std::size_t i = 0; i < samplesPerRow(format); ++i) {
    const std::size_t position = i * static_cast<std::size_t>(format.bitsPerSample);
    const int shift = 8 - format.bitsPerSample - static_cast<int>(position % 8);
    packed[position / 8] = static_cast<std::uint8_t>(packed[position / 8] | samples[i * step] << shift);
  }
}

/// Copies the samples of a row, which are whole bytes.
void copyRow(const TiffFormat& format, const std::uint8_t* samples, Bytes& encoded) {
  const auto bytes = static_cast<std::size_t>(format.sampleBytes());
  const auto step = static_cast<std::size_t>(format.planes());
  if (step == 1) {
    std::copy_n(samples, samplesPerRow(format) * bytes, encoded.begin());
  } else {
    for (std::size_t i = 0; i < samplesPerRow(format); ++i)
      std::copy_n(samples + i * step * bytes, bytes, encoded.data() + i * bytes);
  }
}

/// One row of the file: of all samples, or of one plane.
void encodeRow(const TiffFormat& format, const std::uint8_t* row, int plane, Bytes& encoded) {
  const std::uint8_t* first = row + static_cast<std::size_t>(plane * format.sampleBytes());
  if (format.bitsPerSample < 8) {
    packRow(format, first, encoded);
  } else {
    copyRow(format, first, encoded);
  }
}

void encodeRows(TiffHandle& tiff, const TiffPicture& picture, const Stopped& stopped) {
  Bytes encoded(
      std::max(picture.raster.rowBytes(), static_cast<std::size_t>(TIFFScanlineSize64(tiff.get()))));
  for (int plane = 0; plane < picture.format.planes(); ++plane) {
    for (std::int64_t y = 0; y < picture.format.size.height; ++y) {
      throwIfStopped(stopped);
      encodeRow(picture.format, picture.raster.row(y), plane, encoded);
      tiff.check(TIFFWriteScanline(tiff.get(), encoded.data(), static_cast<std::uint32_t>(y),
                                   static_cast<std::uint16_t>(plane)) == 1);
    }
  }
}

/// The source's resolution and colours, which Exiv2 does not copy, as they belong to the pixels.
void copyLook(TIFF* from, TIFF* to) {
  std::uint32_t kind = 0;
  if (TIFFGetField(from, TIFFTAG_SUBFILETYPE, &kind) == 1) {
    constexpr std::uint32_t reduced = FILETYPE_REDUCEDIMAGE;  // the only picture is not a version of another
    TIFFSetField(to, TIFFTAG_SUBFILETYPE, kind & ~reduced);
  }
  for (const int tag : {TIFFTAG_RESOLUTIONUNIT, TIFFTAG_INKSET, TIFFTAG_SAMPLEFORMAT, TIFFTAG_FILLORDER}) {
    std::uint16_t number = 0;
    if (TIFFGetField(from, static_cast<std::uint32_t>(tag), &number) == 1)
      TIFFSetField(to, static_cast<std::uint32_t>(tag), number);
  }
  for (const int tag : {TIFFTAG_PAGENUMBER, TIFFTAG_HALFTONEHINTS}) {
    std::array<std::uint16_t, 2> numbers{};
    if (TIFFGetField(from, static_cast<std::uint32_t>(tag), &numbers[0], &numbers[1]) == 1)
      TIFFSetField(to, static_cast<std::uint32_t>(tag), numbers[0], numbers[1]);
  }
  for (const int tag : {TIFFTAG_WHITEPOINT, TIFFTAG_PRIMARYCHROMATICITIES}) {
    const float* numbers = nullptr;
    if (TIFFGetField(from, static_cast<std::uint32_t>(tag), &numbers) == 1)
      TIFFSetField(to, static_cast<std::uint32_t>(tag), numbers);
  }
  std::uint32_t length = 0;
  const void* profile = nullptr;
  if (TIFFGetField(from, TIFFTAG_ICCPROFILE, &length, &profile) == 1) {
    TIFFSetField(to, TIFFTAG_ICCPROFILE, length, profile);
  }
}

void setResolution(TIFF* tiff, const TiffFormat& format) {
  if (format.resolution[0] > 0)
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, static_cast<double>(format.resolution[0]));
  if (format.resolution[1] > 0)
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, static_cast<double>(format.resolution[1]));
}

}  // namespace

Bytes encodeTiff(const TiffPicture& picture, ByteView source, std::uint64_t directory,
                 const Stopped& stopped) {
  const TiffFormat& format = picture.format;
  TiffHandle tiff(format.bigEndian);
  const std::uint16_t compression = writableCompression(format);
  setFormat(tiff.get(), format, compression);
  setCodec(tiff.get(), format, compression);
  setResolution(tiff.get(), format);
  copyLook(TiffHandle(source, directory).get(), tiff.get());
  tiff.check();
  encodeRows(tiff, picture, stopped);
  // Only the tags that the source has are set; defaults are left out.
  if (format.planarConfiguration == 0) TIFFUnsetField(tiff.get(), TIFFTAG_PLANARCONFIG);
  return tiff.finish();
}

}  // namespace kestrova::imaging
