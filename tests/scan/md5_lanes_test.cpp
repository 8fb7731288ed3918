#include "scan/md5_lanes.h"

#include "platform/hex_digits.h"
#include "scan/content_fingerprint.h"

#include <random>

#include <gtest/gtest.h>

namespace kestrova {

namespace {

std::vector<std::string> digestsOf(const std::vector<Bytes>& messages) {
  std::vector<std::string> texts;
  for (const auto& digest : md5DigestsOf(std::vector<ByteView>(messages.begin(), messages.end())))
    texts.push_back(hexDigits(digest));
  return texts;
}

std::vector<std::string> oneByOne(const std::vector<Bytes>& messages) {
  std::vector<std::string> texts;
  for (const Bytes& message : messages) texts.push_back(contentFingerprint(message));
  return texts;
}

Bytes randomBytes(std::mt19937& random, std::size_t count) {
  Bytes bytes(count);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

Bytes bytesOf(std::string_view text) { return {text.begin(), text.end()}; }

}  // namespace

// The test suite of RFC 1321, A.5.
TEST(Md5Lanes, AgreeWithTheStandard) {
  EXPECT_EQ(
      digestsOf(
          {bytesOf(""), bytesOf("a"), bytesOf("abc"), bytesOf("message digest"),
           bytesOf("abcdefghijklmnopqrstuvwxyz"),
           bytesOf("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789"),
           bytesOf("12345678901234567890123456789012345678901234567890123456789012345678901234567890")}),
      (std::vector<std::string>{"d41d8cd98f00b204e9800998ecf8427e", "0cc175b9c0f1b6a831c399e269772661",
                                "900150983cd24fb0d6963f7d28e17f72", "f96b697d7cb7938d525a2f31aaf161d0",
                                "c3fcd3d76192e4007dfb496cca67e13b", "d174ab98d277d9f5a5611c2c9f419d9f",
                                "57edf4a22be3c955ac49da2e2107b67a"}));
}

TEST(Md5Lanes, DigestMessagesOfEveryLength) {
  std::mt19937 random(1);
  std::vector<Bytes> messages;
  for (std::size_t length = 0; length <= 200; ++length) messages.push_back(randomBytes(random, length));
  messages.push_back(randomBytes(random, prefixLength));
  EXPECT_EQ(digestsOf(messages), oneByOne(messages));
}

TEST(Md5Lanes, DigestAnyNumberOfMessagesOfAnyLengthsTogether) {
  std::mt19937 random(2);
  for (std::size_t count = 0; count < 40; ++count) {
    std::vector<Bytes> messages;
    for (std::size_t i = 0; i < count; ++i) messages.push_back(randomBytes(random, random() % 3000));
    ASSERT_EQ(digestsOf(messages), oneByOne(messages)) << count;
  }
}

}  // namespace kestrova
