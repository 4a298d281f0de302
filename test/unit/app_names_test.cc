#include "apps/app_names.h"

#include <gtest/gtest.h>

#include "unit/fake_applications.h"

namespace deskhand {
namespace {

using platform::FakeApplications;
using Calls = std::vector<std::string>;

class AppNamesTest : public testing::Test {
 protected:
  void SetUp() override {
    FakeApplications::Reset();
    mac().folders = {"/Applications", "/System/Applications"};
  }
  static FakeApplications& mac() { return FakeApplications::Get(); }
};

TEST_F(AppNamesTest, ARunningApplicationIsFoundWhateverTheLetterCase) {
  mac().running = {{.bundle_id = "com.apple.Safari", .name = "Safari", .pid = 7}};
  const auto app = ResolveApp("sAFARI");
  ASSERT_TRUE(app);
  EXPECT_EQ(app->bundle_id, "com.apple.Safari");
  EXPECT_EQ(app->display_name, "Safari");
}

TEST_F(AppNamesTest, TheFirstOfSeveralRunningOnesWins) {
  mac().running = {{.name = "Notes"},  // has no identifier
                   {.is_regular = false, .bundle_id = "com.first", .name = "NOTES"},
                   {.bundle_id = "com.second", .name = "Notes"}};
  EXPECT_EQ(ResolveApp("Notes")->bundle_id, "com.first");
  EXPECT_EQ(ResolveApp("Notes")->display_name, "NOTES");
}

TEST_F(AppNamesTest, SpacesAreNotTrimmed) {
  mac().running = {{.bundle_id = "com.notes", .name = "Notes"}};
  EXPECT_FALSE(ResolveApp(" Notes"));
}

TEST_F(AppNamesTest, ABundleIdentifierIsLookedUpAsGiven) {
  mac().locations["com.a"] = {.path = "/Apps/A.app"};
  mac().bundles["/Apps/A.app"] = {.id = "com.a"};
  mac().display_names["/Apps/A.app"] = "A";
  const auto app = ResolveApp("com.a");
  ASSERT_TRUE(app);
  EXPECT_EQ(app->bundle_id, "com.a");
  EXPECT_EQ(app->display_name, "A");
  EXPECT_FALSE(ResolveApp("COM.A"));
}

TEST_F(AppNamesTest, TheNameOfARunningApplicationComesBeforeTheSameBundleIdentifier) {
  mac().running = {{.bundle_id = "com.impostor", .name = "com.a"}};
  mac().locations["com.a"] = {.path = "/Apps/A.app"};
  mac().bundles["/Apps/A.app"] = {.id = "com.a"};
  EXPECT_EQ(ResolveApp("com.a")->bundle_id, "com.impostor");
}

TEST_F(AppNamesTest, WithoutADisplayNameTheInputStandsForIt) {
  mac().locations["com.a"] = {.path = "/Apps/A.app"};
  mac().bundles["/Apps/A.app"] = {.id = "com.a"};
  mac().bundles["/Applications/Chess.app"] = {.id = "com.chess"};
  EXPECT_EQ(ResolveApp("com.a")->display_name, "com.a");
  EXPECT_EQ(ResolveApp("Chess")->display_name, "Chess");
}

TEST_F(AppNamesTest, ALocationThatLeadsNowhereLeavesTheFolders) {
  mac().locations["Chess"] = {.path = "/gone"};
  mac().bundles["/System/Applications/Chess.app"] = {.id = "com.chess"};
  EXPECT_EQ(ResolveApp("Chess")->bundle_id, "com.chess");
}

TEST_F(AppNamesTest, ABundleWithoutIdentifierLeavesTheNextFolder) {
  mac().bundles["/Applications/Chess.app"] = {};
  mac().bundles["/System/Applications/Chess.app"] = {.id = "com.chess"};
  EXPECT_EQ(ResolveApp("Chess")->bundle_id, "com.chess");
}

TEST_F(AppNamesTest, TheFirstFolderWins) {
  mac().bundles["/Applications/Chess.app"] = {.id = "com.mine"};
  mac().bundles["/System/Applications/Chess.app"] = {.id = "com.theirs"};
  EXPECT_EQ(ResolveApp("Chess")->bundle_id, "com.mine");
  EXPECT_EQ(mac().calls, (Calls{"location of Chess", "exists /Applications/Chess.app"}));
}

TEST_F(AppNamesTest, AnInputThatEndsInAppIsNoCandidateInAFolder) {
  mac().bundles["/Applications/Chess.app"] = {.id = "com.chess"};
  EXPECT_FALSE(ResolveApp("Chess.app"));
}

TEST_F(AppNamesTest, AnEmptyNameIsFoundOnlyWhereAnApplicationHasAnEmptyName) {
  EXPECT_FALSE(ResolveApp(""));
  mac().running = {{.bundle_id = "com.nameless"}, {.bundle_id = "com.empty", .name = ""}};
  EXPECT_EQ(ResolveApp("")->bundle_id, "com.empty");
}

TEST_F(AppNamesTest, WhatIsNowhereIsNone) {
  EXPECT_FALSE(ResolveApp("Nothing"));
  EXPECT_EQ(mac().calls, (Calls{"location of Nothing", "exists /Applications/Nothing.app",
                                "exists /System/Applications/Nothing.app"}));
}

}  // namespace
}  // namespace deskhand
