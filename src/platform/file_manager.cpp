#include "platform/file_manager.h"

#include "platform/file_error.h"

namespace kestrova {

bool FileManager::fileExists(const Path& path) const { return attributesOfItem(path).has_value(); }

bool FileManager::isDirectory(const Path& path) const {
  const auto attributes = attributesOfItem(path);
  return attributes && attributes->isDirectory;
}

FileResult<void> FileManager::copyItem(const Path& from, const Path& to, const Check& check) {
  // The commit settles it for certain; asking first spares the copy.
  if (fileExists(to)) return failure(EEXIST);
  const auto copy = stageCopy(from, to);
  if (!copy) return tl::make_unexpected(copy.error());
  if (check) {
    if (auto agreed = check(); !agreed) return agreed;
  }
  return (*copy)->commit();
}

FileResult<void> FileManager::writeData(ByteView data, const Path& to) {
  return stageData(data, to).and_then([](const auto& file) { return file->commit(); });
}

FileResult<void> FileManager::writeDataReplacing(ByteView data, const Path& to) {
  return stageData(data, to).and_then([](const auto& file) { return file->commitReplacing(); });
}

}  // namespace kestrova
