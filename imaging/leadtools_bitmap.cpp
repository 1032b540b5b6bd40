#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <utility>

#include "imaging/ltwrap.h"
#include "imaging/pixels/perspective.h"
#include "imaging/pixels/record.h"

using imaging::Bitmap;
using imaging::PixelStorage;

int LEADTOOLS::InitBitmap(struct_LEAD_Bitmap* bitmap, int width, int height, int bits) {
  imaging::Require(bitmap) = imaging::EmptyBitmap(width, height, bits);
  return 1;
}

int LEADTOOLS::AllocateBitmap(struct_LEAD_Bitmap* bitmap, int memoryType) {
  Bitmap& record = imaging::Require(bitmap);
  if (memoryType != 1)
    imaging::Fail(imaging::kErrorInvalidParameter, "There is no memory type %d", memoryType);
  if ((record.Flags & leadtools12::kAllocated) != 0)
    imaging::Fail(imaging::kErrorInvalidParameter, "The bitmap record holds an image already");
  auto storage = PixelStorage::Create(record.Width, record.Height, record.BitsPerPixel);
  std::memset(storage->Row(0), 0, static_cast<std::size_t>(storage->Pitch()) * storage->Height());
  imaging::Adopt(record, std::move(storage));
  return 1;
}

int LEADTOOLS::CreateBitmap(struct_LEAD_Bitmap* bitmap, unsigned int memoryType, unsigned int width,
                            unsigned int height, unsigned int bits, unsigned int order, tagRGBQUAD* palette,
                            unsigned int viewPerspective, unsigned char* data, unsigned long dataSize) {
  constexpr unsigned kTrueColor = 24;  // and not 32, of which the fourth byte would be an opacity
  Bitmap& record = imaging::Require(bitmap);
  if (data != nullptr || dataSize != 0)
    imaging::Fail(imaging::kErrorInvalidParameter, "A new bitmap takes no pixels");
  // No size is lost: what doesn't fit becomes negative, and is refused as such.
  Bitmap created = imaging::EmptyBitmap(static_cast<int>(width), static_cast<int>(height),
                                        static_cast<int>(bits == 0 ? kTrueColor : bits));
  created.Order = static_cast<int>(order);
  created.ViewPerspective = static_cast<int>(viewPerspective);
  AllocateBitmap(&created, static_cast<int>(memoryType));
  if (palette != nullptr && created.BitsPerPixel <= 8)
    std::copy_n(palette, std::size_t{1} << created.BitsPerPixel, created.pStorage->Palette().begin());
  record = created;
  return 1;
}

void LEADTOOLS::FreeBitmap(struct_LEAD_Bitmap* bitmap) {
  if (bitmap != nullptr) imaging::Release(*bitmap);
}

int LEADTOOLS::CopyBitmap(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source) {
  Bitmap& record = imaging::Require(target);
  auto copy = imaging::Clone(imaging::RequirePixels(source, "copy"));
  if (target == source) return 1;
  record = *source;
  imaging::Adopt(record, std::move(copy));
  return 1;
}

void LEADTOOLS::CopyBitmapHandle(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source) {
  imaging::Require(target) = imaging::Require(source);
}

namespace {

/// Moves the bits of a row up by less than a byte, so that the first pixel of a part stands at a byte's
/// start.
void CopyBits(std::uint8_t* out, const std::uint8_t* row, std::size_t firstBit, std::size_t bits) {
  const std::uint8_t* from = row + firstBit / 8;
  const unsigned shift = firstBit % 8;
  const std::size_t bytes = (bits + 7) / 8;
  if (shift == 0) {
    std::memcpy(out, from, bytes);
    return;
  }
  const std::size_t available = (shift + bits + 7) / 8;
  for (std::size_t i = 0; i < bytes; ++i) {
    const unsigned next = i + 1 < available ? from[i + 1] : 0;
    out[i] = static_cast<std::uint8_t>(from[i] << shift | next >> (8 - shift));
  }
}

}  // namespace

int LEADTOOLS::CopyBitmapRect(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source, unsigned int column,
                              unsigned int row, unsigned int width, unsigned int height) {
  Bitmap& record = imaging::Require(target);
  const PixelStorage& pixels = imaging::RequirePixels(source, "copy");
  const auto sourceWidth = static_cast<unsigned>(pixels.Width());
  const auto sourceHeight = static_cast<unsigned>(pixels.Height());
  if (column >= sourceWidth || row >= sourceHeight || width == 0 || height == 0)
    imaging::Fail(imaging::kErrorInvalidParameter,
                  "No part of %u by %u pixels begins at column %u, row %u of an image of %u by %u pixels",
                  width, height, column, row, sourceWidth, sourceHeight);
  const auto w = static_cast<int>(std::min(width, sourceWidth - column));
  const auto h = static_cast<int>(std::min(height, sourceHeight - row));
  auto part = pixels.CreateAlike(w, h);
  const auto depth = static_cast<std::size_t>(pixels.HeldBits());
  for (int y = 0; y < h; ++y)
    CopyBits(part->HeldRow(y), pixels.HeldRow(static_cast<int>(row) + y), column * depth, w * depth);
  if (target == source) {
    imaging::Replace(record, std::move(part));
  } else {
    record = *source;
    imaging::Adopt(record, std::move(part));
  }
  return 1;
}

int LEADTOOLS::SetBitmapRgnRect(struct_LEAD_Bitmap* bitmap, const tagRECT* rect) {
  PixelStorage& pixels = imaging::RequirePixels(bitmap, "select a part of");
  if (rect == nullptr) {
    pixels.SetRegion(std::nullopt);
    return 1;
  }
  if (rect->left < 0 || rect->top < 0 || rect->right > pixels.Width() || rect->bottom > pixels.Height() ||
      rect->left >= rect->right || rect->top >= rect->bottom)
    imaging::Fail(imaging::kErrorInvalidParameter,
                  "The part from column %ld, row %ld to column %ld, row %ld doesn't lie within the image",
                  static_cast<long>(rect->left), static_cast<long>(rect->top), static_cast<long>(rect->right),
                  static_cast<long>(rect->bottom));
  pixels.SetRegion(*rect);
  return 1;
}

unsigned int LEADTOOLS::BitmapHasRgn(struct_LEAD_Bitmap* bitmap) {
  if (bitmap == nullptr || (bitmap->Flags & leadtools12::kAllocated) == 0 ||
      !PixelStorage::IsLive(bitmap->pStorage))
    return 0;
  return bitmap->pStorage->Region() ? 1 : 0;
}

int LEADTOOLS::GetBitmapRgnBounds(struct_LEAD_Bitmap* bitmap, _RGNXFORM* transformation, tagRECT* bounds) {
  const PixelStorage& pixels = imaging::RequirePixels(bitmap, "look for a selected part in");
  if (bounds == nullptr || transformation != nullptr)
    imaging::Fail(imaging::kErrorInvalidParameter,
                  "The bounds of a selected part need a rectangle and no transformation");
  if (!pixels.Region()) imaging::Fail(imaging::kErrorInvalidParameter, "No part of the image is selected");
  *bounds = *pixels.Region();
  return 1;
}

int LEADTOOLS::ChangeBitmapViewPerspective(struct_LEAD_Bitmap* target, struct_LEAD_Bitmap* source,
                                           int viewPerspective) {
  const PixelStorage& pixels = imaging::RequirePixels(source, "turn");
  if (target != nullptr && target != source) {
    *target = imaging::CopyInPerspective(*source, pixels, viewPerspective);
    return 1;
  }
  auto turned = imaging::TurnedBetween(pixels, source->ViewPerspective, viewPerspective);
  Bitmap result = imaging::HeaderInPerspective(*source, viewPerspective);
  if (turned) imaging::Replace(result, std::move(turned));
  *source = result;
  return 1;
}
