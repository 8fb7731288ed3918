#include "cli/check.h"

#include "cli/check_report.h"
#include "cli/output.h"
#include "cli/rescue.h"
#include "cli/work.h"
#include "platform/path_relation.h"
#include "report/check.h"
#include "report/rewritten_photos.h"
#include "report/run_folder.h"

#include <memory>
#include <optional>
#include <utility>

namespace kestrova::cli {

namespace {

/// Why the folders cannot be checked; empty when they can.
std::string unusable(const CheckArguments& arguments, const FileManager& files) {
  const Path target = resolvedPath(arguments.target);
  if (!files.isDirectory(target)) return cli::quoted(arguments.target.native()) + " is not a folder";
  for (const Path& source : arguments.sources) {
    const std::string name = cli::quoted(source.native());
    if (!files.isDirectory(source)) return name + " is not a folder";
    if (isInside(target, resolvedPath(source)))
      return "the target lies inside the source " + name + " and would be erased with it";
    if (!arguments.rescue.empty() && isInside(resolvedPath(arguments.rescue), resolvedPath(source)))
      return "the rescue folder lies inside the source " + name + " and would be erased with it";
  }
  return {};
}

/// The files that are neither photos nor videos go into the list, if they are to be rescued.
report::CheckResult check(const CheckArguments& arguments, const std::shared_ptr<FileManager>& files,
                          const StopSignals& stop, std::vector<Path>& leftBehind) {
  Work work(stop, QStringLiteral("Comparing"));
  const report::Stopped stopped = work.stopped();
  report::RewrittenPhotos rewritten(report::runsFolder().value_or(Path()), arguments.target, files);
  report::CheckRequest request{.sources = arguments.sources, .target = arguments.target};
  request.isRewrittenInTarget = [&](const Path& photo) { return rewritten.hold(photo, stopped); };
  if (!arguments.rescue.empty()) request.leavesBehind = [&](const Path& file) { leftBehind.push_back(file); };
  request.stopped = stopped;
  request.progress = work.listener();
  return report::checkSources(request);
}

}  // namespace

tl::expected<CheckArguments, std::string> parseCheck(Words words, const Path& currentFolder) {
  CheckArguments arguments;
  OptionParser parser(currentFolder);
  parser.operands("a source folder", arguments.sources);
  parser.path("--in", "a folder", arguments.target);
  parser.path("--rescue", "a folder", arguments.rescue);
  parser.flag("--json", arguments.json);
  if (const Step parsed = parser.parse(words); !parsed) return tl::unexpected(parsed.error());
  if (const Step given = requireFolders(arguments.sources, arguments.target, "--in"); !given)
    return tl::unexpected(given.error());
  return arguments;
}

int run(const CheckArguments& arguments) {
  const auto files = systemFileManager();
  if (const std::string reason = unusable(arguments, *files); !reason.empty()) return refuse(reason);

  const StopSignals stop;
  CheckOutcome outcome{.target = arguments.target, .rescue = arguments.rescue};
  std::vector<Path> wanted;
  outcome.check = check(arguments, files, stop, wanted);
  if (!arguments.rescue.empty() && !outcome.check.wasStopped) {
    for (const report::PathReason& missing : outcome.check.missing) wanted.push_back(missing.path);
    outcome.rescued = rescue({arguments.sources, std::move(wanted), arguments.rescue}, *files, stop);
  }
  print(stdout, arguments.json ? checkJson(outcome).toStdString() : checkText(outcome).toStdString());
  print(stderr, rescueErrors(outcome).toStdString());
  return exitStatus(outcome);
}

}  // namespace kestrova::cli
