#include "report/verify.h"

#include "report/rewritten_photos.h"

#include <optional>
#include <utility>

namespace kestrova::report {

namespace {

std::string textOf(const Path& path) { return '"' + path.native() + '"'; }

/// What a row comes to: nothing, or why its file is at risk.
struct Risk {
  std::string reason;
  bool isReadable = true;
};
using Finding = std::optional<Risk>;

class Verification {
 public:
  explicit Verification(const VerifyRequest& request) : request_(request) {}

  FileResult<VerifyResult> run() {
    auto standIns = StandIns::of(request_.rows);
    if (!standIns) return tl::make_unexpected(standIns.error());
    standIns_ = std::move(*standIns);
    progress_.total = standIns_.sizeOfAll();
    const auto read = request_.rows([&](const Row& row) { return take(row); });
    if (!read) return tl::make_unexpected(read.error());
    return std::move(result_);
  }

 private:
  bool isStopped() { return report::isStopped(request_.stopped, result_.wasStopped); }

  bool take(const Row& row) {
    if (isStopped()) return false;
    const auto* file = std::get_if<FileRow>(&row);
    if (file == nullptr) return tell(row);
    FileRow verified = *file;
    const Finding finding = verify(verified);
    if (isStopped()) return false;
    const Amount amount{1, static_cast<std::int64_t>(verified.sourceSize.value_or(0))};
    verified.atRisk = finding ? finding->reason : std::string();
    if (finding) {
      result_.atRisk.push_back({verified.source, finding->reason, finding->isReadable});
      result_.amount += amount;
    }
    progress_.done += amount;
    if (request_.progress) request_.progress(progress_);
    return tell(verified);
  }

  bool tell(const Row& row) const { return !request_.tell || request_.tell(row); }

  Finding verify(FileRow& row) {
    const bool isLast = standIns_.isLast(row, number_++);
    switch (row.verdict) {
      case Outcome::copied:
        return isLast ? compareWithTarget(row, "its copy differs from it") : overwritten();
      case Outcome::resized:
      case Outcome::rewritten:
        return isLast ? verifyRewritten(row) : overwritten();
      case Outcome::exists:
      case Outcome::nameTaken:
        return verifySetAside(row, "another file has its name in the target");
      case Outcome::duplicate:
      case Outcome::sameContent:
        return verifyDuplicate(row);
      case Outcome::failed:
        return Risk{"could not be written: " + row.reason};
      case Outcome::unreadable:
        return Risk{"cannot be read: " + row.reason, false};
      case Outcome::notReached:
        return Risk{"was not reached by the run"};
      case Outcome::small:
        return std::nullopt;
    }
    return std::nullopt;
  }

  static Finding overwritten() { return Risk{"a later photo of its name was written over it"}; }

  Finding verifyRewritten(FileRow& row) const {
    const auto sum = sha256Of(row.source, ReadFrom::cache, request_.stopped);
    if (!sum) return Risk{"cannot be read: " + sum.error().message, false};
    if (row.sourceSha256.empty()) row.sourceSha256 = *sum;
    if (row.sourceSha256 != *sum) return Risk{"has changed since the run"};
    const Path target = request_.target / row.target.value_or(Path());
    if (auto why = whyNotWhole(target, row.targetSha256, ReadFrom::disk, request_.stopped)) return Risk{*why};
    if (row.targetSha256.empty()) row.targetSha256 = sha256Of(target).value_or("");
    if (row.pagesLeftOut == 0) return std::nullopt;
    return Risk{row.pagesLeftOut == 1 ? "one page was left out"
                                      : std::to_string(row.pagesLeftOut) + " pages were left out"};
  }

  /// The target may have a rewritten version of a file that was set aside, from an earlier run.
  Finding verifySetAside(FileRow& row, const std::string& difference) {
    auto finding = compareWithTarget(row, difference);
    if (!finding || !finding->isReadable) return finding;
    const bool isProven = request_.isRewrittenInTarget && request_.isRewrittenInTarget(row.source);
    return isProven ? std::nullopt : finding;
  }

  Finding compareWithTarget(FileRow& row, const std::string& difference) const {
    return compare(row, request_.target / row.target.value_or(Path()), difference);
  }

  /// Fills in the sums of both.
  Finding compare(FileRow& row, const Path& other, const std::string& difference) const {
    const auto compared = compareAndSum(row.source, other, ReadFrom::disk, request_.stopped);
    if (!compared) {
      const auto& [isFirst, error] = compared.error();
      if (isFirst) return Risk{"cannot be read: " + error.message, false};
      return Risk{textOf(other) + " cannot be read: " + error.message};
    }
    const bool isSame = compared->isSameContent;
    row.sourceSha256 = isSame ? compared->sha256 : sha256Of(row.source).value_or("");
    row.targetSha256 = isSame ? compared->sha256 : sha256Of(other).value_or("");
    if (compared->isSameFile) return Risk{"what stands for it in the target is the file itself"};
    return isSame ? std::nullopt : Finding(Risk{difference});
  }

  /// A duplicate is as safe as the file kept instead of it, provided that it really is one.
  Finding verifyDuplicate(FileRow& row) {
    const StandIn* standIn = row.original ? standIns_.find(*row.original) : nullptr;
    if (standIn == nullptr) return Risk{"nothing stands for it in the target"};
    FileRow repeated = row;
    auto finding = standIn->row.target && !isRewritten(standIn->row)
                       ? compareWithCopy(repeated, standIn->row)
                       : compareWithOriginal(repeated, *standIn);
    row.sourceSha256 = repeated.sourceSha256;
    return finding;
  }

  Finding compareWithCopy(FileRow& row, const FileRow& original) {
    row.target = original.target;
    return verifySetAside(row, "differs from what stands for it: " + textOf(original.source));
  }

  Finding compareWithOriginal(FileRow& row, const StandIn& standIn) const {
    FileRow original = standIn.row;
    const std::string name = textOf(original.source);
    if (auto finding = compare(row, original.source, "differs from what stands for it: " + name))
      return finding;
    if (original.verdict == Outcome::small) return std::nullopt;
    if (!isRewritten(original)) return Risk{"is not in the target, as little as what it repeats: " + name};
    return standIn.isLast ? verifyRewritten(original) : overwritten();
  }

  const VerifyRequest& request_;
  StandIns standIns_;
  std::size_t number_ = 0;  ///< of the next row of a file
  WorkProgress progress_;
  VerifyResult result_;
};

}  // namespace

FileResult<VerifyResult> verifyRun(const VerifyRequest& request) { return Verification(request).run(); }

}  // namespace kestrova::report
