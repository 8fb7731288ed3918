#include "scan/duplicate_index.h"

#include <functional>
#include <utility>

namespace kestrova {

namespace {

std::size_t hashOf(std::string_view bytes) { return std::hash<std::string_view>()(bytes); }

std::size_t hashOf(std::string_view fingerprint, std::uint64_t size) {
  const std::size_t hash = std::hash<std::uint64_t>()(size) * 0x9E3779B97F4A7C15;  // consecutive sizes spread
  return fingerprint.empty() ? hash >> 32 : hashOf(fingerprint) ^ hash >> 32;
}

}  // namespace

std::optional<std::string> FileList::find(std::string_view fingerprint, std::uint64_t size) const {
  const auto found = index_.find(hashOf(fingerprint, size), [&](std::size_t number) {
    PackedRecords::Reader record = records_.read(number);
    return record.number() == size && record.text() == fingerprint;
  });
  if (!found) return std::nullopt;
  return (*this)[*found].path;
}

void FileList::add(std::string_view fingerprint, const Path& path, std::uint64_t size) {
  index_.add(hashOf(fingerprint, size), records_.size());
  PackedRecords::Writer record = records_.append();
  record.number(size);
  record.text(fingerprint);
  record.path(0, path.native());
}

void FileList::clear() {
  index_.clear();
  records_.clear();
}

FileList::Entry FileList::operator[](std::size_t index) const {
  PackedRecords::Reader record = records_.read(index);
  Entry entry{.fingerprint = {}, .path = {}, .size = record.number()};
  entry.fingerprint = record.text();
  entry.path = record.path();
  return entry;
}

std::optional<std::string> HashList::find(std::string_view path) const {
  const auto found = index_.find(hashOf(path), [&](std::size_t number) {
    PackedRecords::Reader record = records_.read(number);
    return record.path() == path;
  });
  if (!found) return std::nullopt;
  PackedRecords::Reader record = records_.read(*found);
  record.path();
  return std::string(record.text());
}

void HashList::add(std::string_view path, std::string_view fingerprint) {
  index_.add(hashOf(path), records_.size());
  PackedRecords::Writer record = records_.append();
  record.path(0, path);
  record.text(fingerprint);
}

void HashList::clear() {
  index_.clear();
  records_.clear();
}

namespace {

std::string fingerprintOfFirst(HashList& hashList, const std::string& first,
                               const std::function<Fingerprint(const Path&)>& fingerprintOf) {
  if (auto known = hashList.find(first)) return *std::move(known);
  std::string digits = fingerprintOf(first).digits;
  hashList.add(first, digits);
  return digits;
}

}  // namespace

Sighting judgeFile(FileList& fileList, HashList& hashList, const WalkedFile& file,
                   const std::function<Fingerprint(const Path&)>& fingerprintOf) {
  using Kind = Sighting::Kind;
  const auto first = fileList.find({}, file.size);
  if (!first) {
    fileList.add({}, file.path, file.size);
    return {.kind = Kind::newFile};
  }
  const std::string firstFingerprint = fingerprintOfFirst(hashList, *first, fingerprintOf);
  auto [digits, readError] = fingerprintOf(file.path);
  Sighting sighting{.fingerprint = std::move(digits), .readError = std::move(readError)};
  if (sighting.fingerprint == firstFingerprint) {
    sighting.kind = Kind::duplicate;
    sighting.original = *first;
  } else if (auto later = fileList.find(sighting.fingerprint, file.size)) {
    sighting.kind = Kind::sameContent;
    sighting.original = *std::move(later);
  } else {
    sighting.kind = Kind::sameFileSize;
    fileList.add(sighting.fingerprint, file.path, file.size);
  }
  return sighting;
}

}  // namespace kestrova
