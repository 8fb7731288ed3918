#include "report/equal_files.h"

#include "platform/file_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <utility>

namespace kestrova::report {

namespace {

constexpr std::size_t largestPiece = std::size_t{256} * 1024;
constexpr std::size_t smallestPiece = 4096;
constexpr std::size_t mostPieceBytes = std::size_t{64} * 1024 * 1024;  ///< of all files together
constexpr std::size_t mostOpenFiles = 64;

struct File {
  const Path* path = nullptr;
  std::size_t index = 0;  ///< among the wanted files, or among the candidates
  bool isWanted = false;
  std::optional<FileReader> reader;  ///< kept from piece to piece where few files are compared
  FileIdentity identity;
  std::unique_ptr<std::uint8_t[]> piece;  ///< without a value until it is read
};

/// Files whose bytes agree up to an offset.
struct Class {
  std::uint64_t offset = 0;
  std::vector<File*> files;
};

/// As memcmp does; pieces of one class are equally long.
int comparePieces(const File& a, const File& b, std::size_t length) {
  return length == 0 ? 0 : std::memcmp(a.piece.get(), b.piece.get(), length);
}

bool holdsBothKinds(const std::vector<File*>& files) {
  const auto isWanted = [](const File* file) { return file->isWanted; };
  return std::ranges::any_of(files, isWanted) && !std::ranges::all_of(files, isWanted);
}

class Comparison {
 public:
  Comparison(const EqualSizedFiles& files, ReadFrom from)
      : size_(files.size), from_(from), found_(files.wanted.size()) {
    files_.reserve(files.wanted.size() + files.candidates.size());
    for (std::size_t i = 0; i < files.wanted.size(); ++i) add(files.wanted[i], i, true);
    for (std::size_t i = 0; i < files.candidates.size(); ++i) add(files.candidates[i], i, false);
    pieceSize_ =
        std::clamp(mostPieceBytes / std::max<std::size_t>(1, files_.size()), smallestPiece, largestPiece);
  }

  FileResult<std::vector<EqualFile>> run(const Stopped& stopped) {
    std::vector<Class> open{{0, allFiles()}};
    while (!open.empty()) {
      if (isStopped(stopped)) return failure(ECANCELED);
      Class current = std::move(open.back());
      open.pop_back();
      readPieces(current);
      if (current.offset + pieceLength(current.offset) == size_) {
        for (const auto& same : split(current)) settle(same);
        continue;
      }
      for (auto& same : split(current)) {
        if (holdsBothKinds(same)) open.push_back({current.offset + pieceSize_, std::move(same)});
      }
    }
    return std::move(found_);
  }

 private:
  void add(const Path& path, std::size_t index, bool isWanted) {
    files_.push_back({.path = &path,
                      .index = index,
                      .isWanted = isWanted,
                      .reader = {},
                      .identity = {},
                      .piece = nullptr});
  }

  std::vector<File*> allFiles() {
    std::vector<File*> all;
    for (File& file : files_) all.push_back(&file);
    return all;
  }

  std::size_t pieceLength(std::uint64_t offset) const {
    return static_cast<std::size_t>(std::min<std::uint64_t>(pieceSize_, size_ - offset));
  }

  /// Removes files that cannot be read, or whose size has changed, from the class.
  void readPieces(Class& current) {
    const std::size_t length = pieceLength(current.offset);
    std::erase_if(current.files, [&](File* file) {
      const auto read = readPiece(*file, current.offset, length);
      if (!read && file->isWanted) found_[file->index].error = read.error();
      return !read;
    });
  }

  FileResult<void> readPiece(File& file, std::uint64_t offset, std::size_t length) const {
    if (!file.reader) {
      auto reader = FileReader::open(*file.path, from_);
      if (!reader) return tl::make_unexpected(reader.error());
      file.reader = std::move(*reader);
      file.identity = file.reader->identity();
    }
    if (!file.piece) file.piece = std::make_unique_for_overwrite<std::uint8_t[]>(length);
    const auto count = file.reader->readAt(offset, {file.piece.get(), length});
    const bool hasItsSize = file.reader->size() == size_;
    if (files_.size() > mostOpenFiles) file.reader.reset();
    if (!count) return tl::make_unexpected(count.error());
    if (*count != length || !hasItsSize) return failure(EBUSY);
    return {};
  }

  std::vector<std::vector<File*>> split(Class& current) const {
    const std::size_t length = pieceLength(current.offset);
    const auto order = [&](const File* a, const File* b) { return comparePieces(*a, *b, length) < 0; };
    std::ranges::stable_sort(current.files, order);
    std::vector<std::vector<File*>> classes;
    for (File* file : current.files) {
      if (classes.empty() || comparePieces(*classes.back().front(), *file, length) != 0)
        classes.emplace_back();
      classes.back().push_back(file);
    }
    return classes;
  }

  void settle(const std::vector<File*>& same) {
    std::vector<const File*> candidates;  // still in their order
    std::ranges::copy_if(same, std::back_inserter(candidates),
                         [](const File* file) { return !file->isWanted; });
    for (const File* wanted : same) {
      if (!wanted->isWanted) continue;
      const auto other = std::ranges::find_if(
          candidates, [&](const File* candidate) { return candidate->identity != wanted->identity; });
      if (other != candidates.end()) found_[wanted->index].candidate = (*other)->index;
    }
  }

  std::uint64_t size_;
  ReadFrom from_;
  std::size_t pieceSize_ = 0;
  std::vector<File> files_;
  std::vector<EqualFile> found_;
};

}  // namespace

FileResult<std::vector<EqualFile>> findEqualFiles(const EqualSizedFiles& files, ReadFrom from,
                                                  const Stopped& stopped) {
  return Comparison(files, from).run(stopped);
}

}  // namespace kestrova::report
