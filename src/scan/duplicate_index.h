#pragma once

#include "platform/file_manager.h"
#include "scan/content_fingerprint.h"
#include "scan/folder_walk.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace kestrova {

/// File by key, in the order in which they were added. Paths are kept as bytes, so that a list of a million
/// files stays small.
class FileList {
 public:
  struct Entry {
    std::string key;
    std::string path;
    std::uint64_t size = 0;  ///< bytes
  };

  using Iterator = std::deque<Entry>::const_iterator;

  FileList() = default;
  FileList(const FileList&) = delete;
  FileList& operator=(const FileList&) = delete;

  /// The path under a key, or null.
  const std::string* find(std::string_view key) const;
  /// Adds a file under a key that is not taken yet.
  void add(std::string key, const Path& path, std::uint64_t size);
  void clear();

  std::size_t size() const { return entries_.size(); }
  bool empty() const { return entries_.empty(); }
  Iterator begin() const { return entries_.begin(); }
  Iterator end() const { return entries_.end(); }

 private:
  std::deque<Entry> entries_;  // never moves an entry, so the index may point into it
  std::unordered_map<std::string_view, const Entry*> index_;
};

/// Fingerprint by path.
using HashList = std::unordered_map<std::string, std::string>;

/// What a scan decides about a file, given those it has seen before.
struct Sighting {
  enum class Kind {
    newFile,       ///< the first of its size
    duplicate,     ///< same content as the first file of its size
    sameFileSize,  ///< the first with its content among later files of its size
    sameContent,   ///< same content as a later file of its size
  };
  Kind kind = Kind::newFile;
  std::string fingerprint = {};  ///< empty for a new file
  Path original = {};            ///< of a duplicate or a file of the same content: the file that it equals
  std::string readError =
      {};  ///< why the file could not be read: then it is unknown whether it equals another
};

/// Decides what a file is and adds it to the lists. The first file of a size is stored under its size in
/// decimal; one that differs from the first file of its size is stored under its fingerprint followed by the
/// size. The first file's fingerprint is computed when a second file of its size is found, and kept in
/// `hashList`.
Sighting judgeFile(FileList& fileList, HashList& hashList, const WalkedFile& file,
                   const std::function<Fingerprint(const Path&)>& fingerprintOf);

}  // namespace kestrova
