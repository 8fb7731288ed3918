#include "app/organise_manager.h"
#include "platform/log.h"

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
    processQueue->setSuspended(false);
    post([this] { buttonStart->setTitle(QStringLiteral("Pause")); });
    return;
  }
  processQueue->setSuspended(true);
  post([this] {
    buttonStart->setTitle(QStringLiteral("Continue"));
    setStatus(QStringLiteral("Paused"));
  });
}

void OrganiseManager::startRun() {
  // The last run's completion may still be under way on its thread; it must not read the new run's flags.
  if (processQueue) processQueue->waitUntilIdle();
  haserror = false;
  hasstopped = false;
  starttime = host_.now();
  processQueue = std::make_shared<OperationQueue>();
  const auto scan = std::make_shared<InvocationOperation>();
  scan->init(this, &OrganiseManager::analyseSourceOperation);
  processQueue->addOperation(scan);
  post([this] {
    buttonStart->setTitle(QStringLiteral("Pause"));
    buttonStop->setEnabled(true);
  });
}

void OrganiseManager::stopProcess(const Control*) {
  if (!isRunning()) return;
  hasstopped = true;
  processQueue->cancelAllOperations();
  post([this] {
    processQueue->setSuspended(false);
    showEnded();
    sourceProgress->stopAnimation();
  });
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
  post([this] { showEnded(); });
  host_.power->release(assertionID);
}

}  // namespace kestrova
