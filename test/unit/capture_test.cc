#include <cmath>

#include <gtest/gtest.h>

#include "capture/display_capture.h"
#include "capture/region_capture.h"
#include "unit/fake_platform.h"

namespace deskhand {
namespace {

using platform::FakePlatform;

class CaptureTest : public testing::Test {
 protected:
  void SetUp() override {
    FakePlatform::Reset();
    fake().main_display_id = 7;
    fake().screens = {
        {.id = 7, .frame = {0, 0, 1440, 900}, .scale_factor = 2},
        {.id = 8, .frame = {-1920.5, 900, 1920, 1080}, .scale_factor = 1},
    };
    fake().content->displays = {{8, 1920, 1080}, {7, 1440, 900}};
    fake().content->applications = {"com.a", std::nullopt, "com.b", "com.a"};
  }
  static FakePlatform& fake() { return FakePlatform::Get(); }
  static CaptureRequest Request(uint32_t display = 0) { return {{}, 0.5, display}; }
};

TEST_F(CaptureTest, AHighResolutionDisplayIsReducedToTheTargetSizeOfItsPixels) {
  const auto outcome = ScreenshotOfDisplay(Request());
  ASSERT_TRUE(outcome.value);
  EXPECT_EQ(outcome.value->width, 1390);
  EXPECT_EQ(outcome.value->height, 868);
  EXPECT_EQ(outcome.value->display.id, 7u);
  EXPECT_EQ(outcome.value->base64, "base64 text");
  EXPECT_EQ(fake().configuration->width, 1390);
  EXPECT_TRUE(fake().configuration->scales_to_fit);
  EXPECT_TRUE(fake().configuration->shows_cursor);
  EXPECT_FALSE(fake().configuration->captures_audio);
  EXPECT_FALSE(fake().configuration->source_rect);
  EXPECT_EQ(fake().quality, 0.5);
}

TEST_F(CaptureTest, GeometryIsTruncatedAndInGlobalPoints) {
  const auto outcome = ScreenshotOfDisplay(Request(8));
  ASSERT_TRUE(outcome.value);
  EXPECT_EQ(outcome.value->display.origin_x, -1920);
  EXPECT_EQ(outcome.value->display.origin_y, -1080);
  EXPECT_EQ(outcome.value->display.width, 1920);
}

TEST_F(CaptureTest, AnUnknownDisplayGivesThePlatformsFirst) {
  EXPECT_EQ(ScreenshotOfDisplay(Request(99)).value->display.id, 8u);
  EXPECT_EQ(fake().filter->display, 0u);
}

TEST_F(CaptureTest, ADisplayWithoutAScreenIsTakenAsTwoPixelsAPointAtTheOrigin) {
  fake().screens.clear();
  const auto outcome = ScreenshotOfDisplay(Request());
  ASSERT_TRUE(outcome.value);
  EXPECT_EQ(outcome.value->width, 1390);
  EXPECT_EQ(outcome.value->display.width, 1440);
  EXPECT_EQ(outcome.value->display.origin_x, 0);
  EXPECT_EQ(outcome.value->display.origin_y, 0);
}

TEST_F(CaptureTest, ADisplayWithoutAreaHasATargetOfZero) {
  fake().screens[0].frame = {0, 0, 0.5, 900};
  fake().encoded_size = std::nullopt;
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "Failed to encode screenshot to JPEG");
  EXPECT_EQ(fake().configuration->width, 0);
  EXPECT_EQ(fake().configuration->height, 0);
}

TEST_F(CaptureTest, EveryRunningApplicationOfAGivenIdentifierIsExcludedAndNoOther) {
  CaptureRequest request = Request();
  request.exclude_bundle_ids = {"com.a", "COM.B", "com.none", "com.a"};
  ASSERT_TRUE(ScreenshotOfDisplay(request).value);
  EXPECT_EQ(fake().filter->excluded_applications, (std::vector<size_t>{0, 3}));
  EXPECT_EQ(fake().filter->excluded_bundle_ids, request.exclude_bundle_ids);
}

TEST_F(CaptureTest, ARegionIsPassedOnUnchangedWithTheCallersSize) {
  const auto outcome = ScreenshotOfRegion(Request(8), {-1.5, 2, 1e9, -4}, {-3, 70000});
  ASSERT_TRUE(outcome.value);
  EXPECT_EQ(fake().configuration->source_rect->x, -1.5);
  EXPECT_EQ(fake().configuration->source_rect->y, 2);
  EXPECT_EQ(fake().configuration->source_rect->width, 1e9);
  EXPECT_EQ(fake().configuration->source_rect->height, -4);
  EXPECT_EQ(outcome.value->width, -3);
  EXPECT_EQ(outcome.value->height, 70000);
}

TEST_F(CaptureTest, FailuresCarryTheSystemsDescriptionWhenThereIsOne) {
  fake().image_error = "because";
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "Screenshot capture failed: because");
  EXPECT_EQ(ScreenshotOfRegion(Request(), {}, {}).error, "Region capture failed: because");
  fake().image_error = std::nullopt;
  fake().has_image = false;
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "Screenshot capture failed");
  EXPECT_EQ(ScreenshotOfRegion(Request(), {}, {}).error, "Region capture failed");
}

TEST_F(CaptureTest, ContentThatIsUnavailableIsSaidSo) {
  fake().content_error = "denied";
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "Failed to get shareable content: denied");
  fake().content = std::nullopt;
  EXPECT_EQ(ScreenshotOfRegion(Request(), {}, {}).error, "Failed to get shareable content: denied");
  fake().content_error = std::nullopt;
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "Failed to get shareable content");
}

TEST_F(CaptureTest, WithoutDisplaysNoneIsFound) {
  fake().content->displays.clear();
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "No display found");
  EXPECT_EQ(ScreenshotOfRegion(Request(), {}, {}).error, "No display found");
}

TEST_F(CaptureTest, OnlyDataLongerThan63BytesAreAnImage) {
  fake().encoded_size = 63;
  EXPECT_EQ(ScreenshotOfRegion(Request(), {}, {}).error,
            "Failed to encode region screenshot to JPEG");
  fake().encoded_size = 64;
  EXPECT_TRUE(ScreenshotOfRegion(Request(), {}, {}).value);
}

TEST_F(CaptureTest, AMainQueueThatIsNotServicedEndsInTheTimeoutMessages) {
  fake().main_queue_is_serviced = false;
  EXPECT_EQ(ScreenshotOfDisplay(Request()).error, "Screenshot capture timed out after 10 seconds");
  EXPECT_EQ(ScreenshotOfRegion(Request(), {}, {}).error,
            "Region capture timed out after 10 seconds");
}

TEST_F(CaptureTest, NaNQualityReachesTheEncoder) {
  CaptureRequest request = Request();
  request.quality = NAN;
  ASSERT_TRUE(ScreenshotOfDisplay(request).value);
  EXPECT_TRUE(std::isnan(*fake().quality));
}

}  // namespace
}  // namespace deskhand
