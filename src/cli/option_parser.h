#pragma once

#include "model/options.h"
#include "platform/file_manager.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace kestrova::cli {

/// Nothing, or what is wrong with the command line: one line for the user, safe for a terminal.
using Step = tl::expected<void, std::string>;

/// Words of a command line: bytes that pass through no text codec.
using Words = std::span<const std::string_view>;

/// `texts`, between commas and with "or" before the last.
std::string alternatives(std::span<const std::string_view> texts);

/// The bytes in double quotes, safe for a terminal.
std::string quoted(std::string_view bytes);

/// Fails where there is no source or no target, whose option is named to the user.
Step requireFolders(const std::vector<Path>& sources, const Path& target, std::string_view targetOption);

/// Reads the options and operands of one command into the fields that are named to it, which must outlive it.
/// Fields without a word keep their values. No file is accessed.
class OptionParser {
 public:
  /// Relative paths start from `currentFolder`, and are an error where that is empty; symbolic links in them
  /// stay as they are.
  explicit OptionParser(const Path& currentFolder);

  void flag(std::string_view name, bool& field);
  /// Two that contradict each other.
  void flags(std::string_view on, std::string_view off, bool& field);
  /// One word of the option's table.
  template <typename Choice>
  void choice(std::string_view name, Choice& field);
  /// A whole number from 1 to `most`.
  void number(std::string_view name, std::size_t most, std::optional<std::size_t>& field);
  /// A path, made absolute; `kind` says what of, with its article.
  void path(std::string_view name, std::string_view kind, Path& field);
  /// Any number of paths, made absolute; `kind` as above.
  void operands(std::string_view kind, std::vector<Path>& field);
  /// At most one word.
  void operand(std::string& field);

  /// Options and operands may come in any order; after "--" come operands only.
  Step parse(Words words);

 private:
  using Take = std::function<Step(std::string_view value)>;
  struct Option {
    std::string_view name;
    std::string_view opposite = {};
    std::string needs = {};  ///< what its value is; empty: it takes none
    Take take = {};
  };

  std::string_view next();
  Step takeWord(std::string_view word);
  Step takeOption(std::string_view name, std::optional<std::string_view> value);
  void addChoice(std::string_view name, std::array<std::string_view, 3> words,
                 std::function<void(std::int64_t index)> choose);

  const Path& currentFolder_;
  std::vector<Option> options_;
  Take takeOperand_;
  Words words_;
  std::set<std::string_view> given_;
  bool onlyOperands_ = false;
};

template <typename Choice>
void OptionParser::choice(std::string_view name, Choice& field) {
  const auto& [first, second, third] = tableOf(Choice());
  addChoice(name, {first.word, second.word, third.word},
            [&field](std::int64_t index) { field = optionAt<Choice>(index); });
}

}  // namespace kestrova::cli
