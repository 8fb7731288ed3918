#pragma once

#include "platform/file_manager.h"

#include <QTreeWidget>
#include <optional>

namespace kestrova {

/// The folders of one folder whose names are not UTF-8, with all that is below them. Hidden when there are
/// none.
class UndecodableFolders : public QTreeWidget {
 public:
  explicit UndecodableFolders(QWidget* parent);

  void showThoseOf(const Path& folder);
  /// By its bytes.
  std::optional<Path> selectedFolder() const;
};

}  // namespace kestrova
