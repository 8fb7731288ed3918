#pragma once

#include "support/temporary_folder.h"

#include <string>
#include <vector>

#include <sys/types.h>

namespace kestrova::test {

/// The result of a program. `status` is its exit status, or 128 and the number of the signal that ended it.
struct ProcessResult {
  int status = -1;
  std::string out;
  std::string err;
};

struct ProcessOptions {
  std::vector<std::string> environment = {};  ///< "NAME=value", added to the test's own
  Path currentFolder = {};                    ///< empty: the test's own
  std::string errorDevice = {};               ///< where standard error goes instead of into the result
};

/// A program that runs in parallel to the test; its arguments are bytes. Its standard input is empty.
class Process {
 public:
  explicit Process(const std::vector<std::string>& command, const ProcessOptions& options = {});
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  void send(int signal) const;
  bool isRunning();
  ProcessResult wait();

 private:
  void reap(int options);

  TemporaryFolder folder_;
  pid_t pid_ = -1;
  int status_ = -1;
};

ProcessResult runProcess(const std::vector<std::string>& command, const ProcessOptions& options = {});

}  // namespace kestrova::test
