#include "scan/duplicate_index.h"

#include <utility>

namespace kestrova {

const std::string* FileList::find(std::string_view key) const {
  const auto found = index_.find(key);
  return found == index_.end() ? nullptr : &found->second->path;
}

void FileList::add(std::string key, const Path& path, std::uint64_t size) {
  const Entry& entry = entries_.emplace_back(Entry{std::move(key), path.native(), size});
  index_.emplace(entry.key, &entry);
}

void FileList::clear() {
  index_.clear();
  entries_.clear();
}

namespace {

const std::string& fingerprintOfFirst(HashList& hashList, const std::string& first,
                                      const std::function<std::string(const Path&)>& fingerprintOf) {
  const auto known = hashList.find(first);
  if (known != hashList.end()) return known->second;
  return hashList.emplace(first, fingerprintOf(first)).first->second;
}

}  // namespace

Sighting judgeFile(FileList& fileList, HashList& hashList, const Path& path, std::uint64_t size,
                   const std::function<std::string(const Path&)>& fingerprintOf) {
  using Kind = Sighting::Kind;
  auto sizeKey = std::to_string(size);
  const std::string* first = fileList.find(sizeKey);
  if (first == nullptr) {
    fileList.add(std::move(sizeKey), path, size);
    return {Kind::newFile, {}, {}};
  }
  const auto& firstFingerprint = fingerprintOfFirst(hashList, *first, fingerprintOf);
  auto fingerprint = fingerprintOf(path);
  if (fingerprint == firstFingerprint) return {Kind::duplicate, std::move(fingerprint), *first};
  auto contentKey = fingerprint + sizeKey;
  if (const std::string* later = fileList.find(contentKey))
    return {Kind::sameContent, std::move(fingerprint), *later};
  fileList.add(std::move(contentKey), path, size);
  return {Kind::sameFileSize, std::move(fingerprint), {}};
}

}  // namespace kestrova
