#include "app/organise_manager.h"
#include "platform/log.h"

#include <mutex>
#include <utility>

namespace kestrova {

void OrganiseManager::startProcess(const Control*) {
  if (sourcePathList.get().empty() || !targetPath.get()) {
    setStatus(QStringLiteral("Please complete step 1 and 2 first"));
  } else if (isRunning()) {
    pauseOrContinue();
  } else {
    startRun();
  }
}

void OrganiseManager::pauseOrContinue() {
  if (processQueue->isSuspended()) {
    runState_.update([](RunState& state) { state.forgetError(); });
    resumeRun();
    post([this] { buttonStart->setTitle(QStringLiteral("Pause")); });
    return;
  }
  pauseRun();
  post([this] {
    buttonStart->setTitle(QStringLiteral("Continue"));
    setStatus(QStringLiteral("Paused"));
  });
}

// The queue and the state about it change together, so that neither can get ahead of the other.
void OrganiseManager::pauseRun() {
  runState_.update([this](RunState& state) {
    state.isPaused = true;
    processQueue->setSuspended(true);
  });
  workAhead_.setPaused(true);
}

void OrganiseManager::haltRun() {
  runState_.update([this](RunState& state) {
    state.halt();
    processQueue->setSuspended(true);
  });
  workAhead_.setPaused(true);
}

void OrganiseManager::resumeRun() {
  runState_.update([this](RunState& state) {
    state.resume();
    processQueue->setSuspended(false);
  });
  workAhead_.setPaused(false);
}

void OrganiseManager::enter(RunPhase phase) {
  runState_.update([phase](RunState& state) { state.phase = phase; });
}

void OrganiseManager::startRun() {
  // The last run's completion may still be under way on its thread; it must not read the new run's flags.
  if (processQueue) processQueue->waitUntilIdle();
  recorder_.reset();
  haserror = false;
  hasstopped = false;
  starttime = host_.now();
  processQueue = std::make_shared<OperationQueue>();
  processQueue->addObserver("operations", [this, ended = std::make_shared<std::once_flag>()](
                                              std::string_view, const OperationQueue& queue) {
    if (queue.operationCount() == 0) std::call_once(*ended, [this] { noticeEnd(); });
  });
  runState_ = RunState{.phase = RunPhase::scanning};
  // Posted before the first stage begins: a short run may be over before this thread goes on.
  post([this] {
    buttonStart->setTitle(QStringLiteral("Pause"));
    buttonStop->setEnabled(true);
  });
  const auto scan = std::make_shared<InvocationOperation>();
  scan->init(this, &OrganiseManager::analyseSourceOperation);
  processQueue->addOperation(scan);
}

void OrganiseManager::stopProcess(const Control*) {
  if (!isRunning()) return;
  hasstopped = true;
  endEarly(RunEnd::stopped);
  cancelOperations();
  post([this] {
    resumeRun();
    showEnded();
    sourceProgress->stopAnimation();
  });
}

void OrganiseManager::endEarly(RunEnd end) {
  runState_.update([end](RunState& state) { state.willEnd(end); });
}

// Called once a run. The scan and the planner may end at the same time; the second thread then waits for
// this. A run that ends before its operations were planned is not reported, but the front ends still need to
// know that it has ended.
void OrganiseManager::noticeEnd() {
  workAhead_.finish();
  releaseTarget();
  endRecord();
  const bool isReported = runState().phase == RunPhase::executing;
  if (!isReported) postEnd();
}

void OrganiseManager::postEnd() {
  post([this, ended = processQueue.get()] {
    if (ended == processQueue.get()) runState_.update([](RunState& state) { state.finish(); });
  });
}

// Before the end is announced: what has a name keeps it from here on, even if the power fails.
void OrganiseManager::releaseTarget() {
  const auto target = std::exchange(heldTarget_, nullptr);
  namesAreDurable_ = target ? target->makeNamesDurable() : FileResult<void>();
  if (namesAreDurable_) return;
  haserror = true;
  runState_.update([](RunState& state) { state.end = RunEnd::error; });
}

void OrganiseManager::showEnded() {
  buttonStart->setTitle(QStringLiteral("Start"));
  buttonStart->setEnabled(true);
  buttonStop->setEnabled(false);
  processBar->stopAnimation();
}

void OrganiseManager::observeValueForKeyPath(std::string_view keyPath, const OperationQueue& ofObject) {
  if (&ofObject != processQueue.get() || keyPath != "operations") return;
  if (ofObject.operationCount() > 0) return;
  log(QStringLiteral("queue has completed"));
  if (!haserror) setStatus(QStringLiteral("Completed"));
  if (hasstopped) setStatus(QStringLiteral("Stopped"));
  if (!namesAreDurable_) {
    setStatus(QStringLiteral("The disk did not confirm what was written: ") +
              QString::fromStdString(namesAreDurable_.error().message));
  }
  post([this] { showEnded(); });
  postEnd();
  releaseAssertion();
}

void OrganiseManager::releaseAssertion() {
  if (assertionID != noAssertion) host_.power->release(assertionID);
}

}  // namespace kestrova
