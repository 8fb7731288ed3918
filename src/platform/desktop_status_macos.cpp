#include "platform/desktop_status.h"

namespace kestrova {

namespace {

// The window's own display has to do here.
class NoStatus : public DesktopStatus {
 public:
  void showProgress(std::optional<double>) override {}
  void notify(const QString&, const QString&) override {}
};

}  // namespace

std::shared_ptr<DesktopStatus> systemDesktopStatus() { return std::make_shared<NoStatus>(); }

}  // namespace kestrova
