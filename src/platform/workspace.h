#pragma once

#include <QString>
#include <memory>

namespace kestrova {

/// The user's desktop. Main thread only.
class Workspace {
 public:
  virtual ~Workspace() = default;
  /// Opens an address with the user's default handler; returns whether one took it.
  virtual bool openUrl(const QString& address) = 0;
};

std::shared_ptr<Workspace> desktopWorkspace();

}  // namespace kestrova
