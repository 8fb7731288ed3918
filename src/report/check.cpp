#include "report/check.h"

#include "platform/path_relation.h"
#include "report/equal_files.h"
#include "scan/folder_walk.h"
#include "scan/media_classification.h"

#include <algorithm>
#include <optional>
#include <unordered_map>
#include <utility>

namespace kestrova::report {

namespace {

/// Everything that can be organised, even if a run was set to take less.
ExtensionList allMedia() {
  return mediaFilter(Media::photosAndVideos, photoExtensions(PhotoFormats::jpegTiffPng), videoExtensions());
}

struct SourceFile {
  Path path;
  std::uint64_t size = 0;
  bool isSafe = false;
  std::string reason = {};  ///< why it is not safe, where that is more than that it is missing
};

/// The files of one size, by their places in the list of source files.
struct SizeGroup {
  std::uint64_t size = 0;
  std::vector<std::size_t> sources;
  std::vector<Path> candidates;
};

class Check {
 public:
  explicit Check(const CheckRequest& request) : request_(request) {}

  CheckResult run() {
    listSources();
    groupBySize();
    listCandidates();
    compare();
    for (SourceFile& file : files_) {
      if (isStopped()) break;
      if (!file.isSafe && request_.isRewrittenInTarget) file.isSafe = request_.isRewrittenInTarget(file.path);
    }
    return takeResult();
  }

 private:
  bool isStopped() { return report::isStopped(request_.stopped, result_.wasStopped); }

  FolderWalk walkOf(const std::function<void(const WalkedFile&)>& visit) {
    FolderWalk walk;
    walk.wants = [](std::string_view) { return true; };
    walk.keepsGoing = [this] { return !isStopped(); };
    walk.visits = [this, visit](const WalkedFile& file) {
      listed_ += {1, static_cast<std::int64_t>(file.size)};
      if (request_.progress) request_.progress({.done = listed_, .total = {}});
      visit(file);
    };
    return walk;
  }

  void listSources() {
    const ExtensionList media = allMedia();
    FolderWalk walk = walkOf([&](const WalkedFile& file) {
      const std::string name = file.path.filename().native();
      if (media.accepts(name)) {
        files_.push_back({.path = file.path, .size = file.size});
      } else {
        result_.leftBehind.add(name, file.size);
        if (request_.leavesBehind) request_.leavesBehind(file.path);
      }
    });
    walk.cannotRead = [&](const Path& path, const FileError& error) {
      result_.unreadable.push_back({path, error.message});
    };
    for (const Path& source : request_.sources) walkFolder(*systemFileManager(), source, walk);
  }

  void groupBySize() {
    for (std::size_t i = 0; i < files_.size(); ++i) {
      const auto [place, isNew] = groupOfSize_.try_emplace(files_[i].size, groups_.size());
      if (isNew) groups_.push_back({.size = files_[i].size, .sources = {}, .candidates = {}});
      groups_[place->second].sources.push_back(i);
      progress_.total += {1, static_cast<std::int64_t>(files_[i].size)};
    }
  }

  /// A link is not a copy, and a file in a source is lost with it.
  void listCandidates() {
    const Path target = resolvedPath(request_.target);
    std::vector<Path> sourcesInTarget;
    for (const Path& source : request_.sources) {
      if (Path resolved = resolvedPath(source); isInside(resolved, target))
        sourcesInTarget.push_back(std::move(resolved));
    }
    const FolderWalk walk = walkOf([&](const WalkedFile& file) {
      const auto place = groupOfSize_.find(file.size);
      const auto holdsFile = [&](const Path& source) { return isInside(file.path, source); };
      if (place == groupOfSize_.end() || file.isLink || std::ranges::any_of(sourcesInTarget, holdsFile))
        return;
      groups_[place->second].candidates.push_back(file.path);
    });
    walkFolder(*systemFileManager(), target, walk);
  }

  void compare() {
    for (SizeGroup& group : groups_) {
      if (isStopped()) return;
      compareGroup(group);
      const auto count = static_cast<std::int64_t>(group.sources.size());
      progress_.done += {count, count * static_cast<std::int64_t>(group.size)};
      if (request_.progress) request_.progress(progress_);
    }
  }

  void compareGroup(SizeGroup& group) {
    EqualSizedFiles sameSize{.size = group.size, .wanted = {}, .candidates = std::move(group.candidates)};
    for (const std::size_t index : group.sources) sameSize.wanted.push_back(std::move(files_[index].path));
    const auto found = findEqualFiles(sameSize, ReadFrom::cache, [this] { return isStopped(); });
    for (std::size_t i = 0; i < group.sources.size(); ++i)
      files_[group.sources[i]].path = std::move(sameSize.wanted[i]);
    if (!found) return;
    for (std::size_t i = 0; i < group.sources.size(); ++i) {
      SourceFile& file = files_[group.sources[i]];
      const EqualFile& equal = (*found)[i];
      file.isSafe = equal.candidate.has_value();
      if (equal.error) file.reason = "cannot be read: " + equal.error->message;
    }
  }

  CheckResult takeResult() {
    for (SourceFile& file : files_) {
      ++result_.files;
      if (file.isSafe)
        ++result_.safe;
      else
        result_.missing.push_back(
            {std::move(file.path), file.reason.empty() ? "is not in the target" : file.reason});
    }
    return std::move(result_);
  }

  const CheckRequest& request_;
  std::vector<SourceFile> files_;
  std::vector<SizeGroup> groups_;  ///< in the order of their first source files, as those lie on the disk
  std::unordered_map<std::uint64_t, std::size_t> groupOfSize_;
  Amount listed_;  ///< files of sources and target
  WorkProgress progress_;
  CheckResult result_;
};

}  // namespace

CheckResult checkSources(const CheckRequest& request) { return Check(request).run(); }

}  // namespace kestrova::report
