#pragma once

#include "app/main_interface.h"
#include "support/temporary_folder.h"

#include <QStringList>
#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

namespace kestrova::test {

/// Collects the log's lines for as long as it lives, from any thread.
class LogCapture {
 public:
  LogCapture();
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  QStringList lines() const;
  bool holds(const QString& line) const { return lines().contains(line); }
  qsizetype count(const QString& start) const;
};

/// Counts what is created and released.
class FakePowerAssertions : public PowerAssertions {
 public:
  std::optional<std::uint32_t> create(const QString& reason) override;
  void release(std::uint32_t identifier) override;

  /// Called first by `create`; set before a run.
  std::function<void()> onCreate = [] {};
  /// From now on `create` yields nothing.
  std::atomic<bool> isRefusing = false;

  std::vector<QString> reasons() const;
  std::vector<std::uint32_t> released() const;

 private:
  mutable std::mutex mutex_;
  std::vector<QString> reasons_;
  std::vector<std::uint32_t> released_;
};

/// The whole program without a window, on a source and a target folder of its own. Settings are loaded.
class HeadlessProgram {
 public:
  explicit HeadlessProgram(std::shared_ptr<FileManager> files = systemFileManager(),
                           std::shared_ptr<UserDefaults> defaults = volatileUserDefaults(),
                           std::optional<std::size_t> jobs = 1);
  ~HeadlessProgram();

  TemporaryFolder folder;
  const Path source = folder / "source";
  const Path target = folder / "target";
  const Path runs = folder / "runs";  ///< where runs are recorded
  std::shared_ptr<FakePowerAssertions> power = std::make_shared<FakePowerAssertions>();
  LogCapture log;
  /// The program's clock; called on any thread.
  std::function<Date()> clock = currentDate;
  std::unique_ptr<MainInterface> interface;

  OrganiseManager& manager() { return interface->manager; }

  /// Chooses both folders.
  void chooseFolders();
  /// Presses Start with both folders chosen and returns when nothing is left to do.
  void run();
  void press(const std::shared_ptr<Button>& button);
  /// Returns when the queue holds no operation and all posted blocks have run.
  void waitUntilEnded();
  /// Runs the main queue until the condition holds; fails the test if it never does.
  void waitUntil(const std::function<bool()>& condition);
  /// Runs all blocks posted so far.
  static void settle();
  QString status() const { return interface->lblStatus->stringValue(); }
  /// Every status text since the program began.
  const QStringList& statusTexts() const { return statusTexts_; }
  std::vector<std::string> targetFiles() const { return filesBelow(target); }

 private:
  QStringList statusTexts_;
};

/// A file that looks like a photo to anything that does not read pixels; files of different seeds differ.
Path writePhoto(const Path& path, std::size_t size, char seed = 'a');

/// Sets a file's modification time, given as a local time "yyyy:MM:dd HH:mm:ss".
void setModified(const Path& path, std::string_view localTime);

}  // namespace kestrova::test
