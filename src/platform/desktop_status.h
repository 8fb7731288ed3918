#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace kestrova {

/// What the desktop shows of the program outside its window. A desktop that cannot show it ignores it; no
/// call waits for it or fails. Main thread only.
class DesktopStatus {
 public:
  virtual ~DesktopStatus() = default;

  /// Shows a share of 0 to 1 at the program's place in the task bar; takes it away when there is none.
  virtual void showProgress(std::optional<double> share) = 0;

  /// Shows a short message, in plain text, wherever the user is looking.
  virtual void notify(const QString& title, const QString& text) = 0;
};

std::shared_ptr<DesktopStatus> systemDesktopStatus();

}  // namespace kestrova
