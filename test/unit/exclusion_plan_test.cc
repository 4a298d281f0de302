#include "platform/x11/exclusion_plan.h"

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

constexpr uint32_t kManager = 0x100000;
constexpr uint32_t kNotes = 0x200000;
constexpr uint32_t kSafe = 0x300000;

/// A tree in the making. Windows are named by their class; process 7 alone is known to be of
/// "started", whatever its windows say.
struct Scene {
  WindowTree tree;

  ApplicationWindow& Top(xcb_window_t id, const std::string& wm_class) {
    tree.tops.push_back({.id = id, .bounds = {0, 0, 100, 100}, .is_shown = true});
    return Add(id, wm_class);
  }

  /// In the top-level window that was added last.
  ApplicationWindow& Inner(xcb_window_t id, const std::string& wm_class) {
    return Add(id, wm_class);
  }

  std::vector<Exclusion> Without(const std::vector<std::string>& bundle_ids) const {
    return PlanExclusions(tree, bundle_ids,
                          [](const WindowFacts& facts) -> std::optional<std::string> {
                            if (!facts.wm_class.empty()) return facts.wm_class;
                            if (facts.process_id == 7) return "started";
                            return std::nullopt;
                          });
  }

  std::vector<bool> WholeWithout(const std::vector<std::string>& bundle_ids) const {
    std::vector<bool> whole;
    for (const Exclusion& exclusion : Without(bundle_ids)) whole.push_back(exclusion.is_whole);
    return whole;
  }

 private:
  ApplicationWindow& Add(xcb_window_t id, const std::string& wm_class) {
    ApplicationWindow window{.id = id, .top = tree.tops.size() - 1, .client = id & 0xf00000};
    window.facts.wm_class = wm_class;
    window.is_viewable = true;
    window.bounds = {10, 10, 20, 20};
    tree.applications.push_back(window);
    return tree.applications.back();
  }
};

using Whole = std::vector<bool>;

TEST(ExclusionPlan, LeavesOutTheWindowsOfTheNamedApplicationsAlone) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes");
  scene.Top(kSafe + 1, "Safe");
  scene.Top(kNotes + 2, "Notes");
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, false, true}));
  EXPECT_EQ(scene.WholeWithout({"Other", "Safe"}), Whole({false, true, false}));
  EXPECT_EQ(scene.WholeWithout({"notes", "Note", ""}), Whole({false, false, false}));
}

TEST(ExclusionPlan, LeavesOutTheFrameWithItsClient) {
  Scene scene;
  scene.Top(kManager + 1, "");
  scene.Inner(kNotes + 1, "Notes").is_managed = true;
  scene.Top(kManager + 2, "");
  scene.Inner(kSafe + 1, "Safe").is_managed = true;
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, false}));
}

TEST(ExclusionPlan, TakesAFrameWithANameForItsClients) {
  Scene scene;
  scene.Top(kManager + 1, "Frame");
  scene.Inner(kNotes + 1, "Notes").is_managed = true;
  EXPECT_EQ(scene.WholeWithout({"Frame"}), Whole({false}));
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true}));
}

TEST(ExclusionPlan, LeavesOutAFrameThatHoldsSeveralForAnyOfThem) {
  Scene scene;
  scene.Top(kManager + 1, "");
  scene.Inner(kSafe + 1, "Safe").is_managed = true;
  scene.Inner(kNotes + 1, "Notes").is_managed = true;
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true}));
  EXPECT_EQ(scene.WholeWithout({"Safe"}), Whole({true}));
}

TEST(ExclusionPlan, BlanksAWindowEmbeddedInThatOfAnother) {
  Scene scene;
  scene.Top(kSafe + 1, "Safe");
  scene.Inner(kNotes + 1, "Notes").bounds = {30, 40, 5, 6};
  const auto exclusions = scene.Without({"Notes"});
  EXPECT_FALSE(exclusions[0].is_whole);
  EXPECT_EQ(exclusions[0].parts, std::vector<PixelRect>({{30, 40, 5, 6}}));
  EXPECT_TRUE(scene.Without({"Safe"})[0].is_whole);
}

TEST(ExclusionPlan, BlanksNothingThatIsNotSeen) {
  Scene scene;
  scene.Top(kSafe + 1, "Safe");
  scene.Inner(kNotes + 1, "Notes").is_viewable = false;
  EXPECT_FALSE(scene.Without({"Notes"})[0].any());
}

TEST(ExclusionPlan, TakesAMenuWithoutNameForTheWindowsOfItsConnection) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes");
  scene.Top(kNotes + 2, "");
  scene.Top(kSafe + 1, "Safe");
  scene.Top(kSafe + 2, "");
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, true, false, false}));
}

TEST(ExclusionPlan, TakesAMenuWithoutNameForTheWindowsOfItsProcess) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes").facts.process_id = 42;
  scene.Top(kSafe + 1, "").facts.process_id = 42;
  scene.Top(kSafe + 2, "").facts.process_id = 43;
  scene.Top(kSafe + 3, "").facts.process_id = 0;
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, true, false, false}));
}

TEST(ExclusionPlan, TakesAWindowWithoutNameForTheOneThatItIsTransientFor) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes");
  scene.Top(kNotes + 2, "Safe");
  scene.Top(kNotes + 3, "").transient_for = kNotes + 2;
  scene.Top(kSafe + 1, "").transient_for = kNotes + 1;
  scene.Top(kSafe + 2, "").transient_for = kSafe + 1;  // a menu of a menu
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, false, false, true, true}));
}

TEST(ExclusionPlan, FindsTheLeaderInItsFrame) {
  Scene scene;
  scene.Top(kManager + 1, "");
  scene.Inner(kNotes + 1, "Notes").is_managed = true;
  scene.Top(kSafe + 1, "").transient_for = kNotes + 1;
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, true}));
}

TEST(ExclusionPlan, TakesTheNameBeforeTheLeader) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes");
  scene.Top(kSafe + 1, "Safe").transient_for = kNotes + 1;
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, false}));
}

TEST(ExclusionPlan, IsNotFooledByWindowsThatAreTransientInACircle) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes");
  scene.Top(kNotes + 2, "").transient_for = kNotes + 3;
  scene.Top(kNotes + 3, "").transient_for = kNotes + 2;
  scene.Top(kNotes + 4, "").transient_for = kNotes + 4;
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, true, true, true}));
}

TEST(ExclusionPlan, GoesByTheProcessWhereNoWindowHasAName) {
  Scene scene;
  scene.Top(kNotes + 1, "").facts.process_id = 7;
  scene.Top(kNotes + 2, "");
  EXPECT_EQ(scene.WholeWithout({"started"}), Whole({true, true}));
}

TEST(ExclusionPlan, RemembersWhatAConnectionHadWindowsOf) {
  Scene scene;
  scene.Top(kNotes + 1, "");
  scene.Top(kNotes + 2, "Safe");
  scene.Top(kSafe + 1, "").facts.process_id = 42;
  WindowFacts former;
  former.wm_class = "Notes";
  former.process_id = 42;
  scene.tree.former_names.push_back({kNotes, former});
  EXPECT_EQ(scene.WholeWithout({"Notes"}), Whole({true, false, true}));
  EXPECT_EQ(scene.WholeWithout({"Other"}), Whole({false, false, false}));
}

TEST(ExclusionPlan, CountsWindowsThatAreNotShownButDoesNotCallThemShown) {
  Scene scene;
  scene.Top(kNotes + 1, "Notes");
  scene.tree.tops.back().is_shown = false;
  EXPECT_FALSE(HasShown(scene.tree, scene.Without({"Notes"})));
  scene.Top(kNotes + 2, "");
  EXPECT_TRUE(HasShown(scene.tree, scene.Without({"Notes"})));
  EXPECT_FALSE(HasShown(scene.tree, scene.Without({"Safe"})));
}

}  // namespace
}  // namespace deskhand::platform
