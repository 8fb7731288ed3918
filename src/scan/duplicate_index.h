#pragma once

#include "platform/file_manager.h"
#include "platform/hash_index.h"
#include "platform/packed_records.h"
#include "scan/content_fingerprint.h"
#include "scan/folder_walk.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace kestrova {

/// The files to organise, in the order in which they were added, packed. A file is kept under a key: its size
/// in decimal, or its fingerprint followed by that.
class FileList {
 public:
  struct Entry {
    std::string fingerprint;  ///< empty if the key is the size alone
    std::string path;
    std::uint64_t size = 0;  ///< bytes

    std::string key() const { return fingerprint + std::to_string(size); }
  };

  /// The path under a key, or nothing.
  std::optional<std::string> find(std::string_view fingerprint, std::uint64_t size) const;
  /// Adds a file under a key that is not taken yet.
  void add(std::string_view fingerprint, const Path& path, std::uint64_t size);
  void clear();

  std::size_t size() const { return records_.size(); }
  bool empty() const { return size() == 0; }
  Entry operator[](std::size_t index) const;

 private:
  PackedRecords records_;
  HashIndex index_;
};

/// Fingerprint by path, packed.
class HashList {
 public:
  std::optional<std::string> find(std::string_view path) const;
  /// Adds the fingerprint of a file that has none yet.
  void add(std::string_view path, std::string_view fingerprint);
  void clear();

  std::size_t size() const { return records_.size(); }
  bool empty() const { return size() == 0; }

 private:
  PackedRecords records_;
  HashIndex index_;
};

/// Paths as bytes, in the order in which they were added, packed.
class PathList {
 public:
  void add(std::string_view path) { records_.append().path(0, path); }
  void clear() { records_.clear(); }

  std::size_t size() const { return records_.size(); }
  bool empty() const { return size() == 0; }
  std::string operator[](std::size_t index) const { return records_.read(index).path(); }

 private:
  PackedRecords records_;
};

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
