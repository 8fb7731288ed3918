#pragma once

#include "app/organise_manager.h"

namespace kestrova {

/// Stands between the application and the controller. Owns neither of what it refers to.
class AppDelegate {
 public:
  OrganiseManager* orManager = nullptr;
  Window* window = nullptr;

  void applicationDidFinishLaunching() const {}
  TerminateReply applicationShouldTerminate(const Control* application) const {
    return orManager->appShouldTerminate(application);
  }
};

}  // namespace kestrova
