#pragma once

#include "platform/bytes.h"
#include "platform/file_manager.h"

#include <string>
#include <vector>

namespace kestrova::test {

/// The result of running another program.
struct ToolRun {
  int status = -1;  ///< -1 when it could not be started or crashed
  std::string output;
  std::string errors;
};

ToolRun runTool(const std::string& program, const std::vector<std::string>& arguments);

/// A picture as ImageMagick decodes it: red, green, blue (and opacity, for `alpha`) of 16 bits for every
/// pixel.
struct Picture {
  int width = 0;
  int height = 0;
  int channels = 3;
  std::vector<std::uint16_t> samples;
};

/// Reads a file, after `operations` ("-auto-orient", ...); throws if ImageMagick cannot, or warns.
Picture pictureOf(const Path& file, const std::vector<std::string>& operations = {}, bool alpha = false);

/// The likeness of pictures whose samples are all the same.
inline constexpr double identical = 999;

/// How much two pictures of one size resemble each other: the peak signal-to-noise ratio in decibels,
/// `identical` for equal ones, 0 for pictures of different sizes.
double likeness(const Picture& one, const Picture& other);

}  // namespace kestrova::test
