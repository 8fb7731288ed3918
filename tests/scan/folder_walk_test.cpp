#include "scan/folder_walk.h"

#include "support/temporary_folder.h"
#include "support/walking.h"
#include "support/without_privileges.h"

#include <cstring>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace kestrova {

namespace {

namespace fs = std::filesystem;
using test::failOn;
using test::nameBelow;
using test::TemporaryFolder;
using test::walkFiles;
using test::walkOfPhotos;
using test::writeFile;
using testing::ElementsAre;
using testing::IsEmpty;

/// The photos below a root, as paths relative to it, in the order of the walk.
std::vector<std::string> photosBelow(const Path& root) {
  std::vector<std::string> names;
  const auto visit = [&](const WalkedFile& file) { names.push_back(nameBelow(file.path, root)); };
  EXPECT_TRUE(walkFiles(root, walkOfPhotos(visit)));
  return names;
}

void makeSocket(const Path& path) {
  const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
  ASSERT_EQ(::bind(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  ::close(socket);
}

}  // namespace

TEST(FolderWalk, VisitsInByteOrderOfTheNamesWithSubfoldersInTheirPlace) {
  const TemporaryFolder root;
  for (const char* name :
       {"b.jpg", "B.jpg", "a.jpg", "a/z.jpg", "a-b/y.jpg", "a/.hidden.jpg", "c/1/2.jpg", "\xff.jpg"}) {
    writeFile(root / name, "x");
  }
  EXPECT_THAT(photosBelow(root.path()), ElementsAre("B.jpg", "a/.hidden.jpg", "a/z.jpg", "a-b/y.jpg", "a.jpg",
                                                    "b.jpg", "c/1/2.jpg", "\xff.jpg"));
}

TEST(FolderWalk, TellsThePathAsTheRootWasGivenAndTheSize) {
  const TemporaryFolder root;
  writeFile(root / "a/b.jpg", "12345");
  std::vector<WalkedFile> files;
  const Path given = root / "a" / "";
  walkFiles(given, walkOfPhotos([&](const WalkedFile& file) { files.push_back(file); }));
  ASSERT_EQ(files.size(), 1U);
  EXPECT_EQ(files[0].path.native(), (root / "a/b.jpg").native());
  EXPECT_EQ(files[0].size, 5U);
}

TEST(FolderWalk, KeepsNamesThatAreNotUtf8ContainNewLinesOrAreAsLongAsPossible) {
  const TemporaryFolder root;
  const std::string longest = std::string(251, 'n').append(".jpg");
  writeFile(root / "\xc3\x28.jpg", "x");
  writeFile(root / "new\nline.jpg", "x");
  writeFile(root / longest, "x");
  EXPECT_THAT(photosBelow(root.path()), ElementsAre("new\nline.jpg", longest, "\xc3\x28.jpg"));
}

TEST(FolderWalk, AsksForWantedFilesByNameAloneAndNeverForFolders) {
  const TemporaryFolder root;
  writeFile(root / "folder.jpg/note.txt", "x");
  std::vector<std::string> asked;
  FolderWalk walk = walkOfPhotos(failOn);
  walk.wants = [&](std::string_view name) { return asked.emplace_back(name).empty(); };
  walkFiles(root.path(), walk);
  EXPECT_THAT(asked, ElementsAre("note.txt"));
}

TEST(FolderWalk, SkipsADanglingLink) {
  const TemporaryFolder root;
  fs::create_symlink("nowhere", root / "a.jpg");
  EXPECT_THAT(photosBelow(root.path()), IsEmpty());
}

TEST(FolderWalk, TakesALinkToARegularFileAsTheFile) {
  const TemporaryFolder root;
  writeFile(root / "elsewhere/data", "123");
  fs::create_symlink("elsewhere/data", root / "a.jpg");
  std::uint64_t size = 0;
  walkFiles(root.path(), walkOfPhotos([&](const WalkedFile& file) { size = file.size; }));
  EXPECT_EQ(size, 3U);
}

TEST(FolderWalk, DoesNotEnterLinksToFoldersSoThatLoopsEnd) {
  const TemporaryFolder root;
  writeFile(root / "a/1.jpg", "x");
  fs::create_symlink("..", root / "a/up");
  fs::create_symlink("../a", root / "a/again.jpg");
  fs::create_symlink("self.jpg", root / "self.jpg");
  fs::create_symlink("a", root / "b");
  EXPECT_THAT(photosBelow(root.path()), ElementsAre("a/1.jpg"));
}

TEST(FolderWalk, SkipsFifosAndSocketsNamedLikePhotosWithoutWaiting) {
  const TemporaryFolder root;
  ASSERT_EQ(::mkfifo((root / "fifo.jpg").c_str(), 0600), 0);
  makeSocket(root / "socket.jpg");
  fs::create_symlink("fifo.jpg", root / "link.jpg");
  fs::create_symlink("/dev/null", root / "device.jpg");
  writeFile(root / "photo.jpg", "x");
  EXPECT_THAT(photosBelow(root.path()), ElementsAre("photo.jpg"));
}

TEST(FolderWalk, EntersARootThatIsALinkToAFolder) {
  const TemporaryFolder root;
  writeFile(root / "a/1.jpg", "x");
  fs::create_symlink("a", root / "link");
  EXPECT_THAT(photosBelow(root / "link"), ElementsAre("1.jpg"));
}

TEST(FolderWalk, FindsNothingBelowWhatIsNotAFolder) {
  const TemporaryFolder root;
  writeFile(root / "a.jpg", "x");
  ASSERT_EQ(::mkfifo((root / "fifo").c_str(), 0600), 0);
  for (const char* name : {"missing", "a.jpg", "fifo"})
    EXPECT_THAT(photosBelow(root / name), IsEmpty()) << name;
  EXPECT_THAT(photosBelow(""), IsEmpty());
}

TEST(FolderWalk, SkipsAFolderThatCannotBeRead) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may read everything here";
  const TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  writeFile(root / "closed/1.jpg", "x");
  writeFile(root / "open/2.jpg", "x");
  fs::permissions(root / "closed", fs::perms::none);
  const test::WithoutPrivileges ordinary;
  EXPECT_THAT(photosBelow(root.path()), ElementsAre("open/2.jpg"));
  EXPECT_THAT(photosBelow(root / "closed"), IsEmpty());
}

TEST(FolderWalk, GivesAFileWhoseAttributesCannotBeReadTheSizeZero) {
  if (!test::canLosePrivileges()) GTEST_SKIP() << "root may read everything here";
  const TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  writeFile(root / "names only/1.jpg", "123");
  fs::create_symlink("1.jpg", root / "names only/link.jpg");
  fs::permissions(root / "names only", fs::perms::others_read | fs::perms::owner_read);
  std::vector<std::uint64_t> sizes;
  const test::WithoutPrivileges ordinary;
  walkFiles(root.path(), walkOfPhotos([&](const WalkedFile& file) { sizes.push_back(file.size); }));
  EXPECT_THAT(sizes, ElementsAre(0U));
}

TEST(FolderWalk, FindsAFileThatCannotBeOpened) {
  const TemporaryFolder root;
  fs::permissions(root.path(), fs::perms::all);
  fs::permissions(writeFile(root / "a.jpg", "123"), fs::perms::none);
  const test::WithoutPrivileges ordinary;
  EXPECT_THAT(photosBelow(root.path()), ElementsAre("a.jpg"));
}

TEST(FolderWalk, GoesOnWhenFilesAndFoldersVanishOnTheWay) {
  const TemporaryFolder root;
  for (const char* name : {"a.jpg", "b/1.jpg", "c/d/2.jpg", "e.jpg"}) writeFile(root / name, "x");
  std::vector<std::string> names;
  walkFiles(root.path(), walkOfPhotos([&](const WalkedFile& file) {
              names.push_back(file.path.filename());
              fs::remove_all(root / "b");
              fs::remove_all(root / "c/d");
            }));
  EXPECT_THAT(names, ElementsAre("a.jpg", "e.jpg"));
}

TEST(FolderWalk, SkipsAFileThatVanishesBetweenItsNameAndItsAttributes) {
  const TemporaryFolder root;
  writeFile(root / "a.jpg", "x");
  FolderWalk walk = walkOfPhotos(failOn);
  walk.wants = [&](std::string_view) { return fs::remove(root / "a.jpg"); };
  walk.cannotRead = [](const Path& path, const FileError&) { ADD_FAILURE() << path; };
  EXPECT_TRUE(walkFiles(root.path(), walk));
}

TEST(FolderWalk, DoesNotFollowAFolderThatTurnsIntoALink) {
  const TemporaryFolder root;
  writeFile(root / "in/a.jpg", "x");
  writeFile(root / "in/b/1.jpg", "x");
  writeFile(root / "out/2.jpg", "x");
  std::vector<std::string> names;
  walkFiles(root / "in", walkOfPhotos([&](const WalkedFile& file) {
              names.push_back(file.path.filename());
              fs::remove_all(root / "in/b");
              fs::create_symlink("../out", root / "in/b");
            }));
  EXPECT_THAT(names, ElementsAre("a.jpg"));
}

TEST(FolderWalk, DoesNotComeBackToAFolderThatTurnedIntoALink) {
  const TemporaryFolder root;
  for (const char* name : {"in/a/b/1.jpg", "in/a/c.jpg", "out/c.jpg"}) writeFile(root / name, "x");
  std::vector<std::string> names;
  walkFiles(root / "in", walkOfPhotos([&](const WalkedFile& file) {
              names.push_back(file.path.filename());
              fs::rename(root / "in/a", root / "moved");
              fs::create_symlink("../out", root / "in/a");
            }));
  EXPECT_THAT(names, ElementsAre("1.jpg"));
}

TEST(FolderWalk, StopsBeforeTheNextFileWhenTold) {
  const TemporaryFolder root;
  for (const char* name : {"a.jpg", "b.jpg", "c.jpg"}) writeFile(root / name, "x");
  int visited = 0;
  FolderWalk walk = walkOfPhotos([&](const WalkedFile&) { ++visited; });
  walk.keepsGoing = [&] { return visited < 2; };
  EXPECT_FALSE(walkFiles(root.path(), walk));
  EXPECT_EQ(visited, 2);
}

TEST(FolderWalk, StopsAmidAFolderThatHoldsNothingWanted) {
  const TemporaryFolder root;
  for (int i = 0; i < 20; ++i) writeFile(root / std::to_string(i), "x");
  int asked = 0;
  FolderWalk walk = walkOfPhotos(failOn);
  walk.keepsGoing = [&] { return ++asked < 5; };
  EXPECT_FALSE(walkFiles(root.path(), walk));
  EXPECT_EQ(asked, 5);
}

TEST(FolderWalk, WalksAThousandNestedFoldersWithTheLongestNames) {
  const TemporaryFolder root;
  std::string deepest = root.path().native();
  for (int i = 0; i < 1000; ++i) deepest += '/' + std::string(255, 'd');
  const auto files = systemFileManager();
  ASSERT_TRUE(files->createDirectory(deepest));
  const std::string name(251, 'p');
  ASSERT_TRUE(files->writeData(Bytes{1, 2, 3}, deepest + '/' + name + ".jpg"));
  // A second branch half way down, reached after the way back up.
  const std::string half = deepest.substr(0, root.path().native().size() + 500 * 256) + "/e";
  ASSERT_TRUE(files->createDirectory(half));
  ASSERT_TRUE(files->writeData(Bytes{1}, half + "/f.jpg"));
  EXPECT_THAT(photosBelow(root.path()),
              ElementsAre((deepest + '/' + name + ".jpg").substr(root.path().native().size() + 1),
                          (half + "/f.jpg").substr(root.path().native().size() + 1)));
  EXPECT_THAT(photosBelow(deepest), ElementsAre(name + ".jpg"));
}

TEST(FolderWalk, HoldsFewFilesOpenHoweverDeepItIs) {
  const TemporaryFolder root;
  Path deepest = root.path();
  for (int i = 0; i < 100; ++i) deepest /= "d";
  writeFile(deepest / "a.jpg", "x");
  const auto firstFree = [] {
    const int file = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::close(file);
    return file;
  };
  const int before = firstFree();
  int during = 0;
  walkFiles(root.path(), walkOfPhotos([&](const WalkedFile&) { during = firstFree(); }));
  EXPECT_GE(during, before);
  constexpr int mostAtOnce = 2;  // a folder and the one that is opened from it
  EXPECT_LE(during, before + mostAtOnce);
  EXPECT_EQ(firstFree(), before);
}

}  // namespace kestrova
