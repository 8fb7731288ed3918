#include "support/failing_file_manager.h"
#include "support/headless_program.h"
#include "support/sample_media.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

/// Operations on a file that may have changed since it was planned.
class PlannedSourceFile : public testing::Test {
 protected:
  PlannedSourceFile() {
    manager().processQueue = std::make_shared<OperationQueue>();
    manager().verdictListener = [this](const Verdict& verdict) { verdicts.push_back(verdict); };
  }
  OrganiseManager& manager() { return program.manager(); }
  /// What the plan would know about the photo as it is.
  PlannedSource asItIs() const {
    const auto now = systemFileManager()->attributesOfItem(photo).value();
    return {.size = now.size, .modified = now.modified};
  }
  OperationRecord recordWith(const PlannedSource& planned) {
    return recordOf({.from = photo, .to = to, .planned = planned}, operation);
  }
  void expectFailure() {
    EXPECT_FALSE(std::filesystem::exists(to));
    ASSERT_EQ(verdicts.size(), 1U);
    EXPECT_EQ(verdicts[0].outcome, Outcome::failed);
    EXPECT_EQ(verdicts[0].error, "the file has changed since the run was planned");
    EXPECT_FALSE(manager().haserror);
    EXPECT_EQ(manager().tTotalCount, 0);
  }

  test::HeadlessProgram program;
  const Path photo = test::writeFile(program.source / "a.jpg", ByteView(test::jpegPhoto({})));
  const Path to = program.target / "2014" / "A.JPG";
  std::shared_ptr<InvocationOperation> operation = std::make_shared<InvocationOperation>();
  std::vector<Verdict> verdicts;
};

}  // namespace

TEST_F(PlannedSourceFile, IsCopiedWhenItIsStillTheSame) {
  manager().copyOperation(recordWith(asItIs()));
  EXPECT_TRUE(std::filesystem::exists(to));
  EXPECT_EQ(verdicts.at(0).outcome, Outcome::copied);
}

TEST_F(PlannedSourceFile, IsNotCopiedWhenItsSizeDiffers) {
  PlannedSource planned = asItIs();
  ++planned.size;
  manager().copyOperation(recordWith(planned));
  expectFailure();
}

TEST_F(PlannedSourceFile, IsNotCopiedWhenItsTimeDiffers) {
  PlannedSource planned = asItIs();
  ++planned.modified->seconds;
  manager().copyOperation(recordWith(planned));
  expectFailure();
}

TEST_F(PlannedSourceFile, IsNotRewrittenWhenItDiffersAndTheRunGoesOn) {
  PlannedSource planned = asItIs();
  ++planned.modified->seconds;
  manager().resizeOperation(recordWith(planned));
  expectFailure();
}

}  // namespace kestrova
