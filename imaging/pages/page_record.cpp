#include "imaging/pages/page_record.h"

#include <utility>

#include "imaging/codecs/rows.h"

namespace imaging {

DecodedPage DecodeAt(int bits, Reader& reader, int page, const DecodeWish& wish) {
  DecodedPage decoded = reader.Decode(page, wish);
  if (bits == 8 && decoded.pixels->Bits() == 1) ShowBilevelPageAsBytes(*decoded.pixels);
  return decoded;
}

Bitmap HeaderOf(const DecodedPage& page) {
  Bitmap record = EmptyBitmap(page.pixels->Width(), page.pixels->Height(), page.pixels->Bits());
  record.ViewPerspective = page.info.viewPerspective;
  record.Order = page.order;
  record.XResolution = page.info.xResolution;
  record.YResolution = page.info.yResolution;
  return record;
}

Bitmap RecordOf(DecodedPage page) {
  Bitmap record = HeaderOf(page);
  page.pixels->SetCoded(std::move(page.coded));
  page.pixels->SetLossy(page.lossy);
  Adopt(record, std::move(page.pixels));
  return record;
}

}  // namespace imaging
