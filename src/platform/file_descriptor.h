#pragma once

#include <utility>

#include <unistd.h>

namespace kestrova {

/// Owns an open file descriptor and closes it on destruction. Less than zero: none.
class FileDescriptor {
 public:
  explicit FileDescriptor(int number = -1) : number_(number) {}
  FileDescriptor(FileDescriptor&& other) noexcept : number_(other.release()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~FileDescriptor() {
    if (number_ >= 0) ::close(number_);
  }

  int get() const { return number_; }
  int release() { return std::exchange(number_, -1); }
  explicit operator bool() const { return number_ >= 0; }

 private:
  int number_;
};

}  // namespace kestrova
