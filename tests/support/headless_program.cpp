#include "support/headless_program.h"

#include "planning/calendar.h"
#include "platform/main_queue.h"
#include "support/patience.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace kestrova::test {

namespace {

std::mutex logMutex;
QStringList logLines;
QtMessageHandler previousHandler = nullptr;

void collect(QtMsgType, const QMessageLogContext&, const QString& message) {
  const std::lock_guard lock(logMutex);
  logLines << message;
}

}  // namespace

LogCapture::LogCapture() {
  logLines.clear();
  previousHandler = qInstallMessageHandler(collect);
}

LogCapture::~LogCapture() { qInstallMessageHandler(previousHandler); }

QStringList LogCapture::lines() const {
  const std::lock_guard lock(logMutex);
  return logLines;
}

qsizetype LogCapture::count(const QString& start) const {
  const auto all = lines();
  return std::count_if(all.begin(), all.end(), [&](const QString& line) { return line.startsWith(start); });
}

std::optional<std::uint32_t> FakePowerAssertions::create(const QString& reason) {
  onCreate();
  if (isRefusing) return std::nullopt;
  const std::lock_guard lock(mutex_);
  reasons_.push_back(reason);
  return static_cast<std::uint32_t>(100 + reasons_.size());
}

void FakePowerAssertions::release(std::uint32_t identifier) {
  const std::lock_guard lock(mutex_);
  released_.push_back(identifier);
}

std::vector<QString> FakePowerAssertions::reasons() const {
  const std::lock_guard lock(mutex_);
  return reasons_;
}

std::vector<std::uint32_t> FakePowerAssertions::released() const {
  const std::lock_guard lock(mutex_);
  return released_;
}

HeadlessProgram::HeadlessProgram(std::shared_ptr<FileManager> files, std::shared_ptr<UserDefaults> defaults,
                                 std::optional<std::size_t> jobs) {
  std::filesystem::create_directories(source);
  std::filesystem::create_directories(target);
  Host host;
  host.files = std::move(files);
  host.defaults = std::move(defaults);
  host.power = power;
  host.jobs = jobs;
  host.runs = runs;
  host.now = [this] { return clock(); };
  interface = std::make_unique<MainInterface>(std::move(host));
  interface->lblStatus->didChange = [this] { statusTexts_ << status(); };
  settle();
}

HeadlessProgram::~HeadlessProgram() {
  interface.reset();
  settle();
}

void HeadlessProgram::chooseFolders() {
  manager().addSource(source);
  manager().setTarget(target);
}

void HeadlessProgram::run() {
  chooseFolders();
  press(interface->buttonStart);
  waitUntilEnded();
}

void HeadlessProgram::press(const std::shared_ptr<Button>& button) { button->performClick(); }

void HeadlessProgram::waitUntilEnded() {
  waitUntil([this] { return manager().processQueue->operationCount() == 0; });
  manager().processQueue->waitUntilIdle();
  settle();
}

void HeadlessProgram::waitUntil(const std::function<bool()>& condition) {
  ASSERT_TRUE(MainQueue::instance().runUntil(condition, patience));
}

void HeadlessProgram::settle() { MainQueue::instance().runPending(); }

Path writePhoto(const Path& path, std::size_t size, char seed) {
  std::string contents(size, seed);
  return writeFile(path, contents);
}

void setModified(const Path& path, std::string_view localTime) {
  const auto date = parseLocalTime(localTime).value();
  const timespec time{date.seconds, date.nanoseconds};
  const timespec times[] = {time, time};
  ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

}  // namespace kestrova::test
