#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova {

/// Records of numbers and bytes in as little memory as is simple: a number takes one byte for each 7 of its
/// bits (LEB128), and paths that follow each other share their folder. A record is read in the order in which
/// it was written. Records are kept in chunks, which can be released from the front.
///
/// Not guarded: while nothing is appended, several threads may read; one of them may release records that no
/// other reads.
class PackedRecords {
 private:
  struct Chunk;

 public:
  /// How many kinds of paths a record may have; each kind shares its own folders.
  static constexpr std::size_t pathKinds = 2;

  /// Writes the last record; valid until the next one is appended.
  class Writer {
   public:
    void number(std::uint64_t value);
    void signedNumber(std::int64_t value);
    void text(std::string_view bytes);
    void path(std::size_t kind, std::string_view bytes);

   private:
    friend class PackedRecords;
    explicit Writer(Chunk& chunk) : chunk_(chunk) {}
    Chunk& chunk_;
  };

  /// Reads one record. The texts are valid until the record is released.
  class Reader {
   public:
    std::uint64_t number();
    std::int64_t signedNumber();
    std::string_view text();
    std::string path();

   private:
    friend class PackedRecords;
    Reader(std::string_view bytes, std::size_t position) : bytes_(bytes), position_(position) {}
    std::string_view bytes_;  ///< of the whole chunk
    std::size_t position_;
  };

  PackedRecords();
  ~PackedRecords();
  PackedRecords(const PackedRecords&) = delete;
  PackedRecords& operator=(const PackedRecords&) = delete;

  Writer append();
  /// Those released included.
  std::size_t size() const { return size_; }
  /// The record must not have been released.
  Reader read(std::size_t index) const;
  /// Frees the memory of what comes before the record, as far as that fills whole chunks.
  void releaseBefore(std::size_t index);
  void clear();

 private:
  static constexpr std::size_t chunkSize = 256;  // records

  struct Chunk {
    std::string bytes;
    std::vector<std::uint32_t> starts;
    std::array<std::uint32_t, pathKinds> folders = {};  ///< where the last folder of each kind begins, plus 1
  };

  std::vector<std::unique_ptr<Chunk>> chunks_;  ///< null where released
  std::size_t size_ = 0;
  std::size_t released_ = 0;  ///< chunks
};

}  // namespace kestrova
