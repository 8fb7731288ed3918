#pragma once

namespace kestrova::test {

/// While it lives, this thread accesses files as an ordinary user, even if the tests run as root; so
/// unreadable files really are unreadable. Other threads are not affected.
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
