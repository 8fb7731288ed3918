#include "window/main_window.h"

#include "platform/file_url.h"
#include "ui_main_window.h"
#include "window/alert_panel.h"
#include "window/bindings.h"
#include "window/dropped_folders.h"
#include "window/folder_panel.h"
#include "window/readable_palette.h"
#include "window/shown_text.h"
#include "window/visible_text.h"

#include <QDropEvent>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSessionManager>
#include <QShortcut>
#include <algorithm>

namespace kestrova {

namespace {

constexpr double headingScale = 1.15;
constexpr int buttonPadding = 12;  // points, both sides together

// Even if a move was proposed: after it the other program would delete the folder.
bool acceptAsCopy(QDropEvent& event) {
  const bool mayCopy = event.possibleActions().testFlag(Qt::CopyAction);
  if (mayCopy) event.setDropAction(Qt::CopyAction);
  event.setAccepted(mayCopy);
  return mayCopy;
}

}  // namespace

MainWindow::MainWindow(Host host, std::shared_ptr<DesktopStatus> desktop)
    : files_(host.files),
      workspace_(host.workspace),
      desktop_(std::move(desktop)),
      interface_(completed(std::move(host))),
      ui_(std::make_unique<Ui::MainWindow>()),
      dropHighlight_(*this) {
  ui_->setupUi(this);
  useReadableColors();
  layOut();
  bindFolders();
  bindOptions();
  bindFound();
  bindWritten();
  bindRun();
  bindMenus();
}

MainWindow::~MainWindow() = default;

Host MainWindow::completed(Host host) {
  if (!host.folderPanel) host.folderPanel = std::make_shared<WindowFolderPanel>(*this);
  if (!host.alertPanel) host.alertPanel = std::make_shared<WindowAlertPanel>(*this);
  if (!host.terminate) host.terminate = [this] { terminate(); };
  return host;
}

void MainWindow::useReadableColors() {
  const QPalette colors = readableColors(QGuiApplication::palette());
  if (colors != palette()) setPalette(colors);
}

bool MainWindow::event(QEvent* event) {
  if (event->type() == QEvent::ApplicationPaletteChange) useReadableColors();
  return QMainWindow::event(event);
}

// --- Folders ---

void MainWindow::bindFolders() {
  auto& manager = interface_.manager;
  auto& list = *ui_->sourceList;
  const auto remove = [&manager] { manager.deleteSource(); };
  interface_.sourceList->didChange = [this] { showSources(); };
  connect(ui_->buttonAddSource, &QPushButton::clicked, &refresh_, [&manager] { manager.chooseSourcePath(); });
  connect(ui_->buttonRemoveSource, &QPushButton::clicked, &refresh_, remove);
  connect(&list, &SourceList::removeRequested, &refresh_, remove);
  connect(&list, &SourceList::itemSelectionChanged, &refresh_, [this] {
    interface_.sourceList->selectRowIndexes(ui_->sourceList->selectedRows());
    ui_->buttonRemoveSource->setEnabled(!interface_.sourceList->selectedRowIndexes().empty());
  });
  connect(ui_->buttonChooseTarget, &QPushButton::clicked, &refresh_,
          [&manager] { manager.chooseTargetPath(); });
  bindTextField(refresh_, interface_.lblTargetPath, *ui_->lblTargetPath);
}

// At once, not with the next frame: the user must select from the current rows.
void MainWindow::showSources() {
  const auto& table = *interface_.sourceList;
  QStringList rows;
  for (std::size_t row = 0; row < interface_.manager.numberOfRowsInTableView(table); ++row) {
    rows << visibleText(interface_.manager.tableView(table, 0, row));
  }
  ui_->sourceList->setRows(rows);
  ui_->buttonRemoveSource->setEnabled(false);
}

bool MainWindow::isOverTarget(QPointF place) const {
  return ui_->targetStep->rect().contains(ui_->targetStep->mapFrom(this, place.toPoint()));
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (!foldersIn(*event->mimeData()).empty()) acceptAsCopy(*event);
}

void MainWindow::dragMoveEvent(QDragMoveEvent* event) {
  if (!acceptAsCopy(*event)) {
    dropHighlight_.hide();
    return;
  }
  if (isOverTarget(event->position()))
    dropHighlight_.showOver(*ui_->targetStep, tr("Make this the target folder"));
  else
    dropHighlight_.showOver(*ui_->sourceList, tr("Add to the source folders"));
}

void MainWindow::dragLeaveEvent(QDragLeaveEvent*) { dropHighlight_.hide(); }

void MainWindow::dropEvent(QDropEvent* event) {
  dropHighlight_.hide();
  const auto folders = foldersIn(*event->mimeData());
  if (folders.empty() || !acceptAsCopy(*event)) return;
  if (isOverTarget(event->position())) {
    interface_.manager.setTarget(folders.front());
  } else {
    for (const Path& folder : folders) interface_.manager.addSource(folder);
  }
}

// --- Options ---

void MainWindow::bindOptions() {
  bindComboBox(refresh_, interface_.comboCopy, *ui_->comboCopy);
  bindComboBox(refresh_, interface_.comboPhotoFormats, *ui_->comboPhotoFormats);
  bindComboBox(refresh_, interface_.comboFolderFormat, *ui_->comboFolderFormat);
  bindComboBox(refresh_, interface_.comboResolution, *ui_->comboResolution);
  bindCheckBox(refresh_, interface_.chkRotate, *ui_->chkRotate);
  bindCheckBox(refresh_, interface_.chkFilterSmallPhotos, *ui_->chkFilterSmallPhotos);
  bindCheckBox(refresh_, interface_.chkFilterSmallVideos, *ui_->chkFilterSmallVideos);
}

// --- Counts ---

void MainWindow::bindFound() {
  bindTextField(refresh_, interface_.lblPhotoCount, *ui_->lblPhotoCount);
  bindTextField(refresh_, interface_.lblPhotoSize, *ui_->lblPhotoSize);
  bindTextField(refresh_, interface_.lblVideoCount, *ui_->lblVideoCount);
  bindTextField(refresh_, interface_.lblVideoSize, *ui_->lblVideoSize);
  bindTextField(refresh_, interface_.lblTotalCount, *ui_->lblTotalCount);
  bindTextField(refresh_, interface_.lblTotalSize, *ui_->lblTotalSize);
  bindTextField(refresh_, interface_.lblDuplicateCount, *ui_->lblDuplicateCount);
  bindTextField(refresh_, interface_.lblDuplicateSize, *ui_->lblDuplicateSize);
}

void MainWindow::bindWritten() {
  bindTextField(refresh_, interface_.trgPhotoCount, *ui_->trgPhotoCount);
  bindTextField(refresh_, interface_.trgPhotoSize, *ui_->trgPhotoSize);
  bindTextField(refresh_, interface_.trgVideoCount, *ui_->trgVideoCount);
  bindTextField(refresh_, interface_.trgVideoSize, *ui_->trgVideoSize);
  bindTextField(refresh_, interface_.trgRotatedCount, *ui_->trgRotatedCount);
  bindTextField(refresh_, interface_.trgRotatedSize, *ui_->trgRotatedSize);
  bindTextField(refresh_, interface_.trgTotalCount, *ui_->trgTotalCount);
  bindTextField(refresh_, interface_.trgTotalSize, *ui_->trgTotalSize);
  bindTextField(refresh_, interface_.trgExistCount, *ui_->trgExistCount);
  bindTextField(refresh_, interface_.trgExistSize, *ui_->trgExistSize);
  bindTextField(refresh_, interface_.trgFilteredCount, *ui_->trgFilteredCount);
  bindTextField(refresh_, interface_.trgFilteredSize, *ui_->trgFilteredSize);
  bindTextField(refresh_, interface_.lblTargetExistCount, *ui_->lblTargetExistCount);
}

// --- Layout that depends on the font ---

void MainWindow::layOut() {
  for (auto* heading : {ui_->sourceHeading, ui_->targetHeading}) {
    QFont font = heading->font();
    font.setPointSizeF(font.pointSizeF() * headingScale);
    heading->setFont(font);
  }
  keepNumbersInPlace();
  alignColumns();
  for (auto* button : findChildren<QPushButton*>()) {
    button->setMinimumWidth(button->sizeHint().width() + buttonPadding);
  }
  resize(size().boundedTo(screen()->availableSize()));
  ui_->buttonAddSource->setFocus();  // where everyone begins
}

// The options are aligned with the columns of the counts below them, even if their labels are long.
void MainWindow::alignColumns() {
  const auto labels = {ui_->copyLabel, ui_->folderFormatLabel, ui_->photoFormatsLabel, ui_->resolutionLabel};
  int width = 0;
  for (const auto* label : labels) width = std::max(width, label->sizeHint().width());
  for (auto* label : labels) label->setMinimumWidth(width);
}

// Wide enough for the numbers of a large collection, so that nothing moves while they grow.
void MainWindow::keepNumbersInPlace() {
  const QFontMetrics metrics(ui_->lblTotalCount->font());
  const int countWidth = metrics.horizontalAdvance(QStringLiteral("8888888"));
  const int sizeWidth = metrics.horizontalAdvance(QStringLiteral("8888888.88 MB"));
  for (auto* label : {ui_->lblTotalCount, ui_->trgTotalCount}) label->setMinimumWidth(countWidth);
  for (auto* label : {ui_->lblTotalSize, ui_->trgTotalSize}) label->setMinimumWidth(sizeWidth);
}

// --- Run ---

void MainWindow::bindRun() {
  bindTextField(refresh_, interface_.lblStatus, *ui_->lblStatus, shownText);
  bindButton(refresh_, interface_.buttonStart, *ui_->buttonStart);
  bindButton(refresh_, interface_.buttonStop, *ui_->buttonStop);
  bindProgressBar(refresh_, interface_.processBar, *ui_->processBar);
  bindProgressBar(refresh_, interface_.sourceProgress, *ui_->sourceProgress);
  display_ = std::make_unique<RunDisplay>(RunDisplay::Places{
      .window = *this, .ui = *ui_, .interface = interface_, .tally = tally_, .desktop = desktop_});
  refresh_.didRefresh = [this] { display_->refresh(); };
  interface_.manager.verdictListener = [this](const Verdict& verdict) { tally_.add(verdict); };
  interface_.buttonStart->action = [this] { start(); };
  connect(ui_->buttonOpenTarget, &QPushButton::clicked, &refresh_, [this] { openTarget(); });
  const auto* shortcut = new QShortcut(Qt::CTRL | Qt::Key_Return, this);
  connect(shortcut, &QShortcut::activated, ui_->buttonStart, &QPushButton::click);
}

// What the last run left to show is removed when the next one begins, before its workers start to count.
void MainWindow::start() {
  auto& manager = interface_.manager;
  if (manager.isRunning()) {
    manager.startProcess(interface_.buttonStart.get());
  } else if (const auto canWrite = checkTarget(); !canWrite) {
    display_->refuse(QString::fromStdString(canWrite.error().message));
  } else {
    tally_.clear();
    manager.startProcess(interface_.buttonStart.get());
    if (manager.runState().isRunning()) display_->begin();
  }
}

// What is not complete yet is for the controller to tell.
FileResult<void> MainWindow::checkTarget() const {
  const auto& manager = interface_.manager;
  const auto target = manager.targetPath.get();
  if (!target || manager.sourcePathList.get().empty()) return {};
  return files_->checkTarget(*target);
}

void MainWindow::openTarget() {
  const auto target = interface_.manager.targetPath.get();
  if (target && workspace_) workspace_->openUrl(QString::fromStdString(fileUrlString(*target)));
}

// --- Menus and end ---

void MainWindow::bindMenus() {
  auto& manager = interface_.manager;
  const auto bind = [&](QAction* action, auto run) { connect(action, &QAction::triggered, &refresh_, run); };
  bind(ui_->actionAddSource, [&manager] { manager.chooseSourcePath(); });
  bind(ui_->actionChooseTarget, [&manager] { manager.chooseTargetPath(); });
  bind(ui_->actionQuit, [&manager] { manager.exitApp(); });
  bind(ui_->actionHelp, [&manager] { manager.gotoHelp(); });
  bind(ui_->btnReview, [button = interface_.btnReview] { button->performClick(); });
  bind(ui_->actionRequestFeature, [&manager] { manager.requestNewFeature(); });
  bind(ui_->actionShareFacebook, [&manager] { manager.shareFacebook(); });
  bind(ui_->actionShareTwitter, [&manager] { manager.shareTwitter(); });
  bind(ui_->actionShareGooglePlus, [&manager] { manager.shareGooglePlus(); });
  bind(ui_->actionSharePinterest, [&manager] { manager.sharePinterest(); });
  connect(qGuiApp, &QGuiApplication::commitDataRequest, &refresh_, [this](QSessionManager& session) {
    if (session.allowsInteraction() && !terminate()) session.cancel();
  });
}

// Not quit(), which would first close every window and so ask again.
bool MainWindow::terminate() {
  if (isAsking_) return false;
  const QScopedValueRollback asking(isAsking_, true);
  if (interface_.delegate.applicationShouldTerminate(nullptr) != TerminateReply::now) return false;
  QCoreApplication::exit();
  return true;
}

void MainWindow::closeEvent(QCloseEvent* event) {
  event->setAccepted(interface_.manager.windowShouldClose());
}

}  // namespace kestrova
