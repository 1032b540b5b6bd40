#include "imaging/imagelist/control.h"

#include <algorithm>
#include <utility>

#include "imaging/core/exception.h"
#include "imaging/pixels/perspective.h"

namespace imaging {
namespace {

// Which fields of an item count.
constexpr UINT kPicture = 1;
constexpr UINT kText = 2;
constexpr UINT kSelected = 8;

constexpr int kSmallestCell = 16;
constexpr int kLargestCell = 2000;

}  // namespace

ImageListControl::Entry& ImageListControl::At(unsigned index) {
  if (index >= m_items.size())
    Fail(kErrorInvalidParameter, "The image list has no item %d, it has %zu", static_cast<int>(index),
         m_items.size());
  return m_items[index];
}

void ImageListControl::SetPicture(Entry& entry, Bitmap* picture) {
  const Bitmap copy = CopyInPerspective(Require(picture), RequirePixels(picture, "turn"), 0);
  entry.pixels = ListedPixels(*copy.pStorage);
  entry.picture = copy;
}

void ImageListControl::Insert(const Item& item) {
  Entry entry;
  if ((item.uMask & kPicture) != 0) SetPicture(entry, item.pBitmap);
  if ((item.uMask & kText) != 0) entry.caption = item.pszText;
  m_items.push_back(std::move(entry));
  Relayout();
  InvalidateCell(Count() - 1);
  if ((item.uMask & kSelected) != 0 && item.bSelected != 0) Select(Count() - 1, true);
}

void ImageListControl::InsertList(void* list, CString (*caption)(int number)) {
  const std::size_t count = BitmapList::Find(list).Count();
  if (!m_items.empty() || caption == nullptr)
    Fail(kErrorInvalidParameter, "A list of bitmaps can be shown by an image list without items");
  m_items.resize(count);
  m_list = list;
  m_caption = caption;
  Relayout();
  InvalidateRect(m_window, nullptr, FALSE);
}

Bitmap ImageListControl::PictureOf(int index) {
  const Entry& entry = m_items[static_cast<std::size_t>(index)];
  if (entry.pixels.Get() != nullptr) return entry.picture;
  if (!BitmapList::IsLive(m_list)) return EmptyBitmap(0, 0, 1);
  return BitmapList::Find(m_list).Header(static_cast<std::size_t>(index));
}

const CString& ImageListControl::CaptionOf(int index) {
  CString& caption = m_items[static_cast<std::size_t>(index)].caption;
  if (caption.IsEmpty() != FALSE && m_caption != nullptr) caption = m_caption(index + 1);
  return caption;
}

void ImageListControl::Get(unsigned index, Item& item) {
  Entry& entry = At(index);
  CaptionOf(static_cast<int>(index));
  if (entry.pixels.Get() == nullptr && m_list != nullptr) {
    Bitmap picture = PictureOf(static_cast<int>(index));
    if ((picture.Flags & leadtools12::kAllocated) != 0) SetPicture(entry, &picture);
  }
  item = {sizeof item, kPicture | kText | kSelected, nullptr, nullptr, entry.isSelected ? 1 : 0};
  if (entry.pixels.Get() != nullptr) item.pBitmap = &entry.picture;
  item.pszText = const_cast<char*>(static_cast<const char*>(entry.caption));
}

void ImageListControl::Set(unsigned index, const Item& item) {
  Entry& entry = At(index);
  if ((item.uMask & kPicture) != 0) SetPicture(entry, item.pBitmap);
  if ((item.uMask & kText) != 0) entry.caption = CString(item.pszText);  // it may be the entry's own text
  if ((item.uMask & (kPicture | kText)) != 0) InvalidateCell(static_cast<int>(index));
  if ((item.uMask & kSelected) != 0) Select(static_cast<int>(index), item.bSelected != 0);
}

void ImageListControl::Clear() {
  m_items.clear();
  m_list = nullptr;
  m_caption = nullptr;
  m_focus = -1;
  m_scroll = 0;
  m_wheel = 0;
  Relayout();
  InvalidateRect(m_window, nullptr, FALSE);
}

void ImageListControl::Select(int index, bool select) {
  // The keys go on from where the program put the mark.
  if (select && m_focus != index) InvalidateCell(std::exchange(m_focus, index));
  bool& isSelected = m_items[static_cast<std::size_t>(index)].isSelected;
  if (std::exchange(isSelected, select) != select) InvalidateCell(index);
}

void ImageListControl::InvalidateCell(int index) {
  if (index < 0 || index >= Count()) return;
  const RECT cell = m_layout.CellAt(index, m_scroll);
  if (cell.bottom > 0 && cell.top < m_layout.client.cy) InvalidateRect(m_window, &cell, FALSE);
}

ImageListControl::ItemOptions ImageListControl::GetItemOptions() const {
  return {sizeof(ItemOptions), m_itemSize.cx, m_itemSize.cy};
}

void ImageListControl::SetItemOptions(const ItemOptions& options) {
  for (const int length : {options.ItemWidth, options.ItemHeight})
    if (length < kSmallestCell || length > kLargestCell)
      Fail(kErrorInvalidParameter, "Items of %d by %d pixels can't be shown", options.ItemWidth,
           options.ItemHeight);
  m_itemSize = {options.ItemWidth, options.ItemHeight};
  Relayout();
  InvalidateRect(m_window, nullptr, FALSE);
}

void ImageListControl::EnsureVisible(int index) {
  if (index < 0 || index >= Count()) return;
  ScrollTo(m_layout.ScrollToShow(index, m_scroll));
}

}  // namespace imaging
