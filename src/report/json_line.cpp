#include "report/json_line.h"

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <utility>

#include <QUtf8StringView>

namespace kestrova::report {

namespace {

// A byte order mark is valid, but would be lost.
bool survivesAsText(std::string_view bytes) {
  return QUtf8StringView(bytes.data(), static_cast<qsizetype>(bytes.size())).isValidUtf8() &&
         !bytes.starts_with("\xEF\xBB\xBF");
}

bool needsEscape(char c) { return c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20; }

void appendEscape(std::string& line, char c) {
  constexpr char digits[] = "0123456789abcdef";
  const auto byte = static_cast<unsigned char>(c);
  line += '\\';
  if (c == '\n') {
    line += 'n';
  } else if (byte < 0x20) {
    line += "u00";
    line += digits[byte >> 4U];
    line += digits[byte & 0xFU];
  } else {
    line += c;
  }
}

/// Nearly all texts need no escape, and are appended in one piece.
void appendEscaped(std::string& line, std::string_view text) {
  auto rest = text.begin();
  while (rest != text.end()) {
    const auto special = std::find_if(rest, text.end(), needsEscape);
    line.append(rest, special);
    if (special == text.end()) return;
    appendEscape(line, *special);
    rest = special + 1;
  }
}

}  // namespace

void JsonLine::putText(std::string_view key, std::string_view text) {
  putKey(key);
  appendText(text);
}

void JsonLine::putNumber(std::string_view key, std::uint64_t number) {
  putKey(key);
  line_ += std::to_string(number);
}

void JsonLine::putPath(std::string_view key, const Path& path) {
  putText(key, path.native());
  if (survivesAsText(path.native())) return;
  const QByteArray bytes = QByteArray::fromStdString(path.native()).toBase64();
  putText(std::string(key) + "Bytes", {bytes.data(), static_cast<std::size_t>(bytes.size())});
}

void JsonLine::putPaths(std::string_view key, std::span<const Path> paths) {
  putKey(key);
  line_ += '[';
  for (const Path& path : paths) {
    JsonLine object;
    object.putPath("path", path);
    if (line_.back() != '[') line_ += ',';
    line_ += object.takeObject();
  }
  line_ += ']';
}

std::string JsonLine::finish() && { return takeObject() + '\n'; }

std::string JsonLine::takeObject() {
  line_ += '}';
  return std::move(line_);
}

void JsonLine::putKey(std::string_view key) {
  if (line_.size() > 1) line_ += ',';
  line_ += '"';
  line_ += key;
  line_ += "\":";
}

void JsonLine::appendText(std::string_view text) {
  line_ += '"';
  if (survivesAsText(text)) {
    appendEscaped(line_, text);
  } else {
    const auto decoded = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    appendEscaped(line_, decoded.toStdString());
  }
  line_ += '"';
}

}  // namespace kestrova::report
