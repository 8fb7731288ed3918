#pragma once

#include <QString>

namespace kestrova {

/// A text of the controller (a status, an alert, an alert's button) in the user's language; an unknown text
/// stays as it is. The controller itself only uses English.
QString shownText(const QString& text);

/// The same for the title of the window's Start and Stop buttons, with its Alt key.
QString shownTitle(const QString& title);

}  // namespace kestrova
