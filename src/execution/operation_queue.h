#pragma once

#include "platform/mutex.h"

#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace kestrova {

/// One call for an operation queue to make. It is created without its call, so that the call's argument can
/// refer to it; `init` then sets the call.
class InvocationOperation : public std::enable_shared_from_this<InvocationOperation> {
 public:
  /// Sets the call `(target->*selector)(object)`. The operation owns the object until it has finished. An
  /// operation that was cancelled before it could run calls `skipped` instead, if set.
  template <typename Target, typename Argument, typename Object>
  void init(Target* target, void (Target::*selector)(Argument), Object object,
            void (Target::*skipped)(Argument) = nullptr) {
    call_ = [target, selector, skipped, object = std::move(object)](bool isCancelled) {
      const auto method = isCancelled ? skipped : selector;
      if (method != nullptr) (target->*method)(object);
    };
  }
  /// The same for a stage of a run, which receives its own operation.
  template <typename Target>
  void init(Target* target, void (Target::*selector)(const InvocationOperation&),
            void (Target::*skipped)(const InvocationOperation&) = nullptr) {
    call_ = [this, target, selector, skipped](bool isCancelled) {
      const auto method = isCancelled ? skipped : selector;
      if (method != nullptr) (target->*method)(*this);
    };
  }

  /// Asks the operation to end; callable from any thread. A running operation must check this itself.
  void cancel() { cancelled_ = true; }
  bool isCancelled() const { return cancelled_; }

 private:
  friend class OperationQueue;
  /// Makes the call, or the other one if the operation was cancelled, and releases the argument.
  void finish();

  std::function<void(bool isCancelled)> call_;
  std::atomic<bool> cancelled_ = false;
};

/// Runs operations on threads of its own, in the order in which they were added.
///
/// - An operation counts from the moment it is added until it has finished.
/// - A suspended queue starts nothing, not even cancelled operations; running ones continue.
/// - A cancelled operation that has not started ends without running when the queue reaches it.
/// - Observers of "operations" are told after every change of the list, on the thread that changed it, with
/// no lock held.
///
/// A deferred operation comes into being when the queue takes it from the supplier. In every other respect it
/// is like one that was added: it has its place in the order, counts, and can be cancelled.
///
/// Every method may be called from any thread, an operation's or an observer's own included; only the
/// destructor, `close` and `waitUntilIdle` must not be called from either. Destroying a queue closes it.
class OperationQueue {
 public:
  using Observer = std::function<void(std::string_view keyPath, OperationQueue& object)>;
  using Supplier = std::function<std::shared_ptr<InvocationOperation>()>;

  OperationQueue();
  ~OperationQueue();
  OperationQueue(const OperationQueue&) = delete;
  OperationQueue& operator=(const OperationQueue&) = delete;

  void addOperation(std::shared_ptr<InvocationOperation> operation);
  /// Sets what makes the next deferred operation; before the first of them is added. It is called on the
  /// thread that will run the operation, with the queue locked: it must not call the queue, nor throw.
  void setSupplier(Supplier supplier);
  /// Adds an operation that the supplier makes later.
  void addDeferred();
  std::size_t operationCount() const;
  /// How many operations run at this moment.
  std::size_t executingCount() const;
  void cancelAllOperations();

  void setSuspended(bool suspended);
  bool isSuspended() const { return suspended_; }
  /// At least 1; by default the number of cores.
  void setMaxConcurrentOperationCount(std::size_t count);

  void addObserver(std::string keyPath, Observer observer);

  /// Cancels everything, drops what has not started, and returns when nothing is running. Nothing starts
  /// after that.
  void close();

  /// Returns when no operation runs, none can start, and the observers have been told about everything.
  void waitUntilIdle();

 private:
  struct Observation {
    std::string keyPath;
    Observer observer;
  };
  using Observations = std::vector<Observation>;

  /// An operation that waits, or deferred ones that follow each other.
  struct Waiting {
    std::shared_ptr<InvocationOperation> operation;  ///< null for deferred ones
    std::size_t deferred = 0;
    bool isCancelled = false;  ///< of deferred ones
  };

  bool canStart() const REQUIRES(mutex_);
  void startThreads() REQUIRES(mutex_);
  std::shared_ptr<InvocationOperation> takeNext() REQUIRES(mutex_);
  std::shared_ptr<InvocationOperation> takeWaiting() REQUIRES(mutex_);
  std::shared_ptr<const Observations> observations() const REQUIRES(mutex_) { return observations_; }

  void work() EXCLUDES(mutex_);
  void tell(const std::shared_ptr<const Observations>& observations) EXCLUDES(mutex_);

  mutable Mutex mutex_;
  Condition canWork_;  ///< for threads that have nothing to do
  Condition isIdle_;   ///< for those who wait until nothing runs
  Supplier supplier_ GUARDED_BY(mutex_);
  std::deque<Waiting> waiting_ GUARDED_BY(mutex_);
  std::size_t waitingCount_ GUARDED_BY(mutex_) = 0;
  std::vector<std::shared_ptr<InvocationOperation>> executing_ GUARDED_BY(mutex_);
  /// Running an operation or telling the observers that it has ended.
  std::size_t busyThreads_ GUARDED_BY(mutex_) = 0;
  std::size_t maxConcurrent_ GUARDED_BY(mutex_);
  std::atomic<bool> suspended_ = false;
  bool closing_ GUARDED_BY(mutex_) = false;
  std::shared_ptr<const Observations> observations_ GUARDED_BY(mutex_) = std::make_shared<Observations>();
  std::vector<std::thread> threads_ GUARDED_BY(mutex_);
};

}  // namespace kestrova
