// How large a page comes out, in each format, on papers that turn and papers that don't.

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "print/sheet_size.h"

namespace {

using sheet::Correction;
using sheet::Orientation;
using sheet::Page;

constexpr int kFit = PrintFormatFitToPage;
constexpr int kActual = PrintFormatActualSize;
constexpr int kPixels = PrintFormatPixelToPixel;
const Correction kNoCorrection;

/// A sheet in the printer's tray: turning swaps its sides, and the resolutions as some devices do.
class TestPaper : public sheet::Paper {
 public:
  TestPaper(int width, int height, square_pixels::Resolution dpi = {600, 600}, bool turns = true)
      : m_measures{width, height, dpi},
        m_turns(turns),
        m_orientation(width > height ? Orientation::Landscape : Orientation::Portrait) {}

  sheet::Measures Measure() const override { return m_measures; }
  bool TurnTo(Orientation orientation) override {
    if (!m_turns || orientation == m_orientation) return false;
    m_orientation = orientation;
    m_measures = {m_measures.height, m_measures.width, {m_measures.dpi.y, m_measures.dpi.x}};
    ++turned;
    return true;
  }

  int turned = 0;

 private:
  sheet::Measures m_measures;
  bool m_turns;
  Orientation m_orientation;
};

void ExpectSize(SIZE got, SIZE want, const char* name) {
  EXPECT_EQ(got.cx, want.cx) << name;
  EXPECT_EQ(got.cy, want.cy) << name;
}

TEST(SheetSize, FormatsOnSheets) {
  const struct {
    const char* name;
    int format;
    Page page;
    TestPaper paper;
    SIZE size;
    int turned;
  } cases[] = {
      {"shrunk to the width", kFit, {5100, 6600, {600, 600}}, {4800, 6400}, {4800, 6211}, 0},
      {"enlarged on turned paper", kFit, {1000, 500, {600, 600}}, {4800, 6400}, {6400, 3200}, 1},
      {"lying page turns the paper", kFit, {6600, 5100, {600, 600}}, {4800, 6400}, {6211, 4800}, 1},
      {"paper that can't turn",
       kFit,
       {6600, 5100, {600, 600}},
       {4800, 6400, {600, 600}, false},
       {4800, 3709},
       0},
      {"by inches, not by pixels", kFit, {1728, 1078, {204, 98}}, {5100, 6600}, {5082, 6600}, 0},
      {"unknown resolution, by pixels", kFit, {2550, 3300, {0, 300}}, {5100, 6600}, {5100, 6600}, 0},
      {"standing page on lying paper", kFit, {2550, 3300, {300, 300}}, {6600, 5100}, {5100, 6600}, 1},
      {"inches", kActual, {600, 900, {200, 100}}, {5100, 6600}, {1800, 5400}, 0},
      {"fax, each axis by its own dpi", kActual, {1728, 1078, {204, 98}}, {5100, 6600}, {5082, 6600}, 0},
      {"fraction cut off", kActual, {100, 100, {204, 204}}, {5100, 6600}, {294, 294}, 0},
      {"too wide, turned", kActual, {3300, 2550, {300, 300}}, {5100, 6600}, {6600, 5100}, 1},
      {"too large for both, turned by its shape",
       kActual,
       {6000, 5000, {300, 300}},
       {5100, 6600},
       {12000, 10000},
       1},
      {"too large for both, standing already",
       kActual,
       {5000, 6000, {300, 300}},
       {5100, 6600},
       {10000, 12000},
       0},
      {"turned with the resolutions",
       kActual,
       {3600, 1500, {300, 300}},
       {2550, 6600, {300, 600}},
       {7200, 1500},
       1},
      {"unknown resolution as fit", kActual, {1000, 500, {300, 0}}, {4800, 6400}, {6400, 3200}, 1},
      {"a line thinner than a device pixel",
       kActual,
       {1, 3000, {600, 600}},
       {638, 825, {75, 75}},
       {1, 375},
       0},
      {"pixel to pixel", kPixels, {1728, 1078, {204, 98}}, {5100, 6600}, {1728, 1078}, 0},
      {"pixel to pixel, turned", kPixels, {6000, 3000, {0, 0}}, {5100, 6600}, {6000, 3000}, 1},
      {"pixel to pixel, cut off", kPixels, {9000, 9001, {0, 0}}, {5100, 6600}, {9000, 9001}, 0},
  };
  for (auto c : cases) {
    const auto size = sheet::Place(c.format, c.page, kNoCorrection, c.paper);
    ASSERT_TRUE(size) << c.name;
    ExpectSize(*size, c.size, c.name);
    EXPECT_EQ(c.paper.turned, c.turned) << c.name;
  }
}

TEST(SheetSize, NoFormatHasNoSizeAndTurnsNothing) {
  TestPaper paper(5100, 6600);
  for (const int format : {-1, 3, 7})
    EXPECT_FALSE(sheet::Place(format, {9000, 500, {0, 0}}, kNoCorrection, paper)) << format;
  EXPECT_EQ(paper.turned, 0);
}

TEST(SheetSize, PaperStaysTurnedForThePagesThatFollow) {
  TestPaper paper(5100, 6600);
  const Page lying{3300, 2550, {300, 300}};
  const Page small{300, 300, {300, 300}};
  sheet::Place(kActual, lying, kNoCorrection, paper);
  ExpectSize(*sheet::Place(kActual, small, kNoCorrection, paper), {600, 600}, "small");
  EXPECT_EQ(paper.turned, 1);
  EXPECT_EQ(paper.Measure().width, 6600);
}

TEST(SheetSize, BorrowedBitmapsAreMadeSquareByTheScreen) {
  const square_pixels::Resolution screen{96, 96};
  const struct {
    const char* name;
    Page page;
    square_pixels::Resolution screen;
    SIZE size;
  } cases[] = {
      {"doubled for the screen before", {1728, 2156, {204, 98}}, screen, {1728, 1035}},
      {"narrowed", {1000, 1000, {98, 204}}, screen, {480, 1000}},
      {"equal", {1000, 800, {300, 300}}, screen, {1000, 800}},
      {"screen of unequal dpi", {1000, 1000, {100, 100}}, {100, 50}, {1000, 500}},
      {"unknown", {1000, 1000, {0, 98}}, screen, {1000, 1000}},
      {"product wraps round to 0", {1000, 1000, {1 << 28, 98}}, {16, 16}, {1000, 1000}},
      {"no overflow", {INT_MAX, 1, {20000000, 20000001}}, screen, {INT_MAX - 108, 1}},
  };
  for (const auto& c : cases)
    ExpectSize(square_pixels::Narrowed({c.page.width, c.page.height}, c.page.dpi, c.screen), c.size, c.name);

  TestPaper paper(5100, 6600);
  ExpectSize(*sheet::Place(kActual, {1728, 2156, {204, 98}}, screen, paper), {5082, 6336}, "corrected");
  ExpectSize(*sheet::Place(kPixels, {1728, 2156, {204, 98}}, screen, paper), {1728, 2156},
             "pixels as they are");
}

TEST(SheetSize, LoadedPagesAreMadeSquareForThePrinter) {
  const struct {
    const char* name;
    Page page;
    square_pixels::Resolution printer;
    bool known;
    Page square;
  } cases[] = {
      {"fax", {1728, 1078, {204, 98}}, {600, 600}, true, {1728, 2156, {204, 204}}},
      {"upright fax", {1078, 1728, {98, 204}}, {600, 600}, true, {2156, 1728, {204, 204}}},
      {"fine fax counts as square", {1728, 2156, {204, 196}}, {600, 600}, true, {1728, 2156, {204, 204}}},
      {"printer of unequal dpi", {1000, 1000, {204, 204}}, {600, 300}, true, {1000, 2000, {204, 204}}},
      {"made for that printer", {1000, 1000, {204, 98}}, {300, 600}, true, {1000, 1000, {204, 204}}},
      {"unknown", {1728, 1078, {204, 0}}, {600, 600}, false, {}},
  };
  for (const auto& c : cases) {
    const auto square = sheet::MadeSquare(c.page, c.printer);
    ASSERT_EQ(square.has_value(), c.known) << c.name;
    if (!square) continue;
    ExpectSize({square->width, square->height}, {c.square.width, c.square.height}, c.name);
    EXPECT_EQ(square->dpi.x, c.square.dpi.x) << c.name;
    EXPECT_EQ(square->dpi.y, c.square.dpi.y) << c.name;
  }
  // 8.47 by 10.57 inches, where the page in its file has 11: the height is that of doubled rows at 204.
  TestPaper paper(5100, 6600);
  const Page fax = *sheet::MadeSquare({1728, 1078, {204, 98}}, {600, 600});
  ExpectSize(*sheet::Place(kActual, fax, kNoCorrection, paper), {5082, 6341}, "fax");
}

TEST(SheetSize, FitIntoShrinksByWidthThenByHeight) {
  const struct {
    SIZE size, limit, fitted;
  } cases[] = {{{100, 200}, {100, 200}, {100, 200}},       {{200, 100}, {100, 200}, {100, 50}},
               {{100, 300}, {100, 200}, {66, 200}},        {{1000, 3000}, {100, 200}, {66, 200}},
               {{6211, 4800}, {4800, 6400}, {4800, 3709}}, {{10, 10}, {100, 200}, {10, 10}}};
  for (const auto& c : cases) {
    SIZE size = c.size;
    sheet::FitInto(size, c.limit);
    ExpectSize(size, c.fitted, "fit");
  }
}

TEST(SheetSize, FirstOfEqualFactorsWinsAndFitsExactly) {
  EXPECT_EQ(sheet::BestFactor(500, 1000, {1000, 2000, {}}), 2.0);
  EXPECT_EQ(sheet::BestFactor(1000, 500, {1000, 2000, {}}), 2.0);
  EXPECT_EQ(sheet::BestFactor(1000, 1000, {1000, 2000, {}}), 1.0);
  // Without a usable factor the width decides.
  EXPECT_EQ(sheet::BestFactor(10, 0, {1000, 2000, {}}), 100.0);
}

TEST(SheetSize, SquaresStandOnTheSheetAndLieInTheDialog) {
  EXPECT_EQ(sheet::WantedFor({100, 100}), Orientation::Portrait);
  EXPECT_EQ(sheet::WantedFor({101, 100}), Orientation::Landscape);
  EXPECT_EQ(sheet::PresetFor({100, 100, {300, 300}}), Orientation::Landscape);
  EXPECT_EQ(sheet::PresetFor({100, 101, {300, 300}}), Orientation::Portrait);
  EXPECT_EQ(sheet::PresetFor({1728, 1078, {204, 98}}), Orientation::Portrait);
}

TEST(SheetSize, HostilePagesGiveSizesOfThisWorld) {
  const int values[] = {INT_MIN, -1, 0, 1, INT_MAX};
  for (const int side : values)
    for (const int dpi : values)
      for (const int format : {kFit, kActual, kPixels}) {
        TestPaper paper(5100, 6600);
        const Page page{side, 1000, {dpi, 200}};
        const auto size = sheet::Place(format, page, Correction({96, 96}), paper);
        EXPECT_TRUE(size && size->cx >= 1 && size->cy >= 1) << side << ' ' << dpi << ' ' << format;
      }
  EXPECT_EQ(sheet::CutOff(std::nan("")), 0);
  EXPECT_EQ(sheet::CutOff(1e300), INT_MAX);
  EXPECT_EQ(sheet::CutOff(-1e300), -INT_MAX);
  EXPECT_EQ(sheet::CutOff(-0.9), 0);
}

}  // namespace
