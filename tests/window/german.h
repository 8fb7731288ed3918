#pragma once

#include <QCoreApplication>
#include <QTranslator>

namespace kestrova::test {

/// The application speaks German as long as this lives.
class German {
 public:
  German() {
    loaded_ = translator_.load(QStringLiteral(":/translations/kestrova_de.qm"));
    QCoreApplication::installTranslator(&translator_);
  }
  ~German() { QCoreApplication::removeTranslator(&translator_); }
  German(const German&) = delete;
  German& operator=(const German&) = delete;

  bool isLoaded() const { return loaded_; }

 private:
  QTranslator translator_;
  bool loaded_ = false;
};

}  // namespace kestrova::test
