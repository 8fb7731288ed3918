#include "cli/check_report.h"

#include "cli/output.h"
#include "platform/printable_text.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>

namespace kestrova::cli {

namespace {

const auto sourceKey = QStringLiteral("source");

/// 1,204
QString number(std::int64_t count) {
  return QLocale(QLocale::English, QLocale::UnitedStates).toString(static_cast<qlonglong>(count));
}

QString shown(const Path& path) { return printableText(path.native()); }

QString lines(const std::vector<report::PathReason>& files) {
  QString text;
  for (const auto& [path, reason] : files) {
    text += QStringLiteral("%1: %2\n").arg(shown(path), printableText(reason));
  }
  return text;
}

QString leftBehindLine(const CheckOutcome& outcome) {
  if (outcome.check.leftBehind.empty()) return {};
  return QStringLiteral("Left behind, neither photo nor video: %1\n")
      .arg(QString::fromStdString(summaryOf(outcome.check.leftBehind)));
}

QString rescueLine(const CheckOutcome& outcome) {
  if (!outcome.rescued) return {};
  const auto& rescued = *outcome.rescued;
  return QStringLiteral("Copied into %1: %2; there already: %3; failed: %4\n")
      .arg(shown(outcome.rescue), number(rescued.copied), number(rescued.alreadyThere),
           number(static_cast<std::int64_t>(rescued.failed.size())));
}

QString safeSentence(const CheckOutcome& outcome) {
  const QString where = outcome.check.isSafe()
                            ? shown(outcome.target)
                            : shown(outcome.target) + QStringLiteral(" or ") + shown(outcome.rescue);
  if (outcome.check.files == 0) return QStringLiteral("There are no photos or videos in the sources.\n");
  if (outcome.check.files == 1)
    return QStringLiteral("Safe to erase: the only photo or video is in %1.\n").arg(where);
  return QStringLiteral("Safe to erase: all %1 photos and videos are in %2.\n")
      .arg(number(outcome.check.files), where);
}

QString unsafeSentence(const CheckOutcome& outcome) {
  const auto missing = static_cast<std::int64_t>(outcome.check.missing.size());
  const auto unreadable = static_cast<std::int64_t>(outcome.check.unreadable.size());
  QString reasons;
  if (missing > 0) {
    reasons = QStringLiteral("%1 of %2 %3 not in %4")
                  .arg(number(missing), number(outcome.check.files),
                       missing == 1 ? QStringLiteral("is") : QStringLiteral("are"), shown(outcome.target));
  }
  if (missing > 0 && unreadable > 0) reasons += QStringLiteral(", and ");
  if (unreadable > 0) reasons += QStringLiteral("%1 could not be read").arg(number(unreadable));
  return QStringLiteral("NOT safe to erase: %1.\n").arg(reasons);
}

QString lastSentence(const CheckOutcome& outcome) {
  if (outcome.wasStopped()) return QStringLiteral("NOT safe to erase: the check was stopped.\n");
  return outcome.isSafe() ? safeSentence(outcome) : unsafeSentence(outcome);
}

QJsonObject rescueObject(const report::RescueResult& rescued) {
  return {{QStringLiteral("copied"), static_cast<qint64>(rescued.copied)},
          {QStringLiteral("alreadyThere"), static_cast<qint64>(rescued.alreadyThere)},
          {QStringLiteral("failed"), report::jsonOf(rescued.failed, sourceKey)}};
}

}  // namespace

bool CheckOutcome::isRescued() const {
  return rescued && rescued->failed.empty() && check.unreadable.empty();
}

QString checkText(const CheckOutcome& outcome) {
  return lines(outcome.check.missing) + lines(outcome.check.unreadable) + leftBehindLine(outcome) +
         rescueLine(outcome) + lastSentence(outcome);
}

QByteArray checkJson(const CheckOutcome& outcome) {
  QJsonObject object{
      {QStringLiteral("result"), outcome.isSafe() ? QStringLiteral("safe") : QStringLiteral("not-safe")},
      {QStringLiteral("files"), static_cast<qint64>(outcome.check.files)},
      {QStringLiteral("safe"), static_cast<qint64>(outcome.check.safe)},
      {QStringLiteral("missing"), report::jsonOf(outcome.check.missing, sourceKey)},
      {QStringLiteral("unreadable"), report::jsonOf(outcome.check.unreadable, sourceKey)},
      {QStringLiteral("leftBehind"), report::jsonOf(outcome.check.leftBehind)},
  };
  if (outcome.rescued) object.insert(QStringLiteral("rescued"), rescueObject(*outcome.rescued));
  return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QString rescueErrors(const CheckOutcome& outcome) {
  return outcome.rescued ? problemLines("not rescued: ", outcome.rescued->failed) : QString();
}

int exitStatus(const CheckOutcome& outcome) {
  if (outcome.wasStopped()) return 130;
  const bool allRescued = !outcome.rescued || outcome.rescued->failed.empty();
  return outcome.isSafe() && allRescued ? 0 : 1;
}

}  // namespace kestrova::cli
