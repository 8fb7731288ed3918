#include "report/left_behind.h"

#include "platform/printable_text.h"
#include "report/json_amount.h"
#include "scan/media_classification.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace kestrova::report {

namespace {

std::string uppercase(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return result;
}

}  // namespace

std::string leftBehindExtension(std::string_view fileName) {
  std::string extension(extensionOfName(fileName));
  std::ranges::transform(extension, extension.begin(), lowercase);
  return extension;
}

void LeftBehind::add(std::string_view fileName, std::uint64_t size) {
  byExtension_[leftBehindExtension(fileName)] += {1, static_cast<std::int64_t>(size)};
}

Amount LeftBehind::total() const {
  Amount sum;
  for (const auto& [extension, amount] : byExtension_) sum += amount;
  return sum;
}

QJsonObject jsonOf(const LeftBehind& files) {
  QJsonObject object;
  for (const auto& [extension, amount] : files.byExtension())
    object.insert(printableText(extension), jsonOf(amount));
  return object;
}

std::string summaryOf(const LeftBehind& files, std::size_t most) {
  std::vector<std::pair<std::string, std::int64_t>> kinds;
  for (const auto& [extension, amount] : files.byExtension()) kinds.emplace_back(extension, amount.files);
  std::ranges::stable_sort(kinds, [](const auto& a, const auto& b) { return a.second > b.second; });
  std::string text;
  std::int64_t others = 0;
  for (std::size_t i = 0; i < kinds.size(); ++i) {
    const auto& [extension, count] = kinds[i];
    if (i >= most) {
      others += count;
      continue;
    }
    if (i > 0) text += ", ";
    text += std::to_string(count) + ' ';
    text += extension.empty() ? "without extension" : printableText(uppercase(extension)).toStdString();
  }
  if (others > 0) text += " and " + std::to_string(others) + (others == 1 ? " other" : " others");
  return text;
}

}  // namespace kestrova::report
