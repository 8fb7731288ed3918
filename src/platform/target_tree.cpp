#include "platform/target_tree.h"

#include "platform/create_folders.h"
#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/long_path.h"
#include "platform/path_relation.h"

#include <algorithm>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

bool isLink(int folder, const char* name) {
  struct stat status = {};
  return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISLNK(status.st_mode);
}

FileError newLink() { return {ELOOP, "a symbolic link has appeared in the target folder"}; }

bool leadsUp(std::string_view names) {
  for (auto name = takeFirstName(names); !name.empty(); name = takeFirstName(names)) {
    if (name == "..") return true;
  }
  return false;
}

struct Nearest {
  FileDescriptor folder;
  bool isItself = false;
};

/// The innermost folder that exists on the way from the root.
FileResult<Nearest> openNearest(int root, std::string_view names) {
  for (std::string way(names); !way.empty(); way.resize(way.find_last_of('/') + 1)) {
    while (way.ends_with('/')) way.pop_back();
    auto place = host::openPlaceWithoutLinks(root, way.c_str());
    if (place) return Nearest{.folder = std::move(*place), .isItself = way.size() == names.size()};
    if (place.error().code != ENOENT) return tl::make_unexpected(place.error());
  }
  auto place = openPlace(root, ".", FinalLink::followed);
  if (!place) return tl::make_unexpected(place.error());
  return Nearest{.folder = std::move(*place)};
}

}  // namespace

TargetTree::TargetTree(const Path& root) : root_(withoutFinalSlash(root)) {
  // A missing folder is opened when it is created.
  [[maybe_unused]] const auto opened = openRoot(IfMissing::fail);
}

void TargetTree::followNoNewLinks() {
  const MutexLock lock(mutex_);
  followsNewLinks_ = false;
}

void TargetTree::noteNewName(const Path& folder) {
  const MutexLock lock(mutex_);
  newNames_.insert(folder);
}

/// What is missing of the path is about to be created.
void TargetTree::noteMissing(Path folder) {
  for (std::error_code error; !std::filesystem::exists(folder, error); folder = folder.parent_path()) {
    if (!folder.has_relative_path()) return;
    noteNewName(folder.parent_path());
  }
}

// A folder that is gone, or was moved elsewhere, has its names no longer from this run.
FileResult<void> TargetTree::makeNamesDurable() {
  std::set<Path> folders;
  {
    const MutexLock lock(mutex_);
    folders.swap(newNames_);
  }
  FileResult<void> result;
  for (const Path& folder : folders) {
    const auto place = holds(folder) ? enter(folder) : openPlace(folder);
    if (!place && place.error().kind == FileError::Kind::notFound) continue;
    const auto done = place ? host::makeNamesDurable(place->get()) : tl::make_unexpected(place.error());
    if (!done && result) result = done;
  }
  return result;
}

std::set<Path> TargetTree::foldersWithNewNames() {
  const MutexLock lock(mutex_);
  return newNames_;
}

std::optional<std::string_view> TargetTree::namesBelow(const Path& folder) const {
  std::string_view names = folder.native();
  if (!names.starts_with(root_.native())) return std::nullopt;
  names.remove_prefix(root_.native().size());
  const bool isBelow = names.empty() || names.starts_with('/') || root_.native().ends_with('/');
  if (!isBelow || leadsUp(names)) return std::nullopt;
  names.remove_prefix(std::min(names.find_first_not_of('/'), names.size()));
  return names;
}

FileResult<FileDescriptor> TargetTree::walk(const Path& folder, IfMissing ifMissing) {
  const auto names = namesBelow(folder);
  if (!names) return failure(EINVAL);
  const auto root = openRoot(ifMissing);
  if (!root) return tl::make_unexpected(root.error());
  if (names->empty()) return openPlace(*root, ".", FinalLink::followed);
  auto place = host::openPlaceWithoutLinks(*root, std::string(*names).c_str());
  return place ? std::move(place) : walkByNames(*root, *names, ifMissing);
}

/// The descriptor stays open for as long as the tree lives.
FileResult<int> TargetTree::openRoot(IfMissing ifMissing) {
  {
    const MutexLock lock(mutex_);
    if (opened_) return opened_.get();
  }
  auto root = reopenRoot(ifMissing);
  if (!root) return tl::make_unexpected(root.error());
  const MutexLock lock(mutex_);
  if (!opened_) {
    opened_ = std::move(*root);
    barrier_ = VolumeBarrier::of(opened_.get());
  }
  return opened_.get();
}

std::shared_ptr<VolumeBarrier> TargetTree::barrier() {
  const MutexLock lock(mutex_);
  return barrier_;
}

Staging TargetTree::staging(const StagingChoice& choice) {
  const MutexLock lock(mutex_);
  if (!staging_) staging_ = choice(opened_.get());
  return *staging_;
}

// Files that follow each other mostly go to one folder. What waits there gets its name elsewhere if another
// folder has taken its place by then.
FileResult<std::shared_ptr<const FileDescriptor>> TargetTree::enterNearest(const Path& folder) {
  const auto names = namesBelow(folder);
  if (!names) return failure(EINVAL);
  {
    const MutexLock lock(mutex_);
    if (nearest_ && nearestTo_ == *names) return nearest_;
  }
  const auto root = openRoot(IfMissing::fail);
  if (!root) return tl::make_unexpected(root.error());
  auto place = openNearest(*root, *names);
  if (!place) return tl::make_unexpected(place.error());
  auto shared = std::make_shared<const FileDescriptor>(std::move(place->folder));
  if (place->isItself) {
    const MutexLock lock(mutex_);
    nearestTo_ = *names;
    nearest_ = shared;
  }
  return shared;
}

FileResult<FileDescriptor> TargetTree::reopenRoot(IfMissing ifMissing) {
  const Path above = root_.parent_path();
  if (ifMissing == IfMissing::create) {
    noteMissing(root_);
    if (const auto created = createFolders(above); !created) return tl::make_unexpected(created.error());
  }
  const auto parent = openPlace(above);
  if (!parent) return tl::make_unexpected(parent.error());
  const std::string name = root_.filename().native();
  return enterNext({.parent = parent->get(), .name = name.empty() ? "." : name, .path = {}}, ifMissing);
}

FileResult<FileDescriptor> TargetTree::walkByNames(int root, std::string_view names, IfMissing ifMissing) {
  FileResult<FileDescriptor> folder(FileDescriptor{});
  Step step{.parent = root, .name = {}, .path = {}};
  for (auto name = takeFirstName(names); folder && !name.empty(); name = takeFirstName(names)) {
    step.name = name;
    step.path += '/' + step.name;
    auto next = enterNext(step, ifMissing);
    folder = std::move(next);
    if (folder) step.parent = folder->get();
  }
  return folder;
}

FileResult<FileDescriptor> TargetTree::enterNext(const Step& step, IfMissing ifMissing) {
  const char* const name = step.name.c_str();
  auto folder = openPlace(step.parent, name, FinalLink::refused);
  if (!folder && folder.error().code == ENOENT && ifMissing == IfMissing::create) {
    noteNewName(Path(root_.native() + step.path).parent_path());
    if (const auto created = createFolder(step.parent, name); !created)
      return tl::make_unexpected(created.error());
    folder = openPlace(step.parent, name, FinalLink::refused);
  }
  if (folder || !isLink(step.parent, name)) return folder;
  return followLink(step);
}

FileResult<FileDescriptor> TargetTree::followLink(const Step& step) {
  auto folder = openPlace(step.parent, step.name.c_str(), FinalLink::followed);
  if (!folder) return folder;
  const auto identity = identityOf(folder->get());
  if (!identity) return tl::make_unexpected(identity.error());
  const MutexLock lock(mutex_);
  if (followsNewLinks_) links_.emplace(step.path, *identity);
  const auto known = links_.find(step.path);
  if (known == links_.end() || known->second != *identity) return tl::make_unexpected(newLink());
  return folder;
}

FileResult<TargetTree::Identity> TargetTree::identityOf(int folder) {
  struct stat status = {};
  if (::fstat(folder, &status) < 0) return failure();
  return Identity{.volume = status.st_dev, .number = status.st_ino};
}

}  // namespace kestrova
