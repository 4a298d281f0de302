// Screenshots and questions from many threads at once, without Node: what the thread sanitizer
// looks at. Each test has an X server of its own.
#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "capture/display_capture.h"
#include "capture/region_capture.h"
#include "displays/display_records.h"
#include "unit/private_xvfb.h"

namespace deskhand {
namespace {

using std::chrono::seconds;
using std::chrono::steady_clock;

const CaptureRequest kRequest{{}, 0.5, 0};

Outcome<Screenshot> SmallRegion() { return ScreenshotOfRegion(kRequest, {0, 0, 64, 64}, {16, 16}); }

void RunOnThreads(int count, const std::function<void()>& work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
}

TEST(X11Threads, ManyThreadsTakeScreenshotsAndListDisplays) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  RunOnThreads(6, [] {
    for (int round = 0; round < 10; ++round) {
      const auto whole = ScreenshotOfDisplay(kRequest);
      EXPECT_TRUE(whole.value) << whole.error;
      EXPECT_TRUE(SmallRegion().value);
      EXPECT_EQ(DisplayRecords().size(), 1u);
      EXPECT_EQ(DisplayRecordFor(std::nullopt).width, 1280);
    }
  });
}

TEST(X11Threads, AServerThatDiesFailsWhatIsInFlightAndNothingElse) {
  for (int round = 0; round < 5; ++round) {
    PrivateXvfb server;
    ASSERT_TRUE(server.is_running());
    ASSERT_TRUE(SmallRegion().value);
    std::atomic<bool> is_over = false;
    std::thread killer([&] {
      server.Kill();
      is_over = true;
    });
    RunOnThreads(3, [&] {
      while (!is_over) {
        const auto outcome = SmallRegion();
        EXPECT_TRUE(outcome.value || !outcome.error.empty());
        DisplayRecords();
      }
    });
    killer.join();
    EXPECT_FALSE(SmallRegion().value);
    EXPECT_TRUE(DisplayRecords().empty());
  }
}

TEST(X11Threads, AServerThatHangsFailsEveryRequestInTimeAndServesAgainLater) {
  const PrivateXvfb server;
  ASSERT_TRUE(server.is_running());
  ASSERT_TRUE(SmallRegion().value);
  server.Stop();
  const auto start = steady_clock::now();
  RunOnThreads(3, [] {
    const auto outcome = SmallRegion();
    EXPECT_FALSE(outcome.value);
    EXPECT_NE(outcome.error.find("does not answer"), std::string::npos) << outcome.error;
  });
  EXPECT_LT(steady_clock::now() - start, seconds(10));
  server.Continue();
  const auto outcome = SmallRegion();
  EXPECT_TRUE(outcome.value) << outcome.error;
}

}  // namespace
}  // namespace deskhand
