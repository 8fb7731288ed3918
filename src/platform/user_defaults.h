#pragma once

#include <QString>
#include <QVariant>
#include <cstdint>
#include <memory>
#include <optional>

namespace kestrova {

/// The user's persistent settings: values under keys. Main thread only. A value that cannot be read is
/// absent; one that cannot be written is silently lost, as nothing depends on it.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual QVariant value(const QString& key) const = 0;  ///< invalid when there is none
  virtual void setValue(const QString& key, const QVariant& value) = 0;
  /// Writes the values to persistent storage.
  virtual void synchronize() = 0;

  /// The value as a whole number: a text gives the number that it begins with, or 0 if there is none. Nothing
  /// when the key is missing.
  std::optional<std::int64_t> integer(const QString& key) const;
};

/// The settings file of organisation and application "Kestrova", in the host's own place and format.
std::shared_ptr<UserDefaults> standardUserDefaults();

/// Settings in a file of the caller's choice (INI format).
std::shared_ptr<UserDefaults> userDefaultsInFile(const QString& file);

/// Settings that end with the process.
std::shared_ptr<UserDefaults> volatileUserDefaults();

}  // namespace kestrova
