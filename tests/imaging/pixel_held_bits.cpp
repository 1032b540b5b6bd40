// Pages of 8 bits of which only a bit is held: every operation gives what it gives for the bytes, and what
// can stay packed does.

#include <cstring>
#include <functional>

#include "imaging/codecs/rows.h"
#include "imaging/pixels/record.h"
#include "imaging/pixels/scaler.h"
#include "platform/base/global_memory.h"
#include "tests/imaging/pixel_support.h"

using namespace pixel_test;
using imaging::PixelStorage;

namespace {

struct Colors {
  const char* name;
  RGBQUAD zero;
  RGBQUAD one;
};

const Colors kColors[] = {{"black and white", {0, 0, 0, 0}, {255, 255, 255, 0}},
                          {"turned over", {255, 255, 255, 0}, {0, 0, 0, 0}},
                          {"brown on yellow", {10, 30, 60, 0}, {90, 220, 250, 0}},
                          {"the lighter one first", {90, 220, 250, 0}, {10, 30, 60, 0}}};

void MakePage(const Colors& colors, OwnedBitmap& page) {
  auto pixels = PixelStorage::Create(131, 47, 1);
  FillNoise(*pixels, 5);
  pixels->Palette()[0] = colors.zero;
  pixels->Palette()[1] = colors.one;
  imaging::ShowBilevelPageAsBytes(*pixels);
  LEADTOOLS::InitBitmap(&page, 0, 0, 8);
  imaging::Adopt(page, std::move(pixels));
  page.XResolution = 204;
  page.YResolution = 98;
}

std::vector<std::uint32_t> Painted(const OwnedBitmap& page, int width, int height) {
  std::vector<std::uint32_t> out(static_cast<std::size_t>(width) * height);
  imaging::RenderScaled(*page.pStorage, page.Order, {0, 0, page.Width, page.Height, width, height},
                        {0, 0, width, height}, out.data(), width, imaging::FastKernels());
  return out;
}

std::vector<std::uint8_t> DibOf(OwnedBitmap& page) {
  void* const dib = LEADTOOLS::ConvertToDIB(&page);
  const auto* data = static_cast<const std::uint8_t*>(GlobalLock(dib));
  std::vector<std::uint8_t> bytes(data, data + GlobalSize(dib));
  GlobalUnlock(dib);
  GlobalFree(dib);
  return bytes;
}

struct Operation {
  const char* name;
  bool staysPacked;
  std::function<void(OwnedBitmap& page)> run;
};

const Operation kOperations[] = {
    {"nothing", true, [](OwnedBitmap&) {}},
    {"quarter turn", true, [](OwnedBitmap& page) { LEADTOOLS::RotateBitmap(&page, 9000, 0, 0); }},
    {"half turn", true, [](OwnedBitmap& page) { LEADTOOLS::RotateBitmap(&page, 18000, 0, 0); }},
    {"rows repeated", true, [](OwnedBitmap& page) { LEADTOOLS::SizeBitmap(&page, 131, 98); }},
    {"columns repeated", true, [](OwnedBitmap& page) { LEADTOOLS::SizeBitmap(&page, 201, 47); }},
    {"averaged", false, [](OwnedBitmap& page) { LEADTOOLS::SizeBitmap(&page, 50, 20); }},
    {"a part", true, [](OwnedBitmap& page) { LEADTOOLS::CopyBitmapRect(&page, &page, 13, 5, 71, 30); }},
    {"a copy", true,
     [](OwnedBitmap& page) {
       OwnedBitmap copy;
       LEADTOOLS::CopyBitmap(&copy, &page);
       std::swap(static_cast<struct_LEAD_Bitmap&>(copy), static_cast<struct_LEAD_Bitmap&>(page));
     }},
    {"greyed", false, [](OwnedBitmap& page) { LEADTOOLS::GrayScaleBitmap(&page, 8); }},
    {"a pixel written", false, [](OwnedBitmap& page) { SetPixel(*page.pStorage, 3, 4, 1); }},
    {"drawn into", false, [](OwnedBitmap& page) { LEADTOOLS::DeleteLeadDC(LEADTOOLS::CreateLeadDC(&page)); }},
    {"sized into", false,
     [](OwnedBitmap& page) {
       OwnedBitmap target(200, 90, 8);
       LEADTOOLS::ResizeBitmap(&page, &target);
       std::swap(static_cast<struct_LEAD_Bitmap&>(target), static_cast<struct_LEAD_Bitmap&>(page));
     }},
};

TEST(HeldBits, EveryOperationGivesWhatItGivesForBytes) {
  for (const Colors& colors : kColors)
    for (const Operation& operation : kOperations) {
      SCOPED_TRACE(std::string(colors.name) + ", " + operation.name);
      OwnedBitmap packed;
      OwnedBitmap bytes;
      MakePage(colors, packed);
      MakePage(colors, bytes);
      bytes.pStorage->HoldBytes();
      operation.run(packed);
      operation.run(bytes);
      ASSERT_EQ(packed.BitsPerPixel, 8 * (1 + 2 * (bytes.BitsPerPixel == 24)));
      if (operation.staysPacked) {
        EXPECT_EQ(packed.pStorage->HeldBits(), 1);
        EXPECT_EQ(Painted(packed, packed.Width, packed.Height), Painted(bytes, bytes.Width, bytes.Height));
        EXPECT_EQ(Painted(packed, 300, 40), Painted(bytes, 300, 40));
        EXPECT_EQ(Painted(packed, 33, 11), Painted(bytes, 33, 11));
        EXPECT_EQ(DibOf(packed), DibOf(bytes));
        EXPECT_EQ(packed.pStorage->HeldBits(), 1) << "reading it for the screen changes nothing";
      }
      EXPECT_EQ(AllPixels(packed), AllPixels(bytes));
      EXPECT_EQ(std::memcmp(packed.pStorage->Palette().data(), bytes.pStorage->Palette().data(),
                            sizeof packed.pStorage->Palette()),
                0);
    }
}

// By the way over the block, as a program that derives from the window may still take it.
TEST(HeldBits, AreReducedAsTheirBytesAre) {
  std::array<RGBQUAD, 256> grays{};
  for (const Colors& colors : kColors)
    for (const int divisor : {1, 2, 3, 7, 47}) {
      OwnedBitmap page;
      MakePage(colors, page);
      OwnedBitmap packed;
      OwnedBitmap bytes;
      EXPECT_EQ(LEADTOOLS::ReduceToGray(&page, &packed, divisor, grays.data()), 1);
      EXPECT_EQ(page.pStorage->HeldBits(), 1);
      page.pStorage->HoldBytes();
      EXPECT_EQ(LEADTOOLS::ReduceToGray(&page, &bytes, divisor, grays.data()), 1);
      EXPECT_EQ(AllPixels(packed), AllPixels(bytes)) << colors.name << ", " << divisor;
      EXPECT_EQ(packed.XResolution, 204);
      if (divisor != 1) continue;
      const RGBQUAD& light = colors.one.rgbRed > colors.zero.rgbRed ? colors.one : colors.zero;
      for (int x = 0; x < page.Width; ++x)
        EXPECT_EQ(GetPixel(packed, x, 0) == 255,
                  page.pStorage->Palette()[GetPixel(page, x, 0)].rgbRed == light.rgbRed);
    }
  OwnedBitmap page;
  MakePage(kColors[0], page);
  OwnedBitmap none;
  EXPECT_EQ(LEADTOOLS::ReduceToGray(&page, &none, 48, grays.data()), 0) << "smaller than the divisor";
}

}  // namespace
