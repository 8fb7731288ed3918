#pragma once

#include "model/options.h"
#include "platform/file_manager.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace kestrova::cli {

/// What the command line asks for.
struct Arguments {
  enum class Command { organise, help, version };
  Command command = Command::organise;
  std::vector<Path> sources;  ///< absolute
  Path target;                ///< absolute
  Media media = Media::photosAndVideos;
  PhotoFormats photoFormats = PhotoFormats::jpeg;
  FolderFormat folders = FolderFormat::longName;
  Resolution size = Resolution::original;
  bool upright = true;
  bool skipSmallPhotos = false;
  bool skipSmallVideos = false;
  bool json = false;
  bool quiet = false;
  bool log = false;
};

/// Reads the words that follow the program's name; they are bytes and pass through no text codec. Relative
/// paths start from `currentFolder`; symbolic links in them stay as they are. No file is looked at. The error
/// is one line for the user, fit for a terminal.
tl::expected<Arguments, std::string> parseArguments(std::span<const std::string_view> words,
                                                    const Path& currentFolder);

/// What --help prints.
std::string_view helpText();

}  // namespace kestrova::cli
