#include "platform/x11/pixel_format.h"

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

constexpr PixelFormat kBgrx{.red_mask = 0xff0000,
                            .green_mask = 0xff00,
                            .blue_mask = 0xff,
                            .bits_per_pixel = 32,
                            .scanline_pad_bits = 32,
                            .most_significant_byte_first = false};

PixelFormat Rgb565() {
  PixelFormat format = kBgrx;
  format.red_mask = 0xf800, format.green_mask = 0x07e0, format.blue_mask = 0x001f;
  format.bits_per_pixel = 16;
  return format;
}

TEST(PixelFormat, KnowsTheFormThatNeedsNoConversion) {
  EXPECT_TRUE(kBgrx.IsBgrx());
  PixelFormat other = kBgrx;
  other.most_significant_byte_first = true;
  EXPECT_FALSE(other.IsBgrx());
  EXPECT_FALSE(Rgb565().IsBgrx());
}

TEST(PixelFormat, RowsBeginAtThePad) {
  EXPECT_EQ(kBgrx.StrideFor(3), 12u);
  EXPECT_EQ(Rgb565().StrideFor(3), 8u);
}

TEST(ConvertRow, SpreadsFewerBitsOverTheWholeRange) {
  const uint8_t white_and_red[] = {0xff, 0xff, 0x00, 0xf8};
  uint8_t target[8];
  ConvertRow(Rgb565(), white_and_red, target, 2);
  EXPECT_EQ(target[0], 255);
  EXPECT_EQ(target[1], 255);
  EXPECT_EQ(target[2], 255);
  EXPECT_EQ(target[4], 0);
  EXPECT_EQ(target[5], 0);
  EXPECT_EQ(target[6], 255);
}

TEST(ConvertRow, ReadsDeepColoursAndOtherByteOrders) {
  PixelFormat deep = kBgrx;  // 10 bits a channel, big-endian
  deep.red_mask = 0x3ff00000, deep.green_mask = 0xffc00, deep.blue_mask = 0x3ff;
  deep.most_significant_byte_first = true;
  const uint8_t source[] = {0x3f, 0xf0, 0x00, 0x00};
  uint8_t target[4];
  ConvertRow(deep, source, target, 1);
  EXPECT_EQ(target[2], 255);
  EXPECT_EQ(target[1], 0);
  EXPECT_EQ(target[0], 0);
}

}  // namespace
}  // namespace deskhand::platform
