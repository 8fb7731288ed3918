#include "platform/user_defaults.h"

#include <QHash>
#include <QSettings>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace kestrova {

namespace {

class SettingsDefaults : public UserDefaults {
 public:
  explicit SettingsDefaults(std::unique_ptr<QSettings> settings) : settings_(std::move(settings)) {
    settings_->setFallbacksEnabled(false);
  }
  QVariant value(const QString& key) const override { return settings_->value(key); }
  void setValue(const QString& key, const QVariant& value) override { settings_->setValue(key, value); }
  void synchronize() override { settings_->sync(); }

 private:
  std::unique_ptr<QSettings> settings_;
};

class VolatileDefaults : public UserDefaults {
 public:
  QVariant value(const QString& key) const override { return values_.value(key); }
  void setValue(const QString& key, const QVariant& value) override { values_.insert(key, value); }
  void synchronize() override {}

 private:
  QHash<QString, QVariant> values_;
};

std::int64_t truncated(double number) {
  if (std::isnan(number)) return 0;
  constexpr double limit = 9223372036854775808.0;  // 2^63
  if (number >= limit) return std::numeric_limits<std::int64_t>::max();
  if (number < -limit) return std::numeric_limits<std::int64_t>::min();
  return static_cast<std::int64_t>(number);
}

}  // namespace

std::optional<std::int64_t> UserDefaults::integer(const QString& key) const {
  const QVariant stored = value(key);
  if (!stored.isValid()) return std::nullopt;
  if (stored.userType() == QMetaType::QString)
    return std::strtoll(stored.toString().toUtf8().constData(), nullptr, 10);
  if (stored.userType() == QMetaType::Double) return truncated(stored.toDouble());
  return stored.toLongLong();
}

std::shared_ptr<UserDefaults> standardUserDefaults() {
  return std::make_shared<SettingsDefaults>(
      std::make_unique<QSettings>(QStringLiteral("Kestrova"), QStringLiteral("Kestrova")));
}

std::shared_ptr<UserDefaults> userDefaultsInFile(const QString& file) {
  return std::make_shared<SettingsDefaults>(std::make_unique<QSettings>(file, QSettings::IniFormat));
}

std::shared_ptr<UserDefaults> volatileUserDefaults() { return std::make_shared<VolatileDefaults>(); }

}  // namespace kestrova
