#include "platform/file_url.h"

#include <cstdint>

namespace kestrova {

namespace {

constexpr std::string_view scheme = "file://";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool isAlphanumeric(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool mayStandInPath(char c) {
  return isAlphanumeric(c) || std::string_view("/-._~!$&'()*+,=:@").find(c) != std::string_view::npos;
}

int hexValue(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  if (c >= 'A' && c <= 'F') return c - 'A' + 10;
  if (c >= 'a' && c <= 'f') return c - 'a' + 10;
  return -1;
}

std::optional<std::string> decoded(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      bytes += text[i];
      continue;
    }
    if (text.size() - i < 3) return std::nullopt;
    const int high = hexValue(text[i + 1]);
    const int low = hexValue(text[i + 2]);
    if (high < 0 || low < 0) return std::nullopt;
    bytes += static_cast<char>(high * 16 + low);
    i += 2;
  }
  return bytes;
}

}  // namespace

std::string fileUrlString(const Path& path) {
  std::string url(scheme);
  for (const char c : path.native()) {
    if (mayStandInPath(c)) {
      url += c;
    } else {
      const auto byte = static_cast<std::uint8_t>(c);
      url += {'%', hexDigits[byte >> 4], hexDigits[byte & 15]};
    }
  }
  return url;
}

std::optional<Path> pathOfFileUrl(std::string_view url) {
  if (!url.starts_with(scheme)) return std::nullopt;
  auto path = decoded(url.substr(scheme.size()));
  if (!path || !path->starts_with('/') || path->find('\0') != std::string::npos) return std::nullopt;
  return Path(*std::move(path));
}

std::string removingPercentEncoding(std::string_view text) {
  return decoded(text).value_or(std::string(text));
}

}  // namespace kestrova
