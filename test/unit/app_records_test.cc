#include "apps/app_records.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"

namespace deskhand {
namespace {

using platform::FakeApplications;

class AppRecordsTest : public testing::Test {
 protected:
  void SetUp() override { FakeApplications::Reset(); }
  static FakeApplications& mac() { return FakeApplications::Get(); }
};

TEST_F(AppRecordsTest, WithoutRegularApplicationsThatHaveABundleIdentifierTheListIsEmpty) {
  mac().running = {{.is_regular = false, .bundle_id = "com.agent", .pid = 2}, {.pid = 3}};
  EXPECT_TRUE(RunningApps().empty());
}

TEST_F(AppRecordsTest, RegularApplicationsAreListedInTheSystemsOrder) {
  mac().running = {{.bundle_id = "com.b", .name = "B", .pid = 20},
                   {.is_regular = false, .bundle_id = "com.agent", .pid = 30},
                   {.name = "Bare", .pid = 40},
                   {.bundle_id = "com.a", .name = "A", .pid = 10}};
  const auto apps = RunningApps();
  ASSERT_EQ(apps.size(), 2u);
  EXPECT_EQ(apps[0].bundle_id, "com.b");
  EXPECT_EQ(apps[0].display_name, "B");
  EXPECT_EQ(apps[0].pid, 20);
  EXPECT_EQ(apps[1].bundle_id, "com.a");
}

TEST_F(AppRecordsTest, AnApplicationWithoutANameIsListedWithAnEmptyOne) {
  mac().running = {{.bundle_id = "com.a", .pid = 10}};
  ASSERT_EQ(RunningApps().size(), 1u);
  EXPECT_EQ(RunningApps()[0].display_name, "");
}

TEST_F(AppRecordsTest, TheHostsOwnProcessIsListedToo) {
  mac().running = {{.bundle_id = "com.host", .pid = mac().own_pid}};
  EXPECT_EQ(RunningApps().size(), 1u);
}

TEST_F(AppRecordsTest, NothingIsFrontmostWhenTheSystemKnowsOfNoApplication) {
  EXPECT_FALSE(FrontmostApp());
}

TEST_F(AppRecordsTest, AFrontmostApplicationWithoutBundleIdentifierIsNone) {
  mac().frontmost = {.name = "Bare", .pid = 5};
  EXPECT_FALSE(FrontmostApp());
}

TEST_F(AppRecordsTest, AFrontmostAccessoryIsReported) {
  mac().frontmost = {.is_regular = false, .bundle_id = "com.agent", .name = "Agent", .pid = 5};
  const auto app = FrontmostApp();
  ASSERT_TRUE(app);
  EXPECT_EQ(app->bundle_id, "com.agent");
  EXPECT_EQ(app->pid, 5);
}

}  // namespace
}  // namespace deskhand
