#include "support/system_call_faults.h"

#ifdef __linux__

#include <cerrno>
#include <cstddef>
#include <future>
#include <map>
#include <thread>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace kestrova::test {

namespace {

using Filter = std::vector<sock_filter>;

sock_filter statement(int code, unsigned value) { return {static_cast<unsigned short>(code), 0, 0, value}; }

/// Returns `action` if the number is that of the call.
void addRule(Filter& filter, int number, unsigned action) {
  filter.push_back({BPF_JMP | BPF_JEQ | BPF_K, 0, 1, static_cast<unsigned>(number)});
  filter.push_back(statement(BPF_RET | BPF_K, action));
}

Filter startOfFilter() { return {statement(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))}; }

/// Installs the filter on this thread, permanently. Less than zero if that is not allowed; a listener with
/// SECCOMP_FILTER_FLAG_NEW_LISTENER.
int install(Filter filter, unsigned flags) {
  filter.push_back(statement(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
  const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
  if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) return -1;
  return static_cast<int>(::syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, flags, &program));
}

/// Answers the listener's requests until the last thread that sends them has ended.
int interruptEveryOther(int listener) {
  std::map<int, bool> wasInterrupted;
  int interrupted = 0;
  for (;;) {
    pollfd waiting{listener, POLLIN, 0};
    if (::poll(&waiting, 1, -1) < 0 || (waiting.revents & POLLHUP) != 0) return interrupted;
    seccomp_notif question = {};
    if (::ioctl(listener, SECCOMP_IOCTL_NOTIF_RECV, &question) != 0) continue;
    bool& was = wasInterrupted[question.data.nr];
    seccomp_notif_resp answer = {};
    answer.id = question.id;
    if (was) answer.flags = SECCOMP_USER_NOTIF_FLAG_CONTINUE;
    if (!was) answer.error = -EINTR;
    if (!was) ++interrupted;
    was = !was;
    ::ioctl(listener, SECCOMP_IOCTL_NOTIF_SEND, &answer);
  }
}

}  // namespace

bool withFailingCalls(const std::vector<FailingCall>& calls, const std::function<void()>& work) {
  Filter filter = startOfFilter();
  for (const auto& call : calls)
    addRule(filter, call.number, SECCOMP_RET_ERRNO | static_cast<unsigned>(call.error));
  bool isAllowed = false;
  std::thread([&] {
    isAllowed = install(filter, 0) == 0;
    if (isAllowed) work();
  }).join();
  return isAllowed;
}

int withInterruptedCalls(const std::vector<int>& numbers, const std::function<void()>& work) {
  Filter filter = startOfFilter();
  for (const int number : numbers) addRule(filter, number, SECCOMP_RET_USER_NOTIF);
  std::promise<int> listener;
  std::thread worker([&] {
    const int installed = install(filter, SECCOMP_FILTER_FLAG_NEW_LISTENER);
    listener.set_value(installed);
    if (installed >= 0) work();
  });
  const int installed = listener.get_future().get();
  const int interrupted = installed < 0 ? -1 : interruptEveryOther(installed);
  worker.join();
  if (installed >= 0) ::close(installed);
  return interrupted;
}

}  // namespace kestrova::test

#else

namespace kestrova::test {

bool withFailingCalls(const std::vector<FailingCall>&, const std::function<void()>&) { return false; }

int withInterruptedCalls(const std::vector<int>&, const std::function<void()>&) { return -1; }

}  // namespace kestrova::test

#endif
