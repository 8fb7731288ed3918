#include "scan/md5_lanes.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "scan/md5_lanes.cpp"
#include <hwy/foreach_target.h>
// After foreach_target, which includes this file once for every instruction set.
#include <hwy/highway.h>

#ifndef KESTROVA_MD5_MESSAGE
#define KESTROVA_MD5_MESSAGE

namespace kestrova::md5 {

constexpr std::size_t blockSize = 64;
constexpr std::size_t wordsOfBlock = 16;
constexpr std::size_t mostLanes = 16;

/// A message in blocks: those that it fills, and one or two more with its rest, the padding and its length.
class Message {
 public:
  explicit Message(ByteView bytes) : bytes_(bytes), full_(bytes.size() / blockSize) {
    const ByteView rest = bytes.subspan(full_ * blockSize);
    std::copy(rest.begin(), rest.end(), tail_.begin());
    tail_[rest.size()] = 0x80;
    tailBlocks_ = rest.size() + 1 + sizeof(std::uint64_t) <= blockSize ? 1 : 2;
    const std::uint64_t bits = std::uint64_t{8} * bytes.size();
    std::memcpy(tail_.data() + tailBlocks_ * blockSize - sizeof bits, &bits, sizeof bits);
  }

  std::size_t blocks() const { return full_ + tailBlocks_; }
  const std::uint8_t* block(std::size_t index) const {
    return index < full_ ? bytes_.data() + index * blockSize : tail_.data() + (index - full_) * blockSize;
  }

 private:
  ByteView bytes_;
  std::size_t full_;
  std::array<std::uint8_t, 2 * blockSize> tail_{};
  std::size_t tailBlocks_ = 1;
};

/// The constants of the 64 steps: the first 32 bits of the sines' fractions.
inline const std::array<std::uint32_t, 64>& sines() {
  static const auto table = [] {
    std::array<std::uint32_t, 64> constants{};
    double angle = 0;
    for (auto& constant : constants)
      constant = static_cast<std::uint32_t>(std::floor(std::fabs(std::sin(++angle)) * 4294967296.0));
    return constants;
  }();
  return table;
}

}  // namespace kestrova::md5
#endif

HWY_BEFORE_NAMESPACE();
namespace kestrova::md5::HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Lanes = hn::CappedTag<std::uint32_t, mostLanes>;
using Vector = hn::Vec<Lanes>;

template <int round>
HWY_INLINE Vector mixed(Vector b, Vector c, Vector d) {
  if constexpr (round == 0) return hn::Xor(d, hn::And(b, hn::Xor(c, d)));
  if constexpr (round == 1) return hn::Xor(c, hn::And(d, hn::Xor(b, c)));
  if constexpr (round == 2) return hn::Xor(hn::Xor(b, c), d);
  if constexpr (round == 3) return hn::Xor(c, hn::Or(b, hn::Not(d)));
}

/// One word of a block for every lane, and the step's constant.
HWY_INLINE Vector addend(const std::uint32_t* words, std::size_t word, std::uint32_t sine) {
  const Lanes lanes;
  return hn::Add(hn::Load(lanes, words + word * mostLanes), hn::Set(lanes, sine));
}

template <int round, int shift>
HWY_INLINE Vector step(Vector a, Vector b, Vector c, Vector d, Vector addend) {
  const Vector sum = hn::Add(hn::Add(a, addend), mixed<round>(b, c, d));
  return hn::Add(b, hn::RotateRight<32 - shift>(sum));
}

struct State {
  Vector a, b, c, d;
};

/// 16 steps. Step i takes the word number `first + i * apart`, modulo 16.
template <int round, int shift0, int shift1, int shift2, int shift3>
HWY_INLINE void mixRound(State& s, const std::uint32_t* words, std::size_t first, std::size_t apart) {
  const std::uint32_t* const sine = sines().data() + round * wordsOfBlock;
  const auto next = [&](std::size_t i) { return addend(words, (first + i * apart) % wordsOfBlock, sine[i]); };
  for (std::size_t i = 0; i < wordsOfBlock; i += 4) {
    s.a = step<round, shift0>(s.a, s.b, s.c, s.d, next(i));
    s.d = step<round, shift1>(s.d, s.a, s.b, s.c, next(i + 1));
    s.c = step<round, shift2>(s.c, s.d, s.a, s.b, next(i + 2));
    s.b = step<round, shift3>(s.b, s.c, s.d, s.a, next(i + 3));
  }
}

/// The state after one more block of each message.
HWY_INLINE State mix(const State& before, const std::uint32_t* words) {
  State s = before;
  mixRound<0, 7, 12, 17, 22>(s, words, 0, 1);
  mixRound<1, 5, 9, 14, 20>(s, words, 1, 5);
  mixRound<2, 4, 11, 16, 23>(s, words, 5, 3);
  mixRound<3, 6, 10, 15, 21>(s, words, 0, 7);
  return {hn::Add(s.a, before.a), hn::Add(s.b, before.b), hn::Add(s.c, before.c), hn::Add(s.d, before.d)};
}

/// Puts the words of one block of each message side by side.
void interleave(std::span<const Message> messages, std::size_t block, std::uint32_t* words) {
  for (std::size_t lane = 0; lane < messages.size(); ++lane) {
    if (block >= messages[lane].blocks()) continue;
    std::array<std::uint32_t, wordsOfBlock> own;
    std::memcpy(own.data(), messages[lane].block(block), blockSize);
    for (std::size_t word = 0; word < wordsOfBlock; ++word) words[word * mostLanes + lane] = own[word];
  }
}

Md5Digest digestIn(const State& state, std::size_t lane) {
  Md5Digest digest;
  std::uint8_t* part = digest.data();
  for (const Vector& vector : {state.a, state.b, state.c, state.d}) {
    alignas(64) std::uint32_t words[mostLanes];
    hn::Store(vector, Lanes(), words);
    std::memcpy(part, &words[lane], sizeof words[lane]);
    part += sizeof words[lane];
  }
  return digest;
}

/// As many messages as the processor has lanes, or fewer.
void digestSome(std::span<const Message> messages, Md5Digest* digests) {
  const Lanes lanes;
  State state{hn::Set(lanes, 0x67452301U), hn::Set(lanes, 0xEFCDAB89U), hn::Set(lanes, 0x98BADCFEU),
              hn::Set(lanes, 0x10325476U)};
  alignas(64) std::uint32_t words[wordsOfBlock * mostLanes] = {};
  std::size_t left = 0;
  for (const Message& message : messages) left = std::max(left, message.blocks());
  for (std::size_t block = 0; block < left; ++block) {
    interleave(messages, block, words);
    state = mix(state, words);
    for (std::size_t lane = 0; lane < messages.size(); ++lane) {
      if (messages[lane].blocks() == block + 1) digests[lane] = digestIn(state, lane);
    }
  }
}

void digestAll(std::span<const Message> messages, Md5Digest* digests) {
  const std::size_t atOnce = hn::Lanes(Lanes());
  for (std::size_t i = 0; i < messages.size(); i += atOnce) {
    digestSome(messages.subspan(i, std::min(atOnce, messages.size() - i)), digests + i);
  }
}

}  // namespace kestrova::md5::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kestrova {

static_assert(std::endian::native == std::endian::little, "MD5 counts bytes from the lowest");

namespace md5 {
HWY_EXPORT(digestAll);
}

std::vector<Md5Digest> md5DigestsOf(std::span<const ByteView> messages) {
  using namespace md5;
  const std::vector<Message> blocks(messages.begin(), messages.end());
  std::vector<Md5Digest> digests(messages.size());
  HWY_DYNAMIC_DISPATCH(digestAll)(blocks, digests.data());
  return digests;
}

}  // namespace kestrova
#endif
