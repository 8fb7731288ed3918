#include "app/organise_manager.h"
#include "platform/log.h"

#include <QCoreApplication>
#include <chrono>

namespace kestrova {

namespace {

std::chrono::sys_seconds instantOf(const Date& date) {
  return std::chrono::sys_seconds(std::chrono::seconds(date.seconds));
}

template <typename Option>
QJsonValue wordOf(const Outlet<ComboBox>& combo) {
  const auto* row = rowOf(optionAt<Option>(combo->indexOfSelectedItem()));
  if (row == nullptr) return {};
  return QString::fromLatin1(row->word.data(), static_cast<qsizetype>(row->word.size()));
}

QJsonObject optionsOf(const Outlets& outlets) {
  const auto isOn = [](const Outlet<CheckBox>& box) { return box->state() == CheckBox::on; };
  return {{QStringLiteral("media"), wordOf<Media>(outlets.comboCopy)},
          {QStringLiteral("photoFormats"), wordOf<PhotoFormats>(outlets.comboPhotoFormats)},
          {QStringLiteral("folders"), wordOf<FolderFormat>(outlets.comboFolderFormat)},
          {QStringLiteral("size"), wordOf<Resolution>(outlets.comboResolution)},
          {QStringLiteral("upright"), isOn(outlets.chkRotate)},
          {QStringLiteral("skipSmallPhotos"), isOn(outlets.chkFilterSmallPhotos)},
          {QStringLiteral("skipSmallVideos"), isOn(outlets.chkFilterSmallVideos)}};
}

}  // namespace

void OrganiseManager::beginRecord() {
  beginFailure_.clear();
  if (!host_.runs) return;
  report::RunInfo info{.version = QCoreApplication::applicationVersion().toStdString(),
                       .command = "organise",
                       .options = optionsOf(*this),
                       .sources = sourcePathList.get(),
                       .target = runTarget_,
                       .counts = {}};
  auto begun = report::Recorder::begin(*host_.runs, std::move(info), instantOf(host_.now()));
  if (begun) {
    recorder_ = *std::move(begun);
  } else {
    beginFailure_ = begun.error().message;
    log(QStringLiteral("The run is not recorded: ") + QString::fromStdString(beginFailure_));
  }
}

// Nothing about the run can change any more: its result is settled.
void OrganiseManager::endRecord() {
  if (!recorder_) return;
  RunState state = runState();
  state.finish();
  recorder_->end(kestrova::wordOf(*state.end), instantOf(host_.now()));
  if (const std::string failure = recordFailure(); !failure.empty())
    log(QStringLiteral("The record is not whole: ") + QString::fromStdString(failure));
}

Path OrganiseManager::recordFolder() const { return recorder_ ? recorder_->folder() : Path(); }

std::string OrganiseManager::recordFailure() const {
  const auto error = recorder_ ? recorder_->error() : std::nullopt;
  return error ? error->message : beginFailure_;
}

void OrganiseManager::tellRow(const report::Row& row) {
  if (recorder_) recorder_->add(row);
  if (rowListener) rowListener(row);
}

void OrganiseManager::tellUnreadable(const Path& path, const FileError& error) {
  if (unreadableListener) unreadableListener(path, error);
  if (tellsRows()) tellRow(report::UnreadableRow{.source = path, .reason = error.message});
}

}  // namespace kestrova
