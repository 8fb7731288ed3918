#include "app/main_interface.h"

#include "model/options.h"

#include <QCoreApplication>

namespace kestrova {

namespace {

struct Items {
  Q_DECLARE_TR_FUNCTIONS(Items)
};

template <typename Table>
QStringList labelsOf(const Table& table) {
  QStringList labels;
  for (const auto& row : table) labels << Items::tr(row.label);
  return labels;
}

}  // namespace

MainInterface::MainInterface(Host host) : manager(std::move(host)) {
  delegate.orManager = &manager;
  delegate.window = &window;
  manager.window = &window;
  layOut();
  connectLabels();
  connectOptions();
  connectRun();
}

MainInterface::~MainInterface() = default;

void MainInterface::layOut() {
  comboCopy->setItems(labelsOf(mediaTable));
  comboPhotoFormats->setItems(labelsOf(photoFormatsTable));
  comboFolderFormat->setItems(labelsOf(folderFormatTable));
  comboResolution->setItems(labelsOf(resolutionTable));
  chkRotate->setState(CheckBox::on);
  buttonStart->setTitle(QStringLiteral("Start"));
  buttonStop->setTitle(QStringLiteral("Stop"));
  buttonStop->setEnabled(false);
  sourceProgress->setHidden(true);
}

void MainInterface::connectLabels() {
  manager.lblSourceCount = lblSourceCount;
  manager.lblSourceSize = lblSourceSize;
  manager.lblSourceDuplicates = lblSourceDuplicates;
  manager.lblSourceDuplicateSize = lblSourceDuplicateSize;
  manager.lblTargetPath = lblTargetPath;
  manager.lblTargetCount = lblTargetCount;
  manager.lblTargetSize = lblTargetSize;
  manager.lblTargetExistCount = lblTargetExistCount;
  manager.lblDuplicateCount = lblDuplicateCount;
  manager.lblDuplicateSize = lblDuplicateSize;
  manager.lblPhotoCount = lblPhotoCount;
  manager.lblPhotoSize = lblPhotoSize;
  manager.lblTotalCount = lblTotalCount;
  manager.lblTotalSize = lblTotalSize;
  manager.lblVideoCount = lblVideoCount;
  manager.lblVideoSize = lblVideoSize;
  manager.trgExistCount = trgExistCount;
  manager.trgExistSize = trgExistSize;
  manager.trgPhotoCount = trgPhotoCount;
  manager.trgPhotoSize = trgPhotoSize;
  manager.trgTotalCount = trgTotalCount;
  manager.trgTotalSize = trgTotalSize;
  manager.trgVideoCount = trgVideoCount;
  manager.trgVideoSize = trgVideoSize;
  manager.trgRotatedCount = trgRotatedCount;
  manager.trgRotatedSize = trgRotatedSize;
  manager.trgFilteredCount = trgFilteredCount;
  manager.trgFilteredSize = trgFilteredSize;
  manager.lblStatus = lblStatus;
}

void MainInterface::connectOptions() {
  manager.sourceList = sourceList;
  manager.chkRotate = chkRotate;
  manager.chkFilterSmallPhotos = chkFilterSmallPhotos;
  manager.chkFilterSmallVideos = chkFilterSmallVideos;
  manager.comboCopy = comboCopy;
  manager.comboFolderFormat = comboFolderFormat;
  manager.comboResolution = comboResolution;
  manager.comboPhotoFormats = comboPhotoFormats;
  manager.radioResolution = radioResolution;
  for (const auto& box : {chkRotate, chkFilterSmallPhotos, chkFilterSmallVideos}) {
    box->action = [this, sender = box.get()] { manager.chkSelected(sender); };
  }
  for (const auto& box : {comboCopy, comboFolderFormat, comboResolution, comboPhotoFormats}) {
    box->selectionDidChange = [this] { manager.comboBoxSelectionDidChange(); };
  }
}

void MainInterface::connectRun() {
  manager.buttonStart = buttonStart;
  manager.buttonStop = buttonStop;
  manager.btnReview = btnReview;
  manager.processBar = processBar;
  manager.sourceProgress = sourceProgress;
  buttonStart->action = [this] { manager.startProcess(buttonStart.get()); };
  buttonStop->action = [this] { manager.stopProcess(buttonStop.get()); };
  btnReview->action = [this] { manager.gotoReviewPage(btnReview.get()); };
}

}  // namespace kestrova
