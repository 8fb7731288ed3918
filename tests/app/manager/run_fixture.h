#pragma once

#include "support/failing_file_manager.h"
#include "support/gate.h"
#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova::test {

/// A program with five photos in its source, whose runs can be held at a gate in each stage.
class RunTest : public testing::Test {
 protected:
  void SetUp() override {
    for (char name = 'a'; name <= 'e'; ++name) {
      const Path photo =
          writePhoto(program.source / (std::string(1, name) + ".jpg"), static_cast<std::size_t>(1000 + name));
      test::setModified(photo, "2015:01:01 00:00:00");
    }
  }
  void start() {
    program.chooseFolders();
    program.press(controls().buttonStart);
  }
  /// Starts, and returns when the first copy waits at the gate and the window is up to date.
  void startAndHoldFirstCopy() {
    files->onStageCopy = [this](const Path&, const Path&) -> std::optional<FileError> {
      copying.pass();
      return std::nullopt;
    };
    start();
    program.waitUntil([this] { return copying.isReached(); });
    program.settle();
  }
  /// The same, with the scan waiting at the first file that it reads, or the planner at its first photo.
  void startAndHoldScan() { startAndHoldRead(1, scanning); }
  void startAndHoldPlanning() { startAndHoldRead(2, planning); }
  void startAndHoldRead(int stage, Gate& gate) {
    files->onRead = [this, stage, &gate](const Path&) -> std::optional<FileError> {
      if (manager().appStatus == stage) gate.pass();
      return std::nullopt;
    };
    start();
    program.waitUntil([&gate] { return gate.isReached(); });
    program.settle();
  }
  QString startTitle() { return controls().buttonStart->title(); }
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }
  OperationQueue& queue() { return *manager().processQueue; }

  std::shared_ptr<test::FailingFileManager> files = std::make_shared<test::FailingFileManager>();
  Gate copying;
  Gate planning;
  Gate scanning;
  test::HeadlessProgram program{files};
};

}  // namespace kestrova::test
