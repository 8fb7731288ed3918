#pragma once

#include "support/sample_media.h"
#include "window_fixture.h"

#include <atomic>
#include <semaphore>

namespace kestrova::test {

/// A window with an album of two photos, a copy of one of them and a film.
class ARun : public WindowTest {
 protected:
  ~ARun() override { letGo(); }

  void writeAlbum() {
    writeFile(folder / "in/a.jpg", jpegPhoto({.seed = 1, .digitized = "2014:05:21 13:45:02"}));
    writeFile(folder / "in/again.jpg", jpegPhoto({.seed = 1, .digitized = "2014:05:21 13:45:02"}));
    writeFile(folder / "in/b.jpg", jpegPhoto({.seed = 2, .digitized = "2014:05:22 08:00:00"}));
    writeFile(folder / "in/c.mp4", videoFile(2'000'000, 3));
  }
  void openWithFolders() {
    open();
    addSource(folder / "in");
    setTarget(folder / "out");
  }
  /// Every copy waits for a permit.
  void holdCopies() {
    files->onStageCopy = [this](const Path&, const Path&) {
      ++begun;
      if (held) permits.acquire();
      return std::nullopt;
    };
  }
  void letGo() {
    held = false;
    permits.release(morePermitsThanCopies);
  }
  bool isExecuting() {
    return eventually([this] {
             return isEnabled("buttonStart") && title("buttonStart") == QStringLiteral("Pause");
           }) &&
           eventually([this] { return begun == 1; });
  }

  static constexpr int morePermitsThanCopies = 1000;
  std::atomic<bool> held = true;
  std::atomic<int> begun = 0;
  std::counting_semaphore<> permits{0};
};

}  // namespace kestrova::test
