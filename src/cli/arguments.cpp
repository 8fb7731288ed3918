#include "cli/arguments.h"

#include "platform/printable_text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <set>
#include <type_traits>
#include <utility>

namespace kestrova::cli {

namespace {

using Step = tl::expected<void, std::string>;

struct Choice {
  std::string_view name;
  std::array<std::string_view, 3> words;  // in the order of the option's table
  void (*choose)(Arguments& arguments, std::int64_t index);
};

template <auto field>
constexpr Choice choiceOf(std::string_view name) {
  using Option = std::remove_reference_t<decltype(std::declval<Arguments>().*field)>;
  const auto& [first, second, third] = tableOf(Option());
  return {name, {first.word, second.word, third.word}, [](Arguments& arguments, std::int64_t index) {
            arguments.*field = optionAt<Option>(index);
          }};
}

constexpr std::array choices{
    choiceOf<&Arguments::media>("--media"), choiceOf<&Arguments::photoFormats>("--photo-formats"),
    choiceOf<&Arguments::folders>("--folders"), choiceOf<&Arguments::size>("--size")};

struct Flag {
  std::string_view name;
  bool Arguments::*field;
  bool value = true;
  std::string_view opposite = {};
};

constexpr std::array flags{
    Flag{"--upright", &Arguments::upright, true, "--no-upright"},
    Flag{"--no-upright", &Arguments::upright, false, "--upright"},
    Flag{"--skip-small-photos", &Arguments::skipSmallPhotos},
    Flag{"--skip-small-videos", &Arguments::skipSmallVideos},
    Flag{"--json", &Arguments::json},
    Flag{"--quiet", &Arguments::quiet},
    Flag{"--log", &Arguments::log},
};

template <typename Options>
auto find(const Options& options, std::string_view name) {
  return std::find_if(options.begin(), options.end(),
                      [&](const auto& option) { return option.name == name; });
}

template <typename... Texts>
tl::unexpected<std::string> error(const Texts&... texts) {
  std::string message;
  (message.append(texts), ...);
  return tl::unexpected(message);
}

std::string quoted(std::string_view bytes) { return '"' + printableText(bytes).toStdString() + '"'; }

std::string allowed(const Choice& choice) {
  const auto& [first, second, third] = choice.words;
  return std::string(first).append(", ").append(second).append(" or ").append(third);
}

// Lexically, as ".." behind a symbolic link leads elsewhere than it looks.
Path absolutePath(const Path& path, const Path& currentFolder) {
  Path absolute;
  for (const Path& name : currentFolder / path) {
    if (!name.empty() && name != ".") absolute /= name;
  }
  return absolute;
}

class Parser {
 public:
  Parser(std::span<const std::string_view> words, const Path& currentFolder)
      : words_(words), currentFolder_(currentFolder) {}

  tl::expected<Arguments, std::string> parse() {
    while (!words_.empty() && arguments_.command == Arguments::Command::organise) {
      if (const Step step = takeWord(next()); !step) return tl::unexpected(step.error());
    }
    if (const Step complete = checkComplete(); !complete) return tl::unexpected(complete.error());
    return std::move(arguments_);
  }

 private:
  using Value = std::optional<std::string_view>;

  std::string_view next() {
    const std::string_view word = words_.front();
    words_ = words_.subspan(1);
    return word;
  }

  Step takeWord(std::string_view word) {
    if (onlyPaths_ || !word.starts_with('-') || word == "-") return takePositional(word);
    if (word == "--") {
      onlyPaths_ = true;
      return {};
    }
    const auto equals = word.find('=');
    if (equals == std::string_view::npos) return takeOption(word, std::nullopt);
    return takeOption(word.substr(0, equals), word.substr(equals + 1));
  }

  Step takePositional(std::string_view word) {
    if (!hasCommand_) {
      hasCommand_ = word == "organise";
      if (!hasCommand_) return error("unknown command ", quoted(word), ": there is \"organise\"");
    } else if (word.empty()) {
      return error("the name of a source folder is empty");
    } else {
      arguments_.sources.push_back(absolutePath(word, currentFolder_));
    }
    return {};
  }

  Step takeOption(std::string_view name, Value value) {
    if (name == "--help" || name == "--version") return takeQuestion(name, value);
    if (const auto flag = find(flags, name); flag != flags.end()) return takeFlag(*flag, value);
    const auto choice = find(choices, name);
    if (choice == choices.end() && name != "--to") return error("unknown option ", quoted(name));
    if (!given_.insert(name).second) return error(name, " is given twice");
    if (!value && !words_.empty() && !words_.front().starts_with("--")) value = next();
    return name == "--to" ? takeTarget(value) : takeChoice(*choice, value);
  }

  Step takeQuestion(std::string_view name, Value value) {
    if (value) return error(name, " takes no value");
    arguments_.command = name == "--help" ? Arguments::Command::help : Arguments::Command::version;
    return {};
  }

  Step takeFlag(const Flag& flag, Value value) {
    if (value) return error(flag.name, " takes no value");
    if (given_.contains(flag.opposite)) return error(flag.name, " contradicts ", flag.opposite);
    if (!given_.insert(flag.name).second) return error(flag.name, " is given twice");
    arguments_.*flag.field = flag.value;
    return {};
  }

  Step takeTarget(Value value) {
    if (value.value_or("").empty()) return error("--to needs a folder");
    arguments_.target = absolutePath(*value, currentFolder_);
    return {};
  }

  Step takeChoice(const Choice& choice, Value value) {
    if (!value) return error(choice.name, " needs a value: ", allowed(choice));
    const auto found = std::find(choice.words.begin(), choice.words.end(), *value);
    if (found == choice.words.end()) {
      return error("unknown value ", quoted(*value), " for ", choice.name, ": it takes ", allowed(choice));
    }
    choice.choose(arguments_, found - choice.words.begin());
    return {};
  }

  Step checkComplete() const {
    if (arguments_.command != Arguments::Command::organise) return {};
    if (!hasCommand_) return error("no command is given: there is \"organise\"");
    if (arguments_.sources.empty()) return error("no source folder is given");
    if (arguments_.target.empty()) return error("no target folder is given: --to FOLDER names it");
    return {};
  }

  std::span<const std::string_view> words_;
  const Path& currentFolder_;
  Arguments arguments_;
  std::set<std::string_view> given_;
  bool hasCommand_ = false;
  bool onlyPaths_ = false;
};

}  // namespace

tl::expected<Arguments, std::string> parseArguments(std::span<const std::string_view> words,
                                                    const Path& currentFolder) {
  return Parser(words, currentFolder).parse();
}

std::string_view helpText() {
  return R"(Copies scattered photos and videos into one folder tree sorted by date. Originals are never changed.

Usage: kestrova-cli organise SOURCE... --to TARGET [OPTION...]

  --to TARGET            the folder for the new tree; created if it does not exist
  --media all|photos|videos
                         what to copy (default all)
  --photo-formats jpeg|jpeg+tiff|jpeg+tiff+png
                         which formats count as photos (default jpeg)
  --folders long|medium|short
                         2014/05/21-May-2014 Wednesday, 2014/05/21-May Wednesday or
                         2014/05/21 (default long)
  --size original|720p|1080p
                         the largest size for photos (default original)
  --upright, --no-upright
                         rotate photos upright or keep their orientation (default --upright)
  --skip-small-photos    skip photos smaller than 20,000 bytes or 400 pixels on a side
  --skip-small-videos    skip videos smaller than 2,000,000 bytes
  --json                 print the summary as one JSON object
  --quiet                print errors only: no progress, no table
  --log                  log what happens to each file on standard error
  --help, --version
  --                     every argument after it is a source folder

Ctrl-C stops after the current file. Run the same command again to resume.

Exit status: 0 completed, 1 error, 2 wrong usage, 130 stopped.
)";
}

}  // namespace kestrova::cli
