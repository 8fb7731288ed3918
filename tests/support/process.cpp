#include "support/process.h"

#include <csignal>
#include <cstring>
#include <stdexcept>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace kestrova::test {

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
  std::vector<char*> pointers;
  for (std::string& text : texts) pointers.push_back(text.data());
  pointers.push_back(nullptr);
  return pointers;
}

// Additions come first, as the first of two values of a name counts.
std::vector<std::string> environmentWith(std::vector<std::string> variables) {
  for (char** variable = environ; *variable != nullptr; ++variable) variables.emplace_back(*variable);
  return variables;
}

}  // namespace

Process::Process(const std::vector<std::string>& command, const ProcessOptions& options) {
  auto words = command;
  auto variables = environmentWith(options.environment);
  const std::string out = (folder_ / "out").native();
  const std::string err = options.errorDevice.empty() ? (folder_ / "err").native() : options.errorDevice;
  constexpr int writing = O_WRONLY | O_CREAT | O_APPEND | O_NOCTTY;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, out.c_str(), writing, 0600);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, err.c_str(), writing, 0600);
  if (!options.currentFolder.empty()) {
    posix_spawn_file_actions_addchdir_np(&actions, options.currentFolder.c_str());
  }
  const int failed = posix_spawnp(&pid_, words.front().c_str(), &actions, nullptr, pointersTo(words).data(),
                                  pointersTo(variables).data());
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) throw std::runtime_error(words.front() + ": " + std::strerror(failed));
}

Process::~Process() {
  if (!isRunning()) return;
  send(SIGKILL);
  reap(0);
}

void Process::send(int signal) const {
  if (pid_ > 0) kill(pid_, signal);
}

bool Process::isRunning() {
  reap(WNOHANG);
  return pid_ > 0;
}

ProcessResult Process::wait() {
  reap(0);
  const auto textOf = [this](const char* name) {
    return std::filesystem::exists(folder_ / name) ? readFile(folder_ / name) : std::string();
  };
  return {status_, textOf("out"), textOf("err")};
}

void Process::reap(int options) {
  int status = 0;
  if (pid_ <= 0 || waitpid(pid_, &status, options) != pid_) return;
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
  pid_ = -1;
}

ProcessResult runProcess(const std::vector<std::string>& command, const ProcessOptions& options) {
  return Process(command, options).wait();
}

}  // namespace kestrova::test
