#include "platform/graphics/image_list.h"

#include <QtGui/QPainter>
#include <memory>
#include <utility>
#include <vector>

#include "platform/base/detail/handle_table.h"
#include "platform/graphics/detail/dc_record.h"
#include "platform/graphics/detail/list_picture.h"

IMPLEMENT_DYNCREATE(CImageList, CObject)

namespace {

struct ImageListRecord {
  QSize size;
  bool masked = false;
  std::vector<QImage> pictures;  ///< 32 bits with alpha
};

platform::HandleTable<ImageListRecord, HIMAGELIST>& Lists() {
  static auto* table = new platform::HandleTable<ImageListRecord, HIMAGELIST>;  // as long as any window
  return *table;
}

/// The strip's pixels; its device pixel ratio tells how many there are to a unit.
QImage StripOf(HBITMAP bitmap) {
  BITMAP facts;
  if (GetObject(bitmap, sizeof facts, &facts) == 0 || facts.bmWidth < 1) return {};
  QImage strip = platform::ImageOfBitmap(bitmap).convertToFormat(QImage::Format_ARGB32);
  if (!strip.isNull()) strip.setDevicePixelRatio(static_cast<double>(strip.width()) / facts.bmWidth);
  return strip;
}

void MakeTransparent(QImage& picture, QRgb mask) {
  for (int y = 0; y < picture.height(); ++y) {
    auto* row = reinterpret_cast<QRgb*>(picture.scanLine(y));
    for (int x = 0; x < picture.width(); ++x)
      if ((row[x] & RGB_MASK) == (mask & RGB_MASK)) row[x] = 0;
  }
}

int AddStrip(HIMAGELIST handle, HBITMAP bitmap, QRgb mask) {
  ImageListRecord* list = Lists().Get(handle);
  const QImage strip = StripOf(bitmap);
  if (list == nullptr || strip.isNull()) return -1;
  const double scale = strip.devicePixelRatio();
  const int width = qRound(list->size.width() * scale);
  const int height = qRound(list->size.height() * scale);
  const int first = static_cast<int>(list->pictures.size());
  for (int x = 0; x + width <= strip.width(); x += width) {
    QImage picture = strip.copy(x, 0, width, height);
    picture.setDevicePixelRatio(scale);
    if (list->masked) MakeTransparent(picture, mask);
    list->pictures.push_back(std::move(picture));
  }
  return static_cast<int>(list->pictures.size()) > first ? first : -1;
}

}  // namespace

QImage platform::PictureOf(HIMAGELIST handle, int index) {
  const ImageListRecord* list = Lists().Get(handle);
  if (list == nullptr || index < 0 || index >= static_cast<int>(list->pictures.size())) return {};
  return list->pictures[static_cast<std::size_t>(index)];
}

HIMAGELIST ImageList_Create(int width, int height, UINT flags, int, int) {
  if (width < 1 || height < 1) return nullptr;
  auto list = std::make_unique<ImageListRecord>();
  list->size = QSize(width, height);
  list->masked = (flags & ILC_MASK) != 0;
  return Lists().Add(std::move(list));
}

BOOL ImageList_Destroy(HIMAGELIST list) {
  if (Lists().Get(list) == nullptr) return FALSE;
  Lists().Remove(list);
  return TRUE;
}

int ImageList_GetImageCount(HIMAGELIST handle) {
  const ImageListRecord* list = Lists().Get(handle);
  return list == nullptr ? 0 : static_cast<int>(list->pictures.size());
}

int ImageList_AddMasked(HIMAGELIST list, HBITMAP strip, COLORREF mask) {
  return AddStrip(list, strip, qRgb(GetRValue(mask), GetGValue(mask), GetBValue(mask)));
}

BOOL ImageList_Draw(HIMAGELIST handle, int index, HDC dc, int x, int y, UINT) {
  const ImageListRecord* list = Lists().Get(handle);
  platform::DcRecord* record = platform::FindDc(dc);
  const QImage picture = platform::PictureOf(handle, index);
  if (record == nullptr || picture.isNull()) return FALSE;
  const QRect place(platform::UnitsOf(*record, x, y), list->size);
  return platform::PaintWithQt(*record, place, [&](QPainter& painter) { painter.drawImage(place, picture); });
}

BOOL CImageList::Attach(HIMAGELIST list) {
  if (list == nullptr || m_hImageList != nullptr) return FALSE;
  m_hImageList = list;
  return TRUE;
}

HIMAGELIST CImageList::Detach() {
  return std::exchange(m_hImageList, nullptr);
}

BOOL CImageList::DeleteImageList() {
  return ImageList_Destroy(Detach());
}
