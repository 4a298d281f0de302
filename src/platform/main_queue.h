// The process's main task queue, and a semaphore to wait for what was posted there.
// On macOS the main dispatch queue, which the host's main thread must service; on X11 a thread of
// the backend's own that is always serviced.
#pragma once

#include <chrono>
#include <functional>
#include <memory>

namespace deskhand::platform {

/// Runs `work` on the main queue some time later, inside a call scope of its own. Never blocks.
/// A queue that nobody services never runs it. Thread: any.
void PostToMainQueue(std::function<void()> work);

/// A counting semaphore that starts at zero. Copies share one count; it lives as long as its last
/// copy. Thread: any.
class Semaphore {
 public:
  Semaphore();
  void Signal() const;
  /// True when a signal was taken, false when `timeout`, counted from now, went by without one.
  bool Wait(std::chrono::nanoseconds timeout) const;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace deskhand::platform
