#pragma once

#include <QString>
#include <memory>
#include <optional>

namespace kestrova {

/// What the desktop shows about the program outside its window. A desktop that cannot show something ignores
/// it; no call blocks or fails. Main thread only.
class DesktopStatus {
 public:
  virtual ~DesktopStatus() = default;

  /// Shows a share of 0 to 1 at the program's place in the task bar; removes it when there is none.
  virtual void showProgress(std::optional<double> share) = 0;

  /// Shows a short message in plain text, outside the window.
  virtual void notify(const QString& title, const QString& text) = 0;
};

std::shared_ptr<DesktopStatus> systemDesktopStatus();

}  // namespace kestrova
