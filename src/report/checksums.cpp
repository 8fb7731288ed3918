#include "report/checksums.h"

namespace kestrova::report {

std::string checksumLine(std::string_view sha256, const Path& name) {
  std::string escaped;
  for (const char c : name.native()) {
    if (c == '\\')
      escaped += "\\\\";
    else if (c == '\n')
      escaped += "\\n";
    else
      escaped += c;
  }
  const bool isEscaped = escaped.size() != name.native().size();
  std::string line(isEscaped ? "\\" : "");
  return line.append(sha256).append("  ").append(escaped).append("\n");
}

}  // namespace kestrova::report
