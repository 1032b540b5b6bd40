#include "imaging/pixels/record.h"

#include <cstring>

#include "imaging/core/exception.h"

namespace imaging {

Bitmap& Require(Bitmap* bitmap) {
  if (bitmap == nullptr) Fail(kErrorInvalidParameter, "A bitmap record is missing");
  return *bitmap;
}

PixelStorage& RequirePixels(Bitmap* bitmap, const char* operation) {
  const Bitmap& record = Require(bitmap);
  if ((record.Flags & leadtools12::kAllocated) == 0)
    Fail(kErrorNoBitmap, "There is no image to %s", operation);
  if (!PixelStorage::IsLive(record.pStorage))
    Fail(kErrorNoBitmap, "The image to %s has been freed already", operation);
  return *record.pStorage;
}

void Adopt(Bitmap& bitmap, std::unique_ptr<PixelStorage> storage) {
  bitmap.Width = storage->Width();
  bitmap.Height = storage->Height();
  bitmap.BitsPerPixel = storage->Bits();
  bitmap.Flags |= leadtools12::kAllocated;
  bitmap.pStorage = storage.release();
}

void Replace(Bitmap& bitmap, std::unique_ptr<PixelStorage> storage) {
  PixelStorage& kept = *bitmap.pStorage;
  kept.Exchange(*storage);
  bitmap.Width = kept.Width();
  bitmap.Height = kept.Height();
  bitmap.BitsPerPixel = kept.Bits();
}

void Release(Bitmap& bitmap) {
  if ((bitmap.Flags & leadtools12::kAllocated) == 0) return;
  if (PixelStorage::IsLive(bitmap.pStorage)) delete bitmap.pStorage;
  bitmap.pStorage = nullptr;
  bitmap.Flags &= ~leadtools12::kAllocated;
}

Bitmap EmptyBitmap(int width, int height, int bits) {
  Bitmap bitmap{};
  bitmap.uStructSize = sizeof bitmap;
  bitmap.Width = width;
  bitmap.Height = height;
  bitmap.BitsPerPixel = bits;
  bitmap.Order = 1;  // the order of device-independent bitmaps
  return bitmap;
}

std::unique_ptr<PixelStorage> Clone(const PixelStorage& source) {
  auto copy = source.CreateAlike(source.Width(), source.Height());
  for (int y = 0; y < source.Height(); ++y)
    std::memcpy(copy->HeldRow(y), source.HeldRow(y), source.HeldRowBytes());
  copy->SetCoded(source.Coded());
  copy->SetLossy(source.IsLossy());
  return copy;
}

}  // namespace imaging
