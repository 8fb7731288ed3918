#pragma once

#include <QString>

namespace kestrova {

/// A text of the controller (a status, an alert, a button of one) in the user's language; one that is not
/// known stays as it is. The controller itself speaks English throughout.
QString shownText(const QString& text);

/// The same of the title of the window's Start and Stop buttons, with the letter that Alt goes with.
QString shownTitle(const QString& title);

}  // namespace kestrova
