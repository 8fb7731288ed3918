#pragma once

#include "support/temporary_folder.h"

#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova::test {

/// Uses the real photos, including odd and broken ones, below the folder that the environment variable
/// KESTROVA_CORPUS names. Its tests are skipped if it is not set.
class RealPhotosTest : public testing::Test {
 protected:
  RealPhotosTest() {
    const char* const named = std::getenv("KESTROVA_CORPUS");
    if (named != nullptr) corpus_ = named;
  }

  void SetUp() override {
    if (corpus_.empty()) GTEST_SKIP() << "KESTROVA_CORPUS names no folder of real photos";
    ASSERT_FALSE(photos().empty()) << "no photos below " << corpus_;
  }

  const Path& corpus() const { return corpus_; }

  std::vector<Path> photos() const {
    std::vector<Path> found;
    for (const auto& name : filesBelow(corpus_)) {
      if (!name.ends_with(".md")) found.push_back(corpus_ / name);
    }
    return found;
  }

 private:
  Path corpus_;
};

}  // namespace kestrova::test
