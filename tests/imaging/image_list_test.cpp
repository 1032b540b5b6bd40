// The image-list control: what it keeps, where its cells stand, what real input does and tells the parent.

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "imaging/imagelist/layout.h"
#include "platform/graphics/gdi.h"
#include "platform/window/pump.h"
#include "platform/window/window.h"
#include "tessarel12_testing.h"
#include "tests/imaging/pixel_support.h"

using imaging::ImageListLayout;
using pixel_test::AllPixels;
using pixel_test::ErrorOf;
using pixel_test::OwnedBitmap;

namespace {

constexpr int kId = 77;
constexpr UINT kAll = 11;

std::vector<int> g_picked;
std::function<void()> g_onPick;

LRESULT ParentProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == WM_COMMAND && LOWORD(wParam) == kId && HIWORD(wParam) == 1024) {
    g_picked.push_back(reinterpret_cast<const std::int32_t*>(lParam)[2]);
    if (g_onPick) g_onPick();
  }
  return DefWindowProc(window, message, wParam, lParam);
}

class ImageList : public testing::Test {
 protected:
  void SetUp() override {
    platform::EnsureApplication();
    g_picked.clear();
    g_onPick = nullptr;
    WNDCLASS parentClass{};
    parentClass.lpfnWndProc = &ParentProcedure;
    parentClass.lpszClassName = "list parent";
    RegisterClassA(&parentClass);
    parent = CreateWindowEx(0, "list parent", "", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 420, 420, nullptr,
                            nullptr, nullptr, nullptr);
    ASSERT_NE(parent, nullptr);
    LEADTOOLS::UseImageListControl();
    Create(140, 400);
  }
  void TearDown() override { DestroyWindow(parent); }

  void Create(int width, int height) {
    LEADTOOLS::UseImageListControl();
    list = CreateWindowEx(0, "LEADIMGLIST32", "", WS_CHILD | WS_VISIBLE, 0, 0, width, height, parent,
                          reinterpret_cast<HMENU>(static_cast<std::uintptr_t>(kId)), nullptr, nullptr);
    ASSERT_NE(list, nullptr);
    _LILSELOPTION options{};
    LEADTOOLS::ImgListGetSelOptions(list, &options);
    options.uStructSize = 16;
    options.bSelectPicked = options.bSingle = 1;
    LEADTOOLS::ImgListSetSelOptions(list, &options);
  }
  void Insert(int width, int height, const std::string& caption, bool selected = false) const {
    OwnedBitmap picture(width, height, 8);
    pixel_test::FillNoise(*picture.pStorage, 1);
    std::string text = caption;
    _LILITEM item{28, kAll, &picture, text.data(), selected ? 1 : 0};
    LEADTOOLS::ImgListInsert(list, &item);
  }
  void Fill(int count) const {
    for (int i = 1; i <= count; ++i) Insert(63, 79, "Pagina " + std::to_string(i));
    platform::testing::PumpUntilIdle();
  }
  _LILITEM Get(unsigned index) const {
    _LILITEM item{};
    LEADTOOLS::ImgListGetItem(list, index, &item);
    return item;
  }
  std::vector<int> Selected() const {
    std::vector<int> selected;
    for (int i = 0; i < LEADTOOLS::ImgListGetItemCount(list); ++i)
      if (Get(static_cast<unsigned>(i)).bSelected != 0) selected.push_back(i);
    return selected;
  }
  ImageListLayout Layout() const {
    RECT client{};
    GetClientRect(list, &client);
    _LILITEMOPTION options{};
    LEADTOOLS::ImgListGetItemOptions(list, &options);
    return ImageListLayout::Make(LEADTOOLS::ImgListGetItemCount(list),
                                 {options.ItemWidth, options.ItemHeight}, {client.right, client.bottom});
  }
  RECT Cell(int index) const { return Layout().CellAt(index, GetScrollPos(list, SB_VERT)); }
  bool IsInView(int index) const {
    const RECT cell = Cell(index);
    return cell.top >= 0 && cell.bottom <= Layout().client.cy;
  }
  void Click(int index) const {
    const RECT cell = Cell(index);
    const POINT point{(cell.left + cell.right) / 2, cell.top + 10};
    platform::testing::PressMouse(list, point);
    platform::testing::ReleaseMouse(list, point);
    platform::testing::PumpUntilIdle();
  }
  void Press(int key) const {
    platform::testing::PressKey(list, key);
    platform::testing::ReleaseKey(list, key);
    platform::testing::PumpUntilIdle();
  }

  HWND parent = nullptr;
  HWND list = nullptr;
};

}  // namespace

TEST_F(ImageList, KeepsItsOwnPictureAndCaption) {
  std::vector<std::uint32_t> pixels;
  {
    OwnedBitmap picture(63, 79, 8);
    pixel_test::FillNoise(*picture.pStorage, 3);
    pixels = AllPixels(picture);
    std::string caption = "Pagina 1";
    _LILITEM item{28, kAll, &picture, caption.data(), 1};
    LEADTOOLS::ImgListInsert(list, &item);
    caption = "xxxxxxxx";
  }
  const _LILITEM item = Get(0);
  EXPECT_EQ(AllPixels(*item.pBitmap), pixels);
  EXPECT_STREQ(item.pszText, "Pagina 1");
  EXPECT_EQ(item.bSelected, 1);
}

TEST_F(ImageList, SetsWhatTheMaskNames) {
  Insert(63, 79, "uno", true);
  OwnedBitmap picture(20, 30, 24);
  std::string text = "due";
  const struct {
    UINT mask;
    int width;
    const char* caption;
    int selected;
  } cases[] = {{8, 63, "uno", 0}, {1, 20, "uno", 0}, {2, 20, "due", 0}, {0, 20, "due", 0}};
  for (const auto& c : cases) {
    _LILITEM item{28, c.mask, &picture, text.data(), 0};
    LEADTOOLS::ImgListSetItem(list, 0, &item);
    EXPECT_EQ(Get(0).pBitmap->Width, c.width) << c.mask;
    EXPECT_STREQ(Get(0).pszText, c.caption) << c.mask;
    EXPECT_EQ(Get(0).bSelected, c.selected) << c.mask;
  }
  _LILITEM own = Get(0);  // its own picture and text given back
  LEADTOOLS::ImgListSetItem(list, 0, &own);
  EXPECT_EQ(Get(0).pBitmap->Width, 20);
  EXPECT_STREQ(Get(0).pszText, "due");
}

TEST_F(ImageList, ShowsAPictureUpright) {
  OwnedBitmap picture(60, 40, 8);
  picture.ViewPerspective = 6;
  char text[] = "x";
  _LILITEM item{28, kAll, &picture, text, 0};
  LEADTOOLS::ImgListInsert(list, &item);
  EXPECT_EQ(Get(0).pBitmap->Width, 40);
  EXPECT_EQ(Get(0).pBitmap->ViewPerspective, 0);
}

TEST_F(ImageList, BadWindowsAndIndicesThrow) {
  Insert(63, 79, "uno");
  _LILITEM item{28, 8, nullptr, nullptr, 1};
  _LILITEM noPicture{28, kAll, nullptr, nullptr, 1};
  const auto refused = imaging::kErrorInvalidParameter;
  for (const unsigned index : {1U, ~0U}) {
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListGetItem(list, index, &item); }), refused);
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListSetItem(list, index, &item); }), refused);
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListEnsureVisible(list, static_cast<int>(index)); }), refused);
    SendMessage(list, WM_USER + 17, index, 0);
  }
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListInsert(list, &noPicture); }), refused);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListInsert(list, nullptr); }), refused);
  EXPECT_EQ(LEADTOOLS::ImgListGetItemCount(list), 1);
  const HWND dead = list;
  DestroyWindow(list);
  for (const HWND window : {dead, parent, static_cast<HWND>(nullptr)}) {
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListGetItemCount(window); }), refused);
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::ImgListClear(window); }), refused);
  }
}

TEST_F(ImageList, AClickMovesTheSelectionAndTellsTheParent) {
  Fill(5);
  _LILITEM first{28, 8, nullptr, nullptr, 1};
  LEADTOOLS::ImgListSetItem(list, 0, &first);
  Click(2);
  EXPECT_EQ(Selected(), (std::vector<int>{2}));
  Click(2);  // told again, though nothing changes
  const RECT cell = Cell(1);
  platform::testing::PressMouse(list, {cell.left + 5, cell.bottom + ImageListLayout::kGap / 2});
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(g_picked, (std::vector<int>{2, 2})) << "a gap is no item";
  EXPECT_EQ(GetFocus(), list);
}

TEST_F(ImageList, SelectionFollowsItsOptions) {
  Fill(3);
  const struct {
    int selectPicked, single;
    std::vector<int> selected;  ///< after clicks on 1, 2, 1, before: 0
  } cases[] = {{0, 0, {0}}, {1, 0, {0, 2}}, {1, 1, {1}}};
  for (const auto& c : cases) {
    _LILSELOPTION options{16, c.selectPicked, c.single, 0};
    LEADTOOLS::ImgListSetSelOptions(list, &options);
    for (unsigned i = 0; i < 3; ++i) {
      _LILITEM item{28, 8, nullptr, nullptr, i == 0 ? 1 : 0};
      LEADTOOLS::ImgListSetItem(list, i, &item);
    }
    for (const int index : {1, 2, 1}) Click(index);
    EXPECT_EQ(Selected(), c.selected) << c.selectPicked << c.single;
  }
}

TEST_F(ImageList, KeysPickAndBringIntoView) {
  MoveWindow(list, 0, 0, 400, 400, TRUE);
  Fill(20);
  const ImageListLayout layout = Layout();
  ASSERT_EQ(layout.columns, 3);
  ASSERT_EQ(layout.ItemsPerScreen(), 9);
  SetFocus(list);
  Press('A');  // no key of the list
  const struct {
    int key;
    int picked;  ///< -1: stays where it is
  } cases[] = {{VK_DOWN, 0},  {VK_UP, -1},    {VK_LEFT, -1}, {VK_RIGHT, 1}, {VK_DOWN, 4},
               {VK_NEXT, 13}, {VK_END, 19},   {VK_DOWN, -1}, {VK_UP, 16},   {VK_RIGHT, 17},
               {VK_DOWN, 19}, {VK_PRIOR, 10}, {VK_HOME, 0},  {VK_PRIOR, -1}};
  int at = -1;
  for (const auto& c : cases) {
    g_picked.clear();
    Press(c.key);
    EXPECT_EQ(g_picked, c.picked < 0 ? std::vector<int>{} : std::vector<int>{c.picked})
        << c.key << " at " << at;
    at = c.picked < 0 ? at : c.picked;
    EXPECT_EQ(Selected(), std::vector<int>{at}) << c.key;
    EXPECT_TRUE(IsInView(at)) << c.key;
  }
}

// The keys go on from the item that the program selected.
TEST_F(ImageList, KeysStartAtTheSelectedItem) {
  Fill(10);
  _LILITEM item{28, 8, nullptr, nullptr, 1};
  LEADTOOLS::ImgListSetItem(list, 6, &item);
  SetFocus(list);
  Press(VK_DOWN);
  EXPECT_EQ(g_picked, std::vector<int>{7});
}

TEST_F(ImageList, TheParentMayDoAnythingWhenTold) {
  const std::pair<const char*, std::function<void()>> cases[] = {
      {"clear", [this] { LEADTOOLS::ImgListClear(list); }},
      {"refill",
       [this] {
         LEADTOOLS::ImgListClear(list);
         Insert(63, 79, "uno", true);
       }},
      {"destroy", [this] { DestroyWindow(list); }},
  };
  for (const auto& [name, action] : cases) {
    for (const bool byKey : {false, true}) {
      SCOPED_TRACE(name);
      if (IsWindow(list) != 0) DestroyWindow(list);
      Create(140, 400);
      Fill(5);
      g_picked.clear();
      g_onPick = action;
      if (byKey) {
        SetFocus(list);
        Press(VK_RIGHT);
      } else {
        Click(1);
      }
      g_onPick = nullptr;
      EXPECT_EQ(g_picked, std::vector<int>{byKey ? 0 : 1});
      platform::testing::PumpUntilIdle();
    }
  }
}

TEST_F(ImageList, ScrollsByBarWheelAndMessage) {
  Fill(20);
  const int row = Layout().RowPitch();
  EXPECT_NE(GetWindowLong(list, GWL_STYLE) & WS_VSCROLL, 0);
  const auto position = [this] { return GetScrollPos(list, SB_VERT); };
  platform::testing::TurnWheel(list, {50, 50}, -WHEEL_DELTA);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(position(), row);
  platform::testing::ClickScrollBar(list, SB_VERT, true, true);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(position(), row * 4) << "a page is the whole rows in view";
  platform::testing::DragThumb(list, SB_VERT, 500, true);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(position(), 500);
  for (const int index : {0, 19, 10, 9, 12}) {
    SendMessage(list, WM_USER + 17, static_cast<WPARAM>(index), 0);
    EXPECT_TRUE(IsInView(index)) << index;
    const int before = position();
    LEADTOOLS::ImgListEnsureVisible(list, index);
    EXPECT_EQ(position(), before) << "an item in view doesn't scroll";
  }
  LEADTOOLS::ImgListClear(list);
  EXPECT_EQ(GetWindowLong(list, GWL_STYLE) & WS_VSCROLL, 0);
}

// A bar takes width, and with it perhaps the column that made it needless.
TEST_F(ImageList, TheBarDependsOnTheSizeAloneNotOnWhatWasBefore) {
  Fill(4);
  const struct {
    int width, height;
    bool hasBar;
    int columns;
  } cases[] = {{140, 486, false, 1}, {140, 485, true, 1},  {246, 246, false, 2},
               {246, 245, true, 1},  {260, 245, true, 2},  {366, 246, false, 3},
               {366, 245, true, 2},  {486, 126, false, 4}, {486, 125, true, 3}};
  for (const SIZE before : {SIZE{90, 60}, SIZE{900, 900}}) {
    for (const auto& c : cases) {
      MoveWindow(list, 0, 0, before.cx, before.cy, TRUE);
      MoveWindow(list, 0, 0, c.width, c.height, TRUE);
      SCOPED_TRACE(std::to_string(c.width) + " x " + std::to_string(c.height));
      EXPECT_EQ((GetWindowLong(list, GWL_STYLE) & WS_VSCROLL) != 0, c.hasBar);
      EXPECT_EQ(Layout().columns, c.columns);
      EXPECT_EQ(Layout().client.cx, c.width - (c.hasBar ? GetSystemMetrics(SM_CXVSCROLL) : 0));
    }
  }
}

TEST_F(ImageList, TheItemAtTheTopStaysThereWhenColumnsChange) {
  Fill(40);
  SendMessage(list, WM_VSCROLL, SB_PAGEDOWN, 0);
  SendMessage(list, WM_VSCROLL, SB_PAGEDOWN, 0);
  const auto top = [this] { return Layout().Top(GetScrollPos(list, SB_VERT)); };
  ASSERT_EQ(top(), 6);
  ASSERT_EQ(Cell(6).top, ImageListLayout::kGap);
  for (const int width : {390, 140}) {
    MoveWindow(list, 0, 0, width, 400, TRUE);
    EXPECT_EQ(top(), 6) << width;
  }
}

// The callers' rule: with n / screens items to a screenful, those of the screenful in view are in view.
TEST_F(ImageList, TheScreenfulInViewIsInView) {
  for (const int count : {1, 3, 4, 7, 10, 11, 20}) {
    LEADTOOLS::ImgListClear(list);
    Fill(count);
    const int screens = LEADTOOLS::ImgListGetPagesCount(list);
    EXPECT_EQ(screens, count <= 3 ? 0 : (count + 2) / 3) << count;
    EXPECT_EQ(LEADTOOLS::ImgListGetPage(list), 1) << count;
    for (int index = 0; screens > 0 && index < count; ++index) {
      LEADTOOLS::ImgListEnsureVisible(list, index);
      const int page = LEADTOOLS::ImgListGetPage(list);
      const int share = count / screens;
      for (int i = (page - 1) * share; page > 0 && i < page * share; ++i)
        EXPECT_TRUE(IsInView(i)) << i << " of " << count << ", shown " << index;
    }
  }
}

TEST(ImageListLayout, SharesTheWidthEvenly) {
  const struct {
    int width, item, columns;
  } rows[] = {{126, 114, 1}, {140, 114, 1}, {246, 114, 2}, {245, 114, 1},
              {386, 115, 3}, {60, 114, 1},  {1, 114, 1}};
  for (const auto& row : rows) {
    const ImageListLayout layout = ImageListLayout::Make(30, {row.item, 100}, {row.width, 300});
    EXPECT_EQ(layout.columns, row.columns) << row.width;
    int edge = 0;
    int least = row.width;
    int most = 0;
    for (int i = 0; i <= layout.columns; ++i) {
      const RECT cell = layout.CellAt(i, 0);
      const LONG left = i == layout.columns ? row.width : cell.left;
      least = std::min<int>(least, left - edge);
      most = std::max<int>(most, left - edge);
      edge = cell.right;
    }
    EXPECT_LE(most - least, 1) << row.width;
    EXPECT_GE(least, 0) << row.width;
  }
}

TEST(ImageListLayout, FindsExactlyTheCellsOfAStrip) {
  const ImageListLayout layout = ImageListLayout::Make(29, {50, 40}, {180, 200});
  for (int scroll = 0; scroll <= layout.ClampScroll(10'000); scroll += 7)
    for (int top = 0; top < 200; top += 13) {
      const auto [first, last] = layout.Between(top, top + 5, scroll);
      for (int i = 0; i < layout.count; ++i) {
        const RECT cell = layout.CellAt(i, scroll);
        const bool touches = cell.top < top + 5 && cell.bottom > top;
        ASSERT_TRUE(!touches || (i >= first && i < last)) << i << " at " << top << " scrolled " << scroll;
      }
      ASSERT_LE(last - first, layout.columns * 2);
    }
}

namespace {

COLORREF PixelOf(HWND window, int x, int y) {
  const std::uint32_t pixel = platform::testing::WindowPixel(window, x, y);
  return RGB(pixel >> 16 & 255, pixel >> 8 & 255, pixel & 255);
}

}  // namespace

TEST_F(ImageList, PaintsPicturesOneToOneOnItsColors) {
  SendMessage(list, WM_USER + 21, 0, RGB(10, 120, 30));
  Insert(63, 79, "");
  Insert(63, 79, "", true);
  platform::testing::PumpUntilIdle();
  for (const int index : {0, 1}) {
    const RECT cell = Cell(index);
    EXPECT_EQ(PixelOf(list, cell.left + 2, cell.top + 2),
              index == 1 ? GetSysColor(COLOR_HIGHLIGHT) : RGB(10, 120, 30));
    const _LILITEM item = Get(static_cast<unsigned>(index));
    // Somewhere in the middle of the cell the picture stands pixel by pixel.
    const int left = cell.left + 3 + (cell.right - cell.left - 6 - 63) / 2;
    int matches = 0;
    for (int top = cell.top; top < cell.bottom - 79; ++top) {
      bool same = true;
      for (int y = 0; same && y < 79; ++y)
        for (int x = 0; same && x < 63; ++x)
          same = GetRValue(PixelOf(list, left + x, top + y)) == pixel_test::GetPixel(*item.pBitmap, x, y);
      matches += same ? 1 : 0;
    }
    EXPECT_EQ(matches, 1) << index;
  }
  EXPECT_EQ(PixelOf(list, 1, 1), RGB(10, 120, 30));
}

TEST_F(ImageList, AThousandItemsAreNoBurden) {
  const auto seconds = [](auto work) {
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  };
  const double few = seconds([&] { Fill(250); });
  const double many = seconds([&] { Fill(1000); });
  EXPECT_LT(many, few * 12 + 0.2) << "four times the items, not sixteen times the time";
  EXPECT_LT(seconds([&] {
              for (int i = 0; i < 50; ++i) {
                SendMessage(list, WM_VSCROLL, SB_PAGEDOWN, 0);
                UpdateWindow(list);
              }
            }),
            2.0);
}
