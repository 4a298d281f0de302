#include "addon/main_queue_work.h"

#include <thread>

#include <gtest/gtest.h>

#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakePlatform;
using TextCompletion = std::shared_ptr<Completion<std::string>>;

class MainQueueWorkTest : public testing::Test {
 protected:
  void SetUp() override { FakePlatform::Reset(); }
};

TEST_F(MainQueueWorkTest, TheWaiterGetsWhatTheWorkLeft) {
  const auto outcome =
      RunOnMainQueue<std::string>([](TextCompletion completion) { completion->Succeed("done"); });
  ASSERT_TRUE(outcome);
  EXPECT_EQ(outcome->value, "done");
}

TEST_F(MainQueueWorkTest, TheWaitIsForTenSeconds) {
  RunOnMainQueue<std::string>([](TextCompletion completion) { completion->Fail("no"); });
  EXPECT_EQ(FakePlatform::Get().waits,
            (std::vector<std::chrono::nanoseconds>{std::chrono::nanoseconds(10'000'000'000)}));
}

TEST_F(MainQueueWorkTest, AQueueThatNeverRunsTheWorkEndsTheWaitWithNothing) {
  FakePlatform::Get().main_queue_is_serviced = false;
  EXPECT_FALSE(RunOnMainQueue<std::string>([](TextCompletion) { FAIL(); }));
}

TEST_F(MainQueueWorkTest, OnlyTheFirstSettlementCounts) {
  const auto outcome = RunOnMainQueue<std::string>([](TextCompletion completion) {
    completion->Fail("first");
    completion->Succeed("second");
  });
  ASSERT_TRUE(outcome);
  EXPECT_FALSE(outcome->value);
  EXPECT_EQ(outcome->error, "first");
}

TEST_F(MainQueueWorkTest, ALateCompletionChangesNothingAndIsFreed) {
  FakePlatform::Get().main_queue_is_serviced = false;
  std::weak_ptr<Completion<std::string>> seen;
  const auto outcome = RunOnMainQueue<std::string>([&seen](TextCompletion completion) {
    seen = completion;
    completion->Succeed("too late");
  });
  EXPECT_FALSE(outcome);
  for (const auto& work : FakePlatform::Get().held_back) work();
  EXPECT_FALSE(seen.expired());  // the queue still holds the work
  FakePlatform::Get().held_back.clear();
  EXPECT_TRUE(seen.expired());
}

TEST_F(MainQueueWorkTest, CompletionsThatRaceSettleOnce) {
  for (int round = 0; round < 200; ++round) {
    const auto outcome = RunOnMainQueue<int>([](std::shared_ptr<Completion<int>> completion) {
      std::thread other([completion] { completion->Succeed(1); });
      completion->Succeed(2);
      other.join();
    });
    ASSERT_TRUE(outcome && outcome->value);
    EXPECT_TRUE(*outcome->value == 1 || *outcome->value == 2);
  }
}

}  // namespace
}  // namespace deskhand
