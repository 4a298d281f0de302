#include "platform/x11/jpeg_encoder.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

// After <cstdio>: the header needs FILE.
#include <jpeglib.h>

namespace deskhand::platform {
namespace {

struct Decoded {
  int width = 0, height = 0;
  int horizontal_sampling = 0, vertical_sampling = 0;
  std::vector<uint8_t> rgb;
  long warnings = 0;
};

Decoded Decode(const JpegData& data) {
  Decoded decoded;
  jpeg_decompress_struct info{};
  jpeg_error_mgr errors;
  info.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&info);
  jpeg_mem_src(&info, data.bytes.get(), data.size);
  jpeg_read_header(&info, TRUE);
  decoded.horizontal_sampling = info.comp_info[0].h_samp_factor;
  decoded.vertical_sampling = info.comp_info[0].v_samp_factor;
  jpeg_start_decompress(&info);
  decoded.width = info.output_width;
  decoded.height = info.output_height;
  decoded.rgb.resize(size_t{3} * decoded.width * decoded.height);
  while (info.output_scanline < info.output_height) {
    JSAMPROW row = decoded.rgb.data() + size_t{3} * decoded.width * info.output_scanline;
    jpeg_read_scanlines(&info, &row, 1);
  }
  jpeg_finish_decompress(&info);
  decoded.warnings = errors.num_warnings;
  jpeg_destroy_decompress(&info);
  return decoded;
}

JpegData Copy(const JpegData& data) {
  JpegData copy{.bytes = std::unique_ptr<uint8_t, JpegData::Free>(
                    static_cast<uint8_t*>(std::malloc(data.size))),
                .size = data.size,
                .capacity = data.size};
  std::copy_n(data.bytes.get(), data.size, copy.bytes.get());
  return copy;
}

JpegData Encode(int32_t width, int32_t height, double quality, const RowSource& rows,
                int32_t wanted = 1) {
  JpegParts parts(width, height, quality, wanted);
  for (int32_t part = parts.count() - 1; part >= 0; --part) parts.Encode(part, rows);
  return Copy(parts.Join());
}

/// Left half red, right half blue.
JpegData TwoColours(int32_t width, int32_t height, double quality) {
  return Encode(width, height, quality, [width](int32_t, uint8_t* row) -> const uint8_t* {
    for (int32_t x = 0; x < width; ++x) {
      row[4 * x] = x < width / 2 ? 0 : 255;
      row[4 * x + 1] = 0;
      row[4 * x + 2] = x < width / 2 ? 255 : 0;
    }
    return row;
  });
}

JpegData Noise(int32_t width, int32_t height, double quality) {
  std::mt19937 random(1);
  return Encode(width, height, quality, [&](int32_t, uint8_t* row) -> const uint8_t* {
    for (int32_t i = 0; i < 4 * width; ++i) row[i] = static_cast<uint8_t>(random());
    return row;
  });
}

TEST(JpegEncoder, KeepsSizeColoursAndChromaSampling) {
  for (const auto& [width, height] :
       {std::pair{64, 48}, {1456, 819}, {33, 17}, {2, 1}, {65500, 2}}) {
    const Decoded decoded = Decode(TwoColours(width, height, 0.9));
    ASSERT_EQ(decoded.width, width);
    ASSERT_EQ(decoded.height, height);
    EXPECT_EQ(decoded.horizontal_sampling, 2);
    EXPECT_EQ(decoded.vertical_sampling, 2);
    if (width < 32) continue;  // chroma of neighbours mixes
    EXPECT_GT(decoded.rgb[0], 230);
    EXPECT_LT(decoded.rgb[2], 25);
    EXPECT_GT(decoded.rgb[3 * (width - 1) + 2], 230);
  }
}

TEST(JpegEncoder, GrowsItsBufferForPicturesThatDoNotCompress) {
  const JpegData data = Noise(1500, 1000, 1.0);
  EXPECT_GT(data.size, size_t{1} << 20);
  EXPECT_EQ(Decode(data).height, 1000);
}

TEST(JpegEncoder, HigherQualityTakesMoreBytes) {
  size_t last = 0;
  for (const double quality : {0.01, 0.25, 0.75, 1.0}) {
    const size_t size = Noise(256, 256, quality).size;
    EXPECT_GT(size, last);
    last = size;
  }
}

TEST(JpegEncoder, NaNQualityIsTheDefault) {
  EXPECT_EQ(Noise(64, 64, NAN).size, Noise(64, 64, 0.75).size);
}

TEST(JpegEncoder, QualityBelowOnePercentIsOnePercent) {
  EXPECT_EQ(Noise(64, 64, 1e-300).size, Noise(64, 64, 0.01).size);
}

TEST(JpegEncoder, PartsJoinToThePictureThatIsEncodedInOnePiece) {
  for (const auto& [width, height, wanted] : {std::tuple{1456, 819, 2},
                                              {1456, 819, 3},
                                              {500, 2011, 12},
                                              {300, 1600, 2},
                                              {65500, 33, 2}}) {
    const RowSource rows = [width = width](int32_t y, uint8_t* row) -> const uint8_t* {
      for (int32_t x = 0; x < width; ++x) {
        row[4 * x] = static_cast<uint8_t>(x + y);
        row[4 * x + 1] = static_cast<uint8_t>(x * y / 64);
        row[4 * x + 2] = static_cast<uint8_t>(y);
      }
      return row;
    };
    ASSERT_GT(JpegParts(width, height, 0.8, wanted).count(), 1) << width << " x " << height;
    const Decoded joined = Decode(Encode(width, height, 0.8, rows, wanted));
    const Decoded whole = Decode(Encode(width, height, 0.8, rows));
    EXPECT_EQ(joined.height, height);
    EXPECT_EQ(joined.warnings, 0);
    EXPECT_TRUE(joined.rgb == whole.rgb) << width << " x " << height;
  }
}

TEST(JpegEncoder, TakesPictureAfterPictureInTheSameMemory) {
  JpegParts parts(500, 700, 0.8, 3);
  ASSERT_EQ(parts.count(), 3);
  const auto encode = [&parts](const RowSource& rows) {
    for (int32_t part = 0; part < 3; ++part) parts.Encode(part, rows);
    return Copy(parts.Join());
  };
  std::mt19937 random(1);
  const RowSource noise = [&](int32_t, uint8_t* row) -> const uint8_t* {
    for (int32_t i = 0; i < 4 * 500; ++i) row[i] = static_cast<uint8_t>(random());
    return row;
  };
  const RowSource grey = [](int32_t, uint8_t* row) -> const uint8_t* {
    std::fill_n(row, 4 * 500, uint8_t{128});
    return row;
  };
  const size_t small = encode(grey).size;
  EXPECT_GT(encode(noise).size, small);
  const size_t kept = parts.kept_bytes();
  const JpegData again = encode(grey);
  EXPECT_EQ(parts.kept_bytes(), kept);
  const JpegData fresh = Encode(500, 700, 0.8, grey, 3);
  ASSERT_EQ(again.size, fresh.size);
  EXPECT_TRUE(std::equal(fresh.bytes.get(), fresh.bytes.get() + fresh.size, again.bytes.get()));
}

TEST(JpegEncoder, HasOnePartWherePartsAreOfNoUseOrCannotBeJoined) {
  EXPECT_EQ(JpegParts(64, 64, 0.8, 2).count(), 1);
  EXPECT_EQ(JpegParts(65500, 16, 0.8, 2).count(), 1);
  EXPECT_EQ(JpegParts(16384, 8192, 0.8, 2).count(), 1);  // more blocks than an interval can have
}

TEST(JpegEncoder, AcceptsOnlySizesThatAJpegCanHave) {
  EXPECT_TRUE(IsJpegSize(1, 1));
  EXPECT_TRUE(IsJpegSize(65500, 2000));
  EXPECT_TRUE(IsJpegSize(16384, 8192));
  EXPECT_FALSE(IsJpegSize(0, 10));
  EXPECT_FALSE(IsJpegSize(10, -1));
  EXPECT_FALSE(IsJpegSize(65501, 1));
  EXPECT_FALSE(IsJpegSize(60000, 60000));
}

}  // namespace
}  // namespace deskhand::platform
