#include "report/rescue.h"

#include "execution/folder_maker.h"
#include "platform/path_relation.h"
#include "report/timestamps.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace kestrova::report {

namespace {

/// A folder's name for each source, in their order.
std::vector<Path> folderNames(const std::vector<Path>& sources) {
  std::vector<Path> names;
  for (const Path& source : sources) {
    Path name = withoutFinalSlash(source).filename();
    if (name.empty()) name = "root";
    Path free = name;
    for (int number = 2; std::ranges::find(names, free) != names.end(); ++number) {
      free = name.native() + '-' + std::to_string(number);
    }
    names.push_back(std::move(free));
  }
  return names;
}

class Rescue {
 public:
  Rescue(const RescueRequest& request, FileManager& files)
      : request_(request),
        files_(files),
        folders_(withoutFinalSlash(request.folder)),
        names_(folderNames(request.sources)) {}

  RescueResult run() {
    const auto held = files_.holdTarget(request_.folder);
    WorkProgress progress{.done = {}, .total = {static_cast<std::int64_t>(request_.files.size()), 0}};
    for (const Path& file : request_.files) {
      if (isStopped(request_.stopped, result_.wasStopped)) break;
      rescue(file);
      ++progress.done.files;
      if (request_.progress) request_.progress(progress);
    }
    if (const auto durable = held->makeNamesDurable(); !durable)
      result_.failed.push_back({request_.folder, durable.error().message});
    return std::move(result_);
  }

 private:
  /// Where the file goes, below the rescue folder; the innermost of its sources counts.
  std::optional<Path> placeOf(const Path& file) const {
    std::optional<std::size_t> innermost;
    for (std::size_t i = 0; i < request_.sources.size(); ++i) {
      const bool isDeeper = !innermost || isInside(request_.sources[i], request_.sources[*innermost]);
      if (isInside(file, request_.sources[i]) && isDeeper) innermost = i;
    }
    if (!innermost) return std::nullopt;
    return names_[*innermost] / relativeTo(request_.sources[*innermost], file);
  }

  void rescue(const Path& file) {
    FileRow row{.source = file, .verdict = Outcome::failed, .target = placeOf(file)};
    row.reason = !row.target ? "is not in any of the sources" : copy(row).value_or("");
    if (!row.reason.empty()) result_.failed.push_back({file, row.reason});
    if (request_.record) request_.record(row);
  }

  /// Completes the row; nothing when the file is in its place, otherwise why it is not.
  std::optional<std::string> copy(FileRow& row) {
    const Path to = request_.folder / *row.target;
    const auto created = folders_.create(files_, to.parent_path());
    row.createdFolders = folders_.takeCreated();
    if (!created) return created.error().message;
    const auto copied = files_.copyItem(row.source, to);
    const bool isTaken = !copied && copied.error().kind == FileError::Kind::alreadyExists;
    if (!copied && !isTaken) return copied.error().message;
    const auto same = haveSameContent(row.source, to, ReadFrom::disk, request_.stopped);
    if (!same) return same.error().error.message;
    if (!*same) return isTaken ? "another file has its name there" : "the copy differs from its source";
    row.verdict = isTaken ? Outcome::exists : Outcome::copied;
    ++(isTaken ? result_.alreadyThere : result_.copied);
    addFacts(row, to);
    return std::nullopt;
  }

  void addFacts(FileRow& row, const Path& to) const {
    if (const auto source = files_.attributesOfItem(row.source)) {
      row.sourceSize = source->size;
      row.sourceModified = nanosecondsText(source->modified);
    }
    const auto target = files_.attributesOfItem(to);
    if (!target || row.verdict != Outcome::copied) return;
    row.targetSize = target->size;
    row.targetModified = nanosecondsText(target->modified);
  }

  const RescueRequest& request_;
  FileManager& files_;
  FolderMaker folders_;
  std::vector<Path> names_;  ///< of the folders for the sources
  RescueResult result_;
};

}  // namespace

RescueResult rescueFiles(const RescueRequest& request, FileManager& files) {
  return Rescue(request, files).run();
}

}  // namespace kestrova::report
