#include "window/run_texts.h"

#include <QCoreApplication>
#include <QLocale>
#include <QStringList>

namespace kestrova {

namespace {

struct Run {
  Q_DECLARE_TR_FUNCTIONS(Run)
};

QString number(std::int64_t value) { return QLocale().toString(static_cast<qlonglong>(value)); }

// Languages choose the plural by this number.
int plural(std::int64_t count) { return static_cast<int>(count); }

QString activityText(const RunProgress& progress) {
  const auto percent = progress.percent();
  if (!percent) return Run::tr("Searching");
  const QString text = Run::tr("%1%").arg(number(*percent));
  return progress.run.isPaused ? Run::tr("%1 (paused)").arg(text) : text;
}

QString shareText(const RunProgress& progress) {
  return Run::tr("%1 of %Ln file(s)", nullptr, plural(progress.found)).arg(number(progress.done));
}

}  // namespace

QString progressText(const RunProgress& progress) {
  switch (progress.run.phase) {
    case RunPhase::idle:
      return {};
    case RunPhase::scanning:
    case RunPhase::planning:
      return Run::tr("%Ln file(s) found", nullptr, plural(progress.found));
    case RunPhase::executing:
      return shareText(progress);
    case RunPhase::ended:
      const bool hasNothing = progress.run.end == RunEnd::nothingFound;
      return hasNothing ? Run::tr("No photos or videos found") : shareText(progress);
  }
  return {};
}

QString titleText(const RunProgress& progress) {
  const auto name = QStringLiteral("Kestrova");
  return progress.run.isRunning() ? activityText(progress) + QStringLiteral(" - ") + name : name;
}

QString timeLeftText(std::chrono::seconds left) {
  using std::chrono::hours;
  using std::chrono::minutes;
  using std::chrono::seconds;
  if (left <= seconds(10)) return Run::tr("A few seconds left");
  if (left <= seconds(50)) return Run::tr("Less than a minute left");
  const auto whole = std::chrono::round<minutes>(left);
  if (whole < minutes(90)) return Run::tr("About %Ln minute(s) left", nullptr, plural(whole.count()));
  return Run::tr("About %Ln hour(s) left", nullptr, plural(std::chrono::round<hours>(left).count()));
}

QString writtenText(std::int64_t files) { return Run::tr("%Ln file(s) written.", nullptr, plural(files)); }

QString remainderText(const RunRemainder& remainder) {
  if (remainder.foundNothing)
    return Run::tr(
        "There are no photos or videos in these folders. To try others, close Kestrova and open it again.");
  QStringList sentences;
  const auto add = [&sentences](std::int64_t count, auto text) {
    if (count > 0) sentences << text(plural(count));
  };
  add(remainder.failed, [](int n) { return Run::tr("%Ln file(s) could not be written.", nullptr, n); });
  add(remainder.nameTaken, [](int n) {
    return Run::tr("%Ln file(s) were left out, as another file has their name.", nullptr, n);
  });
  add(remainder.alreadyThere,
      [](int n) { return Run::tr("%Ln file(s) were in the target already.", nullptr, n); });
  return sentences.join(u' ');
}

QString unusableTargetText(const QString& reason) {
  return Run::tr("The target folder cannot be used: %1").arg(reason);
}

}  // namespace kestrova
