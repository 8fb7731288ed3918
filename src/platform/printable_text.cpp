#include "platform/printable_text.h"

#include <QList>
#include <algorithm>

#include <QUtf8StringView>

namespace kestrova {

namespace {

QString escaped(char32_t character) {
  if (character == U'\n') return QStringLiteral("\\n");
  if (character <= 0xff)
    return QStringLiteral("\\x%1").arg(static_cast<uint>(character), 2, 16, QLatin1Char('0'));
  return QStringLiteral("\\u{%1}").arg(static_cast<uint>(character), 0, 16);
}

bool isSafe(char32_t character) {
  const auto category = QChar::category(character);
  const bool endsLine = category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
  return QChar::isPrint(character) && !endsLine;
}

// The number of bytes of the first character; 0 if the text does not begin with one in UTF-8.
std::size_t lengthOfFirst(std::string_view bytes) {
  const std::size_t longest = std::min<std::size_t>(4, bytes.size());
  for (std::size_t length = 1; length <= longest; ++length) {
    if (QUtf8StringView(bytes.data(), static_cast<qsizetype>(length)).isValidUtf8()) return length;
  }
  return 0;
}

}  // namespace

QString printableText(const QString& text) {
  QString line;
  line.reserve(text.size());
  for (const uint character : text.toUcs4()) {
    if (isSafe(character)) {
      line += QChar::fromUcs4(character);
    } else {
      line += escaped(character);
    }
  }
  return line;
}

QString printableText(std::string_view bytes) {
  QString line;
  while (!bytes.empty()) {
    const std::size_t length = lengthOfFirst(bytes);
    if (length == 0) {
      line += escaped(static_cast<unsigned char>(bytes.front()));
    } else {
      line += printableText(QString::fromUtf8(bytes.data(), static_cast<qsizetype>(length)));
    }
    bytes.remove_prefix(std::max<std::size_t>(1, length));
  }
  return line;
}

}  // namespace kestrova
