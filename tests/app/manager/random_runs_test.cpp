#include "platform/dry_run_files.h"
#include "platform/main_queue.h"
#include "report/run_folder.h"
#include "support/failing_file_manager.h"
#include "support/folder_state.h"
#include "support/headless_program.h"
#include "support/random_tree.h"

#include <map>
#include <random>

#include <gmock/gmock.h>

// What holds of the record of every run, whatever the tree, the options, the target, the faults and the
// moment of a stop. The test's number is the seed.

namespace kestrova {

namespace {

using report::FileRow;
using report::Row;
using testing::IsEmpty;

void chooseOptions(MainInterface& controls, unsigned seed) {
  std::mt19937 random(seed);
  controls.comboCopy->chooseItem(static_cast<int>(random() % 3));
  controls.comboPhotoFormats->chooseItem(static_cast<int>(random() % 3));
  controls.comboFolderFormat->chooseItem(static_cast<int>(random() % 3));
  controls.comboResolution->chooseItem(static_cast<int>(random() % 3));
  controls.chkRotate->setState(random() % 2);
  controls.chkFilterSmallPhotos->setState(random() % 3 == 0);
  controls.chkFilterSmallVideos->setState(random() % 3 == 0);
}

class RandomRuns : public testing::TestWithParam<unsigned> {
 protected:
  RandomRuns() {
    const auto tree = test::writeRandomTree(in, GetParam());
    for (std::size_t i = GetParam() % 3; i < tree.size(); i += 4) {
      test::writeFile(out / tree[i].targetName(), "was here");
    }
  }

  /// A run over the tree; its rows in their order.
  std::vector<Row> run(test::HeadlessProgram& program) {
    std::vector<Row> rows;
    chooseOptions(*program.interface, GetParam());
    program.manager().rowListener = [&rows](const Row& row) { rows.push_back(row); };
    program.manager().addSource(in);
    program.manager().setTarget(out);
    program.press(program.interface->buttonStart);
    program.waitUntilEnded();
    return rows;
  }

  std::mt19937 random_{GetParam() + 1000};
  test::TemporaryFolder root;
  Path in = root / "in";
  Path out = root / "out";
};

/// The row without what only writing can tell.
std::string asPlanned(Row row) {
  if (auto* file = std::get_if<FileRow>(&row)) {
    file->targetSize.reset();
    file->targetModified.clear();
    file->targetSha256.clear();
  }
  return report::lineOf(row);
}

std::vector<std::string> asPlanned(const std::vector<Row>& rows) {
  std::vector<std::string> lines;
  for (const Row& row : rows) lines.push_back(asPlanned(row));
  return lines;
}

}  // namespace

TEST_P(RandomRuns, DoWhatADryRunSaid) {
  const auto before = test::stateOf(root.path());
  const auto files = std::make_shared<DryRunFiles>(systemFileManager());
  test::HeadlessProgram rehearsal{files};
  const auto said = run(rehearsal);
  EXPECT_THAT(test::changes(before, test::stateOf(root.path())), IsEmpty());

  test::HeadlessProgram program;
  program.clock = rehearsal.clock;
  const auto done = run(program);
  EXPECT_EQ(asPlanned(done), asPlanned(said));
  EXPECT_GT(done.size(), 5U);

  std::map<Path, std::uint64_t> written;
  for (const Row& row : done) {
    const auto* file = std::get_if<FileRow>(&row);
    if (file != nullptr && file->targetSize) written[*file->target] = *file->targetSize;
  }
  std::uint64_t bytes = 0;
  for (const auto& [name, size] : written) bytes += size;
  EXPECT_EQ(files->writtenBytes(), bytes);
}

TEST_P(RandomRuns, SayTheSameWithSeveralJobs) {
  const auto rehearse = [this](std::size_t jobs) {
    test::HeadlessProgram rehearsal{std::make_shared<DryRunFiles>(systemFileManager()),
                                    volatileUserDefaults(), jobs};
    rehearsal.clock = [] { return Date{.seconds = 1400680000}; };
    std::vector<std::string> lines = asPlanned(run(rehearsal));
    for (const QString& line : rehearsal.log.lines()) lines.push_back(line.toStdString());
    return lines;
  };
  const auto said = rehearse(1);
  EXPECT_EQ(rehearse(2), said);
  EXPECT_EQ(rehearse(8), said);
}

TEST_P(RandomRuns, AreRecordedToTheLastFile) {
  const auto files = std::make_shared<test::FailingFileManager>();
  test::HeadlessProgram program{files};
  const auto now = [this](unsigned times) { return random_() % times == 0; };
  const auto fault = [&](const auto&...) -> test::FailingFileManager::Failure {
    return now(12) ? std::optional(FileError{EIO, "on purpose"}) : std::nullopt;
  };
  const unsigned lastCopy = GetParam() % 3 == 0 ? 1000 : GetParam() % 17;
  files->onStageCopy = [&, count = 0U](const Path& from, const Path& to) mutable {
    if (++count == lastCopy) postToMainQueue([&program] { program.manager().stopProcess(); });
    return fault(from, to);
  };
  files->onRead = files->onAttributes = files->onEntryAttributes = files->onOpenFolder = files->onListed =
      fault;
  files->onCommit = files->onCreateDirectory = fault;

  std::map<Outcome, std::int64_t> outcomes;
  std::map<Outcome, std::int64_t> counted;
  program.manager().verdictListener = [&](const Verdict& verdict) {
    ++outcomes[verdict.outcome];
    ++counted[verdict.counted()];
  };
  std::map<Outcome, std::int64_t> rows;
  std::map<Path, int> rowsOfFile;
  for (const Row& row : run(program)) {
    if (const auto* file = std::get_if<FileRow>(&row)) {
      ++rows[file->verdict];
      ++rowsOfFile[file->source];
    }
  }
  EXPECT_EQ(rows, outcomes);
  for (const auto& [source, count] : rowsOfFile) EXPECT_EQ(count, 1) << source;

  const OrganiseManager& manager = program.manager();
  EXPECT_EQ(manager.tTotalCount,
            counted[Outcome::copied] + counted[Outcome::resized] + counted[Outcome::rewritten]);
  EXPECT_EQ(manager.sDuplicateCount, counted[Outcome::duplicate]);
  EXPECT_EQ(manager.tAlreadyCount, counted[Outcome::exists]);
  EXPECT_EQ(manager.tFilteredCount, counted[Outcome::small]);
  EXPECT_EQ(manager.targetExistCount, counted[Outcome::nameTaken]);

  const Path record = program.runs / report::runIds(program.runs).at(0);
  const auto info = report::readRunInfo(*systemFileManager(), record);
  ASSERT_TRUE(info);
  EXPECT_FALSE(info->result.empty());
  for (const auto& [verdict, count] : rows) {
    const auto word = QString::fromStdString(std::string(traitsOf(verdict).word));
    EXPECT_EQ(info->counts[word][QLatin1String("files")].toInteger(), count) << word.toStdString();
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomRuns, testing::Range(0U, 12U));

}  // namespace kestrova
