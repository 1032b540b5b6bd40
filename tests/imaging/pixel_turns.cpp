#include <array>

#include "imaging/pixels/orient.h"
#include "imaging/pixels/transpose.h"
#include "tests/imaging/pixel_support.h"

using pixel_test::AllPixels;
using pixel_test::ErrorOf;
using pixel_test::OwnedBitmap;

namespace {

/// The picture 0 1 2 / 3 4 5.
void FillSix(struct_LEAD_Bitmap& bitmap) {
  for (unsigned i = 0; i < 6; ++i)
    pixel_test::SetPixel(*bitmap.pStorage, static_cast<int>(i % 3), static_cast<int>(i / 3), i);
}

struct Orientation {
  int number;
  int width;
  std::array<std::uint32_t, 6> upright;  ///< how 0 1 2 / 3 4 5, stored in this orientation, is to be seen
};

// TIFF 6.0, tag 274: where the stored row 0 and column 0 belong.
constexpr Orientation kOrientations[] = {
    {0, 3, {0, 1, 2, 3, 4, 5}}, {1, 3, {0, 1, 2, 3, 4, 5}}, {2, 3, {2, 1, 0, 5, 4, 3}},
    {3, 3, {5, 4, 3, 2, 1, 0}}, {4, 3, {3, 4, 5, 0, 1, 2}}, {5, 2, {0, 3, 1, 4, 2, 5}},
    {6, 2, {3, 0, 4, 1, 5, 2}}, {7, 2, {5, 2, 4, 1, 3, 0}}, {8, 2, {2, 5, 1, 4, 0, 3}},
};

TEST(ViewPerspective, AllOrientationsBecomeUpright) {
  for (const Orientation& orientation : kOrientations) {
    OwnedBitmap bitmap(3, 2, 8);
    FillSix(bitmap);
    bitmap.ViewPerspective = orientation.number;
    bitmap.XResolution = 204;
    bitmap.YResolution = 98;
    LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &bitmap, 0);
    EXPECT_EQ(bitmap.ViewPerspective, 0);
    EXPECT_EQ(bitmap.Width, orientation.width);
    EXPECT_EQ(bitmap.XResolution, orientation.number >= 5 ? 98 : 204) << orientation.number;
    EXPECT_EQ(AllPixels(bitmap),
              std::vector<std::uint32_t>(orientation.upright.begin(), orientation.upright.end()))
        << orientation.number;
  }
}

// From any orientation to any other into a second record: seen upright, the picture stays the same.
TEST(ViewPerspective, AnyToAnyKeepsThePicture) {
  for (int from = 1; from <= 8; ++from)
    for (int to = 1; to <= 8; ++to) {
      OwnedBitmap source(3, 2, 24);
      FillSix(source);
      source.ViewPerspective = from;
      OwnedBitmap turned;
      LEADTOOLS::ChangeBitmapViewPerspective(&turned, &source, to);
      EXPECT_EQ(turned.ViewPerspective, to == 1 ? 0 : to);
      LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &turned, 0);
      LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &source, 0);
      EXPECT_EQ(AllPixels(turned), AllPixels(source)) << from << " to " << to;
    }
  OwnedBitmap bitmap(3, 2, 8);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &bitmap, 9); }),
            imaging::kErrorInvalidParameter);
}

class Rotation : public testing::TestWithParam<int> {};

TEST_P(Rotation, QuarterTurnsAreExact) {
  for (const auto& [width, height] : {std::pair{3, 2}, {1, 40}, {16, 16}, {45, 37}, {130, 67}}) {
    OwnedBitmap source(width, height, GetParam());
    pixel_test::FillNoise(*source.pStorage, 9);
    source.XResolution = 204;
    OwnedBitmap turned;
    LEADTOOLS::CopyBitmap(&turned, &source);
    LEADTOOLS::RotateBitmap(&turned, 9000, 5, 0);
    ASSERT_EQ(turned.Width, height);
    ASSERT_EQ(turned.YResolution, 204);
    for (int y = 0; y < turned.Height; ++y)
      for (int x = 0; x < turned.Width; ++x)
        ASSERT_EQ(pixel_test::GetPixel(turned, x, y), pixel_test::GetPixel(source, y, height - 1 - x))
            << x << ", " << y << " of " << width << " x " << height;
    OwnedBitmap half;
    LEADTOOLS::CopyBitmap(&half, &turned);
    LEADTOOLS::RotateBitmap(&turned, 9000, 5, 0);
    LEADTOOLS::RotateBitmap(&half, -9000, 5, 0);
    EXPECT_EQ(AllPixels(half), AllPixels(source));
    LEADTOOLS::RotateBitmap(&half, 18000, 5, 0);
    EXPECT_EQ(AllPixels(half), AllPixels(turned));
  }
}

TEST_P(Rotation, BlocksAgreeWithPixelByPixel) {
  const int bits = GetParam();
  for (const auto& [columns, rows] : {std::pair{64, 48}, {61, 83}, {257, 129}}) {
    auto source = imaging::PixelStorage::Create(columns, rows, bits);
    pixel_test::FillNoise(*source, 11);
    auto fast = imaging::PixelStorage::Create(rows, columns, bits);
    auto plain = imaging::PixelStorage::Create(rows, columns, bits);
    // Rows of the source from the bottom and rows of the result from the bottom, as the turns use them.
    const imaging::ConstPixelPlane from{source->Row(rows - 1), -source->Pitch()};
    imaging::Transpose({fast->Row(columns - 1), -fast->Pitch()}, from, columns, rows, bits);
    imaging::TransposePlain({plain->Row(columns - 1), -plain->Pitch()}, from, columns, rows, bits);
    for (int y = 0; y < columns; ++y)
      for (int x = 0; x < rows; ++x)
        ASSERT_EQ(pixel_test::GetPixel(*fast, x, y), pixel_test::GetPixel(*plain, x, y)) << x << ", " << y;
  }
}

INSTANTIATE_TEST_SUITE_P(Depths, Rotation, testing::Values(1, 4, 8, 24, 32),
                         testing::PrintToStringParamName());

TEST(RotationFailure, OtherAnglesAreRefused) {
  OwnedBitmap bitmap(3, 2, 8);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::RotateBitmap(&bitmap, 4500, 5, 0); }), imaging::kErrorUnsupported);
  LEADTOOLS::RotateBitmap(&bitmap, 36000, 5, 0);
  EXPECT_EQ(bitmap.Width, 3);
}

}  // namespace
