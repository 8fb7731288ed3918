#include "scan/folder_walk.h"

#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/long_path.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace kestrova {

namespace {

struct Entry {
  std::size_t nameStart = 0;  ///< in Listing::names
  std::uint64_t size = 0;
  bool isFolder = false;
};

/// The subfolders and wanted files of one folder.
struct Listing {
  std::size_t pathLength = 0;  ///< of the folder's path with a slash at its end
  std::string names;           ///< one after the other, each with a zero at its end
  std::vector<Entry> entries;
  std::size_t next = 0;

  const char* nameOf(const Entry& entry) const { return names.data() + entry.nameStart; }

  void add(const char* name, Entry entry) {
    entry.nameStart = names.size();
    entries.push_back(entry);
    names.append(name, std::strlen(name) + 1);
  }

  void sortByName() {
    std::sort(entries.begin(), entries.end(),
              [this](const Entry& a, const Entry& b) { return std::strcmp(nameOf(a), nameOf(b)) < 0; });
  }
};

struct CloseDirectory {
  void operator()(DIR* directory) const { ::closedir(directory); }
};
using Directory = std::unique_ptr<DIR, CloseDirectory>;

Directory openDirectory(int folder, const char* path, int flags) {
  auto file = host::openQuietly(folder, path, O_DIRECTORY | O_NONBLOCK | flags);
  if (!file) return nullptr;
  Directory directory(::fdopendir(file->get()));
  if (directory) file->release();
  return directory;
}

bool isSelfOrParent(std::string_view name) { return name == "." || name == ".."; }

/// The regular file that a name leads to. What is surely one counts even where its attributes cannot be read,
/// unless it is gone.
std::optional<Entry> regularFile(int folder, const char* name, bool isSurelyOne) {
  struct stat status = {};
  if (::fstatat(folder, name, &status, 0) < 0) {
    return isSurelyOne && errno != ENOENT ? std::optional(Entry{}) : std::nullopt;
  }
  return S_ISREG(status.st_mode) ? std::optional(Entry{0, static_cast<std::uint64_t>(status.st_size), false})
                                 : std::nullopt;
}

unsigned char typeOf(int folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type;
  struct stat status = {};
  if (::fstatat(folder, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) < 0) return DT_UNKNOWN;
  return static_cast<unsigned char>(IFTODT(status.st_mode));
}

class Walker {
 public:
  Walker(const Path& root, const FolderWalk& walk) : walk_(walk), path_(root.native()) {}

  bool run();

 private:
  bool keepsGoing() { return isGoing_ = isGoing_ && walk_.keepsGoing(); }
  Directory openFolder(const char* name) const;
  Directory openFromTop(int flags) const;
  void enter(Directory directory);
  std::optional<Entry> classify(const dirent& entry) const;
  void visit(const Listing& listing, const Entry& entry);

  const FolderWalk& walk_;
  bool isGoing_ = true;
  std::string path_;               ///< of the entry in hand
  std::vector<Listing> listings_;  ///< of the folders above it, the root's first
  Directory opened_;               ///< the folder opened last
  std::size_t openedDepth_ = 0;    ///< the number of listings with its own, while that is among them
};

bool Walker::run() {
  enter(openFromTop(0));
  while (isGoing_ && !listings_.empty()) {
    Listing& listing = listings_.back();
    if (listing.next == listing.entries.size()) {
      listings_.pop_back();
    } else if (keepsGoing()) {
      visit(listing, listing.entries[listing.next++]);
    }
  }
  return isGoing_;
}

void Walker::visit(const Listing& listing, const Entry& entry) {
  const char* const name = listing.nameOf(entry);
  path_.resize(listing.pathLength);
  path_ += name;
  if (entry.isFolder) {
    enter(openFolder(name));
  } else {
    walk_.visits({path_, entry.size});
  }
}

/// From the folder above while that is still open, so that going down a long chain never starts from its top
/// again.
Directory Walker::openFolder(const char* name) const {
  if (openedDepth_ == listings_.size()) return openDirectory(::dirfd(opened_.get()), name, O_NOFOLLOW);
  return openFromTop(O_NOFOLLOW);
}

Directory Walker::openFromTop(int flags) const {
  const auto address = PathAddress::of(path_);
  return address ? openDirectory(address->folder(), address->rest(), flags) : nullptr;
}

/// Reads the folder at `path_` in one go; one that cannot be opened is passed over.
void Walker::enter(Directory directory) {
  if (!directory) return;
  opened_ = std::move(directory);
  if (!path_.ends_with('/')) path_ += '/';
  Listing listing;
  listing.pathLength = path_.size();
  while (const dirent* entry = ::readdir(opened_.get())) {
    if (isSelfOrParent(entry->d_name)) continue;
    if (!keepsGoing()) return;
    if (const auto wanted = classify(*entry)) listing.add(entry->d_name, *wanted);
  }
  listing.sortByName();
  listings_.push_back(std::move(listing));
  openedDepth_ = listings_.size();
}

std::optional<Entry> Walker::classify(const dirent& entry) const {
  const int folder = ::dirfd(opened_.get());
  const auto type = typeOf(folder, entry);
  if (type == DT_DIR) return Entry{0, 0, true};
  if ((type != DT_REG && type != DT_LNK) || !walk_.wants(entry.d_name)) return std::nullopt;
  return regularFile(folder, entry.d_name, type == DT_REG);
}

}  // namespace

bool walkFolder(const Path& root, const FolderWalk& walk) { return Walker(root, walk).run(); }

}  // namespace kestrova
