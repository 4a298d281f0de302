#include "platform/x11/area_scaler.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <utility>

#include <gtest/gtest.h>

namespace deskhand::platform {
namespace {

constexpr int kBytes = 4;

/// A picture that owns its pixels.
struct Canvas {
  int32_t width, height;
  std::vector<uint8_t> pixels;
  Canvas(int32_t w, int32_t h) : width(w), height(h), pixels(size_t(w) * h * kBytes) {}
  Picture picture() const { return {pixels.data(), size_t(width) * kBytes, width, height}; }
  uint8_t* at(int32_t x, int32_t y) { return &pixels[(size_t(y) * width + x) * kBytes]; }
  void Fill(uint8_t blue, uint8_t green, uint8_t red) {
    for (size_t i = 0; i < pixels.size(); i += kBytes) {
      pixels[i] = blue, pixels[i + 1] = green, pixels[i + 2] = red;
    }
  }
};

AreaScaler ScalerFor(const Canvas& source, const Window& window, int32_t width, int32_t height) {
  return {source.picture(), std::make_shared<const ScalePlan>(ScalePlan::Sizes{
                                source.width, source.height, window, width, height})};
}

Canvas Scale(const Canvas& source, const Window& window, int32_t width, int32_t height) {
  Canvas target(width, height);
  AreaScaler scaler = ScalerFor(source, window, width, height);
  for (int32_t y = 0; y < height; ++y) {
    uint8_t* const room = target.at(0, y);
    const uint8_t* const row = scaler.Row(y, room);
    if (row != room) std::copy_n(row, size_t(width) * kBytes, room);
  }
  return target;
}

Canvas Noise(int32_t width, int32_t height) {
  Canvas canvas(width, height);
  std::mt19937 random(1);
  for (uint8_t& byte : canvas.pixels) byte = static_cast<uint8_t>(random());
  return canvas;
}

TEST(AreaScaler, LeavesAPictureOfTheSameSizeAsItIs) {
  Canvas source = Noise(37, 23);
  Canvas target = Scale(source, {0, 0, 37, 23}, 37, 23);
  for (size_t i = 0; i < source.pixels.size(); ++i) {
    const bool is_ignored = i % kBytes == kBytes - 1;
    ASSERT_TRUE(is_ignored || target.pixels[i] == source.pixels[i]) << i;
  }
}

TEST(AreaScaler, HandsOverRowsOfTheSameSizeWithoutTouchingThem) {
  Canvas source = Noise(37, 23);
  AreaScaler scaler = ScalerFor(source, {5, 2, 30, 21}, 30, 21);
  for (int32_t y = 0; y < 21; ++y) EXPECT_EQ(scaler.Row(y, nullptr), source.at(5, y + 2));
}

TEST(AreaScaler, ScalesToTheSameSizeWhatLiesBesideThePixelsOrThePicture) {
  Canvas source = Noise(37, 23);
  for (const Window& window : {Window{-1, 0, 37, 23},
                               {1, 0, 37, 23},
                               {0, -1, 37, 23},
                               {0, 1, 37, 23},
                               {0.5, 0, 36, 23},
                               {0, 0.5, 37, 22}}) {
    const auto width = int32_t(window.width), height = int32_t(window.height);
    AreaScaler scaler = ScalerFor(source, window, width, height);
    std::vector<uint8_t> room(size_t(width) * kBytes);
    EXPECT_EQ(scaler.Row(0, room.data()), room.data());
  }
}

TEST(AreaScaler, GivesTheSamePixelsWhetherItScalesThemOrHandsThemOver) {
  Canvas source = Noise(37, 23);
  // The last column lies outside, so that nothing can be handed over.
  Canvas scaled = Scale(source, {0, 0, 38, 23}, 38, 23);
  for (int32_t y = 0; y < 23; ++y) {
    for (int32_t x = 0; x < 37; ++x) {
      for (int byte = 0; byte < 3; ++byte) {
        ASSERT_EQ(scaled.at(x, y)[byte], source.at(x, y)[byte]) << x << "," << y;
      }
    }
  }
}

TEST(AreaScaler, KeepsAFlatColourExactlyAtAnyRatio) {
  Canvas source(1920, 108);
  source.Fill(1, 254, 255);
  for (const int32_t width : {1, 3, 700, 1456, 1919, 2500}) {
    Canvas target = Scale(source, {0, 0, 1920, 108}, width, 82);
    for (int32_t x = 0; x < width; ++x) {
      ASSERT_EQ(target.at(x, 40)[0], 1);
      ASSERT_EQ(target.at(x, 40)[1], 254);
      ASSERT_EQ(target.at(x, 40)[2], 255);
    }
  }
}

TEST(AreaScaler, AveragesTheAreaThatATargetPixelCovers) {
  Canvas source = Noise(192, 108);
  // One, two, three, four and more pairs of source pixels for a target pixel.
  for (const auto& [width, height] :
       {std::pair{191, 107}, {145, 81}, {47, 31}, {39, 22}, {27, 16}, {13, 9}}) {
    Canvas target = Scale(source, {0, 0, 192, 108}, width, height);
    const double step_x = 192.0 / width, step_y = 108.0 / height;
    for (int32_t y = 0; y < height; ++y) {
      for (int32_t x = 0; x < width; ++x) {
        double sum = 0;
        for (int32_t sy = 0; sy < 108; ++sy) {
          const double high =
              std::min(sy + 1.0, (y + 1) * step_y) - std::max<double>(sy, y * step_y);
          for (int32_t sx = 0; high > 0 && sx < 192; ++sx) {
            const double wide =
                std::min(sx + 1.0, (x + 1) * step_x) - std::max<double>(sx, x * step_x);
            if (wide > 0) sum += high * wide * source.at(sx, sy)[1];
          }
        }
        ASSERT_NEAR(target.at(x, y)[1], sum / (step_x * step_y), 1.5)
            << x << "," << y << " of " << width;
      }
    }
  }
}

TEST(AreaScaler, ReadsNoPixelThatIsNotThere) {
  // Sizes on both sides of what the vectors hold, into targets that need one pair of columns or
  // many.
  for (int32_t width = 1; width < 12; ++width) {
    for (const int32_t target : {1, 2, 3, 5, 8, 17}) {
      Canvas source(width, 3);
      source.Fill(9, 8, 7);
      Canvas scaled = Scale(source, {0, 0, double(width), 3}, target, 2);
      for (int32_t x = 0; x < target; ++x) ASSERT_EQ(scaled.at(x, 1)[2], 7) << width << target;
    }
  }
}

TEST(AreaScaler, InterpolatesBetweenNeighboursWhenItEnlarges) {
  Canvas source(2, 1);
  source.at(1, 0)[0] = 200;
  Canvas target = Scale(source, {0, 0, 2, 1}, 8, 1);
  const uint8_t expected[] = {0, 0, 25, 75, 125, 175, 200, 200};
  for (int32_t x = 0; x < 8; ++x) EXPECT_NEAR(target.at(x, 0)[0], expected[x], 1) << x;
}

TEST(AreaScaler, ShowsBlackOutsideOfThePicture) {
  Canvas source(10, 10);
  source.Fill(255, 255, 255);
  Canvas target = Scale(source, {-10, 5, 20, 10}, 20, 10);
  for (int32_t y = 0; y < 10; ++y) {
    for (int32_t x = 0; x < 20; ++x) {
      const bool is_inside = x >= 10 && y < 5;
      ASSERT_EQ(target.at(x, y)[0], is_inside ? 255 : 0) << x << "," << y;
    }
  }
}

TEST(AreaScaler, CountsPartlyCoveredPixelsInProportion) {
  Canvas source(4, 1);
  source.at(1, 0)[2] = 100;
  Canvas target = Scale(source, {0.5, 0, 1, 1}, 1, 1);
  EXPECT_EQ(target.at(0, 0)[2], 50);
}

TEST(AreaScaler, CopesWithWindowsOfAbsurdSizeAndPlace) {
  Canvas source = Noise(16, 16);
  for (const Window& window : {Window{1e300, 0, 1, 1},
                               {-1e300, -1e300, 2e300, 2e300},
                               {0, 0, 1e-300, 1e-300},
                               {1e308, 1e308, 1e308, 1e308},
                               {15.999999, 15.999999, 1e-9, 1e-9}}) {
    Canvas target = Scale(source, window, 5, 5);
    EXPECT_EQ(target.width, 5);  // the sanitizers look for reads outside
  }
}

TEST(AreaScaler, AnEmptyPictureIsAllBlack) {
  const Canvas source(0, 0);
  Canvas target = Scale(source, {0, 0, 100, 100}, 3, 3);
  EXPECT_EQ(target.at(2, 2)[0] + target.at(2, 2)[1] + target.at(2, 2)[2], 0);
}

TEST(AxisWeights, AddUpToTheUnitInside) {
  for (const int32_t target : {1, 7, 100, 1456, 3000}) {
    const AxisWeights axis = MakeAxisWeights(1920, 0, 1920, target, 65535);
    for (const auto& span : axis.spans) {
      uint32_t sum = 0;
      for (int32_t i = 0; i < span.count; ++i) sum += axis.weights[span.offset + i];
      ASSERT_EQ(sum, 65535u);
      ASSERT_GE(span.first, 0);
      ASSERT_LE(span.first + span.count, 1920);
    }
  }
}

}  // namespace
}  // namespace deskhand::platform
