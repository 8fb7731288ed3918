#include "window/progress_text.h"

#include <QCoreApplication>
#include <QLocale>

namespace kestrova {

namespace {

QString tr(const char* text) { return QCoreApplication::translate("Progress", text); }

QString number(std::int64_t value) { return QLocale().toString(static_cast<qlonglong>(value)); }

QString foundText(std::int64_t files) {
  return files == 1 ? tr("1 file found") : tr("%1 files found").arg(number(files));
}

}  // namespace

QString progressText(const RunProgress& progress) {
  using Stage = RunProgress::Stage;
  if (progress.stage == Stage::none) return {};
  if (progress.stage == Stage::scanning) return foundText(progress.found);
  if (progress.found == 0) return tr("No photos or videos found");
  if (progress.stage == Stage::planning) return foundText(progress.found);
  return tr("%1 of %2 files").arg(number(progress.done), number(progress.found));
}

}  // namespace kestrova
