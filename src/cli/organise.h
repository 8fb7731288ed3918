#pragma once

#include "cli/option_parser.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova::cli {

/// The arguments of `organise`.
struct OrganiseArguments {
  std::vector<Path> sources;  ///< absolute
  Path target;                ///< absolute
  Media media = Media::photosAndVideos;
  PhotoFormats photoFormats = PhotoFormats::jpeg;
  FolderFormat folders = FolderFormat::longName;
  Resolution size = Resolution::original;
  bool upright = true;
  bool skipSmallPhotos = false;
  bool skipSmallVideos = false;
  std::optional<std::size_t> jobs = {};  ///< absent: as many as suit the machine
  bool dryRun = false;
  Path report;  ///< a second place for the rows of the record; empty: none
  bool noRecord = false;
  bool verify = false;
  Path checksums;  ///< where the sums of what was written go; empty: nowhere
  bool json = false;
  bool quiet = false;
  bool log = false;
};

constexpr std::string_view organiseHelp = R"(organise SOURCE... --to TARGET [OPTION...]
  --to TARGET            the folder for the new tree; created if it does not exist
  --media all|photos|videos
                         what to copy (default all)
  --photo-formats jpeg|jpeg+tiff|jpeg+tiff+png
                         which formats count as photos (default jpeg)
  --folders long|medium|short
                         2014/05/21-May-2014 Wednesday, 2014/05/21-May Wednesday or
                         2014/05/21 (default long)
  --size original|720p|1080p
                         the largest size for photos (default original)
  --upright, --no-upright
                         rotate photos upright or keep their orientation (default --upright)
  --skip-small-photos    skip photos smaller than 20,000 bytes or 400 pixels on a side
  --skip-small-videos    skip videos smaller than 2,000,000 bytes
  --jobs N               prepare N files at a time (default: one for each core, at most 8; 8 on
                         network and FUSE volumes)
  --dry-run              only show what would become of each file, and the free space needed
  --report FILE.ndjson|FILE.csv
                         write what becomes of each file into a new file, too
  --verify               read back what was written, compare it with the sources, and name each
                         file that is not whole in TARGET
  --checksums FILE       verify, and write sums into FILE for "cd TARGET && sha256sum -c FILE"
  --no-record            keep no record of the run (see "runs")
  --json                 print the summary as one JSON object
  --quiet                print errors only: no progress, no table
  --log                  log what happens to each file on standard error
  Ctrl-C stops after the current file. Run the same command again to resume.
)";

tl::expected<OrganiseArguments, std::string> parseOrganise(Words words, const Path& currentFolder);

/// Organises, prints the result of the run and returns the exit status.
int run(const OrganiseArguments& arguments);

}  // namespace kestrova::cli
