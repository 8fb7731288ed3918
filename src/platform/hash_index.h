#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace kestrova {

/// Finds the numbers of things by their hashes, in 8 to 16 bytes a thing. The things themselves are kept
/// elsewhere, so the caller compares them.
class HashIndex {
 public:
  /// The first number with this hash for which `isWanted(number)` is true.
  template <typename IsWanted>
  std::optional<std::size_t> find(std::size_t hash, const IsWanted& isWanted) const {
    if (slots_.empty()) return std::nullopt;
    for (std::size_t at = hash & mask();; at = (at + 1) & mask()) {
      const Slot& slot = slots_[at];
      if (slot.number == none) return std::nullopt;
      if (slot.hash == shortened(hash) && isWanted(std::size_t{slot.number})) return slot.number;
    }
  }

  /// Numbers are below 2^32 - 1.
  void add(std::size_t hash, std::size_t number) {
    if (4 * (size_ + 1) > 3 * slots_.size()) grow();
    place({.hash = shortened(hash), .number = static_cast<std::uint32_t>(number)});
    ++size_;
  }

  void clear() {
    slots_ = {};
    size_ = 0;
  }

 private:
  static constexpr std::uint32_t none = UINT32_MAX;
  static constexpr std::size_t fewestSlots = 16;

  struct Slot {
    std::uint32_t hash = 0;
    std::uint32_t number = none;
  };

  static std::uint32_t shortened(std::size_t hash) { return static_cast<std::uint32_t>(hash); }
  std::size_t mask() const { return slots_.size() - 1; }

  void place(const Slot& slot) {
    std::size_t at = slot.hash & mask();
    while (slots_[at].number != none) at = (at + 1) & mask();
    slots_[at] = slot;
  }

  void grow() {
    std::vector<Slot> old(slots_.empty() ? fewestSlots : 2 * slots_.size());
    old.swap(slots_);
    for (const Slot& slot : old) {
      if (slot.number != none) place(slot);
    }
  }

  std::vector<Slot> slots_;  ///< a power of two of them, at most three quarters used
  std::size_t size_ = 0;
};

}  // namespace kestrova
