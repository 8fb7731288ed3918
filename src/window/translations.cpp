#include "window/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>
#include <memory>

namespace kestrova {

namespace {

void install(const QLocale& locale, const QString& name, const QString& folder) {
  auto translator = std::make_unique<QTranslator>(QCoreApplication::instance());
  if (translator->load(locale, name, QStringLiteral("_"), folder))
    QCoreApplication::installTranslator(translator.release());
}

}  // namespace

// The one installed last is used first. English is a translation, too: it has the plurals.
void installTranslations(const QLocale& locale) {
  const auto own = QStringLiteral("kestrova");
  const auto ownFolder = QStringLiteral(":/translations");
  install(QLocale(QLocale::English), own, ownFolder);
  install(locale, QStringLiteral("qtbase"), QLibraryInfo::path(QLibraryInfo::TranslationsPath));
  install(locale, own, ownFolder);
}

}  // namespace kestrova
