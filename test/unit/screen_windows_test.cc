#include "platform/x11/screen_windows.h"

#include <gtest/gtest.h>

#include "platform/x11/startup_notification.h"
#include "platform/x11/window_roles.h"

namespace deskhand::platform {
namespace {

constexpr uint32_t kManager = 1000;
constexpr PixelRect kPlace{100, 50, 300, 200};

/// A tree to which windows are added from the bottom to the top.
class Screen {
 public:
  /// A window without a frame.
  ApplicationWindow& Add(xcb_window_t id, const std::string& wm_class = "Class") {
    tree_.tops.push_back({.id = id, .bounds = kPlace, .is_drawable = true, .is_shown = true});
    return AddInside(id, wm_class);
  }

  /// A window in the frame that was added last.
  ApplicationWindow& AddInside(xcb_window_t id, const std::string& wm_class = "Class") {
    ApplicationWindow window{.id = id, .top = tree_.tops.size() - 1, .client = id};
    window.facts.wm_class = wm_class;
    window.is_viewable = true;
    window.bounds = kPlace;
    tree_.applications.push_back(window);
    return tree_.applications.back();
  }

  TopWindow& top() { return tree_.tops.back(); }
  WindowTree& tree() { return tree_; }

  std::vector<ScreenWindow> Find(bool has_manager = false) const {
    return FindScreenWindows(tree_, has_manager ? kManager : 0);
  }

 private:
  WindowTree tree_;
};

WindowRole Minimized() { return {.state = WindowState::kIconic, .is_minimized = true}; }

bool HasName(const ApplicationWindow& window) { return window.has_name(); }

TEST(FindScreenWindows, KeepsTheOrderOfTheScreen) {
  Screen screen;
  screen.Add(1);
  screen.Add(2);
  const auto windows = screen.Find();
  ASSERT_EQ(windows.size(), 2u);
  EXPECT_EQ(windows[0].id, 1u);
  EXPECT_EQ(windows[1].id, 2u);
}

TEST(FindScreenWindows, TakesTheManagedWindowForItsFrame) {
  Screen screen;
  screen.Add(1, "");
  screen.AddInside(2).is_managed = true;
  screen.AddInside(3);
  const auto windows = screen.Find(true);
  ASSERT_EQ(windows.size(), 1u);
  EXPECT_EQ(windows[0].id, 2u);
  EXPECT_EQ(windows[0].top, 1u);
  EXPECT_EQ(windows[0].speaker, 1u);
}

TEST(FindScreenWindows, LeavesOutWhatIsWithdrawnUnseenOrASinglePixel) {
  Screen screen;
  screen.Add(1);
  screen.top().is_shown = false;
  screen.Add(2);
  screen.top().is_drawable = false;
  screen.Add(3);
  screen.top().bounds = {10, 10, 1, 1};
  EXPECT_TRUE(screen.Find().empty());
}

TEST(FindScreenWindows, LeavesOutFramesWithoutTheirWindows) {
  Screen screen;
  screen.Add(1, "").client = kManager;
  EXPECT_TRUE(screen.Find(true).empty());
  EXPECT_EQ(screen.Find(false).size(), 1u);
}

TEST(FindScreenWindows, KnowsMinimizedWindowsByTheirState) {
  Screen screen;
  screen.Add(1, "");
  screen.top().is_shown = false;
  screen.AddInside(2).role = Minimized();
  const auto windows = screen.Find(true);
  ASSERT_EQ(windows.size(), 1u);
  EXPECT_TRUE(windows[0].is_hidden);
  EXPECT_FALSE(windows[0].is_shown);
}

TEST(FindScreenWindows, DoesNotTakeWindowsOfOtherDesktopsForHidden) {
  Screen screen;
  screen.Add(1).role.state = WindowState::kIconic;
  screen.top().is_shown = false;
  ASSERT_EQ(screen.Find(true).size(), 1u);
  EXPECT_FALSE(screen.Find(true)[0].is_hidden);
  EXPECT_TRUE(screen.Find(false)[0].is_hidden) << "without anybody who could say more";
}

TEST(FindScreenWindows, TakesAMinimizedWindowThatIsKeptMappedForHidden) {
  Screen screen;
  screen.Add(1).role = Minimized();
  ASSERT_EQ(screen.Find(true).size(), 1u);
  EXPECT_TRUE(screen.Find(true)[0].is_hidden);
  EXPECT_FALSE(screen.Find(true)[0].is_shown);
}

TEST(FindScreenWindows, KnowsWindowsThatWerePutAwayByTheirMark) {
  Screen screen;
  screen.Add(1).role.is_put_away = true;
  screen.top().is_shown = false;
  ASSERT_EQ(screen.Find().size(), 1u);
  EXPECT_TRUE(screen.Find()[0].is_hidden);
  screen.top().is_shown = true;
  EXPECT_FALSE(screen.Find()[0].is_hidden) << "somebody else has shown it again";
}

TEST(FindScreenWindows, TellsOrdinaryWindowsFromOthers) {
  Screen screen;
  screen.Add(1);
  screen.Add(2).role.is_override_redirect = true;
  screen.Add(3).role.type = WindowType::kDesktop;
  const auto windows = screen.Find();
  ASSERT_EQ(windows.size(), 3u);
  EXPECT_TRUE(windows[0].is_ordinary);
  EXPECT_FALSE(windows[1].is_ordinary);
  EXPECT_FALSE(windows[2].is_ordinary);
  EXPECT_TRUE(windows[2].is_desktop);
}

TEST(FindScreenWindows, TakesAlphaFromTheOpacity) {
  Screen screen;
  screen.Add(1);
  screen.top().opacity = UINT32_MAX / 4;
  EXPECT_FLOAT_EQ(screen.Find()[0].alpha, 0.25f);
}

TEST(FindScreenWindows, MeasuresTheFrameWithoutWhatIsUnseenOfIt) {
  Screen screen;
  screen.Add(1, "");
  screen.top().bounds = {90, 20, 320, 240};
  ApplicationWindow& client = screen.AddInside(2);
  client.is_managed = true;
  client.role.frame = Margins{2, 3, 20, 4};
  EXPECT_EQ(screen.Find(true)[0].bounds, (PixelRect{98, 30, 305, 224}));
}

TEST(FindScreenWindows, MeasuresNoMoreThanTheFrameItself) {
  Screen screen;
  screen.Add(1, "");
  screen.top().bounds = {100, 50, 300, 20};  // rolled up
  ApplicationWindow& client = screen.AddInside(2);
  client.is_managed = true;
  client.role.frame = Margins{0, 0, 20, 0};
  client.bounds = {100, 70, 300, 200};
  EXPECT_EQ(screen.Find(true)[0].bounds, (PixelRect{100, 50, 300, 20}));
}

TEST(FindScreenWindows, LeavesShadowsOutOfTheBounds) {
  Screen screen;
  screen.Add(1).role.shadow = {10, 20, 5, 15};
  EXPECT_EQ(screen.Find()[0].bounds, (PixelRect{110, 55, 270, 180}));
}

TEST(FindScreenWindows, DoesNotBelieveAShadowThatLeavesNothing) {
  Screen screen;
  screen.Add(1).role.shadow = {200, 200, 0, 0};
  EXPECT_EQ(screen.Find()[0].bounds, kPlace);
}

TEST(LayerOf, IsZeroForOrdinaryWindowsOnly) {
  EXPECT_EQ(LayerOf({}), 0);
  for (const WindowType type :
       {WindowType::kDesktop, WindowType::kDock, WindowType::kMenu, WindowType::kNotification}) {
    EXPECT_NE(LayerOf({.type = type}), 0);
  }
  EXPECT_NE(LayerOf({.is_override_redirect = true}), 0);
  EXPECT_LT(LayerOf({.type = WindowType::kDesktop}), 0);
}

TEST(FindNamer, IsTheWindowItselfWhenItIsKnown) {
  Screen screen;
  screen.Add(1);
  EXPECT_EQ(FindNamer(screen.tree(), 0, HasName), 0u);
}

TEST(FindNamer, IsTheLeaderOfAWindowThatIsNot) {
  Screen screen;
  screen.Add(1, "Other");
  screen.Add(2, "Leader");
  screen.Add(3, "").transient_for = 2;
  screen.Add(4, "").transient_for = 3;
  EXPECT_EQ(FindNamer(screen.tree(), 3, HasName), 1u);
}

TEST(FindNamer, IsAnotherWindowOfTheConnectionThenOfTheProcess) {
  Screen screen;
  screen.Add(1, "Process").facts.process_id = 7;
  screen.Add(2, "Connection").client = 9;
  screen.Add(3, "").client = 9;
  screen.tree().applications[2].facts.process_id = 7;
  EXPECT_EQ(FindNamer(screen.tree(), 2, HasName), 1u);
  screen.tree().applications[2].client = 10;
  EXPECT_EQ(FindNamer(screen.tree(), 2, HasName), 0u);
  screen.tree().applications[2].facts.process_id = 8;
  EXPECT_EQ(FindNamer(screen.tree(), 2, HasName), 2u);
}

TEST(FindNamer, EndsWhereWindowsLeadEachOther) {
  Screen screen;
  screen.Add(1, "").transient_for = 2;
  screen.Add(2, "").transient_for = 1;
  EXPECT_EQ(FindNamer(screen.tree(), 0, HasName), 0u);
}

TEST(TypeAmong, IsTheFirstThatIsKnown) {
  const WindowAtoms atoms{.types = {{11, WindowType::kOrdinary}, {12, WindowType::kDock}}};
  EXPECT_EQ(TypeAmong(atoms, {99, 12, 11}), WindowType::kDock);
  EXPECT_EQ(TypeAmong(atoms, {99}), WindowType::kOrdinary);
  EXPECT_EQ(TypeAmong(atoms, {}), WindowType::kOrdinary);
}

TEST(ReadMargins, TakesFourNumbersThatAWindowCanHave) {
  EXPECT_EQ(ReadMargins({1, 2, 3, 4}), (Margins{1, 2, 3, 4}));
  EXPECT_EQ(ReadMargins({}), std::nullopt);
  EXPECT_EQ(ReadMargins({1, 2, 3}), std::nullopt);
  EXPECT_EQ(ReadMargins({1, 2, 3, UINT32_MAX}), std::nullopt);
}

TEST(StateOf, TakesWhatItDoesNotKnowForWithdrawn) {
  EXPECT_EQ(StateOf(1), WindowState::kNormal);
  EXPECT_EQ(StateOf(3), WindowState::kIconic);
  for (const auto value :
       {std::optional<uint32_t>(), std::optional<uint32_t>(0), std::optional<uint32_t>(2)}) {
    EXPECT_EQ(StateOf(value), WindowState::kWithdrawn);
  }
}

TEST(QuoteStartupValue, KeepsQuotesAndBackslashesInTheValue) {
  EXPECT_EQ(QuoteStartupValue("plain text"), "\"plain text\"");
  EXPECT_EQ(QuoteStartupValue("a \"b\" \\"), "\"a \\\"b\\\" \\\\\"");
}

}  // namespace
}  // namespace deskhand::platform
