#include <cstring>
#include <functional>

#include "platform/base/bitmapinfo.h"
#include "platform/base/global_memory.h"
#include "tests/imaging/pixel_support.h"

using pixel_test::AllPixels;
using pixel_test::ErrorOf;
using pixel_test::GetPixel;
using pixel_test::OwnedBitmap;

namespace {

TEST(BitmapRecord, ShowsWhetherItHoldsPixels) {
  struct_LEAD_Bitmap bitmap;
  std::memset(&bitmap, 0xcd, sizeof bitmap);
  LEADTOOLS::InitBitmap(&bitmap, 5, 3, 4);
  EXPECT_EQ(bitmap.Flags & 1, 0U);
  LEADTOOLS::AllocateBitmap(&bitmap, 1);
  EXPECT_EQ(bitmap.Flags & 1, 1U);
  EXPECT_EQ(AllPixels(bitmap), std::vector<std::uint32_t>(15));
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::AllocateBitmap(&bitmap, 1); }), imaging::kErrorInvalidParameter);
  LEADTOOLS::FreeBitmap(&bitmap);
  EXPECT_EQ(bitmap.Flags & 1, 0U);
  LEADTOOLS::FreeBitmap(&bitmap);
  LEADTOOLS::FreeBitmap(nullptr);
}

// A borrowed header can outlive its pixels; using it must fail and not touch freed memory.
TEST(BitmapRecord, BorrowedHeaderOfFreedPixels) {
  OwnedBitmap owner(4, 4, 8);
  struct_LEAD_Bitmap borrowed{};
  LEADTOOLS::CopyBitmapHandle(&borrowed, &owner);
  EXPECT_EQ(borrowed.pStorage, owner.pStorage);
  LEADTOOLS::FreeBitmap(&owner);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::RotateBitmap(&borrowed, 9000, 5, 0); }), imaging::kErrorNoBitmap);
  LEADTOOLS::FreeBitmap(&borrowed);
}

TEST(BitmapRecord, RefusesWhatCantBeHeld) {
  const struct {
    int width, height, bits, error;
  } rows[] = {{0, 5, 8, imaging::kErrorInvalidParameter},
              {5, -5, 8, imaging::kErrorInvalidParameter},
              {5, 5, 16, imaging::kErrorInvalidParameter},
              {200'001, 1, 1, imaging::kErrorLimit},
              {100'000, 100'000, 1, imaging::kErrorLimit}};
  for (const auto& row : rows) {
    OwnedBitmap bitmap;
    LEADTOOLS::InitBitmap(&bitmap, row.width, row.height, row.bits);
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::AllocateBitmap(&bitmap, 1); }), row.error)
        << row.width << " x " << row.height;
  }
}

TEST(BitmapRecord, EveryOperationRefusesEmptyAndNull) {
  OwnedBitmap empty;
  OwnedBitmap full(2, 2, 8);
  OwnedBitmap target;
  const std::vector<std::function<void(struct_LEAD_Bitmap*)>> operations = {
      [&](auto* b) { LEADTOOLS::CopyBitmap(&target, b); },
      [&](auto* b) { LEADTOOLS::CopyBitmapRect(&target, b, 0, 0, 1, 1); },
      [&](auto* b) { LEADTOOLS::ChangeBitmapViewPerspective(nullptr, b, 0); },
      [&](auto* b) { LEADTOOLS::SizeBitmap(b, 3, 3); },
      [&](auto* b) { LEADTOOLS::ResizeBitmap(b, &full); },
      [&](auto* b) { LEADTOOLS::ResizeBitmap(&full, b); },
      [&](auto* b) { LEADTOOLS::RotateBitmap(b, 9000, 5, 0); },
      [&](auto* b) { LEADTOOLS::GrayScaleBitmap(b, 8); },
      [&](auto* b) { LEADTOOLS::ConvertToDIB(b); },
  };
  for (std::size_t i = 0; i < operations.size(); ++i) {
    EXPECT_EQ(ErrorOf([&] { operations[i](&empty); }), imaging::kErrorNoBitmap) << i;
    EXPECT_EQ(ErrorOf([&] { operations[i](nullptr); }), imaging::kErrorInvalidParameter) << i;
  }
  EXPECT_EQ(target.Flags & 1, 0U);
}

class Depth : public testing::TestWithParam<int> {};

TEST_P(Depth, CopyHasItsOwnPixelsAndAllTheRest) {
  OwnedBitmap source(19, 7, GetParam());
  pixel_test::FillNoise(*source.pStorage, 1);
  pixel_test::SetColorTable(*source.pStorage, 2);
  source.XResolution = 204;
  source.YResolution = 98;
  source.Order = 0;
  OwnedBitmap copy;
  LEADTOOLS::CopyBitmap(&copy, &source);
  EXPECT_NE(copy.pStorage, source.pStorage);
  EXPECT_EQ(AllPixels(copy), AllPixels(source));
  EXPECT_EQ(copy.pStorage->Palette()[1].rgbRed, source.pStorage->Palette()[1].rgbRed);
  EXPECT_EQ(copy.XResolution, 204);
  EXPECT_EQ(copy.Order, 0);
  LEADTOOLS::CopyBitmap(&source, &source);
  EXPECT_EQ(AllPixels(copy), AllPixels(source));
}

// Parts that begin within a byte are where packed depths go wrong.
TEST_P(Depth, PartsAreCutExactly) {
  OwnedBitmap source(37, 9, GetParam());
  pixel_test::FillNoise(*source.pStorage, 3);
  for (const unsigned column : {0U, 1U, 3U, 8U, 13U, 36U}) {
    OwnedBitmap part;
    LEADTOOLS::CopyBitmapRect(&part, &source, column, 2, 20, 5);
    ASSERT_EQ(part.Width, std::min(20, 37 - static_cast<int>(column)));
    ASSERT_EQ(part.Height, 5);
    for (int y = 0; y < part.Height; ++y)
      for (int x = 0; x < part.Width; ++x)
        ASSERT_EQ(GetPixel(part, x, y), GetPixel(source, static_cast<int>(column) + x, y + 2))
            << column << " " << x;
  }
  OwnedBitmap part;
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::CopyBitmapRect(&part, &source, 37, 0, 1, 1); }),
            imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::CopyBitmapRect(&part, &source, 0, 0, 0, 1); }),
            imaging::kErrorInvalidParameter);
}

TEST_P(Depth, DibThereAndBack) {
  OwnedBitmap source(21, 6, GetParam());
  pixel_test::FillNoise(*source.pStorage, 5);
  source.XResolution = 300;
  source.YResolution = 200;
  source.Order = 1;
  void* dib = LEADTOOLS::ConvertToDIB(&source);
  OwnedBitmap back;
  LEADTOOLS::ChangeFromDIB(&back, dib);
  EXPECT_EQ(GlobalSize(dib), 0U) << "the handle passes to the record";
  EXPECT_EQ(AllPixels(back), AllPixels(source));
  EXPECT_EQ(back.BitsPerPixel, GetParam());
  EXPECT_EQ(back.XResolution, 300);
  EXPECT_EQ(back.YResolution, 200);
}

INSTANTIATE_TEST_SUITE_P(All, Depth, testing::Values(1, 4, 8, 24, 32), testing::PrintToStringParamName());

/// A block of global memory with a header and zeroed rest.
void* MakeBlock(const BITMAPINFOHEADER& header, std::size_t size) {
  void* block = GlobalAlloc(GHND, size);
  std::memcpy(GlobalLock(block), &header, std::min(size, sizeof header));
  GlobalUnlock(block);
  return block;
}

TEST(Dib, LayoutOfEightBits) {
  OwnedBitmap bitmap(5, 2, 8);
  pixel_test::SetPixel(*bitmap.pStorage, 0, 1, 77);
  void* dib = LEADTOOLS::ConvertToDIB(&bitmap);
  const auto* data = static_cast<const std::uint8_t*>(GlobalLock(dib));
  BITMAPINFOHEADER header;
  std::memcpy(&header, data, sizeof header);
  EXPECT_EQ(header.biSize, 40U);
  EXPECT_EQ(header.biBitCount, 8);
  EXPECT_EQ(GlobalSize(dib), 1064U + 16);
  EXPECT_EQ(data[1064], 77) << "rows begin behind 256 colours, the lowest first";
  EXPECT_EQ(data[40 + 4 * 200], 200);
  GlobalUnlock(dib);
  GlobalFree(dib);
}

TEST(Dib, RedFirstBecomesBlueFirst) {
  OwnedBitmap bitmap(1, 1, 24);
  bitmap.Order = 0;
  pixel_test::SetPixel(*bitmap.pStorage, 0, 0, 0x332211);  // bytes 11 22 33: red 11
  void* dib = LEADTOOLS::ConvertToDIB(&bitmap);
  const auto* data = static_cast<const std::uint8_t*>(GlobalLock(dib));
  EXPECT_EQ(data[40], 0x33);
  EXPECT_EQ(data[42], 0x11);
  GlobalUnlock(dib);
  GlobalFree(dib);
}

TEST(Dib, SixteenBitsTopDown) {
  void* dib = MakeBlock({40, 1, -2, 1, 16, 0, 0, 0, 0, 0, 0}, 48);
  auto* data = static_cast<std::uint8_t*>(GlobalLock(dib));
  data[40] = 0x1f;  // first row: all blue
  data[45] = 0x7c;  // second row: all red
  GlobalUnlock(dib);
  OwnedBitmap bitmap;
  LEADTOOLS::ChangeFromDIB(&bitmap, dib);
  EXPECT_EQ(bitmap.BitsPerPixel, 24);
  EXPECT_EQ(GetPixel(bitmap, 0, 0), 0x0000ffU);
  EXPECT_EQ(GetPixel(bitmap, 0, 1), 0xff0000U);
}

// The fourth byte of a block made without alpha is 0; taken for alpha the picture would vanish.
TEST(Dib, BlankFourthByteIsOpaque) {
  OwnedBitmap bitmap;
  LEADTOOLS::ChangeFromDIB(&bitmap, MakeBlock({40, 2, 2, 1, 32, 0, 0, 0, 0, 0, 0}, 56));
  EXPECT_EQ(GetPixel(bitmap, 1, 1), 0xff000000U);
}

TEST(Dib, DamagedBlocksAreRefusedAndStayTheCallers) {
  const struct {
    const char* name;
    BITMAPINFOHEADER header;
    std::size_t size;
  } rows[] = {
      {"no header", {40, 1, 1, 1, 24, 0, 0, 0, 0, 0, 0}, 39},
      {"header too short", {12, 1, 1, 1, 24, 0, 0, 0, 0, 0, 0}, 100},
      {"header beyond the block", {0xfffffff0U, 1, 1, 1, 24, 0, 0, 0, 0, 0, 0}, 100},
      {"no width", {40, 0, 1, 1, 24, 0, 0, 0, 0, 0, 0}, 100},
      {"lowest height", {40, 1, INT32_MIN, 1, 24, 0, 0, 0, 0, 0, 0}, 100},
      {"no planes", {40, 1, 1, 0, 24, 0, 0, 0, 0, 0, 0}, 100},
      {"odd depth", {40, 1, 1, 1, 7, 0, 0, 0, 0, 0, 0}, 100},
      {"compressed", {40, 1, 1, 1, 8, BI_RLE8, 0, 0, 0, 0, 0}, 2000},
      {"too many colours", {40, 1, 1, 1, 8, 0, 0, 0, 0, 257, 0}, 2000},
      {"table beyond the block", {40, 1, 1, 1, 24, 0, 0, 0, 0, 0xffffffffU, 0}, 100},
      {"one row short", {40, 4, 4, 1, 24, 0, 0, 0, 0, 0, 0}, 40 + 12 * 4 - 1},
      {"huge", {40, INT32_MAX, INT32_MAX, 1, 32, 0, 0, 0, 0, 0, 0}, 100},
  };
  for (const auto& row : rows) {
    void* dib = MakeBlock(row.header, row.size);
    OwnedBitmap bitmap;
    EXPECT_NE(ErrorOf([&] { LEADTOOLS::ChangeFromDIB(&bitmap, dib); }), 0) << row.name;
    EXPECT_EQ(bitmap.Flags & 1, 0U) << row.name;
    EXPECT_EQ(GlobalSize(dib), row.size) << row.name;
    EXPECT_EQ(GlobalFree(dib), nullptr) << row.name;
  }
  OwnedBitmap bitmap;
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ChangeFromDIB(&bitmap, nullptr); }), imaging::kErrorInvalidParameter);
}

}  // namespace
