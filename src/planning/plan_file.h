#pragma once

#include "model/verdict.h"
#include "planning/operation_decision.h"
#include "planning/plan_entry.h"
#include "planning/target_naming.h"
#include "platform/file_manager.h"
#include "scan/media_classification.h"

#include <optional>

#include <tl/expected.hpp>

namespace kestrova {

/// What planning needs apart from the file itself: the state of the run at that moment. The lists and tables
/// belong to the caller.
struct PlanningContext {
  PlanningOptions options;
  const ExtensionList& photos;
  const ExtensionList& videos;
  const NameTable& months;
  const NameTable& days;
  std::optional<Path> target;  ///< the target folder
  Date runStart;               ///< the date of a file that has none at all
};

/// What decides how much of a file is read, and as what.
struct ReadingOptions {
  const ExtensionList* photos = nullptr;
  const ExtensionList* videos = nullptr;
  bool filterSmallPhotos = false;  ///< files that a filter leaves out are not opened
  bool filterSmallVideos = false;
  bool operator==(const ReadingOptions&) const = default;
};
ReadingOptions readingOptions(const PlanningContext& context);

/// What a file says about itself.
struct ExaminedFile {
  ReadingOptions options;
  FileFacts facts;
  std::optional<Date> modified = {};
  std::string readError = {};  ///< why its attributes or first bytes could not be read, in UTF-8
  ImageMetadata metadata = {};
};

/// Reads the file's attributes once, and the first 40960 bytes of a photo, for which it is opened once. A
/// file that cannot be read counts as one of size 0, or as a photo without metadata. Callable from any
/// thread. Throws only what `files` throws.
ExaminedFile examineFile(const Path& file, const ReadingOptions& options, const FileManager& files);

/// What to do with a file, or its verdict if that is already certain: it is left out as small, or its target
/// exists or cannot be checked. The file must have been examined with the reading options of the context. A
/// verdict on a file that could not be read is `unreadable`. Writes to the log. Throws only what `files`
/// throws.
tl::expected<PlanEntry, Verdict> planFile(const Path& file, const ExaminedFile& examined,
                                          const PlanningContext& context, const FileManager& files);

}  // namespace kestrova
