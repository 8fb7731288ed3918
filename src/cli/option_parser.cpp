#include "cli/option_parser.h"

#include "platform/printable_text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace kestrova::cli {

namespace {

template <typename... Texts>
tl::unexpected<std::string> error(const Texts&... texts) {
  std::string message;
  (message.append(texts), ...);
  return tl::unexpected(message);
}

// Lexically, as ".." after a symbolic link leads elsewhere than it seems.
tl::expected<Path, std::string> absolutePath(const Path& path, const Path& currentFolder) {
  if (path.is_relative() && currentFolder.empty())
    return error(cli::quoted(path.native()), ": the current folder is gone");
  Path absolute;
  for (const Path& name : currentFolder / path) {
    if (!name.empty() && name != ".") absolute /= name;
  }
  return absolute;
}

}  // namespace

std::string quoted(std::string_view bytes) { return '"' + printableText(bytes).toStdString() + '"'; }

Step requireFolders(const std::vector<Path>& sources, const Path& target, std::string_view targetOption) {
  if (sources.empty()) return error("no source folder is given");
  if (target.empty()) return error("no target folder is given: ", targetOption, " FOLDER names it");
  return {};
}

std::string alternatives(std::span<const std::string_view> texts) {
  std::string list;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    if (i > 0) list += i + 1 == texts.size() ? " or " : ", ";
    list += texts[i];
  }
  return list;
}

// The questions are answered before any command is read: here they are known, so that one with a value is
// told what is wrong with it.
OptionParser::OptionParser(const Path& currentFolder) : currentFolder_(currentFolder) {
  const Take nothing = [](std::string_view) { return Step(); };
  for (const std::string_view question : {"--help", "--version"}) {
    options_.push_back({.name = question, .take = nothing});
  }
  takeOperand_ = [](std::string_view word) -> Step { return error("unexpected word ", quoted(word)); };
}

void OptionParser::flag(std::string_view name, bool& field) {
  options_.push_back({.name = name, .take = [&field](std::string_view) {
                        field = true;
                        return Step();
                      }});
}

void OptionParser::flags(std::string_view on, std::string_view off, bool& field) {
  flag(on, field);
  options_.back().opposite = off;
  options_.push_back({.name = off, .opposite = on, .take = [&field](std::string_view) {
                        field = false;
                        return Step();
                      }});
}

void OptionParser::addChoice(std::string_view name, std::array<std::string_view, 3> words,
                             std::function<void(std::int64_t index)> choose) {
  const auto take = [name, words, choose = std::move(choose)](std::string_view value) -> Step {
    const auto found = std::find(words.begin(), words.end(), value);
    if (found == words.end()) {
      return error("unknown value ", quoted(value), " for ", name, ": it takes ", alternatives(words));
    }
    choose(found - words.begin());
    return {};
  };
  options_.push_back({.name = name, .needs = "a value: " + alternatives(words), .take = take});
}

void OptionParser::number(std::string_view name, std::size_t most, std::optional<std::size_t>& field) {
  const std::string kind = "a number from 1 to " + std::to_string(most);
  const auto take = [name, most, kind, &field](std::string_view value) -> Step {
    std::size_t number = 0;
    const auto [end, problem] = std::from_chars(value.begin(), value.end(), number);
    if (problem != std::errc() || end != value.end() || number < 1 || number > most)
      return error(name, " takes ", kind, ", not ", quoted(value));
    field = number;
    return {};
  };
  options_.push_back({.name = name, .needs = kind, .take = take});
}

void OptionParser::path(std::string_view name, std::string_view kind, Path& field) {
  const auto take = [this, name, kind, &field](std::string_view value) -> Step {
    if (value.empty()) return error(name, " needs ", kind);
    auto absolute = absolutePath(value, currentFolder_);
    if (!absolute) return tl::unexpected(absolute.error());
    field = *std::move(absolute);
    return {};
  };
  options_.push_back({.name = name, .needs = std::string(kind), .take = take});
}

void OptionParser::operands(std::string_view kind, std::vector<Path>& field) {
  takeOperand_ = [this, kind, &field](std::string_view word) -> Step {
    if (word.empty()) return error("the name of ", kind, " is empty");
    auto absolute = absolutePath(word, currentFolder_);
    if (!absolute) return tl::unexpected(absolute.error());
    field.push_back(*std::move(absolute));
    return {};
  };
}

void OptionParser::operand(std::string& field) {
  takeOperand_ = [&field](std::string_view word) -> Step {
    if (!field.empty()) return error("unexpected word ", quoted(word));
    field = word;
    return {};
  };
}

Step OptionParser::parse(Words words) {
  words_ = words;
  while (!words_.empty()) {
    if (Step step = takeWord(next()); !step) return step;
  }
  return {};
}

std::string_view OptionParser::next() {
  const std::string_view word = words_.front();
  words_ = words_.subspan(1);
  return word;
}

Step OptionParser::takeWord(std::string_view word) {
  if (onlyOperands_ || !word.starts_with('-') || word == "-") return takeOperand_(word);
  if (word == "--") {
    onlyOperands_ = true;
    return {};
  }
  const auto equals = word.find('=');
  if (equals == std::string_view::npos) return takeOption(word, std::nullopt);
  return takeOption(word.substr(0, equals), word.substr(equals + 1));
}

Step OptionParser::takeOption(std::string_view name, std::optional<std::string_view> value) {
  const auto option = std::ranges::find(options_, name, &Option::name);
  if (option == options_.end()) return error("unknown option ", quoted(name));
  const bool takesValue = !option->needs.empty();
  if (!takesValue && value) return error(name, " takes no value");
  if (given_.contains(option->opposite)) return error(name, " contradicts ", option->opposite);
  if (!given_.insert(name).second) return error(name, " is given twice");
  if (!takesValue) return option->take({});
  if (!value && !words_.empty() && !words_.front().starts_with("--")) value = next();
  if (!value) return error(name, " needs ", option->needs);
  return option->take(*value);
}

}  // namespace kestrova::cli
