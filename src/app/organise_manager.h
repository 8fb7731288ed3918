#pragma once

#include "app/counters.h"
#include "app/host.h"
#include "app/outlets.h"
#include "app/status_line.h"
#include "execution/folder_maker.h"
#include "execution/operation_queue.h"
#include "execution/operation_record.h"
#include "execution/work_ahead.h"
#include "model/run_state.h"
#include "planning/plan_file.h"
#include "platform/guarded_value.h"
#include "platform/published_value.h"
#include "report/recorder.h"
#include "scan/companions.h"
#include "scan/duplicate_index.h"
#include "scan/media_classification.h"

#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kestrova {

class ExaminedAhead;

enum class TerminateReply { cancel, now };

/// The one controller: it remembers the state of the program and sequences a run; the modules do the
/// computing. Contents, with the file in app/manager that holds each group's bodies:
///
///   Status line and clock        status_and_clock.cpp
///   Settings                     settings.cpp
///   Source and target folders    folders.cpp
///   Exit and links               exit.cpp
///   Classification, fingerprint  classification_and_fingerprint.cpp
///   Scan                         scan.cpp
///   Statistics                   statistics.cpp
///   Record of the run            record.cpp
///   Planning                     planning.cpp
///   Run control                  run_control.cpp
///   Operations                   copy_operation.cpp, rotate_operation.cpp, resize_operation.cpp
///   Their outcomes               operation_outcome.cpp
///
/// Threads: actions of the controls and posted blocks run on the main thread; the scan, the planner and the
/// operations run on threads of `processQueue`, one at a time from planning on. A worker changes fields and
/// posts what changes a control. Fields that cross threads are a `RelaxedAtomic` or a `GuardedValue`; the
/// scan lists belong to the stage that runs. Made and destroyed on the main thread.
class OrganiseManager : public Counters, public Outlets {
 public:
  /// The controls are connected after this; settings are loaded into them when the main queue next runs.
  explicit OrganiseManager(Host host);
  ~OrganiseManager();
  OrganiseManager(const OrganiseManager&) = delete;
  OrganiseManager& operator=(const OrganiseManager&) = delete;

  // --- Paths ---
  std::optional<Path> sourcePath;                  ///< the folder last picked as a source
  GuardedValue<std::vector<Path>> sourcePathList;  ///< in the order shown; the scan walks them in this order
  GuardedValue<std::optional<Path>> targetPath;

  // --- Scan lists, rebuilt by every scan ---
  FileList fileList;  ///< every file to organise
  HashList hashList;
  PathList duplicateList;  ///< in the order found
  Companions companions;   ///< counted where `rowListener` or a record is told of rows

  // --- Run state ---
  std::shared_ptr<OperationQueue> processQueue;  ///< absent until the first start; a new one at every start
  PublishedValue<ExtensionList> extensionImages;
  PublishedValue<ExtensionList> extensionVideo;
  static constexpr std::uint32_t noAssertion = 0;
  RelaxedAtomic<std::uint32_t> assertionID;
  bool loadingSettings = false;
  NameTable months;
  NameTable days;
  /// 0 before the first run, 1 scanning, 2 planning, 3 copying; for inspection only; see `runState`.
  RelaxedAtomic<std::int32_t> appStatus;
  std::optional<Date> starttime;  ///< of the last run
  RelaxedAtomic<bool> haserror;
  RelaxedAtomic<bool> hasstopped;

  // --- Listeners: set before a run, on the main thread; called by workers ---
  /// Every file's verdict, once.
  VerdictListener verdictListener;
  /// Folders of the sources that the scan could not read completely; a file gets a verdict instead.
  std::function<void(const Path& path, const FileError& error)> unreadableListener;
  /// Every row of the run's record. If the run is not recorded, rows of files only if they are listened to.
  std::function<void(const report::Row& row)> rowListener;
  bool listensToFileRows = true;

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
  /// Does what a confirmed choice does; also used for folders that reach the window in other ways.
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
  bool isPhoto(std::string_view extension) const;
  bool isVideo(std::string_view extension) const;
  /// At most the first 40960 bytes of the file; nothing when it cannot be opened.
  std::optional<Bytes> read10KFromFile(const Path& path) const;
  std::string hashData(const std::optional<Bytes>& data) const;

  // --- Scan (worker) ---
  void analyseSourceOperation(const InvocationOperation& operation);

  // --- Statistics (any worker, one at a time); sizes in bytes ---
  void increaseSourceCount(std::string_view extension, std::uint64_t size);
  void increaseSourceDuplicate(std::string_view extension, std::uint64_t size);
  void increaseTargetCount(std::string_view extension, std::uint64_t size);
  void increaseRotateCount(std::string_view extension, std::uint64_t size);
  void increaseTargetAlready(std::string_view extension, std::uint64_t size);
  void increaseFilteredPhoto(std::string_view extension, std::uint64_t size);
  void showSourceLabels();
  void showSourceLabelsTimer();

  // --- Record of the run ---
  /// Where the last run is recorded; empty where it is not. Main thread, after the run.
  Path recordFolder() const;
  /// Why the last run is not recorded, or not completely, in the system's words; empty when it is, or was not
  /// to be. Main thread, after the run.
  std::string recordFailure() const;

  // --- Planning (worker) ---
  void analyseAndDecideOperation(const InvocationOperation& operation);
  /// When the file was last modified; nothing for what is not a file URL or cannot be read.
  std::optional<Date> getModifiedDate(std::string_view url) const;
  QString textMonth(int month) const;

  // --- Run control (main thread; the observation on any) ---
  /// Whether operations are queued or running, also in a paused run.
  bool isRunning() const { return processQueue && processQueue->operationCount() > 0; }
  /// How far the run is. Callable from any thread. It has ended only after all blocks that the run posted.
  RunState runState() const { return runState_.get(); }
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
  /// Copies one file and counts it.
  void copyFile(const Path& from, const Path& to);

 private:
  /// Runs the block on the main thread, unless the controller has been destroyed by then.
  void post(std::function<void()> block);
  /// The same for a block of a stage: it does nothing if the stage has been cancelled by then.
  void postFrom(const InvocationOperation& stage, std::function<void()> block);
  /// What becomes of a file, said once: raises its counters, has them shown, tells the listeners.
  void settle(Verdict verdict);

  // Scan
  void beginScan(const InvocationOperation& operation);
  void resetCounters();
  void clearLabels(const InvocationOperation& operation);
  enum class WalkEnd { complete, cancelled, suspended };
  WalkEnd walkSources(const InvocationOperation& operation);
  void takeFile(const WalkedFile& file, const Sighting& sighting);
  void leaveFile(const WalkedFile& file);
  void addNew(const WalkedFile& file, const char* label);
  void addDuplicate(const WalkedFile& file, const Sighting& sighting);
  void queuePlanner(const InvocationOperation& operation);

  // Statistics
  void count(const Verdict& verdict);
  void countExisting();
  void updateTargetTotals();
  /// Posts a block that shows the rows, unless one is pending: another would show nothing more.
  void refresh(Rows rows);
  /// From now on no block counts as pending: the labels are about to be cleared.
  void forgetPendingRefreshes();
  void show(Rows rows);
  void showProgress();

  // Record of the run
  void beginRecord();
  void endRecord();
  bool tellsRows() const { return recorder_ != nullptr || rowListener; }
  void tellRow(const report::Row& row);
  void tellUnreadable(const Path& path, const FileError& error);

  // Planning
  void planFiles(const InvocationOperation& planner);
  void skipPlanning(const InvocationOperation& planner);
  void settleUnreachedFrom(std::size_t first);
  void planOrSettle(std::size_t index, ExaminedAhead& ahead, const InvocationOperation& planner);
  PlanningContext planningContext() const;
  PlanningOptions planningOptions() const;
  void queueEntry(PlanEntry entry, const InvocationOperation& planner);
  /// Called by the queue, which is locked.
  std::shared_ptr<InvocationOperation> makeOperation(std::size_t planned);
  void endPlanning(const InvocationOperation& planner);

  // Run control
  void pauseOrContinue();
  void startRun();
  void enter(RunPhase phase);
  void endEarly(RunEnd end);
  void pauseRun();
  void haltRun();
  void resumeRun();
  void noticeEnd();
  void releaseTarget();
  void postEnd();
  void releaseAssertion();
  void showEnded();

  // Operations
  void skipOperation(const OperationRecord& record);
  void copyRecord(const OperationRecord& record);
  void announceCopy(std::string_view extension);
  /// Copies the record's file and settles it, also if copying fails. The remark becomes part of a copy's
  /// verdict.
  void copyAsItIs(const OperationRecord& record, Verdict verdict, const std::string& remark = {});
  /// Returns the copy's attributes.
  FileResult<FileAttributes> makeCopy(const OperationRecord& record, const Path& from, const Path& to);
  void resizeRecord(const OperationRecord& record);
  void rewrite(const OperationRecord& record, Verdict verdict);
  RewriteWishes wishesFor(Resolution resolution) const;
  PhotoResult writePhoto(const OperationRecord& record, const Verdict& verdict);
  void settlePhoto(Verdict verdict, const WrittenPhoto& written);
  void copyUndecodable(const OperationRecord& record, Verdict verdict, const std::string& reason);
  void rotateRecord(const OperationRecord& record);
  std::optional<PreparedFile> takePrepared(const OperationRecord& record);
  /// Whether a step that failed for that reason may succeed now, as nothing is prepared ahead any more.
  bool makesRoom(const FileError& error);
  void cancelOperations();
  /// The verdict on the record's file before anything has been done with it, still without an outcome.
  Verdict verdictOn(const OperationRecord& record) const;
  void settleFailure(Verdict& verdict, const FileError& error);
  /// What the system says of a file that could not be written, or of the folder that was to hold it.
  FileError causeOf(const FileError& error, const Path& file);
  void settleException(const OperationRecord& record, const std::exception& error);
  void haltForException(const QString& status, const QString& logText);
  void endForFullVolume(const QString& logText);
  void endIfTargetIsLost(const Verdict& verdict);

  Host host_;
  GuardedValue<RunState> runState_;
  std::shared_ptr<PlanList> planList_;  ///< of this run; appended by the planner, then only read
  std::array<std::atomic<bool>, rowGroups> refreshPending_{};
  StatusLine statusLine_{[this](StatusLine::Block block) { post(std::move(block)); },
                         [this](const QString& text) { lblStatus->setStringValue(text); }};
  std::shared_ptr<HeldTarget> heldTarget_;      ///< from planning to the run's end; used by workers
  FileResult<void> namesAreDurable_;            ///< of the last run, once it has ended; the workers'
  std::unique_ptr<report::Recorder> recorder_;  ///< from the scan's start; the workers'
  std::string beginFailure_;                    ///< why there is none; the workers'
  Path runTarget_;                              ///< the target folder when the run began; the workers'
  std::size_t jobs_ = 1;                        ///< threads for a stage of this run; the workers'
  FolderMaker folderMaker_;                     ///< the workers'
  bool mayWorkAhead_ = false;                   ///< not begun yet; the workers'
  WorkAhead workAhead_;                         ///< from the first operation to the run's end
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace kestrova
