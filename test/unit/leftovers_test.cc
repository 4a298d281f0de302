#include "platform/x11/leftovers.h"

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

using Part = Leftovers::Part;

constexpr xcb_window_t kNote = 1;
constexpr xcb_window_t kSecret = 2;
constexpr xcb_window_t kOther = 3;

/// Adds a window and shows it.
void Show(Leftovers* leftovers, xcb_window_t window, const PixelRect& bounds) {
  leftovers->Add(window, bounds);
  leftovers->OnShown(window);
}

std::vector<Part> Parts(std::initializer_list<Part> parts) { return parts; }

TEST(Leftovers, AreOfWindowsThatAreOnTheScreenWhenAnotherIsShown) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {100, 100, 50, 50});
  Show(&leftovers, kNote, {120, 80, 100, 100});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{120, 100, 30, 50}, kSecret}}));
  EXPECT_EQ(leftovers.In(kSecret), Parts({}));
}

TEST(Leftovers, AreOfAllOthersInThePlaceWhenAllAreShownAtOnce) {
  Leftovers leftovers;
  leftovers.Add(kNote, {0, 0, 100, 100});
  leftovers.Add(kSecret, {50, 0, 100, 100});
  leftovers.Add(kOther, {0, 50, 100, 100});
  leftovers.OnAllShown({kNote, kSecret});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{50, 0, 50, 100}, kSecret}}));
  EXPECT_EQ(leftovers.In(kSecret), Parts({{{50, 0, 50, 100}, kNote}}));
  EXPECT_EQ(leftovers.In(kOther), Parts({}));
}

TEST(Leftovers, AreNotOfWindowsThatAreHidden) {
  Leftovers leftovers;
  leftovers.Add(kOther, {0, 0, 500, 500});
  Show(&leftovers, kSecret, {0, 0, 500, 500});
  leftovers.OnHidden(kSecret);
  Show(&leftovers, kNote, {120, 80, 100, 100});
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
}

TEST(Leftovers, AreNotOfWindowsThatComeLater) {
  Leftovers leftovers;
  Show(&leftovers, kNote, {0, 0, 100, 100});
  Show(&leftovers, kSecret, {0, 0, 50, 50});
  leftovers.OnConfigured(kSecret, {50, 50, 50, 50});
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
}

TEST(Leftovers, MoveWithTheirWindow) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {100, 100, 50, 50});
  Show(&leftovers, kNote, {120, 80, 100, 100});
  leftovers.OnConfigured(kNote, {520, 480, 100, 100});
  leftovers.OnConfigured(kSecret, {0, 0, 50, 50});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{520, 500, 30, 50}, kSecret}}));
}

TEST(Leftovers, MayBeAnywhereInAWindowThatWasResized) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {100, 100, 50, 50});
  Show(&leftovers, kNote, {120, 80, 100, 100});
  leftovers.OnConfigured(kSecret, {900, 900, 50, 50});
  leftovers.OnConfigured(kNote, {120, 80, 200, 200});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{120, 80, 200, 200}, kSecret}}));
}

TEST(Leftovers, ComeInWhenAWindowGrowsOverAnother) {
  Leftovers leftovers;
  Show(&leftovers, kNote, {0, 0, 100, 100});
  Show(&leftovers, kSecret, {150, 0, 100, 100});
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
  leftovers.OnConfigured(kNote, {0, 0, 200, 100});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{150, 0, 50, 100}, kSecret}}));
}

TEST(Leftovers, ArePassedOnByWindowsThatStillShowThem) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {0, 0, 100, 100});
  Show(&leftovers, kOther, {0, 0, 50, 50});
  leftovers.OnHidden(kSecret);
  Show(&leftovers, kNote, {40, 40, 100, 100});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{40, 40, 10, 10}, kOther}, {{40, 40, 10, 10}, kSecret}}));
}

TEST(Leftovers, OfAWindowThatHasGoneAreOfNobodyKnown) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {0, 0, 100, 100});
  Show(&leftovers, kNote, {50, 50, 100, 100});
  leftovers.Remove(kSecret);
  leftovers.Add(kSecret, {0, 0, 1, 1});  // another window of the same number
  EXPECT_EQ(leftovers.In(kNote), Parts({{{50, 50, 50, 50}, XCB_NONE}}));
}

TEST(Leftovers, AreNoneInAWindowThatIsNotShown) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {0, 0, 100, 100});
  Show(&leftovers, kNote, {50, 50, 100, 100});
  leftovers.OnHidden(kNote);
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
  leftovers.OnConfigured(kNote, {0, 0, 300, 300});
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
}

TEST(Leftovers, AreForgottenByTheirSource) {
  Leftovers leftovers;
  Show(&leftovers, kSecret, {0, 0, 100, 100});
  Show(&leftovers, kOther, {50, 50, 100, 100});
  Show(&leftovers, kNote, {0, 0, 200, 200});
  leftovers.Forget(kNote, kSecret);
  EXPECT_EQ(leftovers.In(kNote), Parts({{{50, 50, 100, 100}, kOther}}));
}

TEST(Leftovers, FillAWindowOfWhosePastNothingIsKnown) {
  Leftovers leftovers;
  EXPECT_FALSE(leftovers.Knows(kNote));
  leftovers.AddUnknown(kNote, {10, 10, 20, 20});
  EXPECT_TRUE(leftovers.Knows(kNote));
  EXPECT_EQ(leftovers.In(kNote), Parts({{{10, 10, 20, 20}, XCB_NONE}}));
  Show(&leftovers, kOther, {0, 0, 15, 15});
  EXPECT_EQ(leftovers.In(kOther), Parts({{{10, 10, 5, 5}, kNote}, {{10, 10, 5, 5}, XCB_NONE}}));
}

TEST(Leftovers, OfMoreWindowsThanCanBeToldApartAreOfNobodyKnown) {
  Leftovers leftovers;
  for (xcb_window_t window = 10; window < 1010; ++window) {
    Show(&leftovers, window, {static_cast<int32_t>(window), 0, 1, 100});
  }
  Show(&leftovers, kNote, {0, 0, 2000, 100});
  EXPECT_EQ(leftovers.In(kNote), Parts({{{0, 0, 2000, 100}, XCB_NONE}}));
}

TEST(Leftovers, FillAWindowThatIsDistrusted) {
  Leftovers leftovers;
  Show(&leftovers, kNote, {10, 10, 20, 20});
  leftovers.Add(kOther, {0, 0, 5, 5});
  leftovers.Distrust(kNote);
  leftovers.Distrust(kOther);  // not shown
  EXPECT_EQ(leftovers.In(kNote), Parts({{{10, 10, 20, 20}, XCB_NONE}}));
  EXPECT_EQ(leftovers.In(kOther), Parts({}));
}

TEST(Leftovers, FillTheWindowsThatAreNew) {
  Leftovers leftovers;
  Show(&leftovers, kNote, {10, 10, 20, 20});
  leftovers.TrustNew();
  Show(&leftovers, kOther, {100, 100, 20, 20});
  leftovers.DistrustNew();
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
  EXPECT_EQ(leftovers.In(kOther), Parts({{{100, 100, 20, 20}, XCB_NONE}}));
  leftovers.Forget(kOther, XCB_NONE);
  leftovers.OnConfigured(kNote, {10, 10, 30, 20});
  leftovers.DistrustNew();
  EXPECT_EQ(leftovers.In(kNote), Parts({{{10, 10, 30, 20}, XCB_NONE}}));
  EXPECT_EQ(leftovers.In(kOther), Parts({}));
}

TEST(Leftovers, OfUnknownWindowsAreNothing) {
  Leftovers leftovers;
  leftovers.OnShown(kNote);
  leftovers.OnHidden(kNote);
  leftovers.OnConfigured(kNote, {0, 0, 10, 10});
  leftovers.Forget(kNote, kSecret);
  leftovers.Remove(kNote);
  EXPECT_EQ(leftovers.In(kNote), Parts({}));
  EXPECT_FALSE(leftovers.Knows(kNote));
}

}  // namespace
}  // namespace deskhand::platform
