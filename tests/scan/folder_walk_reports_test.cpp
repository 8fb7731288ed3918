#include "platform/file_error.h"
#include "support/failing_file_manager.h"
#include "support/temporary_folder.h"
#include "support/walking.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>

// What a walk reads of a folder, and what it reports about files that it leaves and entries that it cannot
// read.

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using namespace test;
using testing::ElementsAre;

/// What a walk of the photos below a root could not read, as "path: reason", in order.
std::vector<std::string> unreadableBelow(const FileManager& files, const Path& root) {
  std::vector<std::string> told;
  FolderWalk walk = walkOfPhotos([](const WalkedFile&) {});
  walk.cannotRead = [&](const Path& path, const FileError& error) {
    told.push_back((path == root ? "." : nameBelow(path, root)) + ": " + error.message);
  };
  EXPECT_TRUE(walkFolder(files, root, walk));
  return told;
}

/// What a walk of the photos below a root visits, as "path size" and ": reason" where there is one.
std::vector<std::string> visitsBelow(const FileManager& files, const Path& root) {
  std::vector<std::string> told;
  const auto visit = [&](const WalkedFile& file) {
    const std::string reason = file.error ? ": " + file.error->message : "";
    told.push_back(nameBelow(file.path, root) + ' ' + std::to_string(file.size) + reason);
  };
  EXPECT_TRUE(walkFolder(files, root, walkOfPhotos(visit)));
  return told;
}

FileError inputError() { return systemError(EIO); }

}  // namespace

TEST(FolderWalk, ReportsAFolderWhenItsFirstFileWasAskedForItsAttributes) {
  const TemporaryFolder root;
  for (const char* name : {"a.jpg", "b/1.jpg", "c.jpg", "d.jpg"}) writeFile(root / name, "x");
  test::FailingFileManager files;
  std::vector<std::string> events;
  files.onEntryAttributes = [&](const Path& path) {
    events.push_back("ask " + nameBelow(path, root.path()));
    return std::nullopt;
  };
  const auto visit = [&](const WalkedFile& file) {
    events.push_back("visit " + nameBelow(file.path, root.path()));
  };
  walkFolder(files, root.path(), walkOfPhotos(visit));
  EXPECT_THAT(events, ElementsAre("ask a.jpg", "visit a.jpg", "ask b/1.jpg", "visit b/1.jpg", "ask c.jpg",
                                  "visit c.jpg", "ask d.jpg", "visit d.jpg"));
}

TEST(FolderWalk, AsksForNoAttributesOfUnwantedFilesThatNobodyIsToldOf) {
  const TemporaryFolder root;
  for (const char* name : {"a.txt", "b/c.txt"}) writeFile(root / name, "x");
  test::FailingFileManager files;
  files.onEntryAttributes = [](const Path& path) {
    ADD_FAILURE() << path;
    return std::nullopt;
  };
  EXPECT_TRUE(walkFolder(files, root.path(), walkOfPhotos(failOn)));
}

TEST(FolderWalk, ReportsUnwantedFilesInTheirPlace) {
  const TemporaryFolder root;
  for (const char* name : {"a.jpg", "b/note.txt", "c.HEIC"}) writeFile(root / name, "123");
  fs::create_symlink("c.HEIC", root / "d.txt");
  fs::create_symlink("b", root / "e.txt");
  ASSERT_EQ(::mkfifo((root / "fifo.txt").c_str(), 0600), 0);
  std::vector<std::string> told;
  FolderWalk walk = walkOfPhotos([&](const WalkedFile& file) { told.push_back(file.path.filename()); });
  walk.leaves = [&](const WalkedFile& file) {
    told.push_back("not " + nameBelow(file.path, root.path()) + ' ' + std::to_string(file.size));
  };
  EXPECT_TRUE(walkFiles(root.path(), walk));
  EXPECT_THAT(told, ElementsAre("a.jpg", "not b/note.txt 3", "not c.HEIC 3", "not d.txt 3"));
}

TEST(FolderWalk, ReportsFoldersThatCannotBeOpened) {
  const TemporaryFolder root;
  for (const char* name : {"a/1.jpg", "b/c/2.jpg"}) writeFile(root / name, "x");
  test::FailingFileManager files;
  files.onOpenFolder = [](const Path& path) {
    return path.filename() == "c" ? std::optional(inputError()) : std::nullopt;
  };
  EXPECT_THAT(unreadableBelow(files, root.path()), ElementsAre("b/c: Input/output error"));
  EXPECT_THAT(unreadableBelow(files, root / "b/c"), ElementsAre(".: Input/output error"));
}

TEST(FolderWalk, ReportsARootThatIsMissing) {
  const TemporaryFolder root;
  EXPECT_THAT(unreadableBelow(*systemFileManager(), root / "gone"),
              ElementsAre(".: No such file or directory"));
}

TEST(FolderWalk, ReportsAFolderThatCannotBeReadToItsEndAndVisitsWhatItSaw) {
  const TemporaryFolder root;
  for (const char* name : {"a/1.jpg", "b.jpg"}) writeFile(root / name, "x");
  test::FailingFileManager files;
  files.onListed = [&](const Path& path) {
    return path == root / "a" ? std::optional(inputError()) : std::nullopt;
  };
  EXPECT_THAT(unreadableBelow(files, root.path()), ElementsAre("a: Input/output error"));
  std::vector<std::string> visited;
  walkFolder(files, root.path(), walkOfPhotos([&](const WalkedFile& file) {
               visited.push_back(nameBelow(file.path, root.path()));
             }));
  EXPECT_THAT(visited, ElementsAre("a/1.jpg", "b.jpg"));
}

TEST(FolderWalk, VisitsFilesWhoseAttributesCannotBeReadWithTheReason) {
  const TemporaryFolder root;
  for (const char* name : {"a.jpg", "b/1.jpg", "c.jpg"}) writeFile(root / name, "x");
  test::FailingFileManager files;
  files.onEntryAttributes = [](const Path& path) {
    return path.filename() == "c.jpg" ? std::optional(inputError()) : std::nullopt;
  };
  EXPECT_THAT(unreadableBelow(files, root.path()), ElementsAre());
  EXPECT_THAT(visitsBelow(files, root.path()),
              ElementsAre("a.jpg 1", "b/1.jpg 1", "c.jpg 0: Input/output error"));
}

TEST(FolderWalk, ReportsLinksThatCannotBeFollowedButNotDanglingOnes) {
  const TemporaryFolder root;
  fs::create_symlink("nowhere", root / "a.jpg");
  fs::create_symlink("b.jpg", root / "b.jpg");
  writeFile(root / "c", "x");
  fs::create_symlink("c", root / "d.jpg");
  test::FailingFileManager files;
  files.onEntryAttributes = [](const Path& path) {
    return path.filename() == "d.jpg" ? std::optional(inputError()) : std::nullopt;
  };
  EXPECT_THAT(unreadableBelow(files, root.path()), ElementsAre("d.jpg: Input/output error"));
}

TEST(FolderWalk, VisitsFilesOfAFolderThatCannotBeOpenedAgainAfterItsSubfolder) {
  const TemporaryFolder root;
  for (const char* name : {"a/b/1.jpg", "a/c.jpg"}) writeFile(root / name, "x");
  test::FailingFileManager files;
  int opened = 0;
  files.onOpenFolder = [&](const Path& path) {
    return path == root / "a" && ++opened == 2 ? std::optional(inputError()) : std::nullopt;
  };
  EXPECT_THAT(visitsBelow(files, root.path()), ElementsAre("a/b/1.jpg 1", "a/c.jpg 0: Input/output error"));
}

}  // namespace kestrova
