#pragma once

#include "platform/bytes.h"

#include <memory>
#include <string>

struct evp_md_ctx_st;

namespace kestrova {

/// A SHA-256 digest (FIPS 180-4) in the making.
class Sha256 {
 public:
  Sha256();
  void add(ByteView bytes);
  /// Of all bytes added, as 64 lowercase hexadecimal digits. Ends the digest.
  std::string take();

 private:
  std::unique_ptr<evp_md_ctx_st, void (*)(evp_md_ctx_st*)> context_;
};

/// The digest of bytes in memory.
std::string sha256Of(ByteView bytes);

}  // namespace kestrova
