#include "app/organise_manager.h"
#include "platform/file_url.h"
#include "scan/media_classification.h"

#include <QDataStream>
#include <QIODevice>
#include <exception>

namespace kestrova {

namespace {

QByteArray archived(const QStringList& urls) {
  QByteArray data;
  QDataStream stream(&data, QIODevice::WriteOnly);
  stream.setVersion(QDataStream::Qt_6_0);
  stream << urls;
  return data;
}

template <typename Paths>
QStringList urlsOf(const Paths& paths) {
  QStringList urls;
  for (const Path& path : paths) urls << QString::fromStdString(fileUrlString(path));
  return urls;
}

/// Selects the stored choice, or the first one if the list does not have it.
template <typename Option>
void restoreChoice(const UserDefaults& defaults, const Outlet<ComboBox>& combo, const QString& key) {
  const auto stored = optionAt<Option>(defaults.integer(key).value_or(0));
  combo->selectItemAtIndex(stored == Option::none ? 0 : indexOf(stored));
  combo->setObjectValue(combo->objectValueOfSelectedItem());
}

void restoreState(UserDefaults& defaults, const Outlet<CheckBox>& checkBox, const QString& key) {
  if (const auto stored = defaults.integer(key)) checkBox->setState(*stored);
}

}  // namespace

void OrganiseManager::saveSettings() {
  auto& defaults = *host_.defaults;
  try {
    std::vector<Path> target;
    if (const auto folder = targetPath.get()) target.push_back(*folder);
    defaults.setValue(QStringLiteral("sourcePathList"), archived(urlsOf(sourcePathList.get())));
    defaults.setValue(QStringLiteral("targetPath"), archived(urlsOf(target)));
    defaults.setValue(QStringLiteral("selectedCopy"), comboCopy->indexOfSelectedItem());
    defaults.setValue(QStringLiteral("selectedFolderFormat"), comboFolderFormat->indexOfSelectedItem());
    defaults.setValue(QStringLiteral("selectedResolution"), comboResolution->indexOfSelectedItem());
    defaults.setValue(QStringLiteral("selectedPhotoFormats"), comboPhotoFormats->indexOfSelectedItem());
    defaults.setValue(QStringLiteral("selectedRotate"), chkRotate->state());
    defaults.setValue(QStringLiteral("selectedFilterPhoto"), chkFilterSmallPhotos->state());
    defaults.setValue(QStringLiteral("selectedFilterVideo"), chkFilterSmallVideos->state());
    defaults.synchronize();
  } catch (const std::exception&) {
    // Settings that cannot be saved are not a reason to stop the user.
  }
}

// Sources and target are saved but never restored: a run starts from folders that the user has just chosen.
void OrganiseManager::loadSettings() {
  auto& defaults = *host_.defaults;
  loadingSettings = true;
  months = englishMonths();
  days = englishDays();
  sourcePathList = std::vector<Path>();

  restoreChoice<Media>(defaults, comboCopy, QStringLiteral("selectedCopy"));
  restoreChoice<FolderFormat>(defaults, comboFolderFormat, QStringLiteral("selectedFolderFormat"));
  if (!defaults.integer(QStringLiteral("selectedFolderFormat"))) {
    comboFolderFormat->setObjectValue(comboCopy->objectValueOfSelectedItem());
  }
  restoreChoice<Resolution>(defaults, comboResolution, QStringLiteral("selectedResolution"));
  restoreChoice<PhotoFormats>(defaults, comboPhotoFormats, QStringLiteral("selectedPhotoFormats"));
  restoreState(defaults, chkRotate, QStringLiteral("selectedRotate"));
  restoreState(defaults, chkFilterSmallPhotos, QStringLiteral("selectedFilterPhoto"));
  restoreState(defaults, chkFilterSmallVideos, QStringLiteral("selectedFilterVideo"));

  // The stored value decides here, as a 32-bit number, not the combo box.
  const auto formats =
      static_cast<std::int32_t>(defaults.integer(QStringLiteral("selectedPhotoFormats")).value_or(0));
  const ExtensionList extensions = photoExtensions(optionAt<PhotoFormats>(formats));
  extensionImages = extensions.isEmpty() ? photoExtensions(PhotoFormats::jpeg) : extensions;
  extensionVideo = videoExtensions();
  loadingSettings = false;
  buttonStop->setEnabled(false);
}

void OrganiseManager::comboBoxSelectionDidChange() {
  if (loadingSettings) return;
  saveSettings();
  const ExtensionList extensions =
      photoExtensions(optionAt<PhotoFormats>(comboPhotoFormats->indexOfSelectedItem()));
  if (!extensions.isEmpty()) extensionImages = extensions;
}

void OrganiseManager::chkSelected(const Control*) { saveSettings(); }

}  // namespace kestrova
