#include "support/process.h"
#include "support/temporary_folder.h"

#include <chrono>
#include <fstream>
#include <stop_token>
#include <thread>

#include <gmock/gmock.h>

// Runs of the real program while another writes to a source.

namespace kestrova::test {

namespace {

/// Appends to a file until it is destroyed.
class Writer {
 public:
  explicit Writer(const Path& path)
      : thread_([path](const std::stop_token& stop) {
          std::ofstream file(path, std::ios::app | std::ios::binary);
          while (!stop.stop_requested()) {
            file << "more" << std::flush;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
          }
        }) {}

 private:
  std::jthread thread_;
};

}  // namespace

TEST(CliGrowingSource, IsLeftToTheNextRun) {
  const TemporaryFolder root;
  for (std::size_t i = 1; i <= 100; ++i)
    writeFile(root / "in" / (std::to_string(i) + ".mov"), std::string(i, 'a'));
  const Path growing = writeFile(root / "in/growing.mov", std::string(1000, 'b'));
  const std::vector<std::string> command{KESTROVA_CLI, "organise", root / "in", "--to", root / "out"};
  {
    const Writer writer(growing);
    const ProcessResult result = runProcess(command);
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err, "kestrova-cli: not written: " + growing.native() +
                              ": the file has changed since the run was planned\n");
    EXPECT_EQ(filesBelow(root / "out").size(), 100U);
  }
  EXPECT_EQ(runProcess(command).status, 0);
  const auto names = filesBelow(root / "out");
  ASSERT_EQ(names.size(), 101U);
  const std::string size = '_' + std::to_string(std::filesystem::file_size(growing)) + ".MOV";
  EXPECT_THAT(names, testing::Contains(testing::EndsWith(size)));
}

}  // namespace kestrova::test
