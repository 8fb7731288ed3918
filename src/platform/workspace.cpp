#include "platform/workspace.h"

#include <QDesktopServices>
#include <QUrl>

namespace kestrova {

namespace {

class DesktopWorkspace : public Workspace {
 public:
  bool openUrl(const QString& address) override { return QDesktopServices::openUrl(QUrl(address)); }
};

}  // namespace

std::shared_ptr<Workspace> desktopWorkspace() { return std::make_shared<DesktopWorkspace>(); }

}  // namespace kestrova
