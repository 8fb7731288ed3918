#include "cli/verification.h"

#include "cli/output.h"
#include "cli/work.h"
#include "report/checksums.h"
#include "report/rewritten_photos.h"
#include "report/row_replacement.h"
#include "report/run_folder.h"

#include <optional>
#include <utility>
#include <vector>

namespace kestrova::cli {

namespace {

/// What becomes of the rows once they are verified.
class Findings {
 public:
  explicit Findings(const VerificationTask& task) : task_(task) {
    if (!task.record.empty()) replace(report::rowsFile(task.record));
    if (!task.report.empty()) replace(task.report);
  }

  void add(const report::Row& row) {
    for (auto& replacement : replacements_) replacement.add(row);
    const auto* file = std::get_if<report::FileRow>(&row);
    const bool isWhole =
        file != nullptr && file->target && !file->targetSha256.empty() && file->atRisk.empty();
    if (isWhole && !task_.checksums.empty()) sums_ += report::checksumLine(file->targetSha256, *file->target);
  }

  /// Why something is not as it should be; empty when all is.
  std::string finish(FileManager& files) {
    for (auto& replacement : replacements_) {
      note("the record was not completed", replacement.finish());
    }
    if (task_.checksums.empty()) return failure_;
    const auto* data = reinterpret_cast<const std::uint8_t*>(sums_.data());
    note("the checksums were not written", files.writeDataReplacing({data, sums_.size()}, task_.checksums));
    return failure_;
  }

 private:
  void replace(const Path& rows) {
    auto replacement = report::RowReplacement::begin(rows);
    if (replacement) {
      replacements_.push_back(*std::move(replacement));
    } else {
      note("the record was not completed", tl::make_unexpected(replacement.error()));
    }
  }

  void note(const char* what, const FileResult<void>& result) {
    if (!result && failure_.empty()) failure_ = std::string(what) + ": " + result.error().message;
  }

  const VerificationTask& task_;
  std::vector<report::RowReplacement> replacements_;
  std::string sums_;
  std::string failure_;
};

}  // namespace

Verification verify(const VerificationTask& task, std::shared_ptr<FileManager> files) {
  Work work(task.stop, QStringLiteral("Verifying"), task.mode);
  const report::Stopped stopped = work.stopped();
  report::RewrittenPhotos rewritten(report::runsFolder().value_or(Path()), task.target, files);
  Findings findings(task);
  report::VerifyRequest request{.rows = task.rows, .target = task.target};
  request.isRewrittenInTarget = [&](const Path& photo) { return rewritten.hold(photo, stopped); };
  request.tell = [&](const report::Row& row) {
    findings.add(row);
    return true;
  };
  request.stopped = stopped;
  request.progress = work.listener();
  auto result = report::verifyRun(request);
  if (!result) return {.result = {}, .failure = "the run cannot be verified: " + result.error().message};
  if (result->wasStopped) return {.result = *std::move(result), .failure = {}};
  return {.result = *std::move(result), .failure = findings.finish(*files)};
}

QString riskLines(const Verification& verification) {
  QString lines;
  for (const auto& [source, reason, isReadable] : verification.result.atRisk) {
    const char* const advice = isReadable ? "; copy it as it is with \"check --rescue\""
                                          : "; try to read it again, or look for another copy of it";
    lines += problemLine("at risk: ", source, reason + advice);
  }
  return lines;
}

}  // namespace kestrova::cli
