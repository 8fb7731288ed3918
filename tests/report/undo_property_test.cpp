#include "report/discard.h"
#include "report/run_folder.h"
#include "report/undo.h"
#include "support/headless_program.h"
#include "support/random_tree.h"

#include <map>
#include <random>
#include <set>

#include <gtest/gtest.h>

// A run, disturbed at random and then taken back, loses nothing.

namespace kestrova::report {

namespace {

namespace fs = std::filesystem;
using Files = std::vector<Path>;

Files filesBelow(const Path& folder) {
  Files files;
  for (const std::string& name : test::filesBelow(folder)) files.push_back(folder / name);
  return files;
}

/// The sums of all files that can be read.
std::set<std::string> contentsOf(const Path& folder) {
  std::set<std::string> sums;
  for (const Path& file : filesBelow(folder)) {
    if (const auto sum = sha256Of(file)) sums.insert(*sum);
  }
  return sums;
}

class UndoProperty : public testing::TestWithParam<unsigned> {
 protected:
  UndoProperty() : random_(GetParam()), program_(systemFileManager()) {
    test::writeRandomTree(program_.source, GetParam());
    auto& controls = *program_.interface;
    controls.comboPhotoFormats->chooseItem(static_cast<int>(random_() % 3));
    controls.comboResolution->chooseItem(static_cast<int>(random_() % 3));
    controls.comboFolderFormat->chooseItem(2);
    program_.manager().rowListener = [this](const Row& row) {
      lines_ += lineOf(row);
      if (const auto* file = std::get_if<FileRow>(&row)) rows_.push_back(*file);
    };
  }

  void organise() {
    program_.run();
    test::writeFile(record_, lines_);
  }

  void disturb(const Path& folder) {
    const Files files = filesBelow(folder);
    for (const Path& file : files) {
      if (random_() % 3 == 0) disturb(file, files[random_() % files.size()]);
    }
  }

  void disturb(const Path& file, const Path& other) {
    std::error_code ignored;
    if (!fs::exists(file)) return;  // moved by another disturbance
    const auto time = fs::last_write_time(file, ignored);
    switch (random_() % 7) {
      case 0:  // edited, and longer
        test::writeFile(file, test::readFile(file) + "edited");
        break;
      case 1:  // edited in place, with its time put back
        test::writeFile(file, std::string(test::readFile(file).size(), 'e'));
        fs::last_write_time(file, time, ignored);
        break;
      case 2:
        fs::remove(file, ignored);
        break;
      case 3:  // replaced by another
        if (fs::exists(other)) test::writeFile(file, test::readFile(other));
        break;
      case 4:
        fs::last_write_time(file, fs::file_time_type::clock::now(), ignored);
        break;
      case 5:  // moved away, a link in its place
        fs::rename(file, file.native() + ".moved", ignored);
        fs::create_symlink(file.native() + ".moved", file, ignored);
        break;
      default:  // a stranger beside it
        test::writeFile(file.native() + ".stranger", "stranger " + std::to_string(random_()));
        break;
    }
  }

  UndoResult undo(const Stopped& stopped = {}) {
    return undoRun({.rows = record_, .target = program_.target, .discard = deleteFile, .stopped = stopped},
                   *systemFileManager())
        .value();
  }

  /// What the run made of a photo that is still there: it can be made again.
  std::set<std::string> remakable(const std::set<std::string>& sources) const {
    std::set<std::string> sums;
    for (const FileRow& row : rows_) {
      if (sources.contains(row.sourceSha256)) sums.insert(row.targetSha256);
    }
    return sums;
  }

  std::mt19937 random_;
  test::HeadlessProgram program_;
  test::TemporaryFolder folder_;
  const Path record_ = folder_ / "report.ndjson";
  std::string lines_;
  std::vector<FileRow> rows_;
};

}  // namespace

TEST_P(UndoProperty, LosesNoContentThatIsNotInASource) {
  organise();
  disturb(program_.target);
  disturb(program_.source);
  const auto before = contentsOf(program_.target);
  const auto sources = contentsOf(program_.source);
  const auto canBeRemade = remakable(sources);
  // Interrupted somewhere first.
  undo([left = random_() % 20]() mutable { return left-- == 0; });
  undo();
  EXPECT_EQ(contentsOf(program_.source), sources);
  const auto after = contentsOf(program_.target);
  for (const std::string& content : before) {
    EXPECT_TRUE(after.contains(content) || sources.contains(content) || canBeRemade.contains(content))
        << content;
  }
}

TEST_P(UndoProperty, LeavesNothingOfARunThatNobodyDisturbed) {
  organise();
  test::writeFile(program_.target / "mine.jpg", "mine");
  const UndoResult result = undo();
  EXPECT_TRUE(result.refused.empty()) << result.refused.front().reason;
  EXPECT_EQ(test::filesBelow(program_.target), std::vector<std::string>{"mine.jpg"});
  for (const auto& entry : fs::recursive_directory_iterator(program_.target))
    EXPECT_FALSE(entry.is_directory()) << entry.path();
}

INSTANTIATE_TEST_SUITE_P(Seeds, UndoProperty, testing::Range(1U, 31U));

}  // namespace kestrova::report
