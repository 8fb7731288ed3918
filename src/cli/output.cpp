#include "cli/output.h"

namespace kestrova::cli {

void print(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

int refuse(const std::string& reason) {
  print(stderr, "kestrova-cli: " + reason + "\nTry \"kestrova-cli --help\" for help.\n");
  return 2;
}

}  // namespace kestrova::cli
