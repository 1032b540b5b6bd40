#include <QtGui/QGuiApplication>
#include <QtGui/QPalette>
#include <array>

#include "platform/graphics/detail/objects.h"

using platform::AddObject;
using platform::BrushRecord;
using platform::FontRecord;
using platform::PenRecord;

namespace {

constexpr int kStockCount = DEFAULT_GUI_FONT + 1;
constexpr int kSysColorCount = COLOR_INFOBK + 1;

struct ThemeColor {
  QPalette::ColorGroup group;
  QPalette::ColorRole role;
  COLORREF plain;  ///< without an application object
};

// In the order of the COLOR_ numbers.
constexpr std::array<ThemeColor, kSysColorCount> kThemeColors = {{
    {QPalette::Active, QPalette::Button, RGB(200, 200, 200)},
    {QPalette::Active, QPalette::Dark, RGB(0, 128, 128)},
    {QPalette::Active, QPalette::Highlight, RGB(0, 0, 128)},
    {QPalette::Inactive, QPalette::Window, RGB(128, 128, 128)},
    {QPalette::Active, QPalette::Window, RGB(192, 192, 192)},
    {QPalette::Active, QPalette::Base, RGB(255, 255, 255)},
    {QPalette::Active, QPalette::Shadow, RGB(0, 0, 0)},
    {QPalette::Active, QPalette::WindowText, RGB(0, 0, 0)},
    {QPalette::Active, QPalette::Text, RGB(0, 0, 0)},
    {QPalette::Active, QPalette::HighlightedText, RGB(255, 255, 255)},
    {QPalette::Active, QPalette::Window, RGB(192, 192, 192)},
    {QPalette::Inactive, QPalette::Window, RGB(192, 192, 192)},
    {QPalette::Active, QPalette::Dark, RGB(128, 128, 128)},
    {QPalette::Active, QPalette::Highlight, RGB(0, 0, 128)},
    {QPalette::Active, QPalette::HighlightedText, RGB(255, 255, 255)},
    {QPalette::Active, QPalette::Button, RGB(192, 192, 192)},
    {QPalette::Active, QPalette::Dark, RGB(128, 128, 128)},
    {QPalette::Disabled, QPalette::WindowText, RGB(128, 128, 128)},
    {QPalette::Active, QPalette::ButtonText, RGB(0, 0, 0)},
    {QPalette::Inactive, QPalette::WindowText, RGB(192, 192, 192)},
    {QPalette::Active, QPalette::Light, RGB(255, 255, 255)},
    {QPalette::Active, QPalette::Shadow, RGB(0, 0, 0)},
    {QPalette::Active, QPalette::Midlight, RGB(223, 223, 223)},
    {QPalette::Active, QPalette::ToolTipText, RGB(0, 0, 0)},
    {QPalette::Active, QPalette::ToolTipBase, RGB(255, 255, 225)},
}};

HGDIOBJ Brush(COLORREF color) {
  return AddObject<HGDIOBJ>(BrushRecord{.color = color}, true);
}

HGDIOBJ Pen(int style, COLORREF color) {
  return AddObject<HGDIOBJ>(PenRecord{style, 1, color}, true);
}

HGDIOBJ Font(BYTE pitch) {
  FontRecord font;
  font.log.lfWeight = FW_NORMAL;
  font.log.lfCharSet = DEFAULT_CHARSET;
  font.log.lfPitchAndFamily = pitch;
  return AddObject<HGDIOBJ>(font, true);
}

// The twenty colours that every palette device keeps for itself.
HGDIOBJ Palette() {
  constexpr std::array<COLORREF, 20> kColors = {
      RGB(0, 0, 0),       RGB(128, 0, 0),     RGB(0, 128, 0),     RGB(128, 128, 0),   RGB(0, 0, 128),
      RGB(128, 0, 128),   RGB(0, 128, 128),   RGB(192, 192, 192), RGB(192, 220, 192), RGB(166, 202, 240),
      RGB(255, 251, 240), RGB(160, 160, 164), RGB(128, 128, 128), RGB(255, 0, 0),     RGB(0, 255, 0),
      RGB(255, 255, 0),   RGB(0, 0, 255),     RGB(255, 0, 255),   RGB(0, 255, 255),   RGB(255, 255, 255)};
  platform::PaletteRecord palette;
  for (const COLORREF c : kColors) palette.entries.push_back({GetRValue(c), GetGValue(c), GetBValue(c), 0});
  return AddObject<HGDIOBJ>(std::move(palette), true);
}

std::array<HGDIOBJ, kStockCount> MakeStock() {
  std::array<HGDIOBJ, kStockCount> stock = {};
  stock[WHITE_BRUSH] = Brush(RGB(255, 255, 255));
  stock[LTGRAY_BRUSH] = Brush(RGB(192, 192, 192));
  stock[GRAY_BRUSH] = Brush(RGB(128, 128, 128));
  stock[DKGRAY_BRUSH] = Brush(RGB(64, 64, 64));
  stock[BLACK_BRUSH] = Brush(RGB(0, 0, 0));
  stock[NULL_BRUSH] = AddObject<HGDIOBJ>(BrushRecord{.hollow = true}, true);
  stock[WHITE_PEN] = Pen(PS_SOLID, RGB(255, 255, 255));
  stock[BLACK_PEN] = Pen(PS_SOLID, RGB(0, 0, 0));
  stock[NULL_PEN] = Pen(PS_NULL, 0);
  for (const int fixed : {OEM_FIXED_FONT, ANSI_FIXED_FONT, SYSTEM_FIXED_FONT})
    stock[fixed] = Font(FIXED_PITCH);
  for (const int theme : {ANSI_VAR_FONT, SYSTEM_FONT, DEVICE_DEFAULT_FONT, DEFAULT_GUI_FONT})
    stock[theme] = Font(VARIABLE_PITCH);
  stock[DEFAULT_PALETTE] = Palette();
  return stock;
}

}  // namespace

HGDIOBJ GetStockObject(int index) {
  static const auto stock = MakeStock();
  return index < 0 || index >= kStockCount ? nullptr : stock[static_cast<std::size_t>(index)];
}

COLORREF GetSysColor(int index) {
  if (index < 0 || index >= kSysColorCount) return 0;
  const ThemeColor& color = kThemeColors[static_cast<std::size_t>(index)];
  if (qGuiApp == nullptr) return color.plain;
  return platform::ColorOf(QGuiApplication::palette().color(color.group, color.role).rgb());
}

HBRUSH GetSysColorBrush(int index) {
  if (index < 0 || index >= kSysColorCount) return nullptr;
  static std::array<HBRUSH, kSysColorCount> brushes = {};
  HBRUSH& brush = brushes[static_cast<std::size_t>(index)];
  if (brush == nullptr) brush = AddObject<HBRUSH>(BrushRecord{.themeColor = index}, true);
  return brush;
}

HBITMAP platform::StockBitmap() {
  static const HBITMAP bitmap = [] {
    BitmapRecord record;
    AllocateBitmap(record, 1, 1, 1);
    return AddObject<HBITMAP>(std::move(record), true);
  }();
  return bitmap;
}
