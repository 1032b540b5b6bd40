// Draws the sample fax that the viewer opens by default: three pages of 1728 columns at 204 by 98 dots per
// inch, text, a table and a drawing, compressed as faxes are.
//
//   make_sample_fax OUT.tif

#include <tiffio.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "platform/framework/wnd.h"
#include "platform/graphics/dc.h"
#include "platform/window/pump.h"

namespace {

// Lines are drawn at 196 to the inch and paired, as a fax machine's scanner does in standard resolution.
constexpr int kColumns = 1728;
constexpr int kRows = 1078;
constexpr int kDrawnRows = kRows * 2;

/// One page while it is drawn.
class Sheet {
 public:
  Sheet() {
    BITMAPINFO info{};
    info.bmiHeader = {sizeof(BITMAPINFOHEADER), kColumns, -kDrawnRows, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    m_dc.CreateCompatibleDC(nullptr);
    m_bitmap.Attach(CreateDIBSection(nullptr, &info, 0, &bits, nullptr, 0));
    m_pixels = static_cast<const std::uint32_t*>(bits);
    m_old = m_dc.SelectObject(&m_bitmap);
    m_dc.PatBlt(0, 0, kColumns, kDrawnRows, WHITENESS);
    m_dc.SetBkMode(TRANSPARENT);
  }
  ~Sheet() { m_dc.SelectObject(m_old); }
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;

  CDC& Dc() { return m_dc; }

  void Text(int x, int y, int height, const std::string& text, bool bold = false) {
    LOGFONTA description{};
    description.lfHeight = -height;
    description.lfWeight = bold ? 700 : 400;
    std::snprintf(description.lfFaceName, sizeof description.lfFaceName, "%s", "DejaVu Sans");
    CFont font;
    font.CreateFontIndirect(&description);
    CFont* former = m_dc.SelectObject(&font);
    m_dc.TextOut(x, y, text.c_str(), static_cast<int>(text.size()));
    m_dc.SelectObject(former);
  }

  /// Rows of bits, black is 1.
  std::vector<std::uint8_t> Scan() const {
    std::vector<std::uint8_t> rows(std::size_t{kColumns / 8} * kRows);
    for (int y = 0; y < kRows; ++y)
      for (int x = 0; x < kColumns; ++x)
        if (IsDark(x, 2 * y) || IsDark(x, 2 * y + 1))
          rows[std::size_t{kColumns / 8} * static_cast<unsigned>(y) + static_cast<unsigned>(x / 8)] |=
              static_cast<std::uint8_t>(0x80 >> x % 8);
    return rows;
  }

 private:
  bool IsDark(int x, int y) const { return (m_pixels[y * kColumns + x] & 0xff) < 0x80; }

  CDC m_dc;
  CBitmap m_bitmap;
  CBitmap* m_old = nullptr;
  const std::uint32_t* m_pixels = nullptr;
};

void Header(Sheet& sheet, int page) {
  sheet.Text(
      60, 20, 26,
      "24-11-2026  09:41   DA: +39 045 555 0142   A: UFFICIO TECNICO   PAG. " + std::to_string(page) + "/3");
  sheet.Dc().PatBlt(60, 62, kColumns - 120, 3, BLACKNESS);
}

void DrawLetter(Sheet& sheet) {
  Header(sheet, 1);
  sheet.Text(120, 140, 84, "TELEFAX", true);
  const std::array<const char*, 20> lines = {
      "Spett.le Ufficio Tecnico",
      "alla cortese attenzione dell'ing. Bassi",
      "",
      "Oggetto: conferma d'ordine n. 2026/0871",
      "",
      "Con la presente confermiamo il Vs. ordine del 19 novembre per la fornitura",
      "di n. 240 staffe in acciaio zincato e n. 60 piastre forate, come da disegno",
      "allegato a pagina 3. I prezzi unitari sono riportati nella tabella a pagina 2.",
      "",
      "La consegna è prevista entro la settimana 50, franco Vs. magazzino.",
      "Vi preghiamo di restituire copia della presente firmata per accettazione al numero",
      "indicato in intestazione, possibilmente entro venerdì.",
      "",
      "Per qualsiasi chiarimento il nostro ufficio è a Vs. disposizione dalle ore 8.30",
      "alle 12.30 e dalle 14.00 alle 17.30.",
      "",
      "Distinti saluti",
      "",
      "L. Ferrari",
      "Servizio clienti",
  };
  int y = 330;
  for (const char* line : lines) sheet.Text(120, y += 64, 38, line);
}

void DrawTable(Sheet& sheet) {
  Header(sheet, 2);
  sheet.Text(120, 120, 56, "Prezzi unitari", true);
  const std::array<std::array<const char*, 4>, 9> cells = {
      {{"Codice", "Descrizione", "Quantità", "Prezzo"},
       {"ST-120", "Staffa zincata 120 mm", "120", "3,40"},
       {"ST-160", "Staffa zincata 160 mm", "80", "4,15"},
       {"ST-200", "Staffa zincata 200 mm", "40", "5,05"},
       {"PF-080", "Piastra forata 80 x 80", "30", "2,90"},
       {"PF-100", "Piastra forata 100 x 100", "20", "3,75"},
       {"PF-150", "Piastra forata 150 x 150", "10", "6,20"},
       {"VT-M8", "Vite M8 x 30 con dado", "500", "0,18"},
       {"RD-M8", "Rondella M8", "500", "0,04"}}};
  constexpr std::array<int, 5> columns = {120, 380, 1060, 1340, 1600};
  int y = 250;
  for (const auto& row : cells) {
    for (std::size_t c = 0; c < row.size(); ++c) sheet.Text(columns[c] + 20, y + 22, 38, row[c], y == 250);
    sheet.Dc().PatBlt(columns.front(), y, columns.back() - columns.front(), y == 250 ? 6 : 2, BLACKNESS);
    y += 100;
  }
  sheet.Dc().PatBlt(columns.front(), y, columns.back() - columns.front(), 6, BLACKNESS);
  for (const int x : columns) sheet.Dc().PatBlt(x, 250, 3, y - 250, BLACKNESS);
}

void DrawPlan(Sheet& sheet) {
  Header(sheet, 3);
  sheet.Text(120, 120, 56, "Piastra forata PF-150, scala 1:1", true);
  CDC& dc = sheet.Dc();
  CPen thick;
  CPen thin;
  thick.CreatePen(PS_SOLID, 5, RGB(0, 0, 0));
  thin.CreatePen(PS_SOLID, 2, RGB(0, 0, 0));
  CPen* former = dc.SelectObject(&thick);
  const CRect plate(320, 400, 1400, 1480);
  dc.Rectangle(plate);
  for (const int dx : {0, 1})
    for (const int dy : {0, 1}) {
      const CPoint centre(plate.left + 160 + dx * 760, plate.top + 160 + dy * 760);
      dc.Ellipse(CRect(centre.x - 70, centre.y - 70, centre.x + 70, centre.y + 70));
    }
  dc.SelectObject(&thin);
  const CPoint middle = plate.CenterPoint();
  for (int i = 0; i < 24; ++i) {
    const double angle = i * 3.14159265358979 / 12;
    dc.MoveTo(middle.x + static_cast<int>(180 * std::cos(angle)),
              middle.y + static_cast<int>(180 * std::sin(angle)));
    dc.LineTo(middle.x + static_cast<int>(300 * std::cos(angle)),
              middle.y + static_cast<int>(300 * std::sin(angle)));
  }
  dc.Ellipse(CRect(middle.x - 180, middle.y - 180, middle.x + 180, middle.y + 180));
  dc.MoveTo(plate.left, 1580);
  dc.LineTo(plate.right, 1580);
  sheet.Text(middle.x - 60, 1590, 40, "150");
  sheet.Text(320, 1700, 36, "Materiale: S235JR, spessore 6 mm. Fori Ø 20 H11.");
  sheet.Text(320, 1760, 36, "Tolleranze generali secondo ISO 2768-m.");
  dc.SelectObject(former);
}

bool WritePage(TIFF* file, const std::vector<std::uint8_t>& rows, int page) {
  TIFFSetField(file, TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
  TIFFSetField(file, TIFFTAG_PAGENUMBER, page, 3);
  TIFFSetField(file, TIFFTAG_IMAGEWIDTH, kColumns);
  TIFFSetField(file, TIFFTAG_IMAGELENGTH, kRows);
  TIFFSetField(file, TIFFTAG_BITSPERSAMPLE, 1);
  TIFFSetField(file, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(file, TIFFTAG_ROWSPERSTRIP, kRows);
  TIFFSetField(file, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
  TIFFSetField(file, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX3);
  TIFFSetField(file, TIFFTAG_GROUP3OPTIONS, 0);
  TIFFSetField(file, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
  TIFFSetField(file, TIFFTAG_XRESOLUTION, 204.0);
  TIFFSetField(file, TIFFTAG_YRESOLUTION, 98.0);
  TIFFSetField(file, TIFFTAG_SOFTWARE, "Tessarel12");
  for (int y = 0; y < kRows; ++y) {
    auto* row = const_cast<std::uint8_t*>(rows.data()) + static_cast<std::ptrdiff_t>(y) * (kColumns / 8);
    if (TIFFWriteScanline(file, row, static_cast<std::uint32_t>(y)) < 0) return false;
  }
  return TIFFWriteDirectory(file) != 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("usage: make_sample_fax OUT.tif\n", stderr);
    return 2;
  }
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  platform::EnsureApplication();
  TIFF* file = TIFFOpen(argv[1], "w");
  if (file == nullptr) return 1;
  bool written = true;
  int page = 0;
  for (void (*draw)(Sheet&) : {&DrawLetter, &DrawTable, &DrawPlan}) {
    Sheet sheet;
    draw(sheet);
    written = written && WritePage(file, sheet.Scan(), page++);
  }
  TIFFClose(file);
  platform::EndApplication();
  return written ? 0 : 1;
}
