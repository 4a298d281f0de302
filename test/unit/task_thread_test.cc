#include "platform/x11/task_thread.h"

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <sched.h>

namespace deskhand::platform {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;

// Never destroyed, as in the product.
TaskThread& NewThread() { return *new TaskThread("test"); }

void WaitForAll(TaskThread& thread) {
  std::promise<void> done;
  ASSERT_TRUE(thread.Post([&] { done.set_value(); }));
  done.get_future().wait();
}

TEST(TaskThread, RunsTasksInTheirOrder) {
  TaskThread& thread = NewThread();
  std::vector<int> order;
  for (int i = 0; i < 100; ++i) thread.Post([&order, i] { order.push_back(i); });
  WaitForAll(thread);
  for (int i = 0; i < 100; ++i) EXPECT_EQ(order.at(i), i);
}

TEST(TaskThread, RunsTimersInTheOrderOfTheirDueTimes) {
  TaskThread& thread = NewThread();
  std::promise<void> last;
  std::vector<int> order;
  const Deadline now = Clock::now();
  thread.RunAt(now + milliseconds(20), [&] {
    order.push_back(2);
    last.set_value();
  });
  thread.RunAt(now + milliseconds(10), [&] { order.push_back(1); });
  last.get_future().wait();
  EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

TEST(TaskThread, DoesNotRunACancelledTimer) {
  TaskThread& thread = NewThread();
  std::atomic<bool> has_run = false;
  const auto timer = thread.RunAt(Clock::now() + milliseconds(30), [&] { has_run = true; });
  std::promise<void> later;
  thread.RunAt(Clock::now() + milliseconds(60), [&] { later.set_value(); });
  thread.Cancel(timer);
  later.get_future().wait();
  EXPECT_FALSE(has_run);
}

TEST(TaskThread, ATimerFarAwayDoesNotKeepTasksWaiting) {
  TaskThread& thread = NewThread();
  const auto timer = thread.RunAt(Clock::now() + hours(1), [] { FAIL(); });
  WaitForAll(thread);
  thread.Cancel(timer);
}

TEST(TaskThread, RunsATimerThatIsDueBeforeTheOneItWaitsFor) {
  TaskThread& thread = NewThread();
  const auto later = thread.RunAt(Clock::now() + hours(1), [] { FAIL(); });
  WaitForAll(thread);
  std::promise<void> done;
  thread.RunAt(Clock::now() + milliseconds(10), [&] { done.set_value(); });
  EXPECT_EQ(done.get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
  thread.Cancel(later);
}

TEST(TaskThread, RunsATimerBehindOneThatWasCancelledWhileItWaited) {
  TaskThread& thread = NewThread();
  thread.Cancel(thread.RunAt(Clock::now() + milliseconds(20), [] { FAIL(); }));
  WaitForAll(thread);
  std::promise<void> done;
  const auto cancelled = thread.RunAt(Clock::now() + milliseconds(40), [] { FAIL(); });
  WaitForAll(thread);
  thread.Cancel(cancelled);
  thread.RunAt(Clock::now() + milliseconds(60), [&] { done.set_value(); });
  EXPECT_EQ(done.get_future().wait_for(std::chrono::minutes(1)), std::future_status::ready);
}

TEST(TaskThread, ReleasesWhatATaskHoldsOnceItHasRun) {
  TaskThread& thread = NewThread();
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  thread.Post([held = std::move(held)] {});
  WaitForAll(thread);
  EXPECT_TRUE(watch.expired());
}

cpu_set_t AllowedProcessors() {
  cpu_set_t allowed;
  EXPECT_EQ(sched_getaffinity(0, sizeof(allowed), &allowed), 0);
  return allowed;
}

void StayOn(int processor) {
  cpu_set_t only;
  CPU_ZERO(&only);
  CPU_SET(processor, &only);
  sched_setaffinity(0, sizeof(only), &only);
}

TEST(TaskThread, StartsATaskBesideItsCallerOnAnotherProcessor) {
  const cpu_set_t allowed = AllowedProcessors();
  if (CPU_COUNT(&allowed) < 2) GTEST_SKIP() << "there is one processor only";
  TaskThread& thread = NewThread();
  // The system may move either thread at any time, and for as long as others keep the processors
  // busy: sooner or later an attempt sees that it does not.
  for (const Deadline end = Clock::now() + std::chrono::seconds(20); Clock::now() < end;) {
    const int here = sched_getcpu();
    thread.Post([here] { StayOn(here); });
    WaitForAll(thread);
    std::promise<int> processor;
    thread.PostBeside([&] { processor.set_value(sched_getcpu()); });
    const bool has_stayed = sched_getcpu() == here;
    if (processor.get_future().get() != here && has_stayed) return;
  }
  FAIL() << "it always ran where its caller did";
}

TEST(TaskThread, MayRunOnTheProcessorsOfItsCallerOnceATaskBesideItHasBegun) {
  const cpu_set_t allowed = AllowedProcessors();
  TaskThread& thread = NewThread();
  std::promise<cpu_set_t> seen;
  thread.PostBeside([&] { seen.set_value(AllowedProcessors()); });
  const cpu_set_t own = seen.get_future().get();
  EXPECT_TRUE(CPU_EQUAL(&own, &allowed));
}

TEST(TaskThread, LeavesTheProcessorsOfItsCallerAlone) {
  const cpu_set_t before = AllowedProcessors();
  TaskThread& thread = NewThread();
  thread.PostBeside([] {});
  WaitForAll(thread);
  const cpu_set_t after = AllowedProcessors();
  EXPECT_TRUE(CPU_EQUAL(&before, &after));
}

TEST(TaskThread, RunsATaskBesideACallerThatHasOneProcessorOnly) {
  std::thread([] {
    StayOn(sched_getcpu());
    TaskThread& thread = NewThread();
    std::promise<void> done;
    thread.PostBeside([&] { done.set_value(); });
    done.get_future().wait();
  }).join();
}

}  // namespace
}  // namespace deskhand::platform
