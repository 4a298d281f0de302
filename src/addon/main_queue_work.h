// Work on the main queue that a worker-pool thread waits for.
// The state is shared: a completion that comes after the wait was given up finds it alive, changes
// nothing that anybody reads, and frees it. Threads: Settle functions any, Wait once, on the
// waiter.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/main_queue.h"

namespace deskhand {

inline constexpr std::chrono::seconds kMainQueueTimeout{10};

/// A value, or the text that says why there is none.
template <class Value>
struct Outcome {
  std::optional<Value> value;
  std::string error;
};

/// Where main-queue work leaves its outcome. The first settlement counts and wakes the waiter; any
/// later one is dropped.
template <class Value>
class Completion {
 public:
  void Succeed(Value value) { Settle({std::move(value), {}}); }
  void Fail(std::string error) { Settle({std::nullopt, std::move(error)}); }

  /// The outcome, or none when the main queue did not deliver one in time.
  std::optional<Outcome<Value>> Wait() {
    if (!settled_.Wait(kMainQueueTimeout)) return std::nullopt;
    const std::lock_guard lock(mutex_);
    return std::move(outcome_);
  }

 private:
  void Settle(Outcome<Value> outcome) {
    {
      const std::lock_guard lock(mutex_);
      if (std::exchange(is_settled_, true)) return;
      outcome_ = std::move(outcome);
    }
    settled_.Signal();
  }

  platform::Semaphore settled_;
  std::mutex mutex_;
  bool is_settled_ = false;
  std::optional<Outcome<Value>> outcome_;
};

/// Posts `start` to the main queue and waits. `start` must see to it that the completion is settled
/// on every path; when it is not, the result is none after ten seconds.
template <class Value>
std::optional<Outcome<Value>> RunOnMainQueue(
    std::function<void(std::shared_ptr<Completion<Value>>)> start) {
  const auto completion = std::make_shared<Completion<Value>>();
  platform::PostToMainQueue([completion, start = std::move(start)] { start(completion); });
  return completion->Wait();
}

}  // namespace deskhand
