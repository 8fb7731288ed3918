#pragma once

#include <QCoreApplication>
#include <QTranslator>

#include <gtest/gtest.h>

namespace kestrova::test {

/// The application speaks German as long as this lives.
class German {
 public:
  German() {
    EXPECT_TRUE(translator_.load(QStringLiteral(":/translations/kestrova_de.qm")));
    QCoreApplication::installTranslator(&translator_);
  }
  ~German() { QCoreApplication::removeTranslator(&translator_); }
  German(const German&) = delete;
  German& operator=(const German&) = delete;

 private:
  QTranslator translator_;
};

}  // namespace kestrova::test
