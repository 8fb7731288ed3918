#pragma once

#include "app/app_delegate.h"
#include "app/controls.h"
#include "app/organise_manager.h"

#include <QString>
#include <functional>
#include <memory>

namespace kestrova {

/// The window's contents without a display: owns the controls, the delegate and the controller, and connects
/// them. A window binds its widgets to the controls; the command line and tests work with the controls alone.
/// Main thread only.
class MainInterface {
 public:
  explicit MainInterface(Host host);
  ~MainInterface();
  MainInterface(const MainInterface&) = delete;
  MainInterface& operator=(const MainInterface&) = delete;

  template <typename ControlType>
  using Owned = std::shared_ptr<ControlType>;

  Window window;
  Owned<TableView> sourceList = std::make_shared<TableView>();
  Owned<TextField> lblSourceCount = text(), lblSourceSize = text();
  Owned<TextField> lblSourceDuplicates = text(), lblSourceDuplicateSize = text();
  Owned<TextField> lblTargetPath = text(), lblTargetCount = text(), lblTargetSize = text(),
                   lblTargetExistCount = text();
  Owned<TextField> lblDuplicateCount = text(), lblDuplicateSize = text(), lblPhotoCount = text(),
                   lblPhotoSize = text();
  Owned<TextField> lblTotalCount = text(), lblTotalSize = text(), lblVideoCount = text(),
                   lblVideoSize = text();
  Owned<TextField> trgExistCount = text(), trgExistSize = text(), trgPhotoCount = text(),
                   trgPhotoSize = text();
  Owned<TextField> trgTotalCount = text(), trgTotalSize = text(), trgVideoCount = text(),
                   trgVideoSize = text();
  Owned<TextField> trgRotatedCount = text(), trgRotatedSize = text(), trgFilteredCount = text(),
                   trgFilteredSize = text();
  Owned<TextField> lblStatus = text();
  Owned<CheckBox> chkRotate = check(), chkFilterSmallPhotos = check(), chkFilterSmallVideos = check();
  Owned<ComboBox> comboCopy = combo(), comboFolderFormat = combo(), comboResolution = combo(),
                  comboPhotoFormats = combo();
  Owned<RadioMatrix> radioResolution = std::make_shared<RadioMatrix>();
  Owned<Button> buttonStart = button(), buttonStop = button(), btnReview = button();
  Owned<ProgressIndicator> processBar = progress(), sourceProgress = progress();

  OrganiseManager manager;
  AppDelegate delegate;

 private:
  static Owned<TextField> text() { return std::make_shared<TextField>(); }
  static Owned<CheckBox> check() { return std::make_shared<CheckBox>(); }
  static Owned<ComboBox> combo() { return std::make_shared<ComboBox>(); }
  static Owned<Button> button() { return std::make_shared<Button>(); }
  static Owned<ProgressIndicator> progress() { return std::make_shared<ProgressIndicator>(); }

  void layOut();
  void connectLabels();
  void connectOptions();
  void connectRun();
};

}  // namespace kestrova
