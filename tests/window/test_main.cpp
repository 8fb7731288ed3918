#include "platform/log.h"
#include "platform/main_queue.h"
#include "window/translations.h"

#include <QApplication>
#include <QLoggingCategory>

#include <gtest/gtest.h>

// What the message bus library keeps until the process ends is no leak of ours.
extern "C" const char* __lsan_default_suppressions() { return "leak:libdbus-1"; }

// The desktop's libraries are built without the sanitizer, which therefore does not see how their own threads
// wait for one another; what they call is not looked at. The C library guards its time zone by a hidden lock.
extern "C" const char* __tsan_default_suppressions() {
  return "called_from_lib:libQt6Core.so.6\n"
         "called_from_lib:libQt6DBus.so.6\n"
         "called_from_lib:libQt6Gui.so.6\n"
         "called_from_lib:libQt6Widgets.so.6\n"
         "called_from_lib:libQt6XcbQpa.so.6\n"
         "called_from_lib:libglib-2.0.so.0\n"
         "called_from_lib:libdbus-1.so.3\n"
         "called_from_lib:libxcb.so.1\n"
         "mutex:libX11.so.6\n"
         "race:tzset_internal\n";
}

int main(int argc, char** argv) {
  kestrova::installLog();
  QLoggingCategory::setFilterRules(QStringLiteral("kestrova.info=false"));
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  QApplication::setStyle(QStringLiteral("Fusion"));
  kestrova::installTranslations(QLocale(QLocale::English));
  const kestrova::MainQueueRunner runner;
  return RUN_ALL_TESTS();
}
