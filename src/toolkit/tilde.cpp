#include "toolkit/tilde.h"

#include <array>
#include <cstdlib>
#include <string>

#include <pwd.h>
#include <unistd.h>

namespace kestrova {

namespace {

/// Empty when there is no such user.
std::string homeOf(const std::string& user) {
  passwd record{};
  passwd* found = nullptr;
  std::array<char, 16384> texts{};
  if (user.empty()) {
    getpwuid_r(getuid(), &record, texts.data(), texts.size(), &found);
  } else {
    getpwnam_r(user.c_str(), &record, texts.data(), texts.size(), &found);
  }
  return found != nullptr ? found->pw_dir : std::string();
}

std::string ownHome() {
  const char* const home = std::getenv("HOME");
  return home != nullptr && *home != '\0' ? home : homeOf({});
}

}  // namespace

Path expandingTilde(const Path& path) {
  const std::string& text = path.native();
  if (!text.starts_with('~')) return path;
  const std::size_t end = std::min(text.find('/'), text.size());
  const std::string user = text.substr(1, end - 1);
  const std::string home = user.empty() ? ownHome() : homeOf(user);
  return home.empty() ? path : Path(home + text.substr(end));
}

}  // namespace kestrova
