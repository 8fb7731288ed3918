#include "imaging/photo_rewrite.h"

#include "imaging/base/image_error.h"
#include "imaging/jpeg/jpeg_decoder.h"
#include "imaging/jpeg/jpeg_rewrite.h"
#include "imaging/photo_properties.h"
#include "imaging/png/png_rewrite.h"
#include "imaging/tiff/tiff_rewrite.h"

#include <algorithm>
#include <exception>
#include <initializer_list>

namespace kestrova::imaging {

namespace {

bool startsWith(ByteView file, std::initializer_list<std::uint8_t> bytes) {
  return file.size() >= bytes.size() && std::equal(bytes.begin(), bytes.end(), file.begin());
}

ImageType requireType(ByteView file) {
  const auto type = imageTypeOf(file);
  if (!type) throw ImageError("neither JPEG nor PNG nor TIFF");
  return *type;
}

ImageSize readSize(ByteView file) {
  const ImageType type = requireType(file);
  const auto properties = readPhotoProperties(file);
  ImageSize size;
  if (!properties) throw ImageError("nothing can be read of it");
  size.orientation = properties->orientation.value_or(1);
  if (size.orientation < 1 || size.orientation > 8) size.orientation = 1;
  switch (type) {
    case ImageType::jpeg:
      size.stored = JpegDecoder(file).size();
      break;
    case ImageType::png:
      size.stored = pngSize(file);
      break;
    case ImageType::tiff:
      size.stored = {properties->pixelWidth.value_or(0), properties->pixelHeight.value_or(0)};
      break;
  }
  requireAffordable(size.stored.width, size.stored.height);
  return size;
}

Bytes rewrite(ByteView file, const RewriteRequest& request) {
  const RewritePlan plan = planRewrite(readSize(file), request);
  requireAffordable(plan.scaled.width, plan.scaled.height);
  switch (requireType(file)) {
    case ImageType::jpeg:
      return rewriteJpeg(file, plan);
    case ImageType::png:
      return rewritePng(file, plan);
    case ImageType::tiff:
      return rewriteTiff(file, plan);
  }
  throw ImageError("a type that is not written");
}

/// Runs what throws and makes a value of it.
template <class Work>
auto asValue(const Work& work) -> tl::expected<decltype(work()), RewriteError> {
  try {
    return work();
  } catch (const std::exception& error) {
    return tl::unexpected(RewriteError{error.what()});
  } catch (...) {
    return tl::unexpected(RewriteError{"unknown"});
  }
}

}  // namespace

std::optional<ImageType> imageTypeOf(ByteView file) {
  if (startsWith(file, {0xFF, 0xD8, 0xFF})) return ImageType::jpeg;
  if (startsWith(file, {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'})) return ImageType::png;
  for (const std::uint8_t version : {std::uint8_t{42}, std::uint8_t{43}}) {
    if (startsWith(file, {'I', 'I', version, 0}) || startsWith(file, {'M', 'M', 0, version}))
      return ImageType::tiff;
  }
  return std::nullopt;
}

tl::expected<ImageSize, RewriteError> imageSizeOf(ByteView file) {
  return asValue([&] { return readSize(file); });
}

tl::expected<Bytes, RewriteError> rewritePhoto(ByteView file, const RewriteRequest& request) {
  return asValue([&] { return rewrite(file, request); });
}

}  // namespace kestrova::imaging
