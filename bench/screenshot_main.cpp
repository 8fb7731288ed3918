#include "app/main_interface.h"
#include "platform/main_queue.h"
#include "window/main_window.h"
#include "window/translations.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

// Takes the pictures of the window for the documents, after a whole run:
//   xvfb-run -a build/release/kestrova-screenshot [--dark] [--language de] FILE TARGET SOURCE...

namespace {

using namespace kestrova;

QPalette darkPalette() {
  QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    palette.setColor(role, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Disabled, role, QColor(0x80, 0x84, 0x88));
  }
  palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
  return palette;
}

Host plainHost(const QString& settings) {
  Host host;
  host.files = systemFileManager();
  host.power = systemPowerAssertions();
  host.defaults = userDefaultsInFile(settings);
  return host;
}

void wait(int milliseconds) {
  QEventLoop loop;
  QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
  loop.exec();
}

void organise(MainInterface& controls, const QString& target, const QStringList& sources) {
  for (const QString& source : sources) controls.manager.addSource(source.toStdString());
  controls.manager.setTarget(target.toStdString());
  controls.comboFolderFormat->chooseItem(0);
  controls.chkFilterSmallPhotos->performClick();
  controls.buttonStart->performClick();
  while (controls.manager.processQueue->operationCount() > 0) wait(50);
  wait(1000);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication::setStyle(QStringLiteral("Fusion"));
  const QApplication application(argc, argv);
  QCommandLineParser arguments;
  arguments.addOptions({{QStringLiteral("dark"), {}},
                        {QStringLiteral("language"), {}, QStringLiteral("language"), QStringLiteral("en")}});
  arguments.process(application);
  if (arguments.positionalArguments().size() < 3) return 2;
  QLocale::setDefault(QLocale(arguments.value(QStringLiteral("language"))));
  installTranslations(QLocale());
  if (arguments.isSet(QStringLiteral("dark"))) QApplication::setPalette(darkPalette());
  const MainQueueRunner runner;
  const QTemporaryDir settings;
  const QStringList& paths = arguments.positionalArguments();
  MainWindow window(plainHost(settings.filePath(QStringLiteral("settings.ini"))));
  window.show();
  wait(500);
  organise(window.controls(), paths[1], paths.mid(2));
  return window.grab().save(paths[0]) ? 0 : 1;
}
