#pragma once

#include "platform/user_defaults.h"

namespace kestrova::test {

/// Settings that hold nothing and count how often they are saved.
class CountingDefaults : public UserDefaults {
 public:
  QVariant value(const QString&) const override { return {}; }
  void setValue(const QString&, const QVariant&) override {}
  void synchronize() override { ++saves; }
  int saves = 0;
};

}  // namespace kestrova::test
