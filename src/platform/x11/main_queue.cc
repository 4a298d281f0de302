#include "platform/main_queue.h"

#include <condition_variable>
#include <mutex>
#include <utility>

#include "platform/x11/task_thread.h"

namespace deskhand::platform {

void PostToMainQueue(std::function<void()> work) {
  // When no thread can be had the work is dropped, and its waiter times out as it would with a main
  // queue that nobody services.
  DisplayThread().Post(std::move(work));
}

struct Semaphore::State {
  std::mutex mutex;
  std::condition_variable signalled;
  uint64_t count = 0;
};

Semaphore::Semaphore() : state_(std::make_shared<State>()) {}

void Semaphore::Signal() const {
  const std::lock_guard lock(state_->mutex);
  ++state_->count;
  state_->signalled.notify_one();
}

bool Semaphore::Wait(std::chrono::nanoseconds timeout) const {
  std::unique_lock lock(state_->mutex);
  if (!state_->signalled.wait_for(lock, timeout, [this] { return state_->count > 0; })) {
    return false;
  }
  --state_->count;
  return true;
}

}  // namespace deskhand::platform
