#pragma once

namespace kestrova::test {

/// While it lives, this thread's file accesses are those of an ordinary user, even when the tests run as
/// root; so what is unreadable really is. Other threads are not concerned.
class WithoutPrivileges {
 public:
  WithoutPrivileges();
  ~WithoutPrivileges();
  WithoutPrivileges(const WithoutPrivileges&) = delete;
  WithoutPrivileges& operator=(const WithoutPrivileges&) = delete;
};

/// Whether files that are unreadable can be tested here: always on Linux, elsewhere unless the tests run as
/// root.
bool canLosePrivileges();

}  // namespace kestrova::test
