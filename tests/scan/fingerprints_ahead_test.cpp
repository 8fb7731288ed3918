#include "scan/fingerprints_ahead.h"

#include "support/failing_file_manager.h"
#include "support/gate.h"
#include "support/temporary_folder.h"

#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

/// Files of few sizes and contents, as a walk meets them.
class FilesToJudge : public testing::TestWithParam<unsigned> {
 protected:
  FilesToJudge() {
    std::mt19937 random(GetParam());
    for (int i = 0; i < 600; ++i) {
      const std::string contents(random() % 30, static_cast<char>('a' + random() % 3));
      const Path path = folder / std::to_string(random() % 500);
      files.push_back({.path = test::writeFile(path, contents), .size = contents.size()});
    }
    std::filesystem::remove(files[10].path);
  }

  /// What is decided about each file, in words, and the lists in the end.
  std::vector<std::string> judge(std::size_t threads) {
    std::vector<std::string> decisions;
    FileList fileList;
    HashList hashList;
    FingerprintsAhead ahead(*system, fileList, hashList, threads);
    for (const WalkedFile& file : files) {
      ahead.expect(file);
      ahead.inTurn([&] { decisions.push_back(textOf(ahead.judge(file))); });
      ahead.inTurn([&] { decisions.push_back("seen " + file.path.native()); });
    }
    ahead.finish();
    for (std::size_t i = 0; i < fileList.size(); ++i)
      decisions.push_back(fileList[i].key() + fileList[i].path);
    for (const WalkedFile& file : files) decisions.push_back(hashList.find(file.path.native()).value_or(""));
    return decisions;
  }
  static std::string textOf(const Sighting& sighting) {
    return std::to_string(static_cast<int>(sighting.kind)) + sighting.fingerprint +
           sighting.original.native() + sighting.readError;
  }

  const std::shared_ptr<FileManager> system = systemFileManager();
  test::TemporaryFolder folder;
  std::vector<WalkedFile> files;
};

INSTANTIATE_TEST_SUITE_P(Seeds, FilesToJudge, testing::Range(0U, 10U));

class FingerprintReading : public testing::Test {
 protected:
  WalkedFile file(const std::string& name, const char* contents) {
    return {.path = test::writeFile(folder / name, contents), .size = std::string_view(contents).size()};
  }
  void see(const WalkedFile& file) {
    ahead.expect(file);
    ahead.inTurn([this, file] { judged.push_back(ahead.judge(file).kind); });
  }

  test::TemporaryFolder folder;
  test::FailingFileManager files;
  FileList fileList;
  HashList hashList;
  std::vector<Sighting::Kind> judged;
  FingerprintsAhead ahead{files, fileList, hashList, 2};
};

}  // namespace

TEST_P(FilesToJudge, AreJudgedAheadAsTheyAreOneByOne) {
  const auto oneByOne = judge(0);
  EXPECT_EQ(judge(1), oneByOne);
  EXPECT_EQ(judge(4), oneByOne);
}

TEST_F(FingerprintReading, IsNotDoneForFilesOfUniqueSizeWhichAreJudgedAtOnce) {
  files.onRead = [](const Path&) -> std::optional<FileError> {
    ADD_FAILURE();
    return std::nullopt;
  };
  see(file("a", "1"));
  see(file("b", "22"));
  see(file("c", "333"));
  EXPECT_EQ(judged.size(), 3U);
}

TEST_F(FingerprintReading, GoesOnForSeveralFilesAtOnce) {
  std::atomic<int> reading = 0;
  files.onRead = [&reading](const Path&) -> std::optional<FileError> {
    ++reading;
    while (reading < 2) std::this_thread::yield();
    return std::nullopt;
  };
  for (int i = 0; i < 40; ++i) see(file(std::to_string(i), i == 39 ? "1" : "2"));
  ahead.finish();
  ASSERT_EQ(judged.size(), 40U);
  EXPECT_EQ(judged[38], Sighting::Kind::duplicate);
  EXPECT_EQ(judged[39], Sighting::Kind::sameFileSize);
}

TEST_F(FingerprintReading, StopsWhenItIsNotToGoOn) {
  test::Gate gate;
  files.onRead = [&gate](const Path&) -> std::optional<FileError> {
    gate.pass();
    return std::nullopt;
  };
  for (const char* name : {"a", "b", "c", "d"}) see(file(name, "same size"));
  EXPECT_EQ(judged.size(), 1U) << "only the first needs no fingerprint";
  gate.open();
  ahead.keepsGoing = [] { return false; };
  ahead.finish();
  EXPECT_EQ(judged.size(), 1U);
}

}  // namespace kestrova
