#pragma once

#include "platform/user_defaults.h"
#include "support/failing_file_manager.h"
#include "support/sample_media.h"
#include "support/temporary_folder.h"
#include "window/eventually.h"
#include "window/main_window.h"

#include <QAbstractButton>
#include <QLabel>
#include <QTest>
#include <functional>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace kestrova::test {

/// A panel whose user has decided beforehand; without an answer they cancel.
class StandInFolderPanel : public FolderPanel {
 public:
  void beginSheetModalForWindow(Completion completion) override {
    const auto chosen = std::exchange(answer, std::nullopt);
    completion(chosen ? okResponse : 0, chosen.value_or(Path()));
  }
  std::optional<Path> answer;
};

class StandInAlertPanel : public AlertPanel {
 public:
  int runModal(const Alert& alert) override {
    alerts.push_back(alert);
    if (onRun) onRun();
    return answer;
  }
  std::function<void()> onRun;
  std::vector<Alert> alerts;
  int answer = firstButtonReturn + 1;
};

class StandInWorkspace : public Workspace {
 public:
  bool openUrl(const QString& address) override {
    addresses << address;
    return true;
  }
  QStringList addresses;
};

class NoPowerAssertions : public PowerAssertions {
 public:
  std::optional<std::uint32_t> create(const QString&) override { return std::nullopt; }
  void release(std::uint32_t) override {}
};

class StandInDesktop : public DesktopStatus {
 public:
  void showProgress(std::optional<double> share) override { shares.push_back(share); }
  void notify(const QString& title, const QString& text) override {
    messages << title + QStringLiteral(": ") + text;
  }
  std::vector<std::optional<double>> shares;
  QStringList messages;
};

/// A window on the screen whose settings and panels the test controls.
class WindowTest : public testing::Test {
 protected:
  WindowTest() {
    host.files = files;
    host.folderPanel = folders;
    host.alertPanel = alerts;
    host.workspace = workspace;
    host.power = std::make_shared<NoPowerAssertions>();
    host.defaults = userDefaultsInFile(settingsFile());
  }

  QString settingsFile() const { return QString::fromStdString((folder / "settings.ini").native()); }

  /// Shows the window and waits for it to have loaded its settings.
  void open() {
    window = std::make_unique<MainWindow>(host, desktop);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    ASSERT_TRUE(eventually([this] { return !controls().comboResolution->objectValue().isEmpty(); }));
    frame();
  }

  MainInterface& controls() { return window->controls(); }

  /// Lets changes reach the widgets.
  static void frame() { QTest::qWait(severalFrames); }

  template <typename Widget>
  Widget& widget(const char* name) {
    return *window->findChild<Widget*>(QString::fromLatin1(name));
  }
  QString text(const char* label) { return widget<QLabel>(label).text(); }
  QString title(const char* button) { return widget<QAbstractButton>(button).text().remove(u'&'); }
  bool isEnabled(const char* name) { return widget<QWidget>(name).isEnabled(); }
  void click(const char* button) { QTest::mouseClick(&widget<QAbstractButton>(button), Qt::LeftButton); }

  void addSource(const Path& path) {
    folders->answer = path;
    click("buttonAddSource");
  }
  void setTarget(const Path& path) {
    folders->answer = path;
    click("buttonChooseTarget");
  }
  bool waitForStatus(const char* status) {
    return eventually([&] { return text("lblStatus") == QLatin1String(status); });
  }

  TemporaryFolder folder;
  std::shared_ptr<FailingFileManager> files = std::make_shared<FailingFileManager>();
  std::shared_ptr<StandInFolderPanel> folders = std::make_shared<StandInFolderPanel>();
  std::shared_ptr<StandInAlertPanel> alerts = std::make_shared<StandInAlertPanel>();
  std::shared_ptr<StandInWorkspace> workspace = std::make_shared<StandInWorkspace>();
  std::shared_ptr<StandInDesktop> desktop = std::make_shared<StandInDesktop>();
  Host host;
  std::unique_ptr<MainWindow> window;
};

}  // namespace kestrova::test
