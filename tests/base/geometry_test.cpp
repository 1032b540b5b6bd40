#include "platform/base/geometry.h"

#include <gtest/gtest.h>

namespace {

struct Row {
  const char* name;
  RECT a, b, both, around;
};
const Row kRows[] = {
    {"overlap", {0, 0, 10, 10}, {5, 6, 20, 9}, {5, 6, 10, 9}, {0, 0, 20, 10}},
    {"touching edges share nothing", {0, 0, 10, 10}, {10, 0, 20, 10}, {0, 0, 0, 0}, {0, 0, 20, 10}},
    {"an empty one counts for nothing", {3, 3, 3, 9}, {1, 1, 2, 2}, {0, 0, 0, 0}, {1, 1, 2, 2}},
    {"two empty ones", {3, 3, 3, 9}, {9, 1, 2, 2}, {0, 0, 0, 0}, {0, 0, 0, 0}},
};

TEST(Rectangles, IntersectAndUnite) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.name);
    RECT result = {7, 7, 7, 7};
    EXPECT_EQ(IntersectRect(&result, &row.a, &row.b), !IsRectEmpty(&row.both));
    EXPECT_TRUE(result == row.both);
    EXPECT_EQ(UnionRect(&result, &row.a, &row.b), !IsRectEmpty(&row.around));
    EXPECT_TRUE(result == row.around);
    EXPECT_TRUE((CRect(row.a) & row.b) == row.both);
    EXPECT_TRUE((CRect(row.a) | row.b) == row.around);
  }
}

TEST(Rectangles, ResultMayBeAnArgument) {
  CRect rect(0, 0, 10, 10);
  EXPECT_TRUE(IntersectRect(rect, rect, CRect(5, 5, 20, 20)));
  EXPECT_TRUE(rect == CRect(5, 5, 10, 10));
}

TEST(Rectangles, PointsOnTheFarEdgesAreOutside) {
  const CRect rect(1, 2, 5, 6);
  EXPECT_TRUE(rect.PtInRect(CPoint(1, 2)));
  EXPECT_TRUE(rect.PtInRect(CPoint(4, 5)));
  EXPECT_FALSE(rect.PtInRect(CPoint(5, 5)));
  EXPECT_FALSE(rect.PtInRect(CPoint(4, 6)));
}

TEST(Rectangles, SubtractOnlyWhereARectangleRemains) {
  CRect rest;
  EXPECT_TRUE(rest.SubtractRect(CRect(0, 0, 10, 10), CRect(0, 0, 4, 10)));
  EXPECT_TRUE(rest == CRect(4, 0, 10, 10));
  EXPECT_TRUE(rest.SubtractRect(CRect(0, 0, 10, 10), CRect(0, 0, 4, 4)));
  EXPECT_TRUE(rest == CRect(0, 0, 10, 10));
  EXPECT_FALSE(rest.SubtractRect(CRect(0, 0, 10, 10), CRect(-1, -1, 11, 11)));
}

TEST(Rectangles, NormalizeMoveAndCorners) {
  CRect rect(10, 20, 2, 4);
  rect.NormalizeRect();
  EXPECT_TRUE(rect == CRect(2, 4, 10, 20));
  rect.TopLeft() = CPoint(0, 0);
  EXPECT_EQ(rect.Width(), 10);
  rect.MoveToXY(5, 5);
  EXPECT_TRUE(rect == CRect(5, 5, 15, 25));
  EXPECT_TRUE(rect.BottomRight() - rect.TopLeft() == rect.Size());
  rect.DeflateRect(1, 2);
  EXPECT_TRUE(rect == CRect(6, 7, 14, 23));
}

TEST(Points, MouseMessagesCarrySignedPositions) {
  EXPECT_TRUE(CPoint(MAKELPARAM(-3, 40)) == CPoint(-3, 40));
}

}  // namespace
