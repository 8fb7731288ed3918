#include "report/content.h"

#include "platform/file_error.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <utility>
#include <vector>

namespace kestrova::report {

namespace {

constexpr std::size_t pieceSize = std::size_t{256} * 1024;

/// Room for a piece of the file; for all of a small one, and then some, so that its end is met at once.
Bytes pieceFor(const FileReader& file) {
  return Bytes(static_cast<std::size_t>(std::min<std::uint64_t>(pieceSize, file.size() + 1)));
}

tl::unexpected<ComparisonError> comparisonError(bool isFirst, const FileError& error) {
  return tl::make_unexpected(ComparisonError{isFirst, error});
}

struct FilePair {
  FileReader first;
  FileReader second;
};

struct FileToOpen {
  const Path& path;
  ReadFrom from;
};

tl::expected<FilePair, ComparisonError> openPair(const FileToOpen& first, const FileToOpen& second) {
  auto a = FileReader::open(first.path, first.from);
  if (!a) return comparisonError(true, a.error());
  auto b = FileReader::open(second.path, second.from);
  if (!b) return comparisonError(false, b.error());
  return FilePair{std::move(*a), std::move(*b)};
}

/// Hands on what both have in common, piece by piece.
template <typename Take>
tl::expected<bool, ComparisonError> compare(FilePair& pair, const Stopped& stopped, const Take& take) {
  if (pair.first.size() != pair.second.size()) return false;
  Bytes pieceOfFirst = pieceFor(pair.first);
  Bytes pieceOfSecond = pieceFor(pair.second);
  for (;;) {
    if (isStopped(stopped)) return comparisonError(true, systemError(ECANCELED));
    const auto first = pair.first.read(pieceOfFirst);
    if (!first) return comparisonError(true, first.error());
    const auto second = pair.second.read(pieceOfSecond);
    if (!second) return comparisonError(false, second.error());
    if (*first != *second || std::memcmp(pieceOfFirst.data(), pieceOfSecond.data(), *first) != 0)
      return false;
    if (*first == 0) return true;
    take(ByteView(pieceOfFirst).first(*first));
  }
}

}  // namespace

FileResult<std::string> sha256Of(const Path& path, ReadFrom from, const Stopped& stopped) {
  auto reader = FileReader::open(path, from);
  if (!reader) return tl::make_unexpected(reader.error());
  Sha256 sum;
  Bytes piece = pieceFor(*reader);
  for (;;) {
    if (isStopped(stopped)) return failure(ECANCELED);
    const auto count = reader->read(piece);
    if (!count) return tl::make_unexpected(count.error());
    if (*count == 0) return sum.take();
    sum.add(ByteView(piece).first(*count));
  }
}

tl::expected<bool, ComparisonError> haveSameContent(const Path& first, const Path& second, ReadFrom from,
                                                    const Stopped& stopped) {
  auto pair = openPair({first, from}, {second, from});
  if (!pair) return tl::make_unexpected(pair.error());
  return compare(*pair, stopped, [](ByteView) {});
}

tl::expected<ComparisonResult, ComparisonError> compareAndSum(const Path& first, const Path& second,
                                                              ReadFrom from, const Stopped& stopped) {
  auto pair = openPair({first, ReadFrom::cache}, {second, from});
  if (!pair) return tl::make_unexpected(pair.error());
  Sha256 sum;
  const auto isSame = compare(*pair, stopped, [&](ByteView piece) { sum.add(piece); });
  if (!isSame) return tl::make_unexpected(isSame.error());
  return ComparisonResult{.isSameContent = *isSame,
                          .isSameFile = pair->first.identity() == pair->second.identity(),
                          .sha256 = *isSame ? sum.take() : std::string()};
}

bool areSameFile(const Path& first, const Path& second) {
  const auto a = FileReader::open(first);
  const auto b = FileReader::open(second);
  return a && b && a->identity() == b->identity();
}

}  // namespace kestrova::report
