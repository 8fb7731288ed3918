#include "app/time_left.h"

#include <algorithm>
#include <cmath>

namespace kestrova {

namespace {

// What a file costs in addition to its bytes, in bytes: names, attributes and the wait for the disk.
constexpr double costOfFile = 512.0 * 1024.0;

constexpr std::chrono::milliseconds shortestLesson(250);
constexpr std::chrono::seconds warmUp(3);   // before the first estimate
constexpr std::chrono::seconds memory(20);  // after this time, about two thirds are forgotten

}  // namespace

double workOf(std::int64_t files, std::int64_t bytes) {
  return static_cast<double>(bytes) + costOfFile * static_cast<double>(files);
}

// Waiting does not make a large file end sooner, so a wait reduces the estimate by half at most.
std::optional<std::chrono::seconds> TimeLeft::guess(double done, double whole, Clock::time_point now) {
  if (!last_) last_ = Note{now, done};
  if (done > last_->done && now - last_->time >= shortestLesson) learn({now, done});
  if (worked_ < warmUp || whole <= done) return std::nullopt;
  const Seconds rest((whole - last_->done) / speed_);
  const Seconds left = std::max(rest - Seconds(now - last_->time), rest / 2);
  return std::chrono::round<std::chrono::seconds>(left);
}

// At first the mean of all measurements, later a decaying one.
void TimeLeft::learn(const Note& note) {
  const Seconds span = note.time - last_->time;
  worked_ += span;
  const double weight = std::max(span / worked_, 1 - std::exp(-(span / Seconds(memory))));
  speed_ += weight * ((note.done - last_->done) / span.count() - speed_);
  last_ = note;
}

}  // namespace kestrova
