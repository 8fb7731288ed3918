#pragma once

#include "imaging/photo_formats.h"
#include "support/sample_media.h"

#include <ostream>
#include <string>

#include <gtest/gtest.h>

// Tests that run for every type of photo.

namespace kestrova::imaging {

inline std::string nameOf(ImageType type) {
  switch (type) {
    case ImageType::jpeg:
      return "Jpeg";
    case ImageType::png:
      return "Png";
    case ImageType::tiff:
      break;
  }
  return "Tiff";
}

inline void PrintTo(ImageType type, std::ostream* stream) { *stream << nameOf(type); }

}  // namespace kestrova::imaging

namespace kestrova::test {

inline const auto allTypes =
    testing::Values(imaging::ImageType::jpeg, imaging::ImageType::png, imaging::ImageType::tiff);

inline Bytes photoOf(imaging::ImageType type, const SamplePhoto& photo) {
  switch (type) {
    case imaging::ImageType::jpeg:
      return jpegPhoto(photo);
    case imaging::ImageType::png:
      return pngPhoto(photo);
    case imaging::ImageType::tiff:
      break;
  }
  return tiffPhoto(photo);
}

}  // namespace kestrova::test
