#include "platform/spooler/detail/sheet.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

#include "platform/graphics/gdi_constants.h"
#include "platform/spooler/borderless.h"

namespace platform {
namespace {

struct KnownPaper {
  short number;
  int width;  // hundredths of a millimetre
  int length;
  const char* name;
};

// ISO 216, ANSI/ASME Y14.1 and the JIS B series, as the numbers mean them.
constexpr KnownPaper kPapers[] = {
    {DMPAPER_A4, 21000, 29700, "A4"},           {DMPAPER_A3, 29700, 42000, "A3"},
    {DMPAPER_A5, 14800, 21000, "A5"},           {DMPAPER_A6, 10500, 14800, "A6"},
    {DMPAPER_B4, 25700, 36400, "B4 (JIS)"},     {DMPAPER_B5, 18200, 25700, "B5 (JIS)"},
    {DMPAPER_LETTER, 21590, 27940, "Lettera"},  {DMPAPER_LEGAL, 21590, 35560, "Legale"},
    {DMPAPER_TABLOID, 27940, 43180, "Tabloid"}, {DMPAPER_EXECUTIVE, 18415, 26670, "Esecutivo"},
    {DMPAPER_FOLIO, 21590, 33020, "Folio"},
};

constexpr int kTolerance = 100;  // a millimetre: services round inches differently
constexpr int kLeastDpi = 36;
constexpr int kMostDpi = 4800;

bool SameSize(int width, int length, const Paper& paper) {
  return std::abs(width - paper.width) <= kTolerance && std::abs(length - paper.length) <= kTolerance;
}

/// The queue's paper of that size, or one with the margins of its first.
Paper PaperOfSize(const PrintQueue& queue, int width, int length) {
  for (const Paper& paper : queue.papers)
    if (SameSize(width, length, paper)) return paper;
  Paper paper = queue.papers.front();
  paper.name.clear();
  paper.width = width;
  paper.length = length;
  return paper;
}

bool IsDpi(int dpi) {
  return dpi >= kLeastDpi && dpi <= kMostDpi;
}

void ChoosePaper(Sheet& sheet, const PrintQueue& queue, const DEVMODEA& mode) {
  int width = sheet.paper.width;
  int length = sheet.paper.length;
  if ((mode.dmFields & DM_PAPERSIZE) != 0)
    for (const KnownPaper& paper : kPapers)
      if (paper.number == mode.dmPaperSize) {
        width = paper.width;
        length = paper.length;
      }
  const bool own = (mode.dmFields & DM_PAPERSIZE) == 0 || mode.dmPaperSize == DMPAPER_USER;
  if (own && (mode.dmFields & DM_PAPERWIDTH) != 0 && mode.dmPaperWidth > 0) width = mode.dmPaperWidth * 10;
  if (own && (mode.dmFields & DM_PAPERLENGTH) != 0 && mode.dmPaperLength > 0)
    length = mode.dmPaperLength * 10;
  const bool borderless =
      own && (mode.dmFields & DM_FORMNAME) != 0 && std::string_view(mode.dmFormName) == kFormBorderless;
  if (borderless)
    sheet.paper = {"", width, length, 0, 0, 0, 0};
  else if (!SameSize(width, length, sheet.paper))
    sheet.paper = PaperOfSize(queue, width, length);
}

int Dots(int hundredths, int dpi) {
  return static_cast<int>(std::lround(hundredths * static_cast<double>(dpi) / 2540));
}

struct Margins {
  int left;
  int top;
  int right;
  int bottom;
};

// A landscape page lies on the sheet turned to the left: its top along the sheet's left edge.
Margins MarginsOf(const Sheet& sheet) {
  const Paper& paper = sheet.paper;
  if (!sheet.landscape) return {paper.left, paper.top, paper.right, paper.bottom};
  return {paper.bottom, paper.left, paper.top, paper.right};
}

void CopyName(char* target, std::size_t size, const std::string& name) {
  std::fill_n(target, size, '\0');
  name.copy(target, size - 1);
}

}  // namespace

Sheet SheetOf(const PrintQueue& queue, const DEVMODEA* mode) {
  Sheet sheet{queue.papers.front(), false, queue.dpiX, queue.dpiY};
  if (mode == nullptr) return sheet;
  ChoosePaper(sheet, queue, *mode);
  sheet.landscape = (mode->dmFields & DM_ORIENTATION) != 0 && mode->dmOrientation == DMORIENT_LANDSCAPE;
  if ((mode->dmFields & DM_PRINTQUALITY) != 0 && IsDpi(mode->dmPrintQuality)) {
    sheet.dpiX = sheet.dpiY = mode->dmPrintQuality;
    if ((mode->dmFields & DM_YRESOLUTION) != 0 && IsDpi(mode->dmYResolution))
      sheet.dpiY = mode->dmYResolution;
  }
  return sheet;
}

std::string PaperText(const Paper& paper) {
  for (const KnownPaper& known : kPapers)
    if (SameSize(known.width, known.length, paper)) return known.name;
  const auto millimetres = [](int hundredths) { return std::to_string((hundredths + 50) / 100); };
  return millimetres(paper.width) + " x " + millimetres(paper.length) + " mm";
}

void SetPaper(DEVMODEA& mode, const Paper& paper) {
  mode.dmPaperSize = DMPAPER_USER;
  for (const KnownPaper& known : kPapers)
    if (SameSize(known.width, known.length, paper)) mode.dmPaperSize = known.number;
  CopyName(mode.dmFormName, sizeof mode.dmFormName, PaperText(paper));
  mode.dmPaperWidth = static_cast<short>(std::min(paper.width / 10, 32767));
  mode.dmPaperLength = static_cast<short>(std::min(paper.length / 10, 32767));
}

DEVMODEA DevModeOf(const PrintQueue& queue) {
  DEVMODEA mode{};
  CopyName(mode.dmDeviceName, sizeof mode.dmDeviceName, queue.name);
  mode.dmSpecVersion = 0x0401;
  mode.dmSize = sizeof mode;
  mode.dmFields = DM_ORIENTATION | DM_PAPERSIZE | DM_PAPERLENGTH | DM_PAPERWIDTH | DM_COPIES |
                  DM_PRINTQUALITY | DM_YRESOLUTION | DM_COLLATE | DM_FORMNAME;
  mode.dmOrientation = DMORIENT_PORTRAIT;
  SetPaper(mode, queue.papers.front());
  mode.dmScale = 100;
  mode.dmCopies = 1;
  mode.dmPrintQuality = static_cast<short>(queue.dpiX);
  mode.dmYResolution = static_cast<short>(queue.dpiY);
  mode.dmCollate = DMCOLLATE_FALSE;
  return mode;
}

std::map<int, int> CapsOf(const Sheet& sheet) {
  const int width = sheet.landscape ? sheet.paper.length : sheet.paper.width;
  const int height = sheet.landscape ? sheet.paper.width : sheet.paper.length;
  const Margins margins = MarginsOf(sheet);
  const int fullX = Dots(width, sheet.dpiX);
  const int fullY = Dots(height, sheet.dpiY);
  const int left = Dots(margins.left, sheet.dpiX);
  const int top = Dots(margins.top, sheet.dpiY);
  const int printX = std::max(1, fullX - left - Dots(margins.right, sheet.dpiX));
  const int printY = std::max(1, fullY - top - Dots(margins.bottom, sheet.dpiY));
  const auto millimetres = [](int dots, int dpi) { return static_cast<int>(std::lround(dots * 25.4 / dpi)); };
  return {{TECHNOLOGY, DT_RASPRINTER},
          {HORZSIZE, millimetres(printX, sheet.dpiX)},
          {VERTSIZE, millimetres(printY, sheet.dpiY)},
          {HORZRES, printX},
          {VERTRES, printY},
          {BITSPIXEL, 24},
          {PLANES, 1},
          {NUMCOLORS, -1},
          {COLORRES, 24},
          {ASPECTX, sheet.dpiX},
          {ASPECTY, sheet.dpiY},
          {ASPECTXY, static_cast<int>(std::lround(std::hypot(sheet.dpiX, sheet.dpiY)))},
          {LOGPIXELSX, sheet.dpiX},
          {LOGPIXELSY, sheet.dpiY},
          {RASTERCAPS, RC_BITBLT | RC_BITMAP64 | RC_DI_BITMAP | RC_DIBTODEV | RC_STRETCHBLT | RC_STRETCHDIB},
          {PHYSICALWIDTH, fullX},
          {PHYSICALHEIGHT, fullY},
          {PHYSICALOFFSETX, left},
          {PHYSICALOFFSETY, top}};
}

std::pair<double, double> PointsOf(const Sheet& sheet) {
  const auto caps = CapsOf(sheet);
  return {caps.at(PHYSICALWIDTH) * 72.0 / sheet.dpiX, caps.at(PHYSICALHEIGHT) * 72.0 / sheet.dpiY};
}

PrintQueue FileQueue() {
  PrintQueue queue;
  constexpr int kMargin = 423;  // a sixth of an inch: a file is mostly printed in the end
  queue.papers = {{"", 21000, 29700, kMargin, kMargin, kMargin, kMargin}};
  return queue;
}

}  // namespace platform
