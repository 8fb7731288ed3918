#include "report/row_replacement.h"

#include <system_error>
#include <utility>

namespace kestrova::report {

namespace {

Path replacementOf(const Path& file) { return file.native() + ".new"; }

}  // namespace

FileResult<RowReplacement> RowReplacement::begin(const Path& file) {
  std::error_code error;
  std::filesystem::remove(replacementOf(file), error);
  auto rows = RowFile::create(replacementOf(file), RowFile::formatOf(file).value_or(RowFile::Format::ndjson));
  if (!rows) return tl::make_unexpected(rows.error());
  return RowReplacement(*std::move(rows), file);
}

RowReplacement::~RowReplacement() {
  std::error_code error;
  if (!file_.empty()) std::filesystem::remove(replacementOf(file_), error);
}

void RowReplacement::add(const Row& row) { rows_->add(row); }

FileResult<void> RowReplacement::finish() {
  rows_->flush();
  if (const auto error = rows_->error()) return tl::make_unexpected(*error);
  rows_.reset();
  auto replaced = replaceDurably(replacementOf(file_), file_);
  if (replaced) file_.clear();
  return replaced;
}

}  // namespace kestrova::report
