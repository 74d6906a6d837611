// Work in two steps on two processors: one thread fills, another takes what is full, in the order of filling.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>

#include "support/processors.h"

namespace tessaly {

/// Hands filled slots from the thread that owns it to a thread of its own. Since these are taken one by one in the
/// order in which they were filled, sums have the same order as without a second thread, and so the same bits. Without
/// a second processor `take` is called at once.
///
///   while (fill(pipeline.Free())) pipeline.Submit();
///   pipeline.Finish();
template <class Slot>
class OrderedPipeline {
 public:
  static constexpr std::size_t kSlots = 16;

  /// `take` runs on the other thread, one call at a time. `worthwhile`: whether there is enough to do for a thread.
  OrderedPipeline(bool worthwhile, const std::function<Slot()>& make, std::function<void(Slot&)> take)
      : take_(std::move(take)) {
    const bool threaded = worthwhile && UsableProcessors() > 1;
    for (std::size_t n = 0; n < (threaded ? kSlots : 1); ++n) slots_.push_back(make());
    if (threaded) thread_ = ThreadWithoutSignals([this] { TakeAll(); });
  }
  /// Leaves untaken what waits.
  ~OrderedPipeline() {
    if (thread_.joinable()) Close(true);
  }
  OrderedPipeline(const OrderedPipeline&) = delete;
  OrderedPipeline& operator=(const OrderedPipeline&) = delete;

  /// The slot to be filled next. Waits while all are full. Throws what `take` threw.
  Slot& Free() {
    if (!thread_.joinable()) return slots_.front();
    std::unique_lock lock(mutex_);
    if (submitted_ - taken_ == kSlots) {
      // Not for the first one that gets free: falling asleep and waking up has its price.
      fillerWaits_ = true;
      changed_.wait(lock, [&] { return submitted_ - taken_ <= kSlots / 2 || failure_; });
      fillerWaits_ = false;
    }
    if (failure_) std::rethrow_exception(failure_);
    return slots_[submitted_ % kSlots];
  }

  /// Whether the taker has so much to do that it is helped by filling with more care.
  bool FarAhead() {
    if (!thread_.joinable()) return false;
    const std::lock_guard lock(mutex_);
    return submitted_ - taken_ > kSlots / 2;
  }

  /// The slot of `Free` is full.
  void Submit() {
    if (!thread_.joinable()) return take_(slots_.front());
    const std::lock_guard lock(mutex_);
    ++submitted_;
    if (takerWaits_) changed_.notify_one();
  }

  /// Waits until all is taken. Throws what `take` threw. Nothing can be submitted afterwards.
  void Finish() {
    if (!thread_.joinable()) return;
    Close(false);
    if (failure_) std::rethrow_exception(failure_);
  }

 private:
  void Close(bool abandon) {
    {
      const std::lock_guard lock(mutex_);
      closed_ = true;
      abandoned_ = abandon;
      changed_.notify_one();
    }
    thread_.join();
  }

  void TakeAll() {
    std::unique_lock lock(mutex_);
    while (AwaitSlot(lock)) {
      Slot& slot = slots_[taken_ % kSlots];
      lock.unlock();
      std::exception_ptr failure;
      try {
        take_(slot);
      } catch (...) {
        failure = std::current_exception();
      }
      lock.lock();
      ++taken_;
      failure_ = failure;
      if (fillerWaits_ && (submitted_ - taken_ <= kSlots / 2 || failure_)) changed_.notify_one();
      if (failure_) return;
    }
  }

  bool AwaitSlot(std::unique_lock<std::mutex>& lock) {
    takerWaits_ = true;
    changed_.wait(lock, [&] { return submitted_ > taken_ || closed_; });
    takerWaits_ = false;
    return submitted_ > taken_ && !abandoned_;
  }

  std::function<void(Slot&)> take_;
  std::deque<Slot> slots_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t submitted_ = 0;
  std::size_t taken_ = 0;
  bool fillerWaits_ = false;
  bool takerWaits_ = false;
  bool closed_ = false;
  bool abandoned_ = false;
  std::exception_ptr failure_;
  std::thread thread_;
};

}  // namespace tessaly
