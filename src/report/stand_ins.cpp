#include "report/stand_ins.h"

namespace kestrova::report {

namespace {

/// The same for the rows of files alone, with their numbers.
FileResult<void> visitFiles(const RowSource& rows,
                            const std::function<void(const FileRow& row, std::size_t number)>& visit) {
  std::size_t number = 0;
  return rows([&](const Row& row) {
    if (const auto* file = std::get_if<FileRow>(&row)) visit(*file, number++);
    return true;
  });
}

}  // namespace

bool isRewritten(const FileRow& row) {
  return row.verdict == Outcome::resized || row.verdict == Outcome::rewritten;
}

bool isWritten(const FileRow& row) {
  return row.target && (row.verdict == Outcome::copied || isRewritten(row));
}

FileResult<StandIns> StandIns::of(const RowSource& rows) {
  StandIns result;
  auto read = visitFiles(rows, [&](const FileRow& row, std::size_t number) {
    result.sizeOfAll_ += {1, static_cast<std::int64_t>(row.sourceSize.value_or(0))};
    if (isWritten(row)) result.lastRows_.add(*row.target, number);
    if (row.original) result.standIns_.try_emplace(row.original->native());
  });
  if (!read) return tl::make_unexpected(read.error());
  read = visitFiles(rows, [&](const FileRow& row, std::size_t number) {
    const auto found = result.standIns_.find(row.source.native());
    if (found != result.standIns_.end()) found->second = {row, result.isLast(row, number)};
  });
  if (!read) return tl::make_unexpected(read.error());
  return result;
}

bool StandIns::isLast(const FileRow& row, std::size_t number) const {
  return !row.target || lastRows_.isLast(*row.target, number);
}

const StandIn* StandIns::find(const Path& original) const {
  const auto found = standIns_.find(original.native());
  return found == standIns_.end() || found->second.row.source.empty() ? nullptr : &found->second;
}

}  // namespace kestrova::report
