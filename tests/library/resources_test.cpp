// What the library carries beside its texts: menus, dialogs and pictures, each whole and in the right place.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "library/resource_ids.h"
#include "library/resources.h"
#include "platform/window/window.h"

namespace {

using platform::DialogItem;
using platform::MenuLine;
using platform::Picture;

const platform::MenuResource& Menu(UINT id) {
  const auto menus = LibraryMenus();
  return *std::find_if(menus.begin(), menus.end(), [id](const auto& menu) { return menu.id == id; });
}

/// The commands in order: "-" for a separator, "(" and ")" round a popup's lines.
std::string Outline(std::span<const MenuLine> lines) {
  std::string outline;
  for (const MenuLine& line : lines) {
    if (line.kind == MenuLine::Kind::Item) outline += std::to_string(line.id) + " ";
    if (line.kind == MenuLine::Kind::Separator) outline += "- ";
    if (line.kind == MenuLine::Kind::Popup) outline += "( ";
    if (line.kind == MenuLine::Kind::End) outline += ") ";
  }
  return outline;
}

TEST(Menus, HaveTheirCommandsInOrder) {
  EXPECT_EQ(Outline(Menu(30001).lines),
            "( 40005 57607 - 57665 ) ( 59392 59393 40027 - ( 40013 40007 40014 ) ) "
            "( 40024 40025 40019 40020 40021 - 40012 - 40002 40003 40004 - 40026 ) "
            "( 40023 40022 40016 - 40009 40008 40010 - 40011 ) ( 57667 - 57664 ) ");
  EXPECT_EQ(Outline(Menu(30005).lines),
            "( 40024 40025 40019 40020 40021 - ( 40023 40022 40011 - 40009 40008 40010 ) - "
            "40002 40003 40004 - 40012 - 40026 ) ");
}

TEST(Menus, TheHostsMenuIsTheViewersWithOpening) {
  std::vector<MenuLine> lines(Menu(30006).lines.begin(), Menu(30006).lines.end());
  ASSERT_GT(lines.size(), 1U);
  EXPECT_STREQ(lines[1].text, "&Apri...\tCtrl+A");
  EXPECT_EQ(lines[1].id, ID_FILE_OPEN);
  lines.erase(lines.begin() + 1);
  const auto viewer = Menu(30001).lines;
  ASSERT_EQ(lines.size(), viewer.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(lines[i].kind, viewer[i].kind) << i;
    EXPECT_EQ(lines[i].id, viewer[i].id) << i;
    EXPECT_STREQ(lines[i].text, viewer[i].text);
  }
}

TEST(Menus, EveryCommandOfTheLibraryHasAPrompt) {
  std::set<UINT> texts;
  for (const auto& text : LibraryStrings()) texts.insert(text.id);
  for (const auto& menu : LibraryMenus()) {
    for (const MenuLine& line : menu.lines) {
      if (line.kind != MenuLine::Kind::Item || line.id == ID_APP_ABOUT || line.id == ID_HELP_FINDER) continue;
      EXPECT_TRUE(texts.contains(line.id)) << menu.id << ": " << line.text;
      EXPECT_STRNE(line.text, "") << line.id;
    }
  }
}

/// The place that the control takes on the screen as the dialog opens: a drop-down list is closed then.
RECT Place(const DialogItem& item) {
  constexpr int kClosedListHeight = 14;
  const int height = item.kind == DialogItem::Kind::ComboBox ? kClosedListHeight : item.cy;
  return {item.x, item.y, item.x + item.cx, item.y + height};
}
bool Apart(const RECT& a, const RECT& b) {
  return a.right <= b.left || b.right <= a.left || a.bottom <= b.top || b.bottom <= a.top;
}
bool Within(const RECT& inner, const RECT& outer) {
  return inner.left > outer.left && inner.right < outer.right && inner.top > outer.top &&
         inner.bottom < outer.bottom;
}

TEST(Dialogs, HaveTheirSizesAndTheirControlsApart) {
  const struct {
    UINT id;
    int cx, cy;
    std::size_t controls;
  } rows[] = {{30003, 117, 74, 7}, {30011, 122, 50, 3}, {30023, 217, 249, 26},
              {1000, 163, 69, 6},  {1009, 131, 52, 2},  {0, 288, 186, 29}};
  const auto dialogs = LibraryDialogs();
  ASSERT_EQ(dialogs.size(), std::size(rows));
  for (std::size_t d = 0; d < dialogs.size(); ++d) {
    const auto& dialog = dialogs[d];
    EXPECT_EQ(dialog.id, rows[d].id);
    EXPECT_EQ(dialog.cx, rows[d].cx) << dialog.id;
    EXPECT_EQ(dialog.cy, rows[d].cy) << dialog.id;
    EXPECT_EQ(dialog.items.size(), rows[d].controls) << dialog.id;
    for (const DialogItem& item : dialog.items) {
      EXPECT_TRUE(Within(Place(item), {0, 0, dialog.cx, dialog.cy})) << dialog.id << ": " << item.text;
      EXPECT_TRUE(Within({item.x, item.y, item.x + 1, item.y + item.cy}, {0, 0, dialog.cx, dialog.cy}));
      for (const DialogItem& other : dialog.items) {
        const bool box = item.kind == DialogItem::Kind::GroupBox || other.kind == DialogItem::Kind::GroupBox;
        const bool fine = &item == &other || Apart(Place(item), Place(other)) ||
                          (box && (Within(Place(item), Place(other)) || Within(Place(other), Place(item))));
        EXPECT_TRUE(fine) << dialog.id << ": " << item.id << " over " << other.id;
      }
    }
  }
}

TEST(Dialogs, NumbersAreUniqueAndRadioGroupsClosed) {
  for (const auto& dialog : LibraryDialogs()) {
    std::set<int> ids;
    bool inRadios = false;
    for (const DialogItem& item : dialog.items) {
      EXPECT_TRUE(item.id == -1 || ids.insert(item.id).second) << dialog.id << ": " << item.id;
      const bool radio = item.kind == DialogItem::Kind::RadioButton;
      // A group begins at its first button and ends before the next control that begins one.
      if (radio != inRadios) {
        EXPECT_NE(item.style & WS_GROUP, 0U) << dialog.id << ": " << item.id;
      } else if (radio) {
        EXPECT_EQ(item.style & WS_GROUP, 0U) << dialog.id << ": " << item.id;
      }
      inRadios = radio;
    }
  }
}

/// Rows of one size in symbols of the palette.
void ExpectWhole(const Picture& picture, std::size_t size) {
  ASSERT_EQ(picture.rows.size(), size);
  for (std::size_t y = 0; y < size; ++y) {
    ASSERT_EQ(std::strlen(picture.rows[y]), size) << "row " << y;
    for (std::size_t x = 0; x < size; ++x) {
      EXPECT_EQ(std::count_if(picture.colours.begin(), picture.colours.end(),
                              [&](const auto& colour) { return colour.symbol == picture.rows[y][x]; }),
                1)
          << "row " << y << " column " << x;
    }
  }
}

const platform::PictureColour& ColourAt(const Picture& picture, LONG x, LONG y) {
  const char symbol = picture.rows[static_cast<std::size_t>(y)][x];
  return *std::find_if(picture.colours.begin(), picture.colours.end(),
                       [symbol](const auto& colour) { return colour.symbol == symbol; });
}

TEST(Cursors, AreWholeAndPointAtSomething) {
  const std::map<UINT, std::pair<LONG, LONG>> hotSpots = {{30006, {15, 8}},  {30007, {15, 8}},
                                                          {30008, {11, 11}}, {30009, {11, 11}},
                                                          {30010, {11, 11}}, {30012, {15, 15}}};
  EXPECT_EQ(LibraryCursors().size(), hotSpots.size());
  for (const auto& cursor : LibraryCursors()) {
    SCOPED_TRACE(cursor.id);
    ASSERT_TRUE(hotSpots.contains(cursor.id));
    EXPECT_EQ(std::make_pair(cursor.hotSpot.x, cursor.hotSpot.y), hotSpots.at(cursor.id));
    ExpectWhole(*cursor.picture, 32);
    EXPECT_FALSE(ColourAt(*cursor.picture, cursor.hotSpot.x, cursor.hotSpot.y).transparent);
  }
}

TEST(Icons, AreWholeAndInTheSixteenColours) {
  const std::set<std::uint32_t> sixteen = {0x000000, 0x800000, 0x008000, 0x808000, 0x000080, 0x800080,
                                           0x008080, 0xc0c0c0, 0x808080, 0xff0000, 0x00ff00, 0xffff00,
                                           0x0000ff, 0xff00ff, 0x00ffff, 0xffffff};
  ASSERT_EQ(LibraryIcons().size(), 2U);
  EXPECT_EQ(LibraryIcons()[0].id, 30001U);
  EXPECT_EQ(LibraryIcons()[1].id, 30006U);
  for (const auto& icon : LibraryIcons()) {
    SCOPED_TRACE(icon.id);
    ExpectWhole(*icon.picture, 32);
    for (const auto& colour : icon.picture->colours)
      EXPECT_TRUE(sixteen.contains(colour.rgb)) << colour.symbol;
  }
}

/// What is left of a picture when its button is disabled: its dark places.
std::string DarkPlaces(const Picture& picture) {
  std::string dark;
  for (LONG y = 0; y < 16; ++y) {
    for (LONG x = 0; x < 16; ++x) {
      const std::uint32_t rgb = ColourAt(picture, x, y).rgb;
      const std::uint32_t luminance = 30 * (rgb >> 16U) + 59 * (rgb >> 8U & 0xffU) + 11 * (rgb & 0xffU);
      dark += luminance < 12750 && rgb != 0xff00ff ? '#' : '.';
    }
  }
  return dark;
}

TEST(ToolbarStrips, AreWholeAndToldApartEvenDisabled) {
  ASSERT_EQ(LibraryBitmaps().size(), 2U);
  EXPECT_EQ(LibraryBitmaps()[0].id, 30004U);
  EXPECT_EQ(LibraryBitmaps()[1].id, 1012U);
  for (const auto& strip : LibraryBitmaps()) {
    SCOPED_TRACE(strip.id);
    ASSERT_EQ(strip.pictures.size(), 16U);
    std::vector<std::string> seen;
    for (const Picture* picture : strip.pictures) {
      SCOPED_TRACE(seen.size());
      ExpectWhole(*picture, 16);
      for (const auto& colour : picture->colours) EXPECT_EQ(colour.transparent, colour.rgb == 0xff00ff);
      const std::string dark = DarkPlaces(*picture);
      for (const std::string& other : seen) {
        int different = 0;
        for (std::size_t i = 0; i < dark.size(); ++i) different += dark[i] != other[i] ? 1 : 0;
        EXPECT_GE(different, 8);
      }
      seen.push_back(dark);
    }
  }
}

}  // namespace
