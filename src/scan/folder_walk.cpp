#include "scan/folder_walk.h"

#include "platform/folder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string>
#include <vector>

namespace kestrova {

namespace {

struct Entry {
  std::size_t nameStart = 0;  ///< in Listing::names
  EntryKind kind = EntryKind::other;
  bool isWanted = false;
};

/// The subfolders of one folder, and the files to report.
struct Listing {
  std::size_t pathLength = 0;  ///< of the folder's path with a trailing slash
  std::string names;           ///< one after the other, each ends in a zero
  std::vector<Entry> entries;
  std::size_t next = 0;

  const char* nameOf(const Entry& entry) const { return names.data() + entry.nameStart; }

  void add(const char* name, EntryKind kind, bool isWanted) {
    entries.push_back({.nameStart = names.size(), .kind = kind, .isWanted = isWanted});
    names.append(name, std::strlen(name) + 1);
  }

  void sortByName() {
    std::sort(entries.begin(), entries.end(),
              [this](const Entry& a, const Entry& b) { return std::strcmp(nameOf(a), nameOf(b)) < 0; });
  }
};

/// Whether nothing is there: it has disappeared, or a link leads nowhere.
bool isAbsence(const FileError& error) {
  return error.code == ENOENT || error.code == ENOTDIR || error.code == ELOOP;
}

class Walker {
 public:
  Walker(const FileManager& files, const Path& root, const FolderWalk& walk)
      : files_(files), walk_(walk), path_(root.native()) {}

  bool run();

 private:
  bool keepsGoing() { return isGoing_ = isGoing_ && walk_.keepsGoing(); }
  bool isOpen() const { return openedDepth_ == listings_.size(); }
  void visitNext(Listing& listing);
  void enterSubfolder(const char* name);
  void enter(std::unique_ptr<Folder> folder);
  void take(Listing& listing, const char* name, EntryKind kind) const;
  void visitFile(const Listing& listing, const Entry& entry);
  FileResult<FileAttributes> attributesOf(const Listing& listing, const Entry& entry);
  FileResult<void> reopen(const Listing& listing);
  void tellUnreadable(const FileError& error) const;

  const FileManager& files_;
  const FolderWalk& walk_;
  bool isGoing_ = true;
  std::string path_;                ///< of the current entry
  std::vector<Listing> listings_;   ///< of the folders above it, the root's first
  std::unique_ptr<Folder> opened_;  ///< the folder opened last
  std::size_t openedDepth_ = 0;     ///< the number of listings with its own, while that is among them
};

bool Walker::run() {
  auto root = files_.openFolder(path_, FinalLink::followed);
  if (!root) tellUnreadable(root.error());
  if (root) enter(std::move(*root));
  while (isGoing_ && !listings_.empty()) {
    Listing& listing = listings_.back();
    if (listing.next == listing.entries.size()) {
      listings_.pop_back();
    } else if (keepsGoing()) {
      visitNext(listing);
    }
  }
  return isGoing_;
}

void Walker::visitNext(Listing& listing) {
  const Entry& entry = listing.entries[listing.next++];
  const char* const name = listing.nameOf(entry);
  path_.resize(listing.pathLength);
  path_ += name;
  if (entry.kind == EntryKind::folder) {
    enterSubfolder(name);
  } else {
    visitFile(listing, entry);
  }
}

/// From the parent folder while that is still open, so that a long chain is not opened from its top again.
void Walker::enterSubfolder(const char* name) {
  auto folder = isOpen() ? opened_->openFolder(name) : files_.openFolder(path_, FinalLink::refused);
  if (folder) {
    enter(std::move(*folder));
  } else if (!isAbsence(folder.error())) {
    tellUnreadable(folder.error());
  }
}

/// Reads the names in the folder at `path_` in one go.
void Walker::enter(std::unique_ptr<Folder> folder) {
  opened_ = std::move(folder);
  Listing listing;
  const auto listed = opened_->list([&](const char* name, EntryKind kind) {
    if (!keepsGoing()) return false;
    take(listing, name, kind);
    return true;
  });
  if (!isGoing_) return;
  if (!listed) tellUnreadable(listed.error());
  if (!path_.ends_with('/')) path_ += '/';
  listing.pathLength = path_.size();
  listing.sortByName();
  listings_.push_back(std::move(listing));
  openedDepth_ = listings_.size();
}

void Walker::take(Listing& listing, const char* name, EntryKind kind) const {
  if (kind == EntryKind::other) return;
  const bool isFolder = kind == EntryKind::folder;
  const bool isWanted = !isFolder && walk_.wants(name);
  if (isFolder || isWanted || walk_.leaves) listing.add(name, kind, isWanted);
}

/// What is certainly a file counts even if its attributes cannot be read.
void Walker::visitFile(const Listing& listing, const Entry& entry) {
  const auto attributes = attributesOf(listing, entry);
  WalkedFile file{.path = path_, .isLink = entry.kind == EntryKind::link};
  if (attributes) {
    if (!attributes->isRegularFile) return;
    file.size = attributes->size;
  } else {
    if (isAbsence(attributes.error())) return;
    if (entry.kind != EntryKind::file) {
      tellUnreadable(attributes.error());
      return;
    }
    file.error = attributes.error();
  }
  const auto& tell = entry.isWanted ? walk_.visits : walk_.leaves;
  tell(file);
}

FileResult<FileAttributes> Walker::attributesOf(const Listing& listing, const Entry& entry) {
  if (!isOpen()) {
    if (const auto reopened = reopen(listing); !reopened) return tl::make_unexpected(reopened.error());
  }
  return opened_->attributesOf(listing.nameOf(entry));
}

/// Reopens the folder that was closed when one of its subfolders was read.
FileResult<void> Walker::reopen(const Listing& listing) {
  const bool isRoot = listings_.size() == 1;
  // With a trailing slash, a link would be followed.
  const Path folder = path_.substr(0, isRoot ? listing.pathLength : listing.pathLength - 1);
  auto opened = files_.openFolder(folder, isRoot ? FinalLink::followed : FinalLink::refused);
  if (!opened) return tl::make_unexpected(opened.error());
  opened_ = std::move(*opened);
  openedDepth_ = listings_.size();
  return {};
}

void Walker::tellUnreadable(const FileError& error) const {
  if (walk_.cannotRead) walk_.cannotRead(path_, error);
}

}  // namespace

bool walkFolder(const FileManager& files, const Path& root, const FolderWalk& walk) {
  return Walker(files, root, walk).run();
}

}  // namespace kestrova
