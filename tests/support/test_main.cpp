#include "platform/log.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

// Tests run without a display of their own: the offscreen platform draws into memory.
int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  kestrova::installLog();
  testing::InitGoogleTest(&argc, argv);
  QGuiApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
