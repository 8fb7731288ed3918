#include "platform/log.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

// Asked by ThreadSanitizer at start. Qt draws large pictures on threads of its own, and its locks cannot be
// seen by ThreadSanitizer, as Qt is built without it; what Qt itself (and GLib below it) does to its memory
// is left out of the reports.
extern "C" const char* __tsan_default_suppressions() {  // NOLINT(bugprone-reserved-identifier)
  return "called_from_lib:libQt6Gui.so\ncalled_from_lib:libQt6Core.so\ncalled_from_lib:libglib-2.0.so\n";
}

// Tests run without a display of their own: the offscreen platform draws into memory.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  kestrova::installLog();
  testing::InitGoogleTest(&argc, argv);
  QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
