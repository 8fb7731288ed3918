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

namespace {

/// Writing many smaller files one by one takes longer than it saves: the barrier writes them together.
constexpr std::uint64_t worthBeginning = std::uint64_t{256} * 1024;

}  // namespace

PendingFile::~PendingFile() {
  if (barrierNumber_) place_.barrier->remove();
  if (!temporaryName_.empty()) ::unlinkat(folder(), temporaryName_.c_str(), 0);
}

FileResult<std::unique_ptr<PendingFile>> PendingFile::create(Place place, std::string name, mode_t mode) {
  std::unique_ptr<PendingFile> pending(new PendingFile(std::move(place), std::move(name)));
  if (const auto opened = pending->open(mode); !opened) return tl::make_unexpected(opened.error());
  return pending;
}

FileResult<void> PendingFile::open(mode_t mode) {
  if (place_.staging == Staging::underTemporaryName) return createNamed(mode);
  auto file = host::createUnnamed(folder(), mode);
  // For any error: if it is more than a lack of unnamed files, the other way fails too.
  if (!file) return createNamed(mode);
  file_ = std::move(*file);
  return {};
}

FileResult<void> PendingFile::createNamed(mode_t mode) {
  return takeName([&](const char* free) -> FileResult<int> {
    constexpr int flags = O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC;
    file_ = FileDescriptor(uninterrupted([&] { return ::openat(folder(), free, flags, mode); }));
    if (!file_) return failureToCreate(folder());
    return file_.get();
  });
}

FileResult<void> PendingFile::giveTemporaryName() {
  // Locked before it is visible, so that nobody mistakes it for an abandoned one.
  ::flock(file_.get(), LOCK_EX | LOCK_NB);
  return takeName([&](const char* free) -> FileResult<int> {
    if (const auto named = host::nameUnnamed(file_.get(), folder(), free); !named)
      return tl::make_unexpected(named.error());
    return file_.get();
  });
}

FileResult<void> PendingFile::takeName(const PutFile& put) {
  auto name = takeTemporaryName(folder(), put, place_.temporaryNumber);
  if (!name) return tl::make_unexpected(name.error());
  temporaryName_ = std::move(*name);
  return {};
}

FileResult<void> PendingFile::complete(std::uint64_t bytes, StagingTime time) {
  if (time == StagingTime::inTurn) return {};
  if (!place_.barrier || !place_.barrier->isWorthIt()) return makeDurable();
  if (bytes >= worthBeginning) host::beginWriting(file_.get());
  barrierNumber_ = place_.barrier->add(bytes);
  return {};
}

FileResult<void> PendingFile::makeDurable() {
  if (isDurable_) return {};
  const auto number = std::exchange(barrierNumber_, std::nullopt);
  auto done = number ? place_.barrier->makeDurable(*number, file_.get()) : host::makeDurable(file_.get());
  isDurable_ = done.has_value();
  return done;
}

FileResult<void> PendingFile::enterFinalFolder() {
  if (!place_.enterFinalFolder) return {};
  auto folder = place_.enterFinalFolder();
  if (!folder) return tl::make_unexpected(folder.error());
  if (temporaryName_.empty()) {
    place_.folder = std::make_shared<FileDescriptor>(std::move(*folder));
  } else {
    finalFolder_ = std::move(*folder);
  }
  place_.enterFinalFolder = nullptr;
  return {};
}

FileResult<void> PendingFile::commit() {
  if (auto durable = makeDurable(); !durable) return durable;
  if (auto entered = enterFinalFolder(); !entered) return entered;
  const NameInFolder final{finalFolder(), finalName_.c_str()};
  const bool hasNoName = temporaryName_.empty();
  auto named = hasNoName ? host::nameUnnamed(file_.get(), final.folder, final.name)
                         : renameWithoutReplacing({folder(), temporaryName_.c_str()}, final);
  if (named) temporaryName_.clear();
  return named;
}

FileResult<void> PendingFile::commitReplacing() {
  if (auto durable = makeDurable(); !durable) return durable;
  if (auto entered = enterFinalFolder(); !entered) return entered;
  if (temporaryName_.empty()) {
    if (auto named = giveTemporaryName(); !named) return named;
  }
  auto replaced = succeeded(uninterrupted(
      [&] { return ::renameat(folder(), temporaryName_.c_str(), finalFolder(), finalName_.c_str()); }));
  if (replaced) temporaryName_.clear();
  return replaced;
}

FileResult<FileAttributes> PendingFile::attributes() const {
  struct stat status = {};
  if (::fstat(file_.get(), &status) < 0) return failure();
  return attributesOf(status);
}

}  // namespace kestrova
