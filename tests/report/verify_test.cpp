#include "report/verify.h"

#include "support/sample_media.h"
#include "support/temporary_folder.h"

#include <gmock/gmock.h>

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using test::writeFile;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

MATCHER_P2(IsAtRisk, source, reason, "") {
  return arg.source == source && testing::Value(arg.reason, HasSubstr(reason));
}

struct VerifyTest : testing::Test {
  test::TemporaryFolder folder;
  Path card = folder / "card";
  Path tree = folder / "tree";
  std::vector<Row> rows;
  std::vector<FileRow> told;
  VerifyRequest request{.rows = [this](const auto& visit) -> FileResult<void> {
                          for (const Row& row : rows) {
                            if (!visit(row)) break;
                          }
                          return {};
                        },
                        .target = tree,
                        .tell =
                            [this](const Row& row) {
                              if (const auto* file = std::get_if<FileRow>(&row)) told.push_back(*file);
                              return true;
                            }};

  /// A row of a source that the test writes.
  FileRow rowOf(Outcome verdict, const std::string& name, const std::string& contents) const {
    return {.source = writeFile(card / name, contents), .verdict = verdict, .sourceSize = contents.size()};
  }
  FileRow copied(const std::string& name, const std::string& contents) const {
    return withTarget(rowOf(Outcome::copied, name, contents), name, contents);
  }
  FileRow withTarget(FileRow row, const std::string& name, const std::string& contents) const {
    writeFile(tree / name, contents);
    row.target = name;
    return row;
  }
  /// A row of a source that was set aside for another one.
  static FileRow setAsideFor(const FileRow& original, FileRow row) {
    row.original = original.source;
    return row;
  }
  FileRow rewritten(const std::string& name, unsigned seed = 0) const {
    FileRow row{.source = writeFile(card / name, test::jpegPhoto({.width = 80, .height = 60, .seed = seed})),
                .verdict = Outcome::resized,
                .target = name};
    writeFile(tree / name, test::jpegPhoto({.width = 40, .height = 30, .seed = seed}));
    row.sourceSha256 = sha256Of(row.source).value();
    row.targetSha256 = sha256Of(tree / name).value();
    return row;
  }
  std::vector<AtRisk> verify() { return verifyRun(request).value().atRisk; }
};

TEST_F(VerifyTest, FindsNothingWhereAllIsWhole) {
  rows = {copied("1.jpg", "one"), rewritten("2.jpg"), UnreadableRow{card / "locked", "Permission denied"},
          LeftBehindRow{card / "a.xmp", "xmp", 1}};
  EXPECT_THAT(verify(), IsEmpty());
  const std::string sum = sha256Of(card / "1.jpg").value();
  EXPECT_EQ(told[0].sourceSha256, sum);
  EXPECT_EQ(told[0].targetSha256, sum);
  EXPECT_EQ(told[0].atRisk, "");
}

TEST_F(VerifyTest, FindsACopyThatDiffersOrIsGone) {
  const FileRow differing = withTarget(rowOf(Outcome::copied, "1.jpg", "one"), "1.jpg", "One");
  const FileRow gone = copied("2.jpg", "two");
  fs::remove(tree / "2.jpg");
  rows = {differing, gone};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(differing.source, "its copy differs from it"),
                                    IsAtRisk(gone.source, "2.jpg\" cannot be read")));
  EXPECT_EQ(told[0].atRisk, "its copy differs from it");
  EXPECT_NE(told[0].sourceSha256, told[0].targetSha256);
}

TEST_F(VerifyTest, FindsASourceThatCannotBeReadAnyMore) {
  const FileRow row = copied("1.jpg", "one");
  fs::remove(row.source);
  rows = {row};
  const auto atRisk = verify();
  ASSERT_EQ(atRisk.size(), 1U);
  EXPECT_FALSE(atRisk[0].isReadable);
}

TEST_F(VerifyTest, DecodesRewrittenPhotosAndAsksTheirSums) {
  FileRow damaged = rewritten("1.jpg");
  writeFile(tree / "1.jpg", "no longer a photo");
  FileRow undecodable = rewritten("2.jpg");
  writeFile(tree / "2.jpg", "never was one");
  undecodable.targetSha256 = sha256Of(tree / "2.jpg").value();
  FileRow edited = rewritten("3.jpg");
  writeFile(edited.source, "edited");
  rows = {damaged, undecodable, edited};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(damaged.source, "no longer what the run wrote"),
                                    IsAtRisk(undecodable.source, "does not decode"),
                                    IsAtRisk(edited.source, "has changed since the run")));
}

TEST_F(VerifyTest, ReportsPagesThatWereLeftOut) {
  FileRow row = rewritten("1.jpg");
  row.pagesLeftOut = 2;
  rows = {row};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(row.source, "2 pages were left out")));
}

TEST_F(VerifyTest, ReportsAPhotoThatALaterOneOfItsNameWasWrittenOver) {
  FileRow first = rewritten("1.jpg", 1);
  FileRow copy = copied("2.jpg", "two");
  FileRow second = rewritten("3.jpg", 2);
  first.target = copy.target = second.target;
  rows = {first, copy, second};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(first.source, "written over it"),
                                    IsAtRisk(copy.source, "written over it")));
}

TEST_F(VerifyTest, ComparesWhatHasATakenNameWithWhatIsThere) {
  const FileRow same = withTarget(rowOf(Outcome::exists, "1.jpg", "one"), "1.jpg", "one");
  const FileRow other = withTarget(rowOf(Outcome::exists, "2.jpg", "two"), "2.jpg", "Two");
  const FileRow taken = withTarget(rowOf(Outcome::nameTaken, "3.jpg", "three"), "2.jpg", "Two");
  rows = {same, other, taken};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(other.source, "another file has its name"),
                                    IsAtRisk(taken.source, "another file has its name")));
}

TEST_F(VerifyTest, AcceptsAPhotoThatAnEarlierRunRewrote) {
  const FileRow row = withTarget(rowOf(Outcome::exists, "1.jpg", "large"), "1.jpg", "sma");
  rows = {row};
  request.isRewrittenInTarget = [&](const Path& photo) { return photo == row.source; };
  EXPECT_THAT(verify(), IsEmpty());
}

TEST_F(VerifyTest, TakesNoNameOfTheSourceItselfForACopy) {
  FileRow row = rowOf(Outcome::exists, "1.jpg", "one");
  fs::create_directories(tree);
  fs::create_symlink(row.source, tree / "1.jpg");
  row.target = "1.jpg";
  rows = {row};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(row.source, "the file itself")));
}

TEST_F(VerifyTest, ComparesADuplicateToItsLastByteWithWhatStandsForIt) {
  const FileRow original = copied("1.jpg", "the same");
  const FileRow same = setAsideFor(original, rowOf(Outcome::duplicate, "2.jpg", "the same"));
  const FileRow other = setAsideFor(original, rowOf(Outcome::sameContent, "3.jpg", "the sane"));
  rows = {same, other, original};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(other.source, "differs from what stands for it")));
}

TEST_F(VerifyTest, ComparesADuplicateOfARewrittenPhotoWithTheOriginal) {
  const FileRow original = rewritten("1.jpg");
  FileRow same = original;
  same.verdict = Outcome::duplicate;
  same.target.reset();
  same.original = original.source;
  same.source = writeFile(card / "same.jpg", test::readFile(original.source));
  FileRow other = same;
  other.source = writeFile(card / "other.jpg", test::readFile(original.source) + "more");
  rows = {same, other, original};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(other.source, "differs from what stands for it")));
  writeFile(tree / "1.jpg", "damaged");
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(same.source, "no longer what the run wrote"),
                                    IsAtRisk(other.source, "differs from what stands for it"),
                                    IsAtRisk(original.source, "no longer what the run wrote")));
}

TEST_F(VerifyTest, ReportsADuplicateOfWhatIsNotInTheTarget) {
  FileRow original = rowOf(Outcome::failed, "1.jpg", "one");
  original.reason = "Input/output error";
  FileRow duplicate = rowOf(Outcome::duplicate, "2.jpg", "one");
  duplicate.original = original.source;
  FileRow orphan = rowOf(Outcome::duplicate, "3.jpg", "one");
  rows = {duplicate, orphan, original};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(duplicate.source, "is not in the target"),
                                    IsAtRisk(orphan.source, "nothing stands for it"),
                                    IsAtRisk(original.source, "Input/output error")));
}

TEST_F(VerifyTest, LeavesTheUsersOwnChoiceAlone) {
  const FileRow small = rowOf(Outcome::small, "1.jpg", "s");
  const FileRow duplicate = setAsideFor(small, rowOf(Outcome::duplicate, "2.jpg", "s"));
  const FileRow other = setAsideFor(small, rowOf(Outcome::duplicate, "3.jpg", "S"));
  rows = {duplicate, other, small};
  EXPECT_THAT(verify(), ElementsAre(IsAtRisk(other.source, "differs")));
}

TEST_F(VerifyTest, CountsWhatWasNeitherReadNorReached) {
  FileRow unreadable = rowOf(Outcome::unreadable, "1.jpg", "one");
  unreadable.reason = "Input/output error";
  const FileRow notReached = rowOf(Outcome::notReached, "2.jpg", "four");
  rows = {unreadable, notReached};
  const VerifyResult result = verifyRun(request).value();
  EXPECT_THAT(result.atRisk, ElementsAre(IsAtRisk(unreadable.source, "Input/output error"),
                                         IsAtRisk(notReached.source, "not reached")));
  EXPECT_FALSE(result.atRisk[0].isReadable);
  EXPECT_EQ(result.amount.files, 2);
  EXPECT_EQ(result.amount.bytes, 7);
}

TEST_F(VerifyTest, TellsHowFarItIs) {
  rows = {copied("1.jpg", "one"), copied("2.jpg", "four")};
  std::vector<std::int64_t> done;
  request.progress = [&](const WorkProgress& progress) {
    EXPECT_EQ(progress.total.bytes, 7);
    done.push_back(progress.done.bytes);
  };
  verify();
  EXPECT_THAT(done, ElementsAre(3, 7));
}

TEST_F(VerifyTest, EndsBetweenTwoFilesWhenItIsStopped) {
  rows = {copied("1.jpg", "one"), copied("2.jpg", "two")};
  request.stopped = [this] { return !told.empty(); };
  EXPECT_TRUE(verifyRun(request).value().wasStopped);
  EXPECT_EQ(told.size(), 1U);
}

TEST_F(VerifyTest, SaysWhyTheRowsCannotBeRead) {
  request.rows = [&](const auto& visit) { return readRows(folder / "missing", visit); };
  EXPECT_EQ(verifyRun(request).error().code, ENOENT);
}

}  // namespace

}  // namespace kestrova::report
