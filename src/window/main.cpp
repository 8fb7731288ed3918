#include "platform/desktop_thread.h"
#include "platform/log.h"
#include "platform/main_queue.h"
#include "platform/process_start.h"
#include "platform/session_bus.h"
#include "report/run_folder.h"
#include "window/main_window.h"
#include "window/translations.h"

#include <QApplication>
#include <QIcon>
#include <cstdio>
#include <cstring>

using namespace kestrova;

namespace {

constexpr const char* usage =
    "usage: kestrova [--help] [--version]\n"
    "Opens the window that turns scattered photos and videos into one dated folder tree.\n"
    "kestrova-cli does the same without a window.\n";

// Answered before the application is created, as that needs a display.
bool answers(int argc, char** argv) {
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
      return std::fputs(usage, stdout) >= 0;
    }
    if (std::strcmp(argv[i], "--version") == 0) return std::puts("kestrova " KESTROVA_VERSION) >= 0;
  }
  return false;
}

Host systemHost() {
  Host host;
  host.files = systemFileManager();
  host.defaults = standardUserDefaults();
  host.power = systemPowerAssertions();
  host.workspace = desktopWorkspace();
  host.jobs = std::nullopt;
  host.runs = report::runsFolder();
  return host;
}

QIcon programIcon() {
  QIcon icon;
  for (const int size : {16, 24, 32, 48, 64, 128, 256, 512}) {
    icon.addFile(QStringLiteral(":/icons/kestrova-%1.png").arg(size));
  }
  return icon;
}

int showWindow() {
  const MainQueueRunner runner;
  MainWindow window(systemHost(), systemDesktopStatus());
  window.show();
  window.controls().delegate.applicationDidFinishLaunching();
  return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
  prepareProcess();
  if (answers(argc, argv)) return 0;
  installLog();
  avoidSilentSessionBus();
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("Kestrova"));
  QApplication::setApplicationVersion(QStringLiteral(KESTROVA_VERSION));
  QGuiApplication::setDesktopFileName(QStringLiteral("example.kestrova.Kestrova"));
  QApplication::setWindowIcon(programIcon());
  installTranslations(QLocale());
  return endOfMain(showWindow());
}
