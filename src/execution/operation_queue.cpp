#include "execution/operation_queue.h"

#include "platform/log.h"

#include <algorithm>
#include <exception>

namespace kestrova {

void InvocationOperation::finish() {
  const auto call = std::exchange(call_, nullptr);
  if (!call) return;
  try {
    call(isCancelled());
  } catch (const std::exception& error) {
    // A handler that catches nothing must not crash the program.
    log(QStringLiteral("EXCEPTION operation : %1").arg(QString::fromUtf8(error.what())));
  }
}

OperationQueue::OperationQueue() : maxConcurrent_(std::max(1U, std::thread::hardware_concurrency())) {}

OperationQueue::~OperationQueue() { close(); }

void OperationQueue::close() {
  cancelAllOperations();
  std::vector<std::thread> threads;
  {
    const MutexLock lock(mutex_);
    closing_ = true;
    waiting_.clear();
    waitingCount_ = 0;
    threads.swap(threads_);
  }
  canWork_.notifyAll();
  for (auto& thread : threads) thread.join();
}

void OperationQueue::addOperation(std::shared_ptr<InvocationOperation> operation) {
  std::shared_ptr<const Observations> told;
  {
    const MutexLock lock(mutex_);
    waiting_.push_back({.operation = std::move(operation)});
    ++waitingCount_;
    startThreads();
    told = observations();
  }
  tell(told);
}

void OperationQueue::setSupplier(Supplier supplier) {
  const MutexLock lock(mutex_);
  supplier_ = std::move(supplier);
}

void OperationQueue::addDeferred() {
  std::shared_ptr<const Observations> told;
  {
    const MutexLock lock(mutex_);
    const bool continues = !waiting_.empty() && !waiting_.back().operation && !waiting_.back().isCancelled;
    if (!continues) waiting_.emplace_back();
    ++waiting_.back().deferred;
    ++waitingCount_;
    startThreads();
    told = observations();
  }
  tell(told);
}

std::size_t OperationQueue::operationCount() const {
  const MutexLock lock(mutex_);
  return waitingCount_ + executing_.size();
}

std::size_t OperationQueue::executingCount() const {
  const MutexLock lock(mutex_);
  return executing_.size();
}

void OperationQueue::cancelAllOperations() {
  const MutexLock lock(mutex_);
  for (const auto& operation : executing_) operation->cancel();
  for (Waiting& waiting : waiting_) {
    waiting.isCancelled = true;
    if (waiting.operation) waiting.operation->cancel();
  }
}

void OperationQueue::setSuspended(bool suspended) {
  const MutexLock lock(mutex_);
  suspended_ = suspended;
  startThreads();
  isIdle_.notifyAll();
}

void OperationQueue::setMaxConcurrentOperationCount(std::size_t count) {
  const MutexLock lock(mutex_);
  maxConcurrent_ = std::max<std::size_t>(1, count);
  startThreads();
}

void OperationQueue::addObserver(std::string keyPath, Observer observer) {
  const MutexLock lock(mutex_);
  auto all = std::make_shared<Observations>(*observations_);
  all->push_back({std::move(keyPath), std::move(observer)});
  observations_ = std::move(all);
}

void OperationQueue::waitUntilIdle() {
  const MutexLock lock(mutex_);
  while (busyThreads_ > 0 || canStart()) isIdle_.wait(mutex_);
}

bool OperationQueue::canStart() const {
  return !suspended_ && !waiting_.empty() && busyThreads_ < maxConcurrent_;
}

void OperationQueue::startThreads() {
  if (closing_ || !canStart()) return;
  if (threads_.size() > busyThreads_) {
    canWork_.notifyOne();
  } else {
    threads_.emplace_back([this] { work(); });
  }
}

std::shared_ptr<InvocationOperation> OperationQueue::takeNext() {
  auto operation = takeWaiting();
  --waitingCount_;
  executing_.push_back(operation);
  ++busyThreads_;
  startThreads();
  return operation;
}

std::shared_ptr<InvocationOperation> OperationQueue::takeWaiting() {
  Waiting& first = waiting_.front();
  const bool isCancelled = first.isCancelled;
  auto operation = first.operation ? std::move(first.operation) : supplier_();
  if (first.deferred <= 1) {
    waiting_.pop_front();
  } else {
    --first.deferred;
  }
  if (isCancelled) operation->cancel();
  return operation;
}

// A thread counts as busy until the observers know that its operation has ended: with one operation at a
// time, the next starts only then, and the observers are told in order.
void OperationQueue::work() {
  MutexLock lock(mutex_);
  for (;;) {
    while (!closing_ && !canStart()) canWork_.wait(mutex_);
    if (closing_) return;
    auto operation = takeNext();
    lock.unlock();
    operation->finish();
    lock.lock();
    std::erase(executing_, operation);
    const auto told = observations();
    lock.unlock();
    operation.reset();
    tell(told);
    lock.lock();
    --busyThreads_;
    if (busyThreads_ == 0 && !canStart()) isIdle_.notifyAll();
  }
}

void OperationQueue::tell(const std::shared_ptr<const Observations>& observations) {
  for (const auto& [keyPath, observer] : *observations) {
    if (keyPath == "operations") observer(keyPath, *this);
  }
}

}  // namespace kestrova
