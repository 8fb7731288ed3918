#include "app/status_line.h"

#include <utility>

namespace kestrova {

// Posted with the lock held, as the order of the calls is the order of the texts.
void StatusLine::show(const QString& text) {
  const MutexLock lock(mutex_);
  waiting_.reset();
  post_([this, text] { display_(text); });
}

void StatusLine::showForFile(Text text) {
  const MutexLock lock(mutex_);
  if (waiting_) {
    *waiting_ = std::move(text);
    return;
  }
  waiting_ = std::make_shared<Text>(std::move(text));
  post_([this, waiting = waiting_] { display_(take(waiting)()); });
}

StatusLine::Text StatusLine::take(const std::shared_ptr<Text>& waiting) {
  const MutexLock lock(mutex_);
  if (waiting_ == waiting) waiting_.reset();
  return std::move(*waiting);
}

}  // namespace kestrova
