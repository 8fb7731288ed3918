#include "platform/file_manager.h"

#include "platform/file_error.h"

namespace kestrova {

FileResult<bool> FileManager::fileExists(const Path& path) const {
  const auto attributes = attributesOfItem(path);
  if (attributes) return true;
  if (attributes.error().kind == FileError::Kind::notFound) return false;
  return tl::make_unexpected(attributes.error());
}

bool FileManager::isDirectory(const Path& path) const {
  const auto attributes = attributesOfItem(path);
  return attributes && attributes->isDirectory;
}

FileResult<void> FileManager::copyItem(const Path& from, const Path& to) {
  // Only the commit decides; checking first avoids the copy.
  const auto exists = fileExists(to);
  if (!exists) return tl::make_unexpected(exists.error());
  if (*exists) return failure(EEXIST);
  const auto copy = stageCopy(from, to, nullptr);
  if (!copy) return tl::make_unexpected(copy.error());
  return (*copy)->commit();
}

FileResult<void> FileManager::writeData(ByteView data, const Path& to) {
  const auto file = stageData(data, to);
  if (!file) return tl::make_unexpected(file.error());
  return (*file)->commit();
}

FileResult<void> FileManager::writeDataReplacing(ByteView data, const Path& to) {
  const auto file = stageData(data, to);
  if (!file) return tl::make_unexpected(file.error());
  return (*file)->commitReplacing();
}

}  // namespace kestrova
