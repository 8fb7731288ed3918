#include "support/photo_tags.h"

#include "support/external_tool.h"

#include <array>
#include <sstream>
#include <string_view>

namespace kestrova::test {

namespace {

/// What may differ, as it occurs in "group:name".
constexpr std::array mayChange = std::to_array<std::string_view>(
    {// the orientation and size of the picture
     "Orientation", "ImageWidth", "ImageHeight", "ImageSize", "Megapixels", "ExifImageWidth",
     "ExifImageHeight", "File:YCbCrSubSampling",
     // previews
     "ThumbnailOffset", "ThumbnailLength", "ThumbnailImage", "IFD1:", "PreviewImage", "PhotoshopThumbnail",
     "MPImageStart", "MPImageLength", "MPImage2",
     // where the pixels are in the file
     "StripOffsets", "StripByteCounts", "RowsPerStrip", "TileOffsets", "TileByteCounts", "TileWidth",
     "TileLength",
     // the file itself, exiftool's remarks about it, and what it computes from the size in pixels
     "System:", "ExifTool:", "Composite:"});

bool isAllowed(const std::string& tag) {
  for (const auto allowed : mayChange) {
    if (tag.find(allowed) != std::string::npos) return true;
  }
  return false;
}

}  // namespace

Tags tagsOf(const Path& file) {
  const ToolRun run =
      runTool("exiftool", {"-a", "-u", "-G1", "-s", "-api", "largefilesupport=1", file.native()});
  Tags tags;
  std::istringstream lines(run.output);
  for (std::string line; std::getline(lines, line);) {
    const auto group = line.find(']');
    const auto colon = line.find(':', group);
    if (line.empty() || line[0] != '[' || colon == std::string::npos) continue;
    const auto name = line.substr(group + 1, colon - group - 1);
    const auto begin = name.find_first_not_of(' ');
    const auto end = name.find_last_not_of(' ');
    tags[line.substr(1, group - 1) + ":" + name.substr(begin, end - begin + 1)] += line.substr(colon + 1);
  }
  return tags;
}

std::vector<std::string> unexpectedChanges(const Tags& source, const Tags& result) {
  std::vector<std::string> changes;
  for (const auto& [tag, value] : source) {
    if (isAllowed(tag)) continue;
    const auto found = result.find(tag);
    if (found == result.end()) {
      changes.push_back("lost " + tag + value);
    } else if (found->second != value) {
      changes.push_back("changed " + tag + value + " to" + found->second);
    }
  }
  for (const auto& [tag, value] : result) {
    if (!isAllowed(tag) && !source.contains(tag)) changes.push_back("new " + tag + value);
  }
  return changes;
}

}  // namespace kestrova::test
