#include "platform/spooler/detail/sheet.h"

#include <gtest/gtest.h>

#include "platform/graphics/gdi_constants.h"

namespace {

using platform::Paper;
using platform::PrintQueue;

PrintQueue Queue() {
  PrintQueue queue;
  queue.name = "Laser";
  queue.dpiX = 600;
  queue.dpiY = 300;
  // All four margins differ, so that a mix-up shows.
  queue.papers = {{"iso_a4_210x297mm", 21000, 29700, 254, 508, 762, 1016},
                  {"na_letter_8.5x11in", 21590, 27940, 100, 200, 300, 400}};
  return queue;
}

DEVMODEA Mode(DWORD fields, short orientation, short paper = 0, short width = 0, short length = 0,
              short dpi = 0) {
  DEVMODEA mode{};
  mode.dmFields = fields;
  mode.dmOrientation = orientation;
  mode.dmPaperSize = paper;
  mode.dmPaperWidth = width;
  mode.dmPaperLength = length;
  mode.dmPrintQuality = dpi;
  return mode;
}

}  // namespace

TEST(Sheet, CapsFollowTheRecord) {
  struct Case {
    const char* name;
    DEVMODEA mode;
    int physicalWidth, physicalHeight, offsetX, offsetY, width, height, dpiX, dpiY;
  };
  const Case cases[] = {
      {"queue's own", Mode(0, DMORIENT_LANDSCAPE), 4961, 3508, 60, 60, 4721, 3328, 600, 300},
      {"landscape", Mode(DM_ORIENTATION, DMORIENT_LANDSCAPE), 7016, 2480, 240, 30, 6656, 2360, 600, 300},
      {"portrait", Mode(DM_ORIENTATION, DMORIENT_PORTRAIT), 4961, 3508, 60, 60, 4721, 3328, 600, 300},
      {"a paper of the queue has its own margins", Mode(DM_PAPERSIZE, 0, DMPAPER_LETTER), 5100, 3300, 24, 24,
       5005, 3229, 600, 300},
      {"a paper of no queue has the first one's", Mode(DM_PAPERSIZE, 0, DMPAPER_A5), 3496, 2480, 60, 60, 3256,
       2300, 600, 300},
      {"of any size", Mode(DM_PAPERSIZE | DM_PAPERWIDTH | DM_PAPERLENGTH, 0, DMPAPER_USER, 1000, 2000), 2362,
       2362, 60, 60, 2122, 2182, 600, 300},
      {"an unknown number changes nothing", Mode(DM_PAPERSIZE, 0, 99), 4961, 3508, 60, 60, 4721, 3328, 600,
       300},
      {"dots", Mode(DM_PRINTQUALITY, 0, 0, 0, 0, 100), 827, 1169, 10, 20, 787, 1109, 100, 100},
      {"impossible dots", Mode(DM_PRINTQUALITY, 0, 0, 0, 0, -4), 4961, 3508, 60, 60, 4721, 3328, 600, 300},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    auto caps = platform::CapsOf(platform::SheetOf(Queue(), &row.mode));
    EXPECT_EQ(caps[PHYSICALWIDTH], row.physicalWidth);
    EXPECT_EQ(caps[PHYSICALHEIGHT], row.physicalHeight);
    EXPECT_EQ(caps[PHYSICALOFFSETX], row.offsetX);
    EXPECT_EQ(caps[PHYSICALOFFSETY], row.offsetY);
    EXPECT_EQ(caps[HORZRES], row.width);
    EXPECT_EQ(caps[VERTRES], row.height);
    EXPECT_EQ(caps[LOGPIXELSX], row.dpiX);
    EXPECT_EQ(caps[LOGPIXELSY], row.dpiY);
    EXPECT_EQ(caps[TECHNOLOGY], DT_RASPRINTER);
    EXPECT_NE(caps[RASTERCAPS] & RC_STRETCHDIB, 0);
  }
}

TEST(Sheet, TheRecordOfAQueueGivesItsSheetBack) {
  const DEVMODEA mode = platform::DevModeOf(Queue());
  EXPECT_STREQ(mode.dmDeviceName, "Laser");
  EXPECT_EQ(mode.dmPaperSize, DMPAPER_A4);
  EXPECT_EQ(mode.dmOrientation, DMORIENT_PORTRAIT);
  EXPECT_NE(mode.dmFields & DM_ORIENTATION, 0U);
  EXPECT_EQ(platform::CapsOf(platform::SheetOf(Queue(), &mode)),
            platform::CapsOf(platform::SheetOf(Queue(), nullptr)));
}
