// Cursors, icons and bitmaps out of resources.

#include <gtest/gtest.h>

#include <QCursor>
#include <QWidget>

#include "platform/graphics/resource_bitmap.h"
#include "platform/qt_bridge.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"
#include "tests/window/resource_module.h"

namespace {

using namespace platform::testing;
using platform::Picture;
using platform::PictureColour;

constexpr PictureColour kColours[] = {
    {'.', 0xff00ff, true}, {'#', 0x000000}, {'r', 0xff0000}, {'s', 0x808080}};
constexpr const char* kArrowRows[] = {"r..", ".#.", "..#"};
constexpr const char* kLowRows[] = {"rs", "#."};
constexpr const char* kOtherRows[] = {"##", "rr"};
constexpr const char* kRaggedRows[] = {"##", "#"};
constexpr const char* kUnknownRows[] = {"#?"};
constexpr Picture kArrow = {kColours, kArrowRows};
constexpr Picture kLow = {kColours, kLowRows};
constexpr Picture kOther = {kColours, kOtherRows};
constexpr Picture kRagged = {kColours, kRaggedRows};
constexpr Picture kUnknown = {kColours, kUnknownRows};
constexpr const Picture* kStrip[] = {&kLow, &kOther};
constexpr const Picture* kUneven[] = {&kLow, &kArrow};
constexpr const Picture* kBroken[] = {&kRagged};

constexpr platform::CursorResource kCursors[] = {{71, {1, 2}, &kArrow}, {72, {0, 0}, &kUnknown}};
constexpr platform::IconResource kIcons[] = {{71, &kArrow}, {73, &kLow}};
constexpr platform::BitmapResource kBitmaps[] = {{81, kStrip}, {82, kUneven}, {83, kBroken}, {84, {}}};

HINSTANCE Module() {
  platform::ResourceTables tables;
  tables.cursors = kCursors;
  tables.icons = kIcons;
  tables.bitmaps = kBitmaps;
  return LinkResourceModule(tables);
}

TEST(Cursors, HaveOneHandleTheirNumberAndTheirHotSpot) {
  const HCURSOR cursor = LoadCursor(Module(), MAKEINTRESOURCE(71));
  ASSERT_NE(cursor, nullptr);
  EXPECT_EQ(LoadCursor(Module(), MAKEINTRESOURCE(71)), cursor);
  EXPECT_EQ(CursorId(cursor), 71U);
  EXPECT_EQ(CursorId(LoadCursor(nullptr, IDC_CROSS)), 32515U);
  EXPECT_EQ(CursorId(nullptr), 0U);
  EXPECT_EQ(LoadCursor(Module(), MAKEINTRESOURCE(70)), nullptr);
  EXPECT_EQ(LoadCursor(Module(), MAKEINTRESOURCE(72)), nullptr) << "a symbol without colour";
  EXPECT_EQ(LoadCursor(nullptr, MAKEINTRESOURCE(71)), nullptr) << "not one of the system's";
  // An icon of the same number is another thing.
  EXPECT_NE(LoadIconA(Module(), MAKEINTRESOURCE(71)), cursor);

  const WNDCLASS windowClass = {0,       &DefWindowProc, 0,       0,       nullptr,
                                nullptr, nullptr,        nullptr, nullptr, "shape"};
  RegisterClassA(&windowClass);
  const HWND window =
      CreateWindowEx(0, "shape", "", WS_POPUP, 0, 0, 90, 90, nullptr, nullptr, nullptr, nullptr);
  SetCapture(window);  // the cursor is then that window's, wherever the pointer is
  SetCursor(cursor);
  EXPECT_EQ(GetCursor(), cursor);
  QCursor shown;
  for (const QWidget* child : AfxGetQWidget(window)->findChildren<QWidget*>()) shown = child->cursor();
  EXPECT_EQ(shown.hotSpot(), QPoint(1, 2));
  const QImage picture = shown.pixmap().toImage();
  EXPECT_EQ(picture.pixel(0, 0), 0xffff0000U);
  EXPECT_EQ(qAlpha(picture.pixel(1, 0)), 0);
  EXPECT_EQ(picture.pixel(2, 2), 0xff000000U);
  DestroyWindow(window);
}

TEST(Icons, AreThoseOfTheClass) {
  const HICON first = LoadIconA(Module(), MAKEINTRESOURCE(71));
  const HICON second = LoadIconA(Module(), MAKEINTRESOURCE(73));
  ASSERT_NE(first, nullptr);
  const WNDCLASS windowClass = {0, &DefWindowProc, 0, 0, nullptr, first, nullptr, nullptr, nullptr, "iconic"};
  RegisterClassA(&windowClass);
  const HWND window = CreateWindowEx(0, "iconic", "", 0, 0, 0, 90, 90, nullptr, nullptr, nullptr, nullptr);
  const auto width = [window] {
    return AfxGetQWidget(window)->windowIcon().availableSizes().value(0).width();
  };
  EXPECT_EQ(width(), 3);
  EXPECT_EQ(SetClassLong(window, GCL_HICON, reinterpret_cast<std::intptr_t>(second)),
            reinterpret_cast<std::intptr_t>(first));
  EXPECT_EQ(GetClassLong(window, GCL_HICON), reinterpret_cast<std::intptr_t>(second));
  EXPECT_EQ(width(), 2);
  DestroyWindow(window);
}

/// Pixels of a bitmap, row by row.
std::vector<COLORREF> PixelsOf(HBITMAP bitmap) {
  BITMAP size{};
  GetObject(bitmap, sizeof size, &size);
  const HDC dc = CreateCompatibleDC(nullptr);
  const HGDIOBJ former = SelectObject(dc, bitmap);
  std::vector<COLORREF> pixels;
  for (int y = 0; y < size.bmHeight; ++y)
    for (int x = 0; x < size.bmWidth; ++x) pixels.push_back(GetPixel(dc, x, y));
  SelectObject(dc, former);
  DeleteDC(dc);
  return pixels;
}

TEST(ResourceBitmaps, AreStripsOfEightBits) {
  const HBITMAP bitmap = LoadBitmapA(Module(), MAKEINTRESOURCE(81));
  BITMAP size{};
  ASSERT_EQ(GetObject(bitmap, sizeof size, &size), static_cast<int>(sizeof size));
  EXPECT_EQ(size.bmWidth, 4);
  EXPECT_EQ(size.bmHeight, 2);
  EXPECT_EQ(size.bmBitsPixel, 8);
  constexpr COLORREF kMagenta = RGB(255, 0, 255), kRed = RGB(255, 0, 0), kGrey = RGB(128, 128, 128);
  EXPECT_EQ(PixelsOf(bitmap), (std::vector<COLORREF>{kRed, kGrey, 0, 0, 0, kMagenta, kRed, kRed}));
  DeleteObject(bitmap);
  for (const unsigned id : {80U, 82U, 83U, 84U})
    EXPECT_EQ(LoadBitmapA(Module(), MAKEINTRESOURCE(id)), nullptr) << id;
}

TEST(ResourceBitmaps, ExchangeColours) {
  constexpr COLORMAP kMap[] = {{RGB(255, 0, 255), RGB(1, 2, 3)}, {RGB(9, 9, 9), RGB(8, 8, 8)}};
  const HBITMAP mapped = CreateMappedBitmap(Module(), 81, 0, kMap, 2);
  EXPECT_EQ(PixelsOf(mapped)[5], RGB(1, 2, 3));
  EXPECT_EQ(PixelsOf(mapped)[0], RGB(255, 0, 0));
  DeleteObject(mapped);
  const HBITMAP usual = CreateMappedBitmap(Module(), 81, 0, nullptr, 0);
  EXPECT_EQ(PixelsOf(usual)[1], GetSysColor(COLOR_BTNSHADOW));
  EXPECT_EQ(PixelsOf(usual)[2], GetSysColor(COLOR_BTNTEXT));
  DeleteObject(usual);
  EXPECT_EQ(CreateMappedBitmap(Module(), 80, 0, kMap, 2), nullptr);
}

}  // namespace
