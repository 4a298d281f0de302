#include "apps/installed_apps.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"
#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakeApplications;
using platform::FakePlatform;

class InstalledAppsTest : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    FakeApplications::Reset();
  }
  static FakeApplications& mac() { return FakeApplications::Get(); }
};

TEST_F(InstalledAppsTest, EveryCopyIsListedInTheIndexsOrder) {
  mac().index = {{{"/b/A.app", "A"}, {"/a/A.app", "A, too"}}};
  mac().bundles["/b/A.app"] = {.id = "com.a"};
  mac().bundles["/a/A.app"] = {.id = "com.a"};
  const auto entries = InstalledApps();
  ASSERT_EQ(entries.size(), 2u);
  EXPECT_EQ(entries[0].bundle_id, "com.a");
  EXPECT_EQ(entries[0].display_name, "A");
  EXPECT_EQ(entries[0].path, "/b/A.app");
  EXPECT_EQ(entries[1].display_name, "A, too");
  EXPECT_EQ(entries[1].path, "/a/A.app");
}

TEST_F(InstalledAppsTest, AgentsAndBackgroundApplicationsAreLeftOut) {
  mac().index = {{{"/Agent.app", "Agent"}, {"/Daemon.app", "Daemon"}}};
  mac().bundles["/Agent.app"] = {.id = "com.agent", .is_agent = true};
  mac().bundles["/Daemon.app"] = {.id = "com.daemon", .is_background_only = true};
  EXPECT_TRUE(InstalledApps().empty());
}

TEST_F(InstalledAppsTest, ItemsThatLackPathNameBundleOrIdentifierAreLeftOut) {
  mac().index = {{{std::nullopt, "Pathless"},
                  {"/Nameless.app", std::nullopt},
                  {"/gone.app", "Gone"},
                  {"/Bare.app", "Bare"}}};
  mac().bundles["/Nameless.app"] = {.id = "com.nameless"};
  mac().bundles["/Bare.app"] = {};
  EXPECT_TRUE(InstalledApps().empty());
}

TEST_F(InstalledAppsTest, AnEmptyIndexGivesAnEmptyList) {
  mac().index = std::vector<platform::IndexItem>();
  EXPECT_TRUE(InstalledApps().empty());
}

TEST_F(InstalledAppsTest, AfterTenSecondsWithoutAnswerTheListIsEmptyAndALateOneIsHarmless) {
  FakePlatform::Get().main_queue_is_serviced = false;
  mac().index = {{{"/A.app", "A"}}};
  mac().bundles["/A.app"] = {.id = "com.a"};
  EXPECT_TRUE(InstalledApps().empty());
  ASSERT_EQ(FakePlatform::Get().waits.size(), 1u);
  EXPECT_EQ(FakePlatform::Get().waits[0], std::chrono::seconds(10));
  FakePlatform::Get().held_back[0]();
}

}  // namespace
}  // namespace deskhand
