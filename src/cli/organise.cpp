#include "cli/organise.h"

#include "cli/folder_notices.h"
#include "cli/output.h"
#include "cli/run.h"
#include "platform/dry_run_files.h"
#include "report/run_folder.h"

#include <QLoggingCategory>

namespace kestrova::cli {

namespace {

constexpr std::size_t mostJobsToAskFor = 64;

Progress::Mode progressMode(const OrganiseArguments& arguments) {
  if (arguments.quiet) return Progress::Mode::silent;
  return arguments.log ? Progress::Mode::plain : Progress::modeOfStandardError();
}

void printResult(const OrganiseArguments& arguments, const Summary& summary,
                 const std::vector<Tally::Remark>& remarks) {
  if (arguments.json) {
    print(stdout, summaryJson(summary).toStdString());
  } else if (!arguments.quiet) {
    print(stdout, summaryTable(summary).toStdString());
  }
  if (!arguments.quiet) print(stderr, noticeLines(remarks).toStdString());
  print(stderr, errorLines(summary, remarks).toStdString());
  if (summary.verification) print(stderr, riskLines(*summary.verification).toStdString());
}

/// Sums are of no use where nobody knows whether they are right.
bool verifies(const OrganiseArguments& arguments) { return arguments.verify || !arguments.checksums.empty(); }

report::RowSource rowsOf(const Summary& summary, const Findings& findings) {
  return [&](const std::function<bool(const report::Row&)>& visit) -> FileResult<void> {
    if (!findings.keepsRows) return report::readRows(report::rowsFile(summary.record), visit);
    for (const report::Row& row : findings.rows) {
      if (!visit(row)) break;
    }
    return {};
  };
}

Verification verifyRun(const OrganiseArguments& arguments, const Summary& summary, Findings& findings,
                       const StopSignals& stop) {
  if (summary.end == RunEnd::stopped)
    return {.result = {}, .failure = "the run was stopped, and what it wrote is not verified"};
  if (!summary.recordFailure.empty())
    return {.result = {}, .failure = "the run cannot be verified, as its record is not whole"};
  findings.report.reset();  // its writer makes room for what replaces it
  const bool hasReport = summary.reportFailure.empty();
  return verify({.stop = stop,
                 .mode = progressMode(arguments),
                 .rows = rowsOf(summary, findings),
                 .target = arguments.target,
                 .record = summary.record,
                 .report = hasReport ? arguments.report : Path(),
                 .checksums = arguments.checksums},
                systemFileManager());
}

/// Why the report cannot be written, in one line for the user; empty when it can.
std::string openReport(const Path& file, Findings& findings) {
  if (file.empty()) return {};
  auto rows = report::RowFile::create(file, *report::RowFile::formatOf(file));
  if (!rows) return cli::quoted(file.native()) + ": " + rows.error().message;
  findings.report = *std::move(rows);
  return {};
}

/// Free bytes on the volume that the folder is on, or would be; nothing where that cannot be told.
std::optional<std::uint64_t> freeSpaceFor(Path folder) {
  std::error_code error;
  while (!std::filesystem::exists(folder, error) && folder.has_relative_path()) folder = folder.parent_path();
  const auto space = std::filesystem::space(folder, error);
  return error ? std::nullopt : std::optional<std::uint64_t>(space.available);
}

}  // namespace

tl::expected<OrganiseArguments, std::string> parseOrganise(Words words, const Path& currentFolder) {
  OrganiseArguments arguments;
  OptionParser parser(currentFolder);
  parser.operands("a source folder", arguments.sources);
  parser.path("--to", "a folder", arguments.target);
  parser.choice("--media", arguments.media);
  parser.choice("--photo-formats", arguments.photoFormats);
  parser.choice("--folders", arguments.folders);
  parser.choice("--size", arguments.size);
  parser.flags("--upright", "--no-upright", arguments.upright);
  parser.flag("--skip-small-photos", arguments.skipSmallPhotos);
  parser.flag("--skip-small-videos", arguments.skipSmallVideos);
  parser.number("--jobs", mostJobsToAskFor, arguments.jobs);
  parser.flag("--dry-run", arguments.dryRun);
  parser.path("--report", "a file", arguments.report);
  parser.flag("--no-record", arguments.noRecord);
  parser.flag("--verify", arguments.verify);
  parser.path("--checksums", "a file", arguments.checksums);
  parser.flag("--json", arguments.json);
  parser.flag("--quiet", arguments.quiet);
  parser.flag("--log", arguments.log);
  if (const Step parsed = parser.parse(words); !parsed) return tl::unexpected(parsed.error());
  if (const Step given = requireFolders(arguments.sources, arguments.target, "--to"); !given)
    return tl::unexpected(given.error());
  if (!arguments.report.empty() && !report::RowFile::formatOf(arguments.report)) {
    return tl::unexpected(std::string("--report takes a file whose name ends in .ndjson or .csv"));
  }
  if (arguments.dryRun && verifies(arguments)) {
    return tl::unexpected(std::string("a dry run writes nothing that could be verified"));
  }
  return arguments;
}

int run(const OrganiseArguments& arguments) {
  if (arguments.log) QLoggingCategory::setFilterRules(QStringLiteral("*=false\nkestrova=true"));
  const auto files = systemFileManager();
  const auto dryFiles = arguments.dryRun ? std::make_shared<DryRunFiles>(files) : nullptr;
  if (const std::string reason = unusableFolder(arguments, *files); !reason.empty()) return refuse(reason);

  StopSignals stop;  // before there are other threads: no signal is for them
  Findings findings;
  if (const std::string reason = openReport(arguments.report, findings); !reason.empty()) {
    return refuse(reason);
  }

  if (!arguments.quiet) print(stderr, noticesOf(overlapsOf(arguments.sources, arguments.target)));

  findings.keepsRows = verifies(arguments) && (arguments.noRecord || !report::runsFolder());
  Summary summary = [&] {
    Progress progress(progressMode(arguments));
    return organise(arguments, dryFiles ? dryFiles : files, {.stop = stop, .progress = progress}, findings);
  }();
  if (dryFiles) summary.space = Summary::Space{dryFiles->writtenBytes(), freeSpaceFor(arguments.target)};
  if (verifies(arguments)) summary.verification = verifyRun(arguments, summary, findings, stop);
  printResult(arguments, summary, findings.tally.remarks());
  return exitStatus(summary);
}

}  // namespace kestrova::cli
