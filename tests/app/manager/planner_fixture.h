#pragma once

#include "support/failing_file_manager.h"
#include "support/gate.h"
#include "support/headless_program.h"
#include "support/sample_media.h"

#include <string>

#include <gtest/gtest.h>

namespace kestrova::test {

/// A program whose runs name targets in the short folder format.
class PlannerTest : public testing::Test {
 protected:
  PlannerTest() { controls().comboFolderFormat->chooseItem(2); }

  Path writeJpeg(const char* name, const SamplePhoto& photo) {
    return writeFile(program.source / name, ByteView(jpegPhoto(photo)));
  }
  Path writeJpeg(const char* name, const SamplePhoto& photo, std::size_t size) {
    return writeFile(program.source / name, ByteView(paddedJpeg(jpegPhoto(photo), size)));
  }
  /// Last modified at the beginning of 2015.
  Path writeVideo(const char* name, std::size_t size) {
    const Path path = writePhoto(program.source / name, size);
    setModified(path, "2015:01:01 00:00:00");
    return path;
  }
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }

  std::shared_ptr<FailingFileManager> files = std::make_shared<FailingFileManager>();
  HeadlessProgram program{files};
};

/// The source's size between two parts of its target's name.
inline std::string nameOf(const Path& source, const char* prefix, const char* extension) {
  return prefix + std::to_string(std::filesystem::file_size(source)) + extension;
}

}  // namespace kestrova::test
