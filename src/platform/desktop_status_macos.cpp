#include "platform/desktop_status.h"

namespace kestrova {

namespace {

// Here only the window itself shows progress.
class NoStatus : public DesktopStatus {
 public:
  void showProgress(std::optional<double>) override {}
  void notify(const QString&, const QString&) override {}
};

}  // namespace

std::shared_ptr<DesktopStatus> systemDesktopStatus() { return std::make_shared<NoStatus>(); }

}  // namespace kestrova
