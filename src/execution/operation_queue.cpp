#include "execution/operation_queue.h"

#include "platform/log.h"

#include <algorithm>
#include <exception>

namespace kestrova {

void InvocationOperation::finish() {
  const auto call = std::exchange(call_, nullptr);
  if (isCancelled() || !call) return;
  try {
    call();
  } catch (const std::exception& error) {
    // A handler that guards nothing must not take the program with it.
    log(QStringLiteral("EXCEPTION operation : %1").arg(QString::fromUtf8(error.what())));
  }
}

OperationQueue::OperationQueue() : maxConcurrent_(std::max(1U, std::thread::hardware_concurrency())) {}

OperationQueue::~OperationQueue() {
  cancelAllOperations();
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
    waiting_.clear();
  }
  changed_.notify_all();
  for (auto& thread : threads_) thread.join();
}

void OperationQueue::addOperation(std::shared_ptr<InvocationOperation> operation) {
  std::shared_ptr<const Observations> told;
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(operation));
    startThreads();
    told = observations();
  }
  tell(told);
}

std::size_t OperationQueue::operationCount() const {
  const std::lock_guard lock(mutex_);
  return waiting_.size() + executing_.size();
}

std::size_t OperationQueue::executingCount() const {
  const std::lock_guard lock(mutex_);
  return executing_.size();
}

void OperationQueue::cancelAllOperations() {
  const std::lock_guard lock(mutex_);
  for (const auto& operation : executing_) operation->cancel();
  for (const auto& operation : waiting_) operation->cancel();
}

void OperationQueue::setSuspended(bool suspended) {
  const std::lock_guard lock(mutex_);
  suspended_ = suspended;
  startThreads();
  changed_.notify_all();
}

void OperationQueue::setMaxConcurrentOperationCount(std::size_t count) {
  const std::lock_guard lock(mutex_);
  maxConcurrent_ = std::max<std::size_t>(1, count);
  startThreads();
}

void OperationQueue::addObserver(std::string keyPath, Observer observer) {
  const std::lock_guard lock(mutex_);
  auto all = std::make_shared<Observations>(*observations_);
  all->push_back({std::move(keyPath), std::move(observer)});
  observations_ = std::move(all);
}

void OperationQueue::waitUntilIdle() {
  std::unique_lock lock(mutex_);
  changed_.wait(lock, [this] { return busyThreads_ == 0 && !canStart(); });
}

bool OperationQueue::canStart() const {
  return !suspended_ && !waiting_.empty() && busyThreads_ < maxConcurrent_;
}

void OperationQueue::startThreads() {
  if (closing_ || !canStart()) return;
  if (threads_.size() > busyThreads_) {
    changed_.notify_all();
  } else {
    threads_.emplace_back([this] { work(); });
  }
}

std::shared_ptr<InvocationOperation> OperationQueue::takeNext() {
  auto operation = std::move(waiting_.front());
  waiting_.pop_front();
  executing_.push_back(operation);
  ++busyThreads_;
  startThreads();
  return operation;
}

// A thread counts as busy until the observers know that its operation has ended: with one operation at a
// time, the next starts only then, and the observers are told in order.
void OperationQueue::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return closing_ || canStart(); });
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
    changed_.notify_all();
  }
}

void OperationQueue::tell(const std::shared_ptr<const Observations>& observations) {
  for (const auto& [keyPath, observer] : *observations) {
    if (keyPath == "operations") observer(keyPath, *this);
  }
}

}  // namespace kestrova
