#include "platform/main_queue.h"

#include <utility>

#include <dispatch/dispatch.h>

namespace deskhand::platform {

void PostToMainQueue(std::function<void()> work) {
  const auto shared = std::make_shared<const std::function<void()>>(std::move(work));
  dispatch_async(dispatch_get_main_queue(), ^{
    @autoreleasepool {
      (*shared)();
    }
  });
}

struct Semaphore::State {
  dispatch_semaphore_t semaphore = dispatch_semaphore_create(0);
};

Semaphore::Semaphore() : state_(std::make_shared<State>()) {}

void Semaphore::Signal() const { dispatch_semaphore_signal(state_->semaphore); }

bool Semaphore::Wait(std::chrono::nanoseconds timeout) const {
  return dispatch_semaphore_wait(state_->semaphore,
                                 dispatch_time(DISPATCH_TIME_NOW, timeout.count())) == 0;
}

}  // namespace deskhand::platform
