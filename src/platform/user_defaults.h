#pragma once

#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <optional>

namespace kestrova {

/// The user's persistent settings: values under keys. Main thread only. What cannot be read is absent; what
/// cannot be written is lost in silence, as nothing depends on it.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual QVariant value(const QString& key) const = 0;  ///< invalid when there is none
  virtual void setValue(const QString& key, const QVariant& value) = 0;
  /// Brings what was set to where it persists.
  virtual void synchronize() = 0;

  /// The value as a whole number: a text gives the number that it begins with, whatever is none gives 0;
  /// nothing when the key is missing.
  std::optional<std::int64_t> integer(const QString& key) const;
};

/// The settings file of organisation and application "Kestrova", in the host's own place and format.
std::shared_ptr<UserDefaults> standardUserDefaults();

/// Settings in a file of the caller's choice (INI format).
std::shared_ptr<UserDefaults> userDefaultsInFile(const QString& file);

/// Settings that end with the process.
std::shared_ptr<UserDefaults> volatileUserDefaults();

}  // namespace kestrova
