#include "platform/log.h"
#include "platform/main_queue.h"
#include "window/translations.h"

#include <QApplication>
#include <QLoggingCategory>

#include <gtest/gtest.h>

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
