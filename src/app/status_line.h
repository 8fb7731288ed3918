#pragma once

#include "platform/mutex.h"

#include <QString>
#include <functional>
#include <memory>

namespace kestrova {

/// The texts of the status line, on their way to the main thread. Callable from any thread.
class StatusLine {
 public:
  using Block = std::function<void()>;
  using Text = std::function<QString()>;

  /// `post` runs blocks on the main thread, in order, while this object lives; `display` is called there.
  StatusLine(std::function<void(Block)> post, std::function<void(const QString&)> display)
      : post_(std::move(post)), display_(std::move(display)) {}

  /// Displays a text. Texts appear in the order of the calls.
  void show(const QString& text);

  /// The same for a text about one of many files, which is composed only when it is displayed: where the next
  /// call comes before that, and is of this kind as well, its text takes the place of this one.
  void showForFile(Text text);

 private:
  Text take(const std::shared_ptr<Text>& waiting);

  const std::function<void(Block)> post_;
  const std::function<void(const QString&)> display_;
  Mutex mutex_;
  std::shared_ptr<Text> waiting_ GUARDED_BY(mutex_);  ///< the text posted last, if it may still be replaced
};

}  // namespace kestrova
