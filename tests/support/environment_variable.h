#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace kestrova::test {

/// Sets or removes one of the process's environment variables for as long as it lives.
class EnvironmentVariable {
 public:
  /// Null removes the variable.
  EnvironmentVariable(const char* name, const char* value) : name_(name) {
    if (const char* previous = std::getenv(name)) previous_ = previous;
    set(value);
  }
  ~EnvironmentVariable() { set(previous_ ? previous_->c_str() : nullptr); }
  EnvironmentVariable(const EnvironmentVariable&) = delete;
  EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

 private:
  void set(const char* value) const {
    if (value != nullptr)
      setenv(name_, value, 1);
    else
      unsetenv(name_);
  }

  const char* name_;
  std::optional<std::string> previous_;
};

}  // namespace kestrova::test
