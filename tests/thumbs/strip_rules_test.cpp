// The rules of a document's strip, without a window.

#include <gtest/gtest.h>

#include "thumbs/thumb_caption.h"
#include "thumbs/thumb_size.h"

namespace {

TEST(DocumentStrip, SizeOfAPicture) {
  const CSize room = thumbs::PictureRoom({thumbs::kCellSide, thumbs::kCellSide});
  ASSERT_TRUE(room == CSize(108, 80));
  const struct {
    SIZE page, picture;
    bool reduced;
  } cases[] = {{{1000, 800}, {108, 86}, true}, {{800, 1000}, {64, 80}, true}, {{1000, 1000}, {80, 80}, true},
               {{5000, 20}, {108, 1}, true},   {{20, 5000}, {1, 80}, true},   {{60, 50}, {108, 90}, false},
               {{100, 90}, {108, 97}, false},  {{1, 1}, {80, 80}, false},     {{2480, 3508}, {56, 80}, true}};
  for (const auto& c : cases) {
    const thumbs::Picture picture = thumbs::FitLongerSide(c.page, room);
    EXPECT_EQ(picture.size.cx, c.picture.cx) << c.page.cx;
    EXPECT_EQ(picture.size.cy, c.picture.cy) << c.page.cx;
    EXPECT_EQ(picture.factor < 1.0, c.reduced) << c.page.cx;
  }
}

TEST(DocumentStrip, WhichItemsAreInView) {
  const struct {
    int item;
    thumbs::Screenfuls at;
    bool inView;
  } cases[] = {
      {0, {10, 0, 0}, true}, {0, {10, 2, 1}, true},  {4, {10, 2, 1}, true},   {5, {10, 2, 1}, false},
      {5, {10, 2, 2}, true}, {4, {10, 2, 2}, false}, {10, {11, 2, 2}, false},  // the odd one is missed
      {0, {3, 5, 1}, false}};                                                  // more screenfuls than items
  for (const auto& c : cases)
    EXPECT_EQ(thumbs::IsInView(c.item, c.at), c.inView) << c.item << " of " << c.at.items;
}

TEST(DocumentStrip, CaptionCountsFromOne) {
  EXPECT_STREQ(thumbs::CaptionOfPage(1), "Pagina 1");
  EXPECT_STREQ(thumbs::CaptionOfPage(12345), "Pagina 12345");
}

}  // namespace
