#include <memory>

#include "imaging/core/guard.h"
#include "imaging/ltwrap.h"
#include "imaging/pages/bitmap_list.h"

using imaging::BitmapList;

namespace {

void*& Require(void** list) {
  if (list == nullptr) imaging::Fail(imaging::kErrorInvalidParameter, "No place for the list was given");
  return *list;
}

}  // namespace

int LEADTOOLS::CreateBitmapList(void** list) {
  return imaging::Guarded([&] {
    Require(list) = std::make_unique<BitmapList>().release();  // DestroyBitmapList ends it
    return 1;
  });
}

int LEADTOOLS::LoadBitmapList(char* path, void** list, int bits, int order, _LOADFILEOPTION* /*options*/,
                              struct_file_information* info) {
  return imaging::Guarded([&] {
    void*& handle = Require(list);
    auto loaded = std::make_unique<BitmapList>();
    loaded->OpenFile(path, bits, {order});
    if (info != nullptr) FileInfo(path, info, leadtools12::kInfoCountsPages, nullptr);
    handle = loaded.release();
    return 1;
  });
}

int LEADTOOLS::PrepareBitmapListPages(void* list, const leadtools12::PagePreparation& preparation) {
  return imaging::Guarded([&] {
    BitmapList::Find(list).Prepare(preparation);
    return 1;
  });
}

int LEADTOOLS::GetBitmapListCount(void* list, unsigned int* count) {
  const BitmapList& bitmaps = BitmapList::Find(list);
  if (count == nullptr) imaging::Fail(imaging::kErrorInvalidParameter, "No place for the count was given");
  *count = static_cast<unsigned>(bitmaps.Count());
  return 1;
}

int LEADTOOLS::GetBitmapListItem(void* list, unsigned int index, struct_LEAD_Bitmap* bitmap) {
  return imaging::Guarded([&] {
    imaging::Bitmap& record = imaging::Require(bitmap);
    record = BitmapList::Find(list).Header(index);
    return 1;
  });
}

int LEADTOOLS::SetBitmapListItem(void* list, unsigned int index, struct_LEAD_Bitmap* bitmap) {
  return imaging::Guarded([&] {
    BitmapList& bitmaps = BitmapList::Find(list);
    imaging::PixelStorage& pixels = imaging::RequirePixels(bitmap, "put into a list");
    bitmaps.SetHeader(index, *bitmap, pixels);
    return 1;
  });
}

int LEADTOOLS::InsertBitmapListItem(void* list, unsigned int index, struct_LEAD_Bitmap* bitmap) {
  return imaging::Guarded([&] {
    constexpr unsigned kAppend = ~0U;
    BitmapList& bitmaps = BitmapList::Find(list);
    imaging::PixelStorage& pixels = imaging::RequirePixels(bitmap, "put into a list");
    bitmaps.Insert(index == kAppend ? bitmaps.Count() : index, *bitmap, pixels);
    return 1;
  });
}

int LEADTOOLS::DestroyBitmapList(void* list) {
  if (BitmapList::IsLive(list)) delete static_cast<BitmapList*>(list);
  return 1;
}
