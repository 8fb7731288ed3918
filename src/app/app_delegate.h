#pragma once

#include "app/organise_manager.h"

namespace kestrova {

/// Connects the application and the controller. Owns neither.
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
