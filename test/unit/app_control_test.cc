#include "apps/app_control.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"
#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakeApplications;
using platform::FakePlatform;
using platform::OpenAnswer;
using platform::RunningApplication;
using Calls = std::vector<std::string>;

class AppControlTest : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    FakeApplications::Reset();
    mac().locations["com.a"] = {.path = "/A.app"};
    mac().running = {{.bundle_id = "com.a", .pid = 10},
                     {.bundle_id = "com.a", .pid = 11, .is_hidden = true},
                     {.bundle_id = "com.b", .pid = 20},
                     {.name = "Bare", .pid = 30}};
  }
  static FakeApplications& mac() { return FakeApplications::Get(); }
  static Calls Requests() {
    Calls requests;
    for (const std::string& call : mac().calls) {
      if (!call.starts_with("bundle id")) requests.push_back(call);
    }
    return requests;
  }
};

const RunningApplication kOpened{.bundle_id = "com.a", .pid = 10};

TEST_F(AppControlTest, AnOpenedApplicationIsActivated) {
  mac().open_answers = {{kOpened, std::nullopt}};
  EXPECT_TRUE(OpenByBundleId("com.a"));
  EXPECT_EQ(Requests(), (Calls{"location of com.a", "open /A.app", "activate 10"}));
}

TEST_F(AppControlTest, AnUnknownApplicationIsNotOpened) {
  EXPECT_FALSE(OpenByBundleId("COM.A"));
  EXPECT_EQ(Requests(), Calls{"location of COM.A"});
}

TEST_F(AppControlTest, AnOpenThatFailsIsFalse) {
  mac().open_answers = {{std::nullopt, "broken"}};
  EXPECT_FALSE(OpenByBundleId("com.a"));
  mac().open_answers = {{std::nullopt, std::nullopt}};
  EXPECT_FALSE(OpenByBundleId("com.a"));
}

TEST_F(AppControlTest, AnApplicationTogetherWithAnErrorIsAFailure) {
  mac().open_answers = {{kOpened, "but it crashed"}};
  EXPECT_FALSE(OpenByBundleId("com.a"));
  EXPECT_EQ(Requests(), (Calls{"location of com.a", "open /A.app"}));
}

TEST_F(AppControlTest, TheFirstOfSeveralAnswersCounts) {
  mac().open_answers = {{std::nullopt, "broken"}, {kOpened, std::nullopt}};
  EXPECT_FALSE(OpenByBundleId("com.a"));
}

TEST_F(AppControlTest, AfterTenSecondsWithoutAnswerItIsFalseAndALateOneIsHarmless) {
  FakePlatform::Get().main_queue_is_serviced = false;
  mac().open_answers = {{kOpened, std::nullopt}};
  EXPECT_FALSE(OpenByBundleId("com.a"));
  ASSERT_EQ(FakePlatform::Get().waits.size(), 1u);
  EXPECT_EQ(FakePlatform::Get().waits[0], std::chrono::seconds(10));
  ASSERT_EQ(FakePlatform::Get().held_back.size(), 1u);
  FakePlatform::Get().held_back[0]();
  EXPECT_EQ(Requests().back(), "activate 10");
}

TEST_F(AppControlTest, EveryInstanceThatIsNotHiddenIsHidden) {
  HideByBundleId({"com.a"});
  EXPECT_EQ(Requests(), Calls{"hide 10"});
}

TEST_F(AppControlTest, EveryInstanceThatIsHiddenIsShown) {
  UnhideByBundleId({"com.a", "com.b"});
  EXPECT_EQ(Requests(), Calls{"unhide 11"});
}

TEST_F(AppControlTest, BundleIdentifiersInOtherLetterCaseDoNotMatch) {
  HideByBundleId({"COM.A", "com.B", ""});
  EXPECT_TRUE(Requests().empty());
}

}  // namespace
}  // namespace deskhand
