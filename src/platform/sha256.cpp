#include "platform/sha256.h"

#include "platform/hex_digits.h"

#include <array>
#include <new>

#include <openssl/evp.h>

namespace kestrova {

Sha256::Sha256() : context_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
  if (!context_ || EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) != 1) throw std::bad_alloc();
}

void Sha256::add(ByteView bytes) { EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()); }

std::string Sha256::take() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
  unsigned int length = 0;
  EVP_DigestFinal_ex(context_.get(), digest.data(), &length);
  return hexDigits(ByteView(digest).first(length));
}

std::string sha256Of(ByteView bytes) {
  Sha256 sum;
  sum.add(bytes);
  return sum.take();
}

}  // namespace kestrova
