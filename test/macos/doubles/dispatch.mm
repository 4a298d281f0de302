// libdispatch: the main queue, delays, one-time initialisation. The scene's `mainQueue` says how
// the main queue fares:
//   "serviced"    a Cocoa host's run loop drains it; the default
//   "stalled"     nobody does, until the test calls for it
//   "run loop"    nobody does, but a call that runs the main thread's run loop (cf_run_loop.mm)
//   { delayMs }   drained, but late
// Documented at developer.apple.com/documentation/dispatch: blocks of the main queue run one at a
// time in the order they were added, on the main thread.
#include <chrono>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

#import <dispatch/dispatch.h>

#include "core/framework_threads.h"
#include "core/owned_block.h"
#include "core/recorder.h"
#include "core/tracked_object.h"
#include "dispatch_time.h"
#include "main_queue.h"

@interface DoubleMainQueue : NSObject <OS_dispatch_queue>
@end

@implementation DoubleMainQueue
@end

namespace macdoubles {
namespace {

using OwnedBlock = std::shared_ptr<const void>;

struct MainQueue {
  std::mutex mutex;
  std::deque<OwnedBlock> waiting;
  std::function<void()> wake;
};

MainQueue& TheMainQueue() {
  static MainQueue& queue = *new MainQueue;
  return queue;
}

void Wake() {
  MainQueue& queue = TheMainQueue();
  // Called under the lock, so that nobody detaches the main thread meanwhile.
  const std::lock_guard lock(queue.mutex);
  if (queue.wake) queue.wake();
}

OwnedBlock TakeNext() {
  MainQueue& queue = TheMainQueue();
  const std::lock_guard lock(queue.mutex);
  if (queue.waiting.empty()) return nullptr;
  OwnedBlock next = std::move(queue.waiting.front());
  queue.waiting.pop_front();
  return next;
}

void Enqueue(OwnedBlock block) {
  {
    MainQueue& queue = TheMainQueue();
    const std::lock_guard lock(queue.mutex);
    queue.waiting.push_back(std::move(block));
  }
  const Value state = SceneOf("mainQueue");
  if (state.Text() == "stalled" || state.Text() == "run loop") return;
  const std::chrono::milliseconds delay(static_cast<long>(state["delayMs"].Number()));
  if (delay.count() == 0) {
    Wake();
  } else {
    RunOnFrameworkThread(Wake, delay);
  }
}

}  // namespace

void SetMainQueueWake(std::function<void()> wake) {
  MainQueue& queue = TheMainQueue();
  const std::lock_guard lock(queue.mutex);
  queue.wake = std::move(wake);
}

size_t ServiceMainQueue() {
  const ThreadRole role("main queue");
  size_t count = 0;
  while (const OwnedBlock block = TakeNext()) {
    BlockOf<dispatch_block_t>(block)();
    ++count;
  }
  return count;
}

void RunOnMainQueue(std::function<void()> work) {
  Enqueue(OwnBlock(^{
    work();
  }));
}

size_t WaitingMainQueueBlocks() {
  MainQueue& queue = TheMainQueue();
  const std::lock_guard lock(queue.mutex);
  return queue.waiting.size();
}

void DiscardMainQueue() {
  while (TakeNext()) {
  }
}

}  // namespace macdoubles

using namespace macdoubles;

dispatch_queue_t dispatch_get_main_queue() {
  static DoubleMainQueue* const queue = [[DoubleMainQueue alloc] init];
  return queue;
}

void dispatch_async(dispatch_queue_t queue, dispatch_block_t block) {
  Record("dispatch_async", {queue == dispatch_get_main_queue() ? "main queue" : LabelOf(queue)});
  Enqueue(OwnBlock(block));
}

void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block) {
  Record("dispatch_after", {queue == dispatch_get_main_queue() ? "main queue" : LabelOf(queue)});
  RunOnFrameworkThread([owned = OwnBlock(block)] { Enqueue(owned); }, UntilDispatchTime(when));
}

void dispatch_once(dispatch_once_t* predicate, dispatch_block_t block) {
  // Documented: the predicate starts at zero, and whoever calls meanwhile waits for the first call.
  constexpr dispatch_once_t kDone = ~dispatch_once_t{0};
  static std::recursive_mutex& mutex = *new std::recursive_mutex;
  const std::lock_guard lock(mutex);
  if (*predicate == kDone) return;
  block();
  *predicate = kDone;
}
