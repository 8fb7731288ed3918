#pragma once

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

namespace kestrova::test {

/// Sets the process's time zone for as long as it lives.
class TimeZone {
 public:
  explicit TimeZone(const char* name) {
    if (const char* previous = std::getenv("TZ")) previous_ = previous;
    setenv("TZ", name, 1);
    tzset();
  }
  ~TimeZone() {
    if (previous_)
      setenv("TZ", previous_->c_str(), 1);
    else
      unsetenv("TZ");
    tzset();
  }
  TimeZone(const TimeZone&) = delete;
  TimeZone& operator=(const TimeZone&) = delete;

 private:
  std::optional<std::string> previous_;
};

}  // namespace kestrova::test
