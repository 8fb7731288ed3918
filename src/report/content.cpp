#include "report/content.h"

#include "platform/file_error.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <new>
#include <vector>

#include <openssl/evp.h>

namespace kestrova::report {

namespace {

constexpr std::size_t pieceSize = std::size_t{256} * 1024;

class Sha256 {
 public:
  Sha256() : context_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
    if (!context_ || EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) != 1) throw std::bad_alloc();
  }
  void add(ByteView bytes) { EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()); }
  std::string take() {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    EVP_DigestFinal_ex(context_.get(), digest.data(), &length);
    std::string text;
    for (const unsigned char byte : ByteView(digest).first(length)) {
      text += "0123456789abcdef"[byte >> 4];
      text += "0123456789abcdef"[byte & 0xF];
    }
    return text;
  }

 private:
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
};

bool isStopped(const Stopped& stopped) { return stopped && stopped(); }

tl::unexpected<ComparisonError> comparisonError(bool isFirst, const FileError& error) {
  return tl::make_unexpected(ComparisonError{isFirst, error});
}

}  // namespace

FileResult<std::string> sha256Of(const Path& path, ReadFrom from, const Stopped& stopped) {
  auto reader = FileReader::open(path, from);
  if (!reader) return tl::make_unexpected(reader.error());
  Sha256 sum;
  Bytes piece(pieceSize);
  for (;;) {
    if (isStopped(stopped)) return failure(ECANCELED);
    const auto count = reader->read(piece);
    if (!count) return tl::make_unexpected(count.error());
    if (*count == 0) return sum.take();
    sum.add(ByteView(piece).first(*count));
  }
}

std::string sha256Of(ByteView bytes) {
  Sha256 sum;
  sum.add(bytes);
  return sum.take();
}

tl::expected<bool, ComparisonError> haveSameContent(const Path& first, const Path& second, ReadFrom from,
                                                    const Stopped& stopped) {
  auto a = FileReader::open(first, from);
  if (!a) return comparisonError(true, a.error());
  auto b = FileReader::open(second, from);
  if (!b) return comparisonError(false, b.error());
  if (a->size() != b->size()) return false;
  Bytes pieceOfA(pieceSize);
  Bytes pieceOfB(pieceSize);
  for (;;) {
    if (isStopped(stopped)) return comparisonError(true, systemError(ECANCELED));
    const auto countOfA = a->read(pieceOfA);
    if (!countOfA) return comparisonError(true, countOfA.error());
    const auto countOfB = b->read(pieceOfB);
    if (!countOfB) return comparisonError(false, countOfB.error());
    if (!std::ranges::equal(ByteView(pieceOfA).first(*countOfA), ByteView(pieceOfB).first(*countOfB)))
      return false;
    if (*countOfA == 0) return true;
  }
}

bool areSameFile(const Path& first, const Path& second) {
  const auto a = FileReader::open(first);
  const auto b = FileReader::open(second);
  return a && b && a->identity() == b->identity();
}

}  // namespace kestrova::report
