#include "platform/pending_file.h"

#include "platform/exclusive_rename.h"
#include "platform/file_error.h"
#include "platform/file_system.h"
#include "platform/item_attributes.h"

#include <cstdio>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>

namespace kestrova {

PendingFile::PendingFile(FileDescriptor folder, std::string name)
    : folder_(std::move(folder)), finalName_(std::move(name)) {}

PendingFile::~PendingFile() {
  if (!temporaryName_.empty()) ::unlinkat(folder_.get(), temporaryName_.c_str(), 0);
}

FileResult<std::unique_ptr<PendingFile>> PendingFile::create(FileDescriptor folder, const std::string& name,
                                                             mode_t mode, Staging staging) {
  std::unique_ptr<PendingFile> pending(new PendingFile(std::move(folder), name));
  if (const auto opened = pending->open(mode, staging); !opened) return tl::make_unexpected(opened.error());
  return pending;
}

FileResult<void> PendingFile::open(mode_t mode, Staging staging) {
  if (staging == Staging::underTemporaryName) return createNamed(mode);
  auto file = host::createUnnamed(folder_.get(), mode);
  // For any error: if it is more than a lack of unnamed files, the other way fails too.
  if (!file) return createNamed(mode);
  file_ = std::move(*file);
  return {};
}

FileResult<void> PendingFile::createNamed(mode_t mode) {
  return takeName([&](const char* free) -> FileResult<int> {
    constexpr int flags = O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC;
    file_ = FileDescriptor(uninterrupted([&] { return ::openat(folder_.get(), free, flags, mode); }));
    if (!file_) return failureToCreate(folder_.get());
    return file_.get();
  });
}

FileResult<void> PendingFile::giveTemporaryName() {
  // Locked before it is visible, so that nobody mistakes it for an abandoned one.
  ::flock(file_.get(), LOCK_EX | LOCK_NB);
  return takeName([&](const char* free) -> FileResult<int> {
    if (const auto named = host::nameUnnamed(file_.get(), folder_.get(), free); !named)
      return tl::make_unexpected(named.error());
    return file_.get();
  });
}

FileResult<void> PendingFile::takeName(const PutFile& put) {
  auto name = takeTemporaryName(folder_.get(), put);
  if (!name) return tl::make_unexpected(name.error());
  temporaryName_ = std::move(*name);
  return {};
}

FileResult<void> PendingFile::commit() {
  const bool hasNoName = temporaryName_.empty();
  auto named = hasNoName ? host::nameUnnamed(file_.get(), folder_.get(), finalName_.c_str())
                         : renameWithoutReplacing(folder_.get(), temporaryName_.c_str(), finalName_.c_str());
  if (named) temporaryName_.clear();
  return named;
}

FileResult<void> PendingFile::commitReplacing() {
  if (temporaryName_.empty()) {
    if (auto named = giveTemporaryName(); !named) return named;
  }
  auto replaced = succeeded(uninterrupted(
      [&] { return ::renameat(folder_.get(), temporaryName_.c_str(), folder_.get(), finalName_.c_str()); }));
  if (replaced) temporaryName_.clear();
  return replaced;
}

FileResult<FileAttributes> PendingFile::attributes() const {
  struct stat status = {};
  if (::fstat(file_.get(), &status) < 0) return failure();
  return attributesOf(status);
}

}  // namespace kestrova
