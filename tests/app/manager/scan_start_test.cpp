#include "support/headless_program.h"

#include <gtest/gtest.h>

// What a scan resets before it looks at the first file.

namespace kestrova {

namespace {

using test::writePhoto;

class ScanStart : public testing::Test {
 protected:
  OrganiseManager& manager() { return program.manager(); }
  MainInterface& controls() { return *program.interface; }
  test::HeadlessProgram program;
};

struct NamedCounter {
  const char* name;
  Counter OrganiseManager::*counter;
};

struct NamedLabel {
  const char* name;
  std::shared_ptr<TextField> label;
};

#define COUNTER(name) \
  { #name, &OrganiseManager::name }
#define LABEL(name) \
  { #name, controls().name }

constexpr NamedCounter everyCounter[] = {
    COUNTER(sPhotoCount),  COUNTER(sPhotoSize),    COUNTER(sVideoCount),     COUNTER(sVideoSize),
    COUNTER(sTotalCount),  COUNTER(sTotalSize),    COUNTER(sDuplicateSize),  COUNTER(sDuplicateCount),
    COUNTER(tPhotoCount),  COUNTER(tPhotoSize),    COUNTER(tVideoCount),     COUNTER(tVideoSize),
    COUNTER(tTotalCount),  COUNTER(tTotalSize),    COUNTER(tAlreadyCount),   COUNTER(tAlreadySize),
    COUNTER(tRotatedSize), COUNTER(tRotatedCount), COUNTER(tFilteredCount),  COUNTER(tFilteredSize),
    COUNTER(targetCount),  COUNTER(targetSize),    COUNTER(targetExistCount)};

}  // namespace

TEST_F(ScanStart, SetsEveryCounterTo0) {
  for (const auto& [name, counter] : everyCounter) manager().*counter = 7;
  program.run();
  for (const auto& [name, counter] : everyCounter) EXPECT_EQ(manager().*counter, 0) << name;
}

TEST_F(ScanStart, EmptiesTheLabelsOfTheLastRun) {
  const std::vector<NamedLabel> labels{
      LABEL(lblDuplicateCount), LABEL(lblDuplicateSize),       LABEL(lblPhotoCount),
      LABEL(lblPhotoSize),      LABEL(lblSourceCount),         LABEL(lblSourceDuplicates),
      LABEL(lblSourceSize),     LABEL(lblSourceDuplicateSize), LABEL(trgExistCount),
      LABEL(trgExistSize),      LABEL(trgPhotoCount),          LABEL(trgPhotoSize),
      LABEL(trgRotatedCount),   LABEL(trgRotatedSize),         LABEL(trgTotalCount),
      LABEL(trgTotalSize),      LABEL(trgVideoCount),          LABEL(trgVideoSize),
      LABEL(trgFilteredCount),  LABEL(trgFilteredSize)};
  for (const auto& [name, label] : labels) label->setStringValue(QStringLiteral("old"));
  program.run();
  for (const auto& [name, label] : labels) EXPECT_EQ(label->stringValue(), QString()) << name;
}

TEST_F(ScanStart, LeavesTheLabelsThatKeepTheLastRunsNumbers) {
  const std::vector<NamedLabel> labels{LABEL(lblVideoCount),      LABEL(lblVideoSize),   LABEL(lblTotalCount),
                                       LABEL(lblTotalSize),       LABEL(lblTargetCount), LABEL(lblTargetSize),
                                       LABEL(lblTargetExistCount)};
  for (const auto& [name, label] : labels) label->setStringValue(QStringLiteral("old"));
  program.run();
  for (const auto& [name, label] : labels) EXPECT_EQ(label->stringValue(), QStringLiteral("old")) << name;
}

TEST_F(ScanStart, ForgetsTheFilesOfTheLastRun) {
  writePhoto(program.source / "a.jpg", 1000, 'a');
  const Path copy = writePhoto(program.source / "copy of a.jpg", 1000, 'a');
  const Path other = writePhoto(program.source / "other.jpg", 1000, 'b');
  program.run();
  ASSERT_EQ(manager().fileList.size(), 2U);
  ASSERT_EQ(manager().hashList.size(), 1U);
  ASSERT_EQ(manager().duplicateList.size(), 1U);
  std::filesystem::remove(program.source / "a.jpg");
  std::filesystem::remove(copy);
  program.run();
  ASSERT_EQ(manager().fileList.size(), 1U);
  EXPECT_EQ(manager().fileList[0].path, other.native());
  EXPECT_TRUE(manager().hashList.empty());
  EXPECT_TRUE(manager().duplicateList.empty());
}

#undef COUNTER
#undef LABEL

}  // namespace kestrova
