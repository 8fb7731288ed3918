#include "imaging/tiff/tiff_decoder.h"

#include "imaging/base/image_error.h"
#include "imaging/exif/tiff_reader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>

namespace kestrova::imaging {

struct TiffDecoder::Tiles {
  std::uint32_t width = 0;
  std::uint32_t height = 0;
  std::size_t rowBytes = 0;  ///< of a tile, as libtiff returns it
  Bytes tile = {};           ///< the one that was decoded last
  Raster band = {};          ///< the pixels of a row of tiles
};

namespace {

/// One sample of less than 8 bits; the first one is in the highest bits.
std::uint8_t bitsAt(const std::uint8_t* packed, std::size_t index, int bits) {
  const std::size_t position = index * static_cast<std::size_t>(bits);
  const int shift = 8 - bits - static_cast<int>(position % 8);
  return static_cast<std::uint8_t>(packed[position / 8] >> shift & ((1 << bits) - 1));
}

/// Whether the directory states it; libtiff does not distinguish that from a default.
bool states(ByteView file, std::uint64_t directory, std::uint16_t tag) {
  const auto reader = TiffReader::open(file);
  return reader && reader->find(directory, tag);
}

}  // namespace

TiffDecoder::TiffDecoder(ByteView file, std::uint64_t directory)
    : file_(file), directory_(directory), tiff_(file, directory) {
  readFormat();
  requireSupported();
  if (format_.photometric == PHOTOMETRIC_PALETTE) readColorMap();
  if (format_.photometric == PHOTOMETRIC_YCBCR) {
    TIFFSetField(tiff_.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  }
  tiff_.check();
}

void TiffDecoder::readFormat() {
  format_.bigEndian = TIFFIsBigEndian(tiff_.get()) != 0;
  format_.size = {tiff_.number32(TIFFTAG_IMAGEWIDTH), tiff_.number32(TIFFTAG_IMAGELENGTH)};
  format_.bitsPerSample = tiff_.number16(TIFFTAG_BITSPERSAMPLE, 1);
  format_.samplesPerPixel = tiff_.number16(TIFFTAG_SAMPLESPERPIXEL, 1);
  format_.photometric = tiff_.number16(TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
  format_.compression = tiff_.number16(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  TIFFGetField(tiff_.get(), TIFFTAG_PREDICTOR, &format_.predictor);
  if (states(file_, directory_, TIFFTAG_PLANARCONFIG))
    format_.planarConfiguration = tiff_.number16(TIFFTAG_PLANARCONFIG);
  TIFFGetField(tiff_.get(), TIFFTAG_XRESOLUTION, &format_.resolution[0]);
  TIFFGetField(tiff_.get(), TIFFTAG_YRESOLUTION, &format_.resolution[1]);
  readExtraSamples();
}

void TiffDecoder::readExtraSamples() {
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  if (TIFFGetField(tiff_.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1) {
    format_.extraSamples.assign(kinds, kinds + count);
  }
}

void TiffDecoder::readColorMap() {
  std::array<std::uint16_t*, 3> maps{};
  tiff_.check(TIFFGetField(tiff_.get(), TIFFTAG_COLORMAP, &maps[0], &maps[1], &maps[2]) == 1);
  const std::size_t count = std::size_t{1} << format_.bitsPerSample;
  for (std::size_t i = 0; i < maps.size(); ++i) format_.colorMap[i].assign(maps[i], maps[i] + count);
}

void TiffDecoder::requireSupported() {
  constexpr std::array depths{1, 2, 4, 8, 16};
  constexpr std::array photometrics{PHOTOMETRIC_MINISWHITE, PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_RGB,
                                    PHOTOMETRIC_PALETTE,    PHOTOMETRIC_SEPARATED,  PHOTOMETRIC_YCBCR};
  const bool isJpeg = format_.compression == COMPRESSION_JPEG;
  const bool supported =
      std::ranges::count(depths, format_.bitsPerSample) == 1 &&
      std::ranges::count(photometrics, static_cast<int>(format_.photometric)) == 1 &&
      format_.samplesPerPixel >= 1 && format_.samplesPerPixel <= 8 &&
      tiff_.number16(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT) == SAMPLEFORMAT_UINT &&
      (format_.photometric != PHOTOMETRIC_YCBCR || (isJpeg && format_.samplesPerPixel == 3)) &&
      (format_.photometric != PHOTOMETRIC_PALETTE ||
       (format_.samplesPerPixel == 1 && format_.bitsPerSample <= 8));
  if (!supported) throw ImageError("the pixels are of an unsupported kind");
  requireAffordable(format_.size.width, format_.size.height, format_.pixelBytes());
}

void TiffDecoder::decode(const TakeRow& take, const Stopped& stopped) {
  if (TIFFIsTiled(tiff_.get()) != 0) {
    decodeTiles(take, stopped);
  } else {
    decodeStrips(take, stopped);
  }
}

void TiffDecoder::spread(const std::uint8_t* packed, std::int64_t pixels, int plane,
                         std::uint8_t* row) const {
  const auto samples = static_cast<std::size_t>(pixels * format_.samplesPerPlane());
  const auto sampleBytes = static_cast<std::size_t>(format_.sampleBytes());
  const auto step =
      static_cast<std::size_t>(format_.hasPlanes() ? format_.pixelBytes() : format_.sampleBytes());
  row += static_cast<std::size_t>(plane) * sampleBytes;
  if (format_.bitsPerSample < 8) {
    for (std::size_t i = 0; i < samples; ++i) row[i * step] = bitsAt(packed, i, format_.bitsPerSample);
  } else if (step == sampleBytes) {
    std::memcpy(row, packed, samples * sampleBytes);
  } else {
    for (std::size_t i = 0; i < samples; ++i)
      std::memcpy(row + i * step, packed + i * sampleBytes, sampleBytes);
  }
}

void TiffDecoder::decodeStrips(const TakeRow& take, const Stopped& stopped) {
  // Each plane has its own handle, so that each one is read from top to bottom.
  std::vector<std::unique_ptr<TiffHandle>> others;
  for (int plane = 1; plane < format_.planes(); ++plane)
    others.push_back(std::make_unique<TiffHandle>(file_, directory_));
  const auto needed = static_cast<std::size_t>(
      (format_.size.width * format_.samplesPerPlane() * format_.bitsPerSample + 7) / 8);
  const auto rowBytes = static_cast<std::size_t>(TIFFScanlineSize64(tiff_.get()));
  if (rowBytes < needed || rowBytes > static_cast<std::size_t>(maxWorkingBytes)) {
    throw ImageError("the TIFF's rows have an unexpected length");
  }
  Bytes packed(rowBytes);
  Bytes row(static_cast<std::size_t>(format_.size.width) * static_cast<std::size_t>(format_.pixelBytes()));
  for (std::int64_t y = 0; y < format_.size.height; ++y) {
    for (int plane = 0; plane < format_.planes(); ++plane) {
      throwIfStopped(stopped);
      TiffHandle& tiff = plane == 0 ? tiff_ : *others[static_cast<std::size_t>(plane - 1)];
      tiff.check(TIFFReadScanline(tiff.get(), packed.data(), static_cast<std::uint32_t>(y),
                                  static_cast<std::uint16_t>(plane)) == 1);
      spread(packed.data(), format_.size.width, plane, row.data());
    }
    take(row.data());
  }
}

void TiffDecoder::decodeTiles(const TakeRow& take, const Stopped& stopped) {
  Tiles tiles{.width = tiff_.number32(TIFFTAG_TILEWIDTH),
              .height = tiff_.number32(TIFFTAG_TILELENGTH),
              .rowBytes = static_cast<std::size_t>(TIFFTileRowSize64(tiff_.get()))};
  const auto needed = (std::size_t{tiles.width} *
                           static_cast<std::size_t>(format_.samplesPerPlane() * format_.bitsPerSample) +
                       7) /
                      8;
  const std::uint64_t size = TIFFTileSize64(tiff_.get());
  if (tiles.width == 0 || tiles.height == 0 || tiles.rowBytes < needed ||
      size / tiles.height < tiles.rowBytes || size > static_cast<std::uint64_t>(maxWorkingBytes)) {
    throw ImageError("the TIFF's tiles have an unexpected size");
  }
  tiles.tile.resize(size);
  tiles.band = Raster(format_.size.width, std::min<std::int64_t>(tiles.height, format_.size.height),
                      format_.pixelBytes());
  const auto height = static_cast<std::uint32_t>(format_.size.height);
  for (std::uint32_t top = 0; top < height; top += std::min(tiles.height, height - top)) {
    decodeBand(tiles, top, stopped);
    for (std::uint32_t y = 0; y < std::min(tiles.height, height - top); ++y) {
      throwIfStopped(stopped);
      take(tiles.band.row(y));
    }
  }
}

void TiffDecoder::decodeBand(Tiles& tiles, std::uint32_t top, const Stopped& stopped) {
  const auto width = static_cast<std::uint32_t>(format_.size.width);
  const auto rows = std::min<std::int64_t>(tiles.band.height(), format_.size.height - top);
  for (int plane = 0; plane < format_.planes(); ++plane) {
    for (std::uint32_t left = 0; left < width; left += std::min(tiles.width, width - left)) {
      throwIfStopped(stopped);
      tiff_.check(
          TIFFReadTile(tiff_.get(), tiles.tile.data(), left, top, 0, static_cast<std::uint16_t>(plane)) >= 0);
      const std::uint32_t columns = std::min(tiles.width, width - left);
      for (std::int64_t y = 0; y < rows; ++y) {
        spread(tiles.tile.data() + static_cast<std::size_t>(y) * tiles.rowBytes, columns, plane,
               tiles.band.row(y) + std::size_t{left} * static_cast<std::size_t>(format_.pixelBytes()));
      }
    }
  }
}

}  // namespace kestrova::imaging
