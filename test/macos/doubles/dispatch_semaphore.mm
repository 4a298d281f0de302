// Counting semaphores of libdispatch.
// Documented at developer.apple.com/documentation/dispatch/dispatchsemaphore and in its manual
// page: a wait gives zero when it took a signal and another value when the time ran out; the return
// value of a signal says whether it woke a thread; a semaphore that is released while its count is
// below the initial one ends the process.
#include <condition_variable>
#include <mutex>

#import <dispatch/dispatch.h>

#include "core/recorder.h"
#include "core/tracked_object.h"
#include "dispatch_time.h"

namespace {

struct SemaphoreState {
  std::mutex mutex;
  std::condition_variable changed;
  intptr_t count;
  intptr_t initial_count;
  size_t waiting = 0;
};

}  // namespace

@interface DoubleSemaphore : TrackedObject <OS_dispatch_semaphore> {
 @public
  SemaphoreState* _state;
}
@end

@implementation DoubleSemaphore

- (void)dispose {
  if (_state->count < _state->initial_count) {
    macdoubles::Violate("a semaphore was released while a thread held it");
  }
  delete _state;
}

@end

dispatch_semaphore_t dispatch_semaphore_create(intptr_t value) {
  macdoubles::Record("dispatch_semaphore_create", {value});
  DoubleSemaphore* semaphore = [[DoubleSemaphore alloc] initWithLabel:"semaphore"];
  semaphore->_state = new SemaphoreState{.count = value, .initial_count = value};
  return semaphore;
}

intptr_t dispatch_semaphore_signal(dispatch_semaphore_t semaphore) {
  macdoubles::Record("dispatch_semaphore_signal");
  SemaphoreState& state = *static_cast<DoubleSemaphore*>(semaphore)->_state;
  const std::lock_guard lock(state.mutex);
  ++state.count;
  state.changed.notify_one();
  return state.waiting > 0;
}

intptr_t dispatch_semaphore_wait(dispatch_semaphore_t semaphore, dispatch_time_t timeout) {
  macdoubles::Record("dispatch_semaphore_wait",
                     {timeout == DISPATCH_TIME_FOREVER ? "DISPATCH_TIME_FOREVER" : "until a time"});
  SemaphoreState& state = *static_cast<DoubleSemaphore*>(semaphore)->_state;
  std::unique_lock lock(state.mutex);
  const auto is_signalled = [&state] { return state.count > 0; };
  ++state.waiting;
  bool took_signal = true;
  if (timeout == DISPATCH_TIME_FOREVER) {
    state.changed.wait(lock, is_signalled);
  } else {
    took_signal = state.changed.wait_until(lock, macdoubles::ToTimePoint(timeout), is_signalled);
  }
  --state.waiting;
  if (took_signal) --state.count;
  return took_signal ? 0 : 1;
}
