#pragma once

#include "cli/cli_folders.h"

#include <gtest/gtest.h>

namespace kestrova::test {

/// The real program with folders, records and a trash of its own.
class CliRecords : public testing::Test {
 protected:
  ProcessOptions environment() const {
    return {.environment = {"TZ=UTC", "LC_ALL=C", "TERM=dumb", "HOME=" + root.path().native(),
                            "XDG_STATE_HOME=" + (root / "state").native(),
                            "XDG_DATA_HOME=" + (root / "data").native()}};
  }
  ProcessResult run(const Words& arguments) const { return runProcess(commandOf(arguments), environment()); }

  TemporaryFolder root;
  Path card = root / "card";
  Path tree = root / "tree";
  Path runs = root / "state/kestrova/runs";
};

}  // namespace kestrova::test
