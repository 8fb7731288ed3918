#pragma once

#include "model/tally.h"
#include "platform/file_manager.h"

#include <QJsonObject>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace kestrova::report {

/// Counts the files that are not organised, by their extension in lower case ("" for none). Extensions are
/// bytes: what is not ASCII stays as it is.
class LeftBehind {
 public:
  void add(std::string_view fileName, std::uint64_t size);

  const std::map<std::string, Amount>& byExtension() const { return byExtension_; }
  Amount total() const;
  bool empty() const { return byExtension_.empty(); }

 private:
  std::map<std::string, Amount> byExtension_;
};

/// Amounts by extension; one that is not UTF-8 is printable text.
QJsonObject jsonOf(const LeftBehind& files);

/// The extension under which a file is counted.
std::string leftBehindExtension(std::string_view fileName);

/// One line for people, the most frequent first: "312 HEIC, 40 XMP, 12 AAE"; at most `most` of them, then
/// "and 7 others". Files without an extension are "without extension". Safe for a terminal.
std::string summaryOf(const LeftBehind& files, std::size_t most = 6);

}  // namespace kestrova::report
