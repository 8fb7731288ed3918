#pragma once

#include <functional>
#include <future>
#include <memory>
#include <thread>

namespace kestrova {

/// Makes calls of the desktop, in their order, on a thread of its own, as nobody knows how long the desktop
/// takes for one, or whether it ever answers. What a call refers to must belong to it: a call that does not
/// return goes on after this object has gone.
class DesktopThread {
 public:
  using Call = std::function<void()>;

  DesktopThread();
  /// Makes the calls that wait, if they all return soon. Otherwise it drops those not yet begun and leaves
  /// the thread to itself.
  ~DesktopThread();
  DesktopThread(const DesktopThread&) = delete;
  DesktopThread& operator=(const DesktopThread&) = delete;

  /// Returns at once. Callable from any thread.
  void post(Call call);

 private:
  struct Calls;

  std::shared_ptr<Calls> calls_;  ///< shared with the thread, which may outlive this
  std::future<void> ended_;
  std::thread thread_;
};

/// To be called at the end of main, with the status that main is to return. Ends the process here if a thread
/// was left in a call of the desktop: the clean-up after main would wait for it.
int endOfMain(int status);

}  // namespace kestrova
