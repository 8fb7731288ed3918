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
                                      const std::function<Fingerprint(const Path&)>& fingerprintOf) {
  const auto known = hashList.find(first);
  if (known != hashList.end()) return known->second;
  return hashList.emplace(first, fingerprintOf(first).digits).first->second;
}

}  // namespace

Sighting judgeFile(FileList& fileList, HashList& hashList, const WalkedFile& file,
                   const std::function<Fingerprint(const Path&)>& fingerprintOf) {
  using Kind = Sighting::Kind;
  auto sizeKey = std::to_string(file.size);
  const std::string* first = fileList.find(sizeKey);
  if (first == nullptr) {
    fileList.add(std::move(sizeKey), file.path, file.size);
    return {.kind = Kind::newFile};
  }
  const auto& firstFingerprint = fingerprintOfFirst(hashList, *first, fingerprintOf);
  auto [digits, readError] = fingerprintOf(file.path);
  Sighting sighting{.fingerprint = std::move(digits), .readError = std::move(readError)};
  auto contentKey = sighting.fingerprint + sizeKey;
  if (sighting.fingerprint == firstFingerprint) {
    sighting.kind = Kind::duplicate;
    sighting.original = *first;
  } else if (const std::string* later = fileList.find(contentKey)) {
    sighting.kind = Kind::sameContent;
    sighting.original = *later;
  } else {
    sighting.kind = Kind::sameFileSize;
    fileList.add(std::move(contentKey), file.path, file.size);
  }
  return sighting;
}

}  // namespace kestrova
