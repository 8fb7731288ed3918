#include "cli/output.h"

#include "platform/printable_text.h"

namespace kestrova::cli {

void print(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

QString problemLine(const char* what, const Path& path, const std::string& reason) {
  return QStringLiteral("kestrova-cli: %1%2: %3\n")
      .arg(QLatin1String(what), printableText(path.native()), printableText(reason));
}

QString problemLines(const char* what, const std::vector<report::PathReason>& list) {
  QString lines;
  for (const auto& [path, reason] : list) lines += problemLine(what, path, reason);
  return lines;
}

int refuse(const std::string& reason) {
  print(stderr, "kestrova-cli: " + reason + "\nTry \"kestrova-cli --help\" for help.\n");
  return 2;
}

}  // namespace kestrova::cli
