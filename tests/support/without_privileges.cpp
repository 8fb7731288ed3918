#include "support/without_privileges.h"

#include <unistd.h>

#ifdef __linux__
#include <sys/fsuid.h>
#endif

namespace kestrova::test {

#ifdef __linux__

namespace {

constexpr unsigned nobody = 65534;

}  // namespace

// The kernel drops root's rights over files for threads with another file system user.
WithoutPrivileges::WithoutPrivileges() {
  ::setfsgid(::geteuid() == 0 ? nobody : ::getegid());
  ::setfsuid(::geteuid() == 0 ? nobody : ::geteuid());
}

WithoutPrivileges::~WithoutPrivileges() {
  ::setfsuid(::geteuid());
  ::setfsgid(::getegid());
}

bool canLosePrivileges() { return true; }

#else

WithoutPrivileges::WithoutPrivileges() = default;
WithoutPrivileges::~WithoutPrivileges() = default;
bool canLosePrivileges() { return ::geteuid() != 0; }

#endif

}  // namespace kestrova::test
