// Pictures before they are encoded, compared with what the server says is on the screen.
#include "platform/x11/exclusion.h"

#include <chrono>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include "capture/display_capture.h"
#include "platform/x11/reply.h"
#include "platform/x11/task_thread.h"
#include "unit/private_xvfb.h"

namespace deskhand {
namespace {

using platform::Grab;
using platform::PixelRect;
using platform::Session;

constexpr PixelRect kScreen{0, 0, 1280, 720};

/// Blue, green and red of each pixel.
using Colours = std::vector<uint8_t>;

/// A program on the server.
class Painter {
 public:
  Painter() : connection_(xcb_connect(nullptr, nullptr)) {
    screen_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
  }
  ~Painter() { xcb_disconnect(connection_); }
  Painter(const Painter&) = delete;
  Painter& operator=(const Painter&) = delete;

  xcb_window_t Open(const PixelRect& place, uint32_t colour, const std::string& wm_class) const {
    const xcb_window_t window = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window, screen_->root, place.x, place.y,
                      place.width, place.height, 3, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      screen_->root_visual, XCB_CW_BACK_PIXEL, &colour);
    const std::string text = wm_class + '\0' + wm_class + '\0';
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS,
                        XCB_ATOM_STRING, 8, text.size(), text.data());
    xcb_map_window(connection_, window);
    Settle();
    return window;
  }

  void Close(xcb_window_t window) const {
    xcb_destroy_window(connection_, window);
    Settle();
  }

  Colours Screen() const {
    const auto reply =
        platform::Await(connection_, xcb_get_image_reply,
                        xcb_get_image(connection_, XCB_IMAGE_FORMAT_Z_PIXMAP, screen_->root, 0, 0,
                                      kScreen.width, kScreen.height, ~0u));
    Colours colours;
    if (!reply) return colours;
    const uint8_t* const pixels = xcb_get_image_data(reply.get());
    for (int i = 0; i < 4 * kScreen.width * kScreen.height; ++i) {
      if (i % 4 != 3) colours.push_back(pixels[i]);
    }
    return colours;
  }

 private:
  void Settle() const {
    platform::Await(connection_, xcb_get_input_focus_reply, xcb_get_input_focus(connection_));
  }

  xcb_connection_t* const connection_;
  const xcb_screen_t* screen_;
};

Colours ScreenWithout(const std::vector<std::string>& bundle_ids) {
  std::promise<Colours> promise;
  platform::CaptureThread().Post([&] {
    Session session(platform::CaptureChannel(), platform::Clock::now() + std::chrono::seconds(5));
    const Grab grab = platform::GrabWithout(bundle_ids, session, kScreen, /*with_pointer=*/false);
    EXPECT_EQ(grab.error, "");
    Colours colours;
    for (int32_t y = 0; y < grab.picture.height; ++y) {
      const uint8_t* const row = grab.picture.pixels + y * grab.picture.stride;
      for (int32_t i = 0; i < 4 * grab.picture.width; ++i) {
        if (i % 4 != 3) colours.push_back(row[i]);
      }
    }
    promise.set_value(std::move(colours));
  });
  return promise.get_future().get();
}

class Exclusion : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.is_running());
    painter_ = std::make_unique<Painter>();
    painter_->Open({100, 100, 400, 300}, 0x20a040, "Green");
    painter_->Open({300, 250, 400, 300}, 0x2040c0, "Blue");
  }

  const PrivateXvfb server_;
  std::unique_ptr<Painter> painter_;
};

TEST_F(Exclusion, OfNothingGivesTheScreenPixelForPixel) {
  EXPECT_EQ(ScreenWithout({}), painter_->Screen());
  EXPECT_EQ(ScreenWithout({"Nobody"}), painter_->Screen());
}

TEST_F(Exclusion, OfAFewWindowsGivesTheScreenAsItWasBeforeThem) {
  const Colours before = painter_->Screen();
  painter_->Open({400, 300, 200, 200}, 0xff00ff, "Secret");
  painter_->Open({900, 50, 100, 600}, 0xff00ff, "Secret");
  EXPECT_NE(painter_->Screen(), before);
  EXPECT_EQ(ScreenWithout({"Secret"}), before);
  EXPECT_EQ(ScreenWithout({"Secret"}), before);
}

TEST_F(Exclusion, OfMostOfTheScreenGivesItAsItWasBefore) {
  const Colours before = painter_->Screen();
  painter_->Open({50, 50, 1100, 600}, 0xff00ff, "Secret");
  EXPECT_EQ(ScreenWithout({"Secret"}), before);
}

TEST_F(Exclusion, LeavesTheScreenAsItIs) {
  const xcb_window_t secret = painter_->Open({400, 300, 200, 200}, 0xff00ff, "Secret");
  const Colours with_secret = painter_->Screen();
  ScreenWithout({"Secret"});
  EXPECT_EQ(painter_->Screen(), with_secret);
  EXPECT_EQ(ScreenWithout({}), with_secret);
  painter_->Close(secret);
  EXPECT_EQ(ScreenWithout({"Secret"}), painter_->Screen());
}

TEST_F(Exclusion, IsAskedForByManyThreadsWhileWindowsOpenAndClose) {
  painter_->Open({400, 300, 200, 200}, 0xff00ff, "Secret");
  std::vector<std::thread> threads;
  for (int i = 0; i < 3; ++i) {
    threads.emplace_back([] {
      for (int round = 0; round < 10; ++round) {
        const auto outcome = ScreenshotOfDisplay({{"Secret"}, 0.5, 0});
        EXPECT_TRUE(outcome.value) << outcome.error;
      }
    });
  }
  for (int round = 0; round < 50; ++round) {
    painter_->Close(painter_->Open({50 + 5 * round, 100, 300, 200}, 0x808080, "Other"));
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace deskhand
