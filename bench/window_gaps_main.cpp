#include "app/main_interface.h"
#include "platform/main_queue.h"
#include "support/temporary_folder.h"
#include "window/main_window.h"

#include <QApplication>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

// How long the window's thread is away at worst while many small files are scanned and planned, as a timer in
// the window sees it. kestrova-window-gaps [FILES [RUNS]], on a display of its own:
//   xvfb-run -a build/release/kestrova-window-gaps

namespace {

using namespace kestrova;
using namespace kestrova::test;
using Clock = std::chrono::steady_clock;

constexpr std::size_t filesInAFolder = 1000;
constexpr std::size_t sizes = 5000;  // so that most files share theirs with others and are read

void writeFiles(const Path& folder, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::string number = std::to_string(i);
    const Path place = folder / std::to_string(i / filesInAFolder);
    writeFile(place / (number + ".jpg"), number + std::string(i % sizes, 'x'));
  }
}

/// The longest time between two turns of the event loop.
class GapWatch {
 public:
  GapWatch() {
    ticker_.callOnTimeout([this] { note(); });
    ticker_.start(1);
  }
  double worstMilliseconds() const { return std::chrono::duration<double, std::milli>(worst_).count(); }

 private:
  void note() {
    const auto now = Clock::now();
    worst_ = std::max(worst_, now - last_);
    last_ = now;
  }

  QTimer ticker_;
  Clock::time_point last_ = Clock::now();
  Clock::duration worst_{0};
};

Host quietHost(const Path& settings) {
  Host host;
  host.files = systemFileManager();
  host.power = systemPowerAssertions();
  host.defaults = userDefaultsInFile(QString::fromStdString(settings.native()));
  return host;
}

template <typename Condition>
void waitFor(Condition condition) {
  QEventLoop loop;
  QTimer poll;
  poll.callOnTimeout([&] {
    if (condition()) loop.quit();
  });
  poll.start(5);
  loop.exec();
}

double worstGapOfARun(const Path& source) {
  const TemporaryFolder place;
  MainWindow window(quietHost(place / "settings.ini"));
  window.show();
  auto& controls = window.controls();
  waitFor([&] { return !controls.comboResolution->objectValue().isEmpty(); });
  controls.manager.addSource(source);
  controls.manager.setTarget(place / "out");
  const GapWatch watch;
  controls.buttonStart->performClick();
  waitFor([&] { return controls.manager.appStatus == 3; });  // the first file is being copied
  const double worst = watch.worstMilliseconds();
  controls.buttonStop->performClick();
  waitFor([&] { return controls.manager.processQueue->operationCount() == 0; });
  return worst;
}

}  // namespace

int main(int argc, char** argv) {
  const std::size_t files = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100'000;
  const std::size_t runs = std::max(1UL, argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 3);
  const QApplication application(argc, argv);
  const MainQueueRunner runner;
  const TemporaryFolder folder;
  writeFiles(folder.path(), files);
  std::vector<double> gaps;
  for (std::size_t run = 0; run < runs; ++run) {
    gaps.push_back(worstGapOfARun(folder.path()));
    std::printf("run %zu: away for %.0f ms at worst\n", run + 1, gaps.back());
  }
  std::sort(gaps.begin(), gaps.end());
  std::printf("median over %zu runs of %zu files: %.0f ms\n", runs, files, gaps[gaps.size() / 2]);
}
