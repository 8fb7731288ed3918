#include "support/failing_file_manager.h"
#include "support/gate.h"
#include "support/headless_program.h"

#include <atomic>
#include <chrono>
#include <thread>

#include <gtest/gtest.h>

namespace kestrova {

TEST(WorkAheadPause, BeginsNoFileUntilTheRunGoesOn) {
  constexpr int jobs = 2;
  constexpr std::size_t count = 20;
  test::Gate gate;
  std::atomic<int> begun = 0;
  const auto files = std::make_shared<test::FailingFileManager>();
  files->onStageCopy = [&](const Path&, const Path&) -> test::FailingFileManager::Failure {
    ++begun;
    gate.pass();
    return std::nullopt;
  };
  test::HeadlessProgram program{files, volatileUserDefaults(), jobs};
  for (std::size_t i = 0; i < count; ++i)
    test::writePhoto(program.source / (std::to_string(i) + ".jpg"), 100 + i);
  program.chooseFolders();
  program.press(program.interface->buttonStart);
  program.waitUntil([&] { return begun >= jobs; });
  program.press(program.interface->buttonStart);
  gate.open();
  program.waitUntil([&] { return program.manager().processQueue->executingCount() == 0; });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));  // for what must not happen
  EXPECT_LE(begun, jobs + 1) << "besides the files under way";
  program.press(program.interface->buttonStart);
  program.waitUntilEnded();
  EXPECT_EQ(program.targetFiles().size(), count);
}

}  // namespace kestrova
