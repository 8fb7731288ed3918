#pragma once

#include "app/controls.h"
#include "app/host.h"
#include "execution/operation_queue.h"
#include "execution/operation_record.h"
#include "model/verdict.h"
#include "planning/image_metadata.h"
#include "planning/operation_decision.h"
#include "planning/target_naming.h"
#include "platform/shared_value.h"
#include "scan/duplicate_index.h"

#include <QString>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova {

enum class TerminateReply { cancel, now };

/// The one controller: it remembers the state of the program and sequences a run; what a step computes stands
/// in the modules. Contents, with the file in app/manager that holds each group's bodies:
///
///   Status line and clock        status_and_clock.cpp
///   Settings                     settings.cpp
///   Source and target folders    folders.cpp
///   Exit and links               exit.cpp
///   Classification, fingerprint  classification_and_fingerprint.cpp
///   Scan                         scan.cpp
///   Statistics                   statistics.cpp
///   Planning                     planning.cpp
///   Run control                  run_control.cpp
///   Operations                   copy_operation.cpp, rotate_operation.cpp, resize_operation.cpp
///
/// Threads: actions of the controls and everything posted run on the main thread; the scan, the planner and
/// the operations run on threads of `processQueue`, one at a time from planning on. A worker changes fields
/// and posts what changes a control. Fields that cross threads are `Shared` or a `Snapshot`; the scan lists
/// belong to the stage that runs. Made and destroyed on the main thread.
class OrganiseManager {
 public:
  /// The window gets its controls after this; settings are loaded into them by the main queue's next turn.
  explicit OrganiseManager(Host host);
  ~OrganiseManager();
  OrganiseManager(const OrganiseManager&) = delete;
  OrganiseManager& operator=(const OrganiseManager&) = delete;

  // --- Paths ---
  std::optional<Path> sourcePath;              ///< the folder last picked as a source
  Snapshot<std::vector<Path>> sourcePathList;  ///< in the order shown; the scan walks them in this order
  Snapshot<std::optional<Path>> targetPath;

  // --- Scan lists, made anew by every scan ---
  FileList fileList;  ///< every file to organise
  HashList hashList;
  std::vector<std::string> duplicateList;  ///< paths as bytes, in the order found

  // --- Source counters: files and bytes ---
  Counter sTotalCount, sTotalSize;
  Counter sDuplicateCount, sDuplicateSize;
  Counter sPhotoCount, sPhotoSize;
  Counter sVideoCount, sVideoSize;

  // --- Target counters: files and bytes ---
  Counter tTotalCount, tTotalSize;
  Counter tPhotoCount, tPhotoSize;
  Counter tVideoCount, tVideoSize;
  Counter tAlreadyCount, tAlreadySize;    ///< targets that were there when the run was planned
  Counter tRotatedCount, tRotatedSize;    ///< photos written anew, resized ones included
  Counter tFilteredCount, tFilteredSize;  ///< small photos and videos left out
  Counter targetCount, targetSize;
  Counter targetExistCount;  ///< targets that turned out to be there when they were to be written

  // --- Run state ---
  std::shared_ptr<OperationQueue> processQueue;  ///< absent until the first start; a new one at every start
  Snapshot<QString> extensionImages;
  Snapshot<QString> extensionVideo;
  Shared<std::uint32_t> assertionID;
  bool loadingSettings = false;
  NameTable months;
  NameTable days;
  Shared<std::int32_t>
      appStatus;  ///< 0 before the first run, 1 scanning, 2 planning, 3 copying; for inspection only
  std::optional<Date> starttime;  ///< of the last run
  Shared<bool> haserror;
  Shared<bool> hasstopped;

  // --- Outlets: the window owns the controls ---
  Window* window = nullptr;
  Outlet<TableView> sourceList;
  Outlet<TextField> lblSourceCount, lblSourceSize, lblSourceDuplicates, lblSourceDuplicateSize;
  Outlet<TextField> lblTargetPath, lblTargetCount, lblTargetSize, lblTargetExistCount;
  Outlet<TextField> lblDuplicateCount, lblDuplicateSize, lblPhotoCount, lblPhotoSize;
  Outlet<TextField> lblTotalCount, lblTotalSize, lblVideoCount, lblVideoSize;
  Outlet<TextField> trgExistCount, trgExistSize, trgPhotoCount, trgPhotoSize;
  Outlet<TextField> trgTotalCount, trgTotalSize, trgVideoCount, trgVideoSize;
  Outlet<TextField> trgRotatedCount, trgRotatedSize, trgFilteredCount, trgFilteredSize;
  Outlet<CheckBox> chkRotate, chkFilterSmallPhotos, chkFilterSmallVideos;
  Outlet<ComboBox> comboCopy, comboFolderFormat, comboResolution, comboPhotoFormats;
  Outlet<RadioMatrix> radioResolution;
  Outlet<Button> buttonStart, buttonStop, btnReview;
  Outlet<ProgressIndicator> processBar, sourceProgress;
  Outlet<TextField> lblStatus;

  /// Told of every file's fate; set before a run, on the main thread.
  VerdictListener verdictListener;

  // --- Status line and clock ---
  /// Shows the text in the status line. Callable from any thread; texts appear in the order of the calls.
  void setStatus(const QString& text);
  /// Milliseconds since 1 January 1970 UTC, in decimal digits.
  QString getMilliseconds() const;

  // --- Settings ---
  void saveSettings();
  void loadSettings();
  void comboBoxSelectionDidChange();
  void chkSelected(const Control* sender = nullptr);

  // --- Source and target folders ---
  void chooseSourcePath(const Control* sender = nullptr);
  void chooseTargetPath(const Control* sender = nullptr);
  void deleteSource(const Control* sender = nullptr);
  std::size_t numberOfRowsInTableView(const TableView& view) const;
  /// The path in that row; every column shows the same.
  QString tableView(const TableView& view, int objectValueForTableColumn, std::size_t row) const;
  /// What a confirmed choice does; also for folders that reach the window in other ways.
  void addSource(const Path& folder);
  void setTarget(const Path& folder);

  // --- Exit and links ---
  TerminateReply appShouldTerminate(const Control* sender = nullptr);
  /// Always false: closing the window means quitting.
  bool windowShouldClose(const Control* sender = nullptr);
  void exitApp(const Control* sender = nullptr);
  void performClose(const Control* sender = nullptr);
  void gotoHelp(const Control* sender = nullptr);
  void gotoReviewPage(const Control* sender = nullptr);
  void requestNewFeature(const Control* sender = nullptr);
  void shareFacebook(const Control* sender = nullptr);
  void shareTwitter(const Control* sender = nullptr);
  void shareGooglePlus(const Control* sender = nullptr);
  void sharePinterest(const Control* sender = nullptr);

  // --- Classification and fingerprint ---
  bool isPhoto(const QString& extension) const;
  bool isVideo(const QString& extension) const;
  /// At most the first 40960 bytes of the file; nothing when it cannot be opened.
  std::optional<Bytes> read10KFromFile(const Path& path) const;
  std::string hashData(const std::optional<Bytes>& data) const;

  // --- Scan (worker) ---
  void analyseSourceOperation(const InvocationOperation& operation);

  // --- Statistics (any worker, one at a time); sizes in bytes ---
  void increaseSourceCount(const QString& extension, std::uint64_t size);
  void increaseSourceDuplicate(const QString& extension, std::uint64_t size);
  void increaseTargetCount(const QString& extension, std::uint64_t size);
  void increaseRotateCount(const QString& extension, std::uint64_t size);
  void increaseTargetAlready(const QString& extension, std::uint64_t size);
  void increaseFilteredPhoto(const QString& extension, std::uint64_t size);
  void showSourceLabels();
  void showSourceLabelsTimer();

  // --- Planning (worker) ---
  void analyseAndDecideOperation(const InvocationOperation& operation);
  /// When the file was last modified; nothing for what is no file URL or cannot be read.
  std::optional<Date> getModifiedDate(std::string_view url) const;
  QString textMonth(int month) const;

  // --- Run control (main thread; the observation on any) ---
  /// Whether operations are queued or run; a paused run too.
  bool isRunning() const { return processQueue && processQueue->operationCount() > 0; }
  void startProcess(const Control* sender = nullptr);
  void stopProcess(const Control* sender = nullptr);
  void observeValueForKeyPath(std::string_view keyPath, const OperationQueue& ofObject);

  // --- Operations (worker) ---
  void copyOperation(const OperationRecord& record);
  void rotateOperation(const OperationRecord& record);
  void resizeOperation(const OperationRecord& record);
  void writeDataOperation(const OperationRecord& record);
  /// Creates the folder that is to hold the file.
  void createFolder(const Path& file);
  /// Copies one file and books the outcome.
  void copyFile(const Path& from, const Path& to);

 private:
  using Method = void (OrganiseManager::*)();
  using RefreshPending = std::atomic<bool>;

  /// Runs the block on the main thread, unless the controller is gone by then.
  void post(std::function<void()> block);
  /// The same for a block that shows counters: while one is pending, another would show nothing more.
  void postRefresh(RefreshPending& pending, Method show);
  void announce(const Verdict& verdict) const;

  // Scan
  void beginScan();
  void resetCounters();
  void clearLabels();
  enum class WalkEnd { complete, cancelled, suspended };
  WalkEnd walkSources(const InvocationOperation& operation);
  void takeFile(const Path& path, std::uint64_t size);
  void bookNew(const Path& path, std::uint64_t size, const char* label);
  void bookDuplicate(const Path& path, std::uint64_t size, const Sighting& sighting);
  void queuePlanner(const InvocationOperation& operation);

  // Statistics
  void updateTargetTotals();
  void showSourceCounters();
  void showDuplicates();
  void showTargetPhotos();
  void showTargetVideos();
  void showTargetTotals();
  void showRotated();
  void showAlready();
  void showFiltered();
  void showProgress();

  // Planning
  void planFiles(const InvocationOperation& planner);
  void planFile(const Path& file, const InvocationOperation& planner);
  PlanningOptions planningOptions() const;
  FileFacts factsOf(const Path& file) const;
  void leaveOut(const Path& file, std::uint64_t size);
  Date dateOf(const Path& file, const ImageMetadata& metadata) const;
  std::optional<Path> targetOf(const Path& file, const FileFacts& facts, Date date, int folderFormat) const;
  void queueEntry(const PlanEntry& entry, const InvocationOperation& planner);
  void endPlanning();

  // Run control
  void pauseOrContinue();
  void startRun();
  void showEnded();

  // Operations
  void copyRecord(const OperationRecord& record);
  void resizeRecord(const OperationRecord& record);
  bool writeAnew(const Path& from, const Path& to, std::int64_t resolution);
  void writePhoto(Verdict verdict, ByteView bytes);
  void copyUndecodable(const Path& from, const Path& to,
                       const std::shared_ptr<InvocationOperation>& operation);
  void rotateRecord(const OperationRecord& record);
  FileResult<void> writeNew(const Bytes* data, const Path& to);
  void prepareFolderOf(const Path& file);
  void bookFailedCopy(const FileError& error);
  void haltForException(const QString& logText, const std::exception& error);
  void endForFullVolume(const QString& logText);
  std::uint64_t sizeOfFile(const Path& path) const;

  Host host_;
  RefreshPending sourcesPending_, duplicatesPending_, photosPending_, videosPending_;
  RefreshPending totalsPending_, rotatedPending_, alreadyPending_, filteredPending_;
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kestrova
