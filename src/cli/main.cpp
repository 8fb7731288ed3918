#include "cli/arguments.h"
#include "cli/run.h"
#include "platform/log.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <csignal>
#include <cstdio>

namespace {

using namespace kestrova;
using namespace kestrova::cli;

void print(std::FILE* stream, std::string_view text) {
  std::fwrite(text.data(), 1, text.size(), stream);
  std::fflush(stream);
}

int refuse(const std::string& reason) {
  print(stderr, "kestrova-cli: " + reason + "\nTry \"kestrova-cli --help\" for help.\n");
  return 2;
}

int answer(Arguments::Command question) {
  print(stdout, question == Arguments::Command::help ? helpText() : "kestrova-cli " KESTROVA_VERSION "\n");
  return 0;
}

tl::expected<Arguments, std::string> argumentsOf(int argc, char** argv) {
  const std::vector<std::string_view> words(argv + 1, argv + argc);
  std::error_code unknown;
  return parseArguments(words, std::filesystem::current_path(unknown));
}

Progress::Mode progressMode(const Arguments& arguments) {
  if (arguments.quiet) return Progress::Mode::silent;
  return arguments.log ? Progress::Mode::plain : Progress::modeOfStandardError();
}

int run(const Arguments& arguments) {
  const auto files = systemFileManager();
  if (const std::string reason = unusableFolder(arguments, *files); !reason.empty()) return refuse(reason);

  StopSignals stop;
  Tally tally;
  const Summary summary = [&] {
    Progress progress(progressMode(arguments));
    return organise(arguments, files, stop, progress, tally);
  }();
  if (arguments.json) {
    print(stdout, summaryJson(summary).toStdString());
  } else if (!arguments.quiet) {
    print(stdout, summaryTable(summary).toStdString());
  }
  if (!arguments.quiet) print(stderr, noticeLines(tally.remarks()).toStdString());
  print(stderr, errorLines(summary, tally.remarks()).toStdString());
  return exitStatus(summary);
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a reader that went away must not end a run
  const auto arguments = argumentsOf(argc, argv);
  if (!arguments) return refuse(arguments.error());
  if (arguments->command != Arguments::Command::organise) return answer(arguments->command);

  installLog();
  QLoggingCategory::setFilterRules(arguments->log ? QStringLiteral("*=false\nkestrova=true")
                                                  : QStringLiteral("*=false"));
  int count = 1;  // Qt is not to look for options of its own
  const QCoreApplication application(count, argv);
  return run(*arguments);
}
