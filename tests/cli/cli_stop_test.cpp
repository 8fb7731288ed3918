#include "cli/cli_folders.h"

#include <csignal>
#include <thread>

#include <gmock/gmock.h>

// Runs that a signal stops.

namespace kestrova::test {

namespace {

/// So many that a run over them can be stopped before it ends.
constexpr std::size_t manyFiles = 600;

std::string contentsOfSize(std::size_t size) { return std::string(size, static_cast<char>('a' + size % 26)); }

void writeManyFiles(const Path& folder) {
  for (std::size_t size = 1; size <= manyFiles; ++size) {
    writeDatedFile(folder / (std::to_string(size) + ".jpg"), contentsOfSize(size));
  }
}

void waitForFirstFile(Process& process, const Path& folder) {
  while (filesBelow(folder).empty() && process.isRunning()) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

void expectWholeFiles(const Path& folder) {
  for (const auto& name : filesBelow(folder)) {
    const std::string contents = readFile(folder / name);
    EXPECT_EQ(name, photoName(contents.size()));
    EXPECT_EQ(contents, contentsOfSize(contents.size()));
  }
}

/// The parameter is the signal.
class CliStop : public testing::TestWithParam<int> {};

}  // namespace

TEST_P(CliStop, FinishesTheCurrentFileAndGoesOnWithTheNextRun) {
  const Folders folders;
  writeManyFiles(folders.in);
  Process process(commandOf(folders.organising({"--json"})), inUtc);
  waitForFirstFile(process, folders.out);
  process.send(GetParam());
  process.send(GetParam());
  const auto result = process.wait();
  EXPECT_EQ(result.status, 130);
  const QJsonObject summary = jsonIn(result);
  EXPECT_EQ(summary[QLatin1String("status")].toString(), QStringLiteral("Stopped"));
  const auto written = filesBelow(folders.out).size();
  EXPECT_LT(written, manyFiles);
  EXPECT_EQ(static_cast<std::size_t>(totalFiles(summary, "written")), written);
  EXPECT_EQ(static_cast<std::size_t>(files(summary, "notReached")), manyFiles - written);
  expectWholeFiles(folders.out);

  EXPECT_EQ(folders.organise().status, 0);
  EXPECT_EQ(filesBelow(folders.out).size(), manyFiles);
  expectWholeFiles(folders.out);
}

INSTANTIATE_TEST_SUITE_P(Signals, CliStop, testing::Values(SIGINT, SIGTERM));

}  // namespace kestrova::test
