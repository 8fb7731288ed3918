#pragma once

#include <QLocale>

namespace kestrova {

/// Sets the application's language, including its dialogs, to the first of the locale's languages that has a
/// translation; English if there is none. Call it once, before the first window. Main thread only.
void installTranslations(const QLocale& locale);

}  // namespace kestrova
