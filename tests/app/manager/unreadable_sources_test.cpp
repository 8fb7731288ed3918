#include "support/failing_file_manager.h"
#include "support/headless_program.h"

#include <map>

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::writeFile;
using test::writePhoto;
using testing::ElementsAre;
using testing::Pair;

/// A whole run over sources, some of which cannot be read.
class UnreadableSources : public testing::Test {
 protected:
  using Failure = test::FailingFileManager::Failure;

  UnreadableSources() {
    manager().verdictListener = [this](const Verdict& verdict) {
      verdicts[verdict.source.filename()] = verdict;
    };
    manager().unreadableListener = [this](const Path& path, const FileError& error) {
      folders[path.filename()] = error.message;
    };
  }
  /// Fails for the items of these names.
  static std::function<Failure(const Path&)> failingFor(std::vector<Path> names) {
    return [names = std::move(names)](const Path& path) -> Failure {
      const bool fails = std::find(names.begin(), names.end(), path.filename()) != names.end();
      return fails ? Failure({EIO, "on purpose"}) : std::nullopt;
    };
  }
  /// Different ones of the same size: "ab" stands for a.mov and b.mov.
  void writeVideos(std::string_view names) const {
    for (const char name : names) writePhoto(program.source / (std::string(1, name) + ".mov"), 500, name);
  }
  void expectUnreadable(const char* name, Outcome counted) {
    EXPECT_EQ(verdicts[name].outcome, Outcome::unreadable);
    EXPECT_EQ(verdicts[name].counted(), counted);
    EXPECT_EQ(verdicts[name].error, "on purpose");
    EXPECT_EQ(verdicts[name].original, std::nullopt);
  }
  OrganiseManager& manager() { return program.manager(); }

  std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  test::HeadlessProgram program{files};
  std::map<Path, Verdict> verdicts;
  std::map<Path, std::string> folders;
};

}  // namespace

TEST_F(UnreadableSources, CountAsDuplicatesOfEachOther) {
  writeVideos("ab");
  files->onRead = failingFor({"a.mov", "b.mov"});
  program.run();
  expectUnreadable("b.mov", Outcome::duplicate);
  EXPECT_EQ(manager().sDuplicateCount, 1);
  EXPECT_EQ(manager().sTotalCount, 1);
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
}

TEST_F(UnreadableSources, AreSkippedLikeFilesOfTheSameContent) {
  writeVideos("abc");
  files->onRead = failingFor({"b.mov", "c.mov"});
  program.run();
  expectUnreadable("c.mov", Outcome::sameContent);
  EXPECT_EQ(manager().sDuplicateCount, 0);
  EXPECT_EQ(manager().sTotalCount, 2);
}

TEST_F(UnreadableSources, CountAsFilesOfSize0WithoutTheirAttributes) {
  writeFile(program.source / "a.mov", "");
  writeFile(program.source / "b.mov", "");
  files->onEntryAttributes = failingFor({"b.mov"});
  program.run();
  expectUnreadable("b.mov", Outcome::duplicate);
}

TEST_F(UnreadableSources, AreCopiedUndatedWithTheReasonWhereOnlyThePlannerCouldNotReadThem) {
  const Path photo = writePhoto(program.source / "a.jpg", 500);
  files->onRead = failingFor({"a.jpg"});
  program.run();
  EXPECT_EQ(verdicts["a.jpg"].outcome, Outcome::copied);
  EXPECT_EQ(verdicts["a.jpg"].error, "on purpose");
  ASSERT_TRUE(verdicts["a.jpg"].date);
  EXPECT_EQ(verdicts["a.jpg"].date->origin, DateOrigin::modified);
}

TEST_F(UnreadableSources, AreToldOfWhereTheyAreFolders) {
  writePhoto(program.source / "closed/a.jpg", 500);
  writePhoto(program.source / "open/b.jpg", 501);
  files->onOpenFolder = failingFor({"closed"});
  program.run();
  EXPECT_THAT(folders, ElementsAre(Pair("closed", "on purpose")));
  EXPECT_EQ(verdicts.size(), 1U);
  EXPECT_EQ(program.status(), QStringLiteral("Completed"));
}

}  // namespace kestrova
