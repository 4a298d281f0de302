#include "platform/x11/task_thread.h"

#include <atomic>
#include <future>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

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

TEST(TaskThread, ReleasesWhatATaskHoldsOnceItHasRun) {
  TaskThread& thread = NewThread();
  auto held = std::make_shared<int>(1);
  const std::weak_ptr<int> watch = held;
  thread.Post([held = std::move(held)] {});
  WaitForAll(thread);
  EXPECT_TRUE(watch.expired());
}

}  // namespace
}  // namespace deskhand::platform
