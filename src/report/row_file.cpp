#include "report/row_file.h"

#include "report/csv_line.h"

namespace kestrova::report {

std::optional<RowFile::Format> RowFile::formatOf(const Path& file) {
  const Path extension = file.extension();
  if (extension == ".ndjson") return Format::ndjson;
  if (extension == ".csv") return Format::csv;
  return std::nullopt;
}

FileResult<RowFile> RowFile::create(const Path& file, Format format) {
  auto created = AppendFile::create(file);
  if (!created) return tl::make_unexpected(created.error());
  RowFile rows(std::move(*created), format);
  if (format == Format::csv) rows.append(csvHeader());
  if (rows.error_) return tl::make_unexpected(*rows.error_);
  return rows;
}

void RowFile::add(const Row& row) {
  if (!error_) append(format_ == Format::csv ? csvLineOf(row) : lineOf(row));
}

void RowFile::append(const std::string& line) {
  if (const auto written = file_.append(line); !written) error_ = written.error();
}

}  // namespace kestrova::report
