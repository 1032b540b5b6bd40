// A picture of any DIB goes through any row of transforms, and back to a DIB.

#include <cstring>

#include "fuzz/bytes.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/dib.h"
#include "imaging/pixels/storage.h"
#include "platform/base/global_memory.h"

namespace {

constexpr std::int64_t kMostPixels = 1'000'000;

struct Picture {
  struct_LEAD_Bitmap record{};
  ~Picture() { delete record.pStorage; }
};

void Transform(struct_LEAD_Bitmap& bitmap, fuzz::Bytes& bytes) {
  switch (bytes.Take() % 8) {
    case 0:
      LEADTOOLS::RotateBitmap(&bitmap, bytes.TakeFrom(-8, 8) * 9000 + static_cast<int>(bytes.Take() % 2), 0,
                              0);
      break;
    case 1:
      LEADTOOLS::SizeBitmap(&bitmap, bytes.TakeFrom(-1, 900), bytes.TakeFrom(-1, 900));
      break;
    case 2:
      LEADTOOLS::SizeBitmapExt(&bitmap, bytes.TakeFrom(1, 900), bytes.TakeFrom(1, 900), bytes.Take());
      break;
    case 3:
      LEADTOOLS::GrayScaleBitmap(&bitmap, 8);
      break;
    case 4:
      LEADTOOLS::ChangeBitmapViewPerspective(nullptr, &bitmap, bytes.TakeFrom(0, 9));
      break;
    case 5: {
      Picture part;
      LEADTOOLS::CopyBitmapRect(&part.record, &bitmap, bytes.Take(), bytes.Take(), bytes.Take(),
                                bytes.Take());
      break;
    }
    case 6: {
      Picture reduced;
      LEADTOOLS::SmartResize(&bitmap, &reduced.record, bytes.Take() / 250.0);
      break;
    }
    default: {
      const tagRECT part{bytes.TakeFrom(-5, 50), bytes.TakeFrom(-5, 50), bytes.TakeFrom(0, 90),
                         bytes.TakeFrom(0, 90)};
      LEADTOOLS::SetBitmapRgnRect(&bitmap, &part);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 24) return 0;
  fuzz::Bytes choices(data, 16);
  const HGLOBAL block = GlobalAlloc(GHND, size - 16);
  std::memcpy(GlobalLock(block), data + 16, size - 16);
  GlobalUnlock(block);
  Picture picture;
  if (!fuzz::Succeeds([&] { LEADTOOLS::ChangeFromDIB(&picture.record, block); })) {
    GlobalFree(block);
    return 0;
  }
  for (int step = 0; step < 4 && std::int64_t{picture.record.Width} * picture.record.Height < kMostPixels;
       ++step)
    fuzz::Succeeds([&] { Transform(picture.record, choices); });
  void* made = nullptr;
  if (fuzz::Succeeds([&] { made = LEADTOOLS::ConvertToDIB(&picture.record); })) {
    Picture again;
    fuzz::Require(fuzz::Succeeds([&] { LEADTOOLS::ChangeFromDIB(&again.record, made); }));
    fuzz::Require(again.record.Width == picture.record.Width && again.record.Height == picture.record.Height);
  }
  return 0;
}
