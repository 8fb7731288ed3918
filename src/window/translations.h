#pragma once

#include <QLocale>

namespace kestrova {

/// Makes the application speak the first of the locale's languages that there is a translation for, its
/// dialogs included; English when there is none. Call it once, before the first window. Main thread only.
void installTranslations(const QLocale& locale);

}  // namespace kestrova
