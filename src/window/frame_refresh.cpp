#include "window/frame_refresh.h"

#include <utility>

namespace kestrova {

namespace {

constexpr int frameMilliseconds = 30;

}  // namespace

FrameRefresh::~FrameRefresh() {
  for (const Binding& binding : bindings_) binding.control->didChange = nullptr;
}

void FrameRefresh::bind(const std::shared_ptr<Control>& control, Copy copy) {
  Binding& binding = bindings_.emplace_back(Binding{control, std::move(copy)});
  control->didChange = [this, &binding] { mark(binding); };
  binding.copy();
}

void FrameRefresh::mark(Binding& binding) {
  binding.changed = true;
  if (!timer_.isActive()) timer_.start(frameMilliseconds, this);
}

void FrameRefresh::timerEvent(QTimerEvent*) {
  timer_.stop();
  for (Binding& binding : bindings_) {
    if (std::exchange(binding.changed, false)) binding.copy();
  }
  if (didRefresh) didRefresh();
}

}  // namespace kestrova
