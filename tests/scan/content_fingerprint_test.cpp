#include "scan/content_fingerprint.h"

#include "support/headless_program.h"

#include <gtest/gtest.h>

namespace kestrova {

namespace {

const std::string fingerprintOfNothing = "d41d8cd98f00b204e9800998ecf8427e";

class ContentFingerprint : public testing::Test {
 protected:
  std::string fingerprint(const Path& path) {
    return program.manager().hashData(program.manager().read10KFromFile(path));
  }
  test::HeadlessProgram program;
};

}  // namespace

TEST_F(ContentFingerprint, IsTheMd5OfAFilesBytes) {
  EXPECT_EQ(fingerprint(test::writeFile(program.folder / "abc", "abc")), "900150983cd24fb0d6963f7d28e17f72");
}

TEST_F(ContentFingerprint, OfAnEmptyAndOfAMissingFileIsThatOfNoBytes) {
  EXPECT_EQ(fingerprint(test::writeFile(program.folder / "empty", "")), fingerprintOfNothing);
  EXPECT_EQ(fingerprint(program.folder / "missing"), fingerprintOfNothing);
  EXPECT_FALSE(program.manager().read10KFromFile(program.folder / "missing").has_value());
}

TEST_F(ContentFingerprint, DoesNotSeeADifferenceAfterTheFirst40960Bytes) {
  std::string contents(100000, 'x');
  const Path original = test::writeFile(program.folder / "a", contents);
  contents.back() = 'y';
  const Path changed = test::writeFile(program.folder / "b", contents);
  EXPECT_EQ(fingerprint(original), fingerprint(changed));
  contents[40959] = 'z';
  EXPECT_NE(fingerprint(original), fingerprint(test::writeFile(program.folder / "c", contents)));
}

TEST_F(ContentFingerprint, IsTheSameForFilesOf40960And40961EqualBytes) {
  const Path shorter = test::writeFile(program.folder / "a", std::string(40960, 'x'));
  const Path longer = test::writeFile(program.folder / "b", std::string(40961, 'x'));
  EXPECT_EQ(fingerprint(shorter), fingerprint(longer));
}

TEST_F(ContentFingerprint, ReadsAtMost40960Bytes) {
  EXPECT_EQ(program.manager()
                .read10KFromFile(test::writeFile(program.folder / "a", std::string(50000, 'x')))
                ->size(),
            40960U);
  EXPECT_EQ(program.manager().read10KFromFile(test::writeFile(program.folder / "b", "abc"))->size(), 3U);
}

}  // namespace kestrova
