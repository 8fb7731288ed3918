#pragma once

#include "platform/file_manager.h"
#include "platform/folder.h"

#include <functional>
#include <memory>
#include <utility>

namespace kestrova::test {

/// A file manager that fails on demand. Before each call its hook, if set, is called: if it returns an error,
/// the call returns that; otherwise the inner file manager does its work. A hook may also throw, count, wait,
/// or change files behind the caller's back. Hooks run on the thread of the call.
class FailingFileManager : public FileManager {
 public:
  using Failure = std::optional<FileError>;

  explicit FailingFileManager(std::shared_ptr<FileManager> inner = systemFileManager())
      : inner_(std::move(inner)) {}

  std::function<Failure(const Path& from, const Path& to)> onStageCopy;
  std::function<Failure(ByteView data, const Path& to)> onStageData;
  std::function<Failure(const Path& to)> onCommit;  ///< both kinds of commit
  std::function<Failure(const Path& path)> onAttributes;
  std::function<Failure(const Path& folder)> onCreateDirectory;
  std::function<Failure()> onNamesDurable;  ///< of a held target
  std::function<Failure(const Path& folder)> onCheckTarget;
  std::function<Failure(const Path& path)> onOpenFolder;
  std::function<Failure(const Path& path)> onListed;  ///< called after a folder's entries have been listed
  std::function<Failure(const Path& path)> onEntryAttributes;  ///< of an entry of an open folder
  std::function<Failure(const Path& path)> onRead;             ///< of a prefix or of the whole

  FileResult<FileAttributes> attributesOfItem(const Path& path) const override {
    if (auto error = ask(onAttributes, path)) return tl::make_unexpected(*error);
    return inner_->attributesOfItem(path);
  }

  FileResult<std::unique_ptr<Folder>> openFolder(const Path& path, FinalLink finalLink) const override {
    return watched(path, [&] { return inner_->openFolder(path, finalLink); });
  }

  FileResult<Bytes> readPrefix(const Path& path, std::size_t count) const override {
    if (auto error = ask(onRead, path)) return tl::make_unexpected(*error);
    return inner_->readPrefix(path, count);
  }

  FileStart readStart(const Path& path, std::size_t count) const override {
    const auto attributesError = ask(onAttributes, path);
    const auto readError = ask(onRead, path);
    FileStart start = inner_->readStart(path, count);
    if (attributesError) start.attributes = tl::make_unexpected(*attributesError);
    if (readError) start.bytes = tl::make_unexpected(*readError);
    return start;
  }

  FileResult<bool> fileExists(const Path& path) const override {
    const auto error = ask(onAttributes, path);
    if (!error) return inner_->fileExists(path);
    if (error->kind == FileError::Kind::notFound) return false;
    return tl::make_unexpected(*error);
  }

  using FileManager::readFile;
  FileResult<Bytes> readFile(const Path& path, const SourceCheck& check) const override {
    if (auto error = ask(onRead, path)) return tl::make_unexpected(*error);
    return inner_->readFile(path, check);
  }

  FileResult<void> checkTarget(const Path& folder) const override {
    if (auto error = ask(onCheckTarget, folder)) return tl::make_unexpected(*error);
    return inner_->checkTarget(folder);
  }

  std::shared_ptr<HeldTarget> holdTarget(const Path& folder) override {
    return std::make_shared<Held>(inner_->holdTarget(folder), onNamesDurable);
  }

  FileResult<void> createDirectory(const Path& folder) override {
    if (auto error = ask(onCreateDirectory, folder)) return tl::make_unexpected(*error);
    return inner_->createDirectory(folder);
  }

  using FileManager::stageCopy;
  FileResult<std::unique_ptr<StagedFile>> stageCopy(const Path& from, const Path& to,
                                                    const SourceCheck& check, StagingTime time) override {
    if (auto error = ask(onStageCopy, from, to)) return tl::make_unexpected(*error);
    return withHook(inner_->stageCopy(from, to, check, time), to);
  }

  using FileManager::stageData;
  FileResult<std::unique_ptr<StagedFile>> stageData(ByteView data, const Path& to,
                                                    StagingTime time) override {
    if (auto error = ask(onStageData, data, to)) return tl::make_unexpected(*error);
    return withHook(inner_->stageData(data, to, time), to);
  }

 private:
  class Held : public HeldTarget {
   public:
    Held(std::shared_ptr<HeldTarget> inner, std::function<Failure()> hook)
        : inner_(std::move(inner)), hook_(std::move(hook)) {}

    void followNoNewLinks() override { inner_->followNoNewLinks(); }
    FileResult<void> makeNamesDurable() override {
      if (auto error = ask(hook_)) return tl::make_unexpected(*error);
      return inner_->makeNamesDurable();
    }

   private:
    std::shared_ptr<HeldTarget> inner_;
    std::function<Failure()> hook_;
  };

  class Staged : public StagedFile {
   public:
    Staged(std::unique_ptr<StagedFile> inner, std::function<Failure(const Path&)> hook, Path to)
        : inner_(std::move(inner)), hook_(std::move(hook)), to_(std::move(to)) {}

    FileResult<void> commit() override {
      if (auto error = ask(hook_, to_)) return tl::make_unexpected(*error);
      return inner_->commit();
    }

    FileResult<void> commitReplacing() override {
      if (auto error = ask(hook_, to_)) return tl::make_unexpected(*error);
      return inner_->commitReplacing();
    }

    FileResult<FileAttributes> attributes() const override { return inner_->attributes(); }

   private:
    std::unique_ptr<StagedFile> inner_;
    std::function<Failure(const Path&)> hook_;
    Path to_;
  };

  class WatchedFolder : public Folder {
   public:
    WatchedFolder(std::unique_ptr<Folder> inner, const FailingFileManager& hooks, Path path)
        : inner_(std::move(inner)), hooks_(hooks), path_(std::move(path)) {}

    FileResult<void> list(const TakeEntry& take) override {
      const auto listed = inner_->list(take);
      if (auto error = ask(hooks_.onListed, path_)) return tl::make_unexpected(*error);
      return listed;
    }

    FileResult<FileAttributes> attributesOf(const char* name) const override {
      if (auto error = ask(hooks_.onEntryAttributes, path_ / name)) return tl::make_unexpected(*error);
      return inner_->attributesOf(name);
    }

    FileResult<std::unique_ptr<Folder>> openFolder(const char* name) const override {
      return hooks_.watched(path_ / name, [&] { return inner_->openFolder(name); });
    }

   private:
    std::unique_ptr<Folder> inner_;
    const FailingFileManager& hooks_;
    Path path_;
  };

  template <typename Open>
  FileResult<std::unique_ptr<Folder>> watched(const Path& path, const Open& open) const {
    if (auto error = ask(onOpenFolder, path)) return tl::make_unexpected(*error);
    auto folder = open();
    if (!folder) return folder;
    return std::make_unique<WatchedFolder>(std::move(*folder), *this, path);
  }

  template <typename Hook, typename... Arguments>
  static Failure ask(const Hook& hook, const Arguments&... arguments) {
    return hook ? hook(arguments...) : std::nullopt;
  }

  FileResult<std::unique_ptr<StagedFile>> withHook(FileResult<std::unique_ptr<StagedFile>> staged,
                                                   const Path& to) {
    if (!staged) return staged;
    return std::make_unique<Staged>(std::move(*staged), onCommit, to);
  }

  std::shared_ptr<FileManager> inner_;
};

}  // namespace kestrova::test
