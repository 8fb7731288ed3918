#include "platform/power_assertion.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

namespace kestrova {

namespace {

class DisplayAssertions : public PowerAssertions {
 public:
  std::optional<std::uint32_t> create(const QString& reason) override {
    const CFStringRef name = reason.toCFString();
    IOPMAssertionID identifier = kIOPMNullAssertionID;
    const IOReturn result = IOPMAssertionCreateWithName(CFSTR("NoDisplaySleepAssertion"),
                                                        kIOPMAssertionLevelOn, name, &identifier);
    CFRelease(name);
    if (result != kIOReturnSuccess) return std::nullopt;
    return identifier;
  }
  void release(std::uint32_t identifier) override { IOPMAssertionRelease(identifier); }
};

}  // namespace

std::shared_ptr<PowerAssertions> systemPowerAssertions() { return std::make_shared<DisplayAssertions>(); }

}  // namespace kestrova
