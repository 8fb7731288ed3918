#include "execution/photo_preparation.h"

#include "support/failing_file_manager.h"
#include "support/sample_media.h"
#include "support/stop_counter.h"
#include "support/temporary_folder.h"
#include "support/text_bytes.h"

#include <gmock/gmock.h>

namespace kestrova {

namespace {

using test::filesBelow;
using testing::ElementsAre;

struct PhotoPreparation : testing::Test {
  PhotoPreparation() {
    test::writeFile(source, test::textOf(test::jpegPhoto({.width = 64, .height = 48, .orientation = 6})));
  }

  PhotoResult prepare(imaging::Stopped stopped) {
    return preparePhoto(files, {.from = source,
                                .to = target,
                                .size = 1000,
                                .wishes = {.upright = true},
                                .stopped = std::move(stopped)})
        .map(nameReplacing);
  }

  const test::TemporaryFolder root;
  const Path source = root / "source.jpg";
  const Path target = root / "target.jpg";
  test::FailingFileManager files;
};

}  // namespace

TEST_F(PhotoPreparation, GivesUpWheneverItIsToldTo) {
  test::StopCounter never;
  ASSERT_TRUE(prepare(never.stopped()));
  std::filesystem::remove(target);
  for (int call = 1; call <= never.asked(); ++call) {
    test::StopCounter counter(call);
    const auto photo = prepare(counter.stopped());
    ASSERT_FALSE(photo) << call;
    EXPECT_TRUE(photo.error().isInterrupted);
  }
  EXPECT_THAT(filesBelow(root.path()), ElementsAre("source.jpg"));
}

// Summing a photo of a gigabyte takes most of a second.
TEST_F(PhotoPreparation, AsksOnceMoreBeforeThePhotoIsWritten) {
  const std::string photo = test::readFile(source);
  test::StopCounter whileRewriting;
  ASSERT_TRUE(rewritingOf(test::viewOf(photo), {.upright = true}, whileRewriting.stopped()));
  test::StopCounter inAll;
  ASSERT_TRUE(prepare(inAll.stopped()));
  EXPECT_EQ(inAll.asked(), whileRewriting.asked() + 1);
}

}  // namespace kestrova
