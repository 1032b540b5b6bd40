#include "controls/tool_bar_256.h"

#include <memory>

#include "platform/graphics/resource_bitmap.h"
#include "platform/resources/resource_tables.h"

namespace {

constexpr UINT kMaskedFlags = 25;            // 24 bits with a mask
constexpr UINT kUnmaskedFlags = 24;          // 24 bits
constexpr DWORD kBrushWhereDark = 0xB8074A;  // the brush where the source is black, the target elsewhere

struct DeleteGdi {
  void operator()(HBITMAP bitmap) const { DeleteObject(bitmap); }
  void operator()(HDC dc) const { DeleteDC(dc); }
};
using OwnedBitmap = std::unique_ptr<std::remove_pointer_t<HBITMAP>, DeleteGdi>;
using OwnedDC = std::unique_ptr<std::remove_pointer_t<HDC>, DeleteGdi>;

/// A bitmap selected into a device context as long as it lives.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : m_dc(dc), m_former(SelectObject(dc, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() { SelectObject(m_dc, m_former); }

 private:
  HDC m_dc;
  HGDIOBJ m_former;
};

/// On a dark face the pictures' dark parts couldn't be told from it.
bool IsDark(COLORREF face) {
  constexpr int kMiddle = 128;
  return (GetRValue(face) * 30 + GetGValue(face) * 59 + GetBValue(face) * 11) / 100 < kMiddle;
}

/// Black and white, of two colours.
OwnedBitmap CreateBilevel(HDC dc, int width, int height) {
  struct {
    BITMAPINFOHEADER header;
    RGBQUAD colours[2];
  } info{};
  info.header.biSize = sizeof info.header;
  info.header.biWidth = width;
  info.header.biHeight = height;
  info.header.biPlanes = 1;
  info.header.biBitCount = 1;
  info.colours[1] = {255, 255, 255, 0};
  void* bits = nullptr;
  return OwnedBitmap(
      CreateDIBSection(dc, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits, nullptr, 0));
}

}  // namespace

void CToolBar256::SetBitmap(UINT id, DWORD transparent) {
  const HINSTANCE module = AfxFindResourceHandle(MAKEINTRESOURCE(id & 0xffff), RT_BITMAP);
  const CSize image = m_sizeImage;
  const auto count = static_cast<int>(SendMessage(TB_BUTTONCOUNT));

  {
    const OwnedBitmap strip(LoadBitmapA(module, MAKEINTRESOURCE(id & 0xffff)));
    m_ilEnabled.Create(image.cx, image.cy, kMaskedFlags, count, 1);
    ImageList_AddMasked(m_ilEnabled.m_hImageList, strip.get(), transparent);
  }
  SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(m_ilEnabled.m_hImageList));

  const COLORREF barFace = GetSysColor(COLOR_BTNFACE);
  const bool dark = IsDark(barFace);
  COLORMAP face = {transparent, dark ? RGB(255, 255, 255) : barFace};
  const OwnedBitmap mapped(CreateMappedBitmap(module, static_cast<std::intptr_t>(id & 0xffff), 0, &face, 1));
  BITMAP size{};
  if (mapped == nullptr || GetObjectA(mapped.get(), sizeof size, &size) == 0) return;
  const HDC bar = ::GetDC(m_hWnd);
  const OwnedDC memory(CreateCompatibleDC(bar));
  const OwnedBitmap drawn(CreateCompatibleBitmap(bar, size.bmWidth, size.bmHeight));
  {
    const Selected target(memory.get(), drawn.get());
    DitherBlt(memory.get(), 0, 0, size.bmWidth, size.bmHeight, mapped.get(), 0, 0, image.cx);
  }
  ::ReleaseDC(m_hWnd, bar);
  m_ilDisabled.Create(image.cx, image.cy, dark ? kMaskedFlags : kUnmaskedFlags, count, 1);
  ImageList_AddMasked(m_ilDisabled.m_hImageList, drawn.get(), dark ? barFace : 0);
  SendMessage(TB_SETDISABLEDIMAGELIST, 0, reinterpret_cast<LPARAM>(m_ilDisabled.m_hImageList));
}

void CToolBar256::DitherBlt(HDC target, int x, int y, int width, int height, HBITMAP strip, int stripX,
                            int stripY, int pictureWidth) {
  const OwnedDC source(CreateCompatibleDC(target));
  const OwnedDC dark(CreateCompatibleDC(source.get()));
  if (source == nullptr || dark == nullptr) return;
  const OwnedBitmap bilevel = CreateBilevel(dark.get(), width, height);
  if (bilevel == nullptr) return;
  const Selected darkBits(dark.get(), bilevel.get());
  {
    const Selected pictures(source.get(), strip);
    BitBlt(dark.get(), 0, 0, width, height, source.get(), stripX, stripY, SRCCOPY);
  }

  const RECT all = {x, y, x + width, y + height};
  FillRect(target, &all, GetSysColorBrush(COLOR_BTNFACE));
  const HBRUSH highlight = CreateSolidBrush(GetSysColor(COLOR_3DHILIGHT));
  const HGDIOBJ former = SelectObject(target, highlight);
  // One column short, so that a picture's highlight stays in its own cell.
  for (int left = 0; left < width; left += pictureWidth)
    BitBlt(target, x + 1 + left, y + 1, pictureWidth - 1, height, dark.get(), left, 0, kBrushWhereDark);
  const HBRUSH shadow = CreateSolidBrush(GetSysColor(COLOR_3DSHADOW));
  SelectObject(target, shadow);
  DeleteObject(highlight);
  BitBlt(target, x, y, width, height, dark.get(), 0, 0, kBrushWhereDark);
  SelectObject(target, former);
  DeleteObject(shadow);
}
