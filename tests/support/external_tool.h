#pragma once

#include "platform/bytes.h"
#include "platform/file_manager.h"

#include <string>
#include <vector>

namespace kestrova::test {

/// What a program that is not ours makes of its arguments.
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

/// Reads a file, after `operations` ("-auto-orient", ...); throws when ImageMagick cannot, or warns.
Picture pictureOf(const Path& file, const std::vector<std::string>& operations = {}, bool alpha = false);

/// How much two pictures of one size resemble each other: peak signal to noise in decibels, 999 for equal
/// ones, 0 for pictures of different sizes.
double likeness(const Picture& one, const Picture& other);

}  // namespace kestrova::test
