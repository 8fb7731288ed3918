#pragma once

#include <QString>
#include <string_view>

namespace kestrova {

/// The text on one line, without anything that a terminal takes for a command: a line end becomes \n, every
/// other control or invisible formatting character \xNN or \u{N}.
QString printableText(const QString& text);

/// The same of UTF-8; bytes that are not UTF-8 become \xNN.
QString printableText(std::string_view bytes);

}  // namespace kestrova
