#include "platform/x11/pointer.h"

#include <cstring>
#include <vector>

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

/// A pointer of 2 x 2 pixels whose hot spot is its lower right one.
std::vector<uint8_t> MakePointer(int16_t x, int16_t y, uint32_t argb) {
  std::vector<uint8_t> memory(sizeof(xcb_xfixes_get_cursor_image_reply_t) + 4 * sizeof(uint32_t));
  auto* pointer = reinterpret_cast<xcb_xfixes_get_cursor_image_reply_t*>(memory.data());
  pointer->x = x, pointer->y = y;
  pointer->width = 2, pointer->height = 2;
  pointer->xhot = 1, pointer->yhot = 1;
  for (int i = 0; i < 4; ++i) {
    std::memcpy(xcb_xfixes_get_cursor_image_cursor_image(pointer) + i, &argb, sizeof(argb));
  }
  return memory;
}

std::vector<uint8_t> Draw(int16_t x, int16_t y, uint32_t argb, const PixelRect& area) {
  std::vector<uint8_t> pixels(size_t{4} * area.width * area.height, 100);
  auto memory = MakePointer(x, y, argb);
  DrawPointer(*reinterpret_cast<xcb_xfixes_get_cursor_image_reply_t*>(memory.data()), area,
              pixels.data(), size_t{4} * area.width);
  return pixels;
}

TEST(DrawPointer, PutsTheHotSpotWhereThePointerIs) {
  const auto pixels = Draw(12, 21, 0xff0000ff, {10, 20, 4, 3});
  const auto blue_at = [&](int x, int y) { return pixels[(y * 4 + x) * 4]; };
  EXPECT_EQ(blue_at(1, 0), 255);
  EXPECT_EQ(blue_at(2, 1), 255);
  EXPECT_EQ(blue_at(0, 0), 100);
  EXPECT_EQ(blue_at(3, 1), 100);
  EXPECT_EQ(blue_at(2, 2), 100);
}

TEST(DrawPointer, BlendsPremultipliedColours) {
  const auto pixels = Draw(1, 1, 0x80800000, {0, 0, 2, 2});
  EXPECT_EQ(pixels[0], 50);
  EXPECT_EQ(pixels[2], 178);
}

TEST(DrawPointer, LeavesOutWhatLiesOutsideOfTheArea) {
  for (const auto& [x, y] : {std::pair{0, 0}, {-100, 5}, {2, 2}, {32767, 32767}, {0, 2}}) {
    Draw(x, y, 0xffffffff, {0, 0, 2, 2});  // the sanitizers look for writes outside
  }
  EXPECT_EQ(Draw(0, 0, 0xffffffff, {0, 0, 2, 2})[0], 255);
  EXPECT_EQ(Draw(0, 0, 0xffffffff, {0, 0, 2, 2})[4], 100);
}

}  // namespace
}  // namespace deskhand::platform
