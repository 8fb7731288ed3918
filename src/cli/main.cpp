#include "cli/arguments.h"
#include "cli/output.h"
#include "platform/desktop_thread.h"
#include "platform/log.h"
#include "platform/process_start.h"

#include <QCoreApplication>
#include <QLoggingCategory>

namespace kestrova::cli {

namespace {

tl::expected<Arguments, std::string> argumentsOf(int argc, char** argv) {
  const std::vector<std::string_view> words(argv + 1, argv + argc);
  std::error_code unknown;
  return parseArguments(words, std::filesystem::current_path(unknown));
}

int run(HelpRequest) {
  print(stdout, helpText());
  return 0;
}

int run(VersionRequest) {
  print(stdout, "kestrova-cli " KESTROVA_VERSION "\n");
  return 0;
}

}  // namespace

}  // namespace kestrova::cli

int main(int argc, char** argv) {
  using namespace kestrova::cli;
  kestrova::prepareProcess();
  const auto arguments = argumentsOf(argc, argv);
  if (!arguments) return refuse(arguments.error());

  kestrova::installLog();
  QLoggingCategory::setFilterRules(QStringLiteral("*=false"));
  int count = 1;  // Qt must not look for options of its own
  const QCoreApplication application(count, argv);
  QCoreApplication::setApplicationVersion(QStringLiteral(KESTROVA_VERSION));
  return kestrova::endOfMain(std::visit([](const auto& command) { return run(command); }, *arguments));
}
