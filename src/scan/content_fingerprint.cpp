#include "scan/content_fingerprint.h"

#include "platform/hex_digits.h"
#include "scan/md5_lanes.h"

#include <array>
#include <new>

#include <openssl/evp.h>

namespace kestrova {

std::string contentFingerprint(const std::optional<Bytes>& prefix) {
  // Looked up once, as that takes longer than the digest of a small file.
  static const EVP_MD* const md5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
  const ByteView bytes = prefix ? ByteView(*prefix) : ByteView();
  std::array<std::uint8_t, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  const bool isDone =
      md5 != nullptr && EVP_Digest(bytes.data(), bytes.size(), digest.data(), &length, md5, nullptr) == 1;
  if (!isDone) throw std::bad_alloc();
  return hexDigits(ByteView(digest).first(length));
}

Fingerprint readFingerprint(const FileManager& files, const Path& path) {
  const auto start = files.readPrefix(path, prefixLength);
  if (!start) return {.digits = contentFingerprint(std::nullopt), .readError = start.error().message};
  return {.digits = contentFingerprint(*start)};
}

std::vector<Fingerprint> readFingerprints(const FileManager& files, const std::vector<Path>& paths) {
  std::vector<FileResult<Bytes>> starts;
  for (const Path& path : paths) starts.push_back(files.readPrefix(path, prefixLength));
  std::vector<ByteView> messages;
  for (const auto& start : starts) messages.push_back(start ? ByteView(*start) : ByteView());
  const auto digests = md5DigestsOf(messages);
  std::vector<Fingerprint> fingerprints;
  for (std::size_t i = 0; i < paths.size(); ++i) {
    fingerprints.push_back({.digits = hexDigits(digests[i]),
                            .readError = starts[i] ? std::string() : starts[i].error().message});
  }
  return fingerprints;
}

}  // namespace kestrova
