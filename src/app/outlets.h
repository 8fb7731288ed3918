#pragma once

#include "app/controls.h"

namespace kestrova {

/// The controls that the controller talks to. The window owns them; an absent one reads as absent, and what
/// is sent to it does nothing.
struct Outlets {
  Window* window = nullptr;
  Outlet<TableView> sourceList;
  Outlet<TextField> lblSourceCount, lblSourceSize, lblSourceDuplicates, lblSourceDuplicateSize;
  Outlet<TextField> lblTargetPath, lblTargetCount, lblTargetSize, lblTargetExistCount;
  Outlet<TextField> lblDuplicateCount, lblDuplicateSize, lblPhotoCount, lblPhotoSize;
  Outlet<TextField> lblTotalCount, lblTotalSize, lblVideoCount, lblVideoSize;
  Outlet<TextField> trgExistCount, trgExistSize, trgPhotoCount, trgPhotoSize;
  Outlet<TextField> trgTotalCount, trgTotalSize, trgVideoCount, trgVideoSize;
  Outlet<TextField> trgRotatedCount, trgRotatedSize, trgFilteredCount, trgFilteredSize;
  Outlet<CheckBox> chkRotate, chkFilterSmallPhotos, chkFilterSmallVideos;
  Outlet<ComboBox> comboCopy, comboFolderFormat, comboResolution, comboPhotoFormats;
  Outlet<RadioMatrix> radioResolution;
  Outlet<Button> buttonStart, buttonStop, btnReview;
  Outlet<ProgressIndicator> processBar, sourceProgress;
  Outlet<TextField> lblStatus;
};

}  // namespace kestrova
