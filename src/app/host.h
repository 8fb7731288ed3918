#pragma once

#include "platform/file_manager.h"
#include "platform/power_assertion.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

#include <QString>
#include <QStringList>
#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <thread>

namespace kestrova {

/// Lets the user pick one folder; files cannot be chosen. Main thread only.
class FolderPanel {
 public:
  static constexpr int okResponse = 1;
  using Completion = std::function<void(int result, const Path& folder)>;

  virtual ~FolderPanel() = default;
  /// Shows the panel on the main window and returns; the completion is called once, when the user has
  /// answered.
  virtual void beginSheetModalForWindow(Completion completion) = 0;
};

struct Alert {
  QString messageText;
  QString informativeText;
  QStringList buttons;  ///< the first is the default
};

/// Asks the user something. Main thread only.
class AlertPanel {
 public:
  static constexpr int firstButtonReturn = 1000;

  virtual ~AlertPanel() = default;
  /// Returns when the user has answered: `firstButtonReturn` for the first button, one more for the second.
  /// Closing the alert without an answer counts as its last button.
  virtual int runModal(const Alert& alert) = 0;
};

/// The program's surroundings: the host system and the front end. Any of the front end's parts may be absent.
struct Host {
  std::shared_ptr<FileManager> files;
  std::shared_ptr<UserDefaults> defaults;
  std::shared_ptr<PowerAssertions> power;
  std::shared_ptr<Workspace> workspace;
  std::shared_ptr<FolderPanel> folderPanel;
  std::shared_ptr<AlertPanel> alertPanel;
  /// Asks the application to terminate, which asks its delegate.
  std::function<void()> terminate;
  std::function<Date()> now = currentDate;
  /// How many threads may work on one stage of a run, at least 1; absent: as many as suit the machine and its
  /// volumes.
  std::optional<std::size_t> jobs = 1;
  /// Where runs are recorded, see report::runsFolder; absent: they are not.
  std::optional<Path> runs = {};
};

}  // namespace kestrova
