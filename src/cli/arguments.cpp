#include "cli/arguments.h"

#include <algorithm>
#include <array>
#include <optional>

namespace kestrova::cli {

namespace {

struct Command {
  std::string_view name;
  std::string_view help;
  tl::expected<Arguments, std::string> (*parse)(Words words, const Path& currentFolder);
};

template <auto parseCommand>
tl::expected<Arguments, std::string> parse(Words words, const Path& currentFolder) {
  auto arguments = parseCommand(words, currentFolder);
  if (!arguments) return tl::unexpected(arguments.error());
  return *std::move(arguments);
}

constexpr std::array commands{
    Command{"organise", organiseHelp, parse<parseOrganise>},
    Command{"check", checkHelp, parse<parseCheck>},
    Command{"undo", undoHelp, parse<parseUndo>},
    Command{"runs", runsHelp, parse<parseRuns>},
};

std::string commandNames() {
  std::vector<std::string_view> names;
  for (const Command& command : commands) names.push_back(command.name);
  return alternatives(names);
}

std::optional<Arguments> questionIn(Words words) {
  for (const std::string_view word : words) {
    if (word == "--") return std::nullopt;
    if (word == "--help") return HelpRequest();
    if (word == "--version") return VersionRequest();
  }
  return std::nullopt;
}

}  // namespace

tl::expected<Arguments, std::string> parseArguments(Words words, const Path& currentFolder) {
  if (auto question = questionIn(words)) return *std::move(question);
  const auto name = std::ranges::find_if(words, [](std::string_view word) { return !word.starts_with('-'); });
  if (name == words.end()) return tl::unexpected("no command is given: expected " + commandNames());
  const auto command = std::ranges::find(commands, *name, &Command::name);
  if (command == commands.end()) {
    return tl::unexpected("unknown command " + quoted(*name) + ": expected " + commandNames());
  }
  std::vector<std::string_view> others(words.begin(), name);
  others.insert(others.end(), name + 1, words.end());
  return command->parse(others, currentFolder);
}

std::string helpText() {
  std::string text =
      "Copies scattered photos and videos into one folder tree sorted by date. Originals are never "
      "changed.\n\n";
  for (const Command& command : commands) text.append("kestrova-cli ").append(command.help).append("\n");
  return text + R"(Every command:
  --help, --version
  --                     every argument after it is a folder

Exit status: 0 completed, 1 error, 2 wrong usage, 130 stopped.
)";
}

}  // namespace kestrova::cli
