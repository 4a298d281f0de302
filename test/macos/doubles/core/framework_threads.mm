#include "core/framework_threads.h"

#include <atomic>
#include <thread>
#include <utility>

#import <Foundation/Foundation.h>
#import <GNUstepBase/NSThread+GNUstepBase.h>

#include "core/recorder.h"

namespace macdoubles {
namespace {

std::atomic<size_t> busy_threads{0};

}  // namespace

void RunOnFrameworkThread(std::function<void()> work, std::chrono::nanoseconds delay) {
  ++busy_threads;
  std::thread([work = std::move(work), delay]() mutable {
    if (delay.count() > 0) std::this_thread::sleep_for(delay);
    GSRegisterCurrentThread();
    {
      const ThreadRole role("completion");
      work();
      work = nullptr;
    }
    GSUnregisterCurrentThread();
    --busy_threads;
  }).detach();
}

size_t BusyFrameworkThreads() { return busy_threads; }

}  // namespace macdoubles
