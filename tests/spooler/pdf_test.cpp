#include "platform/base/bitmapinfo.h"
#include "print_fixture.h"

namespace {

class Pdf : public PrintTest {
 protected:
  /// Prints one page to a file.
  template <typename Draw>
  std::string Print(Draw draw, const char* title = "Prova") {
    const std::string target = Target();
    const HDC dc = CreateDCA(nullptr, "Uno", target.c_str(), nullptr);
    const DOCINFOA info{sizeof info, title, nullptr, nullptr, 0};
    EXPECT_GT(StartDocA(dc, &info), 0);
    EXPECT_GT(StartPage(dc), 0);
    draw(dc);
    EXPECT_GT(EndPage(dc), 0);
    EXPECT_GT(EndDoc(dc), 0);
    DeleteDC(dc);
    return target;
  }
};

// At 300 dots per inch margins of 4.2 mm are 50 dots.
constexpr int kMargin = 50;

}  // namespace

TEST_F(Pdf, TheCrossReferenceTableIsRight) {
  const std::string pdf = Read(Print([](HDC dc) {
    for (const int bits : {1, 8, 24}) {
      const TestImage image(40, 30, bits);
      EXPECT_TRUE(platform::DrawImageOnPrinter(dc, image.view, {0, 0, 40, 30}, {0, 0, 40, 30}));
    }
  }));
  const std::size_t table = std::stoul(pdf.substr(pdf.rfind("startxref") + 10));
  ASSERT_EQ(pdf.substr(table, 7), "xref\n0 ");
  const int count = std::stoi(pdf.substr(table + 7));
  const std::size_t first = pdf.find('\n', table + 7) + 1;
  for (int object = 1; object < count; ++object) {
    const std::size_t offset = std::stoul(pdf.substr(first + static_cast<std::size_t>(object) * 20, 10));
    const std::string head = std::to_string(object) + " 0 obj\n";
    EXPECT_EQ(pdf.substr(offset, head.size()), head);
  }
}

TEST_F(Pdf, PagesAreReadByOthers) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  const std::string pdf = Print([](HDC) {}, "Città: pagina (1)");
  const std::string info = Output("pdfinfo -enc UTF-8 " + pdf);
  EXPECT_NE(info.find("Città: pagina (1)"), std::string::npos) << info;
  EXPECT_NE(info.find("Pages:           1"), std::string::npos) << info;
  EXPECT_NE(info.find("595.2 x 841.92 pts (A4)"), std::string::npos) << info;
}

// Every depth at its place, dot for dot, and stored in the form that suits it.
TEST_F(Pdf, ImagesKeepTheirPixelsAndDepth) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  struct Case {
    int bits;
    bool inverted;
    bool coloured;
    bool bottomUp;
    bool noise;
    const char* listed;  // kind, width, height, colour, components, bits, filter in pdfimages -list
  };
  constexpr Case kCases[] = {
      {1, false, false, false, false, "image     203   101  gray    1   1  ccitt"},
      {1, true, false, false, false, "image     203   101  gray    1   1  ccitt"},
      {1, false, true, false, false, "image     203   101  index   1   1  ccitt"},
      {1, false, false, true, false, "image     203   101  gray    1   1  ccitt"},
      {1, false, false, false, true, "image     203   101  gray    1   1  image"},
      {1, true, false, false, true, "image     203   101  gray    1   1  image"},
      {4, false, true, false, false, "image     203   101  index   1   4  image"},
      {8, false, false, true, false, "image     203   101  gray    1   8  image"},
      {8, false, true, false, false, "image     203   101  index   1   8  image"},
      {24, false, true, false, false, "image     203   101  rgb     3   8  image"},
      {32, false, true, true, false, "image     203   101  rgb     3   8  image"},
  };
  constexpr int kWidth = 203;
  constexpr int kHeight = 101;
  for (const Case& row : kCases) {
    SCOPED_TRACE(std::to_string(row.bits) + (row.inverted ? " inverted" : "") +
                 (row.coloured ? " coloured" : ""));
    TestImage image(kWidth, kHeight, row.bits);
    for (std::size_t i = 0; i < image.colors.size(); ++i) {
      if (row.inverted)
        image.colors[i] = {static_cast<BYTE>(255 - 255 * i), static_cast<BYTE>(255 - 255 * i),
                           static_cast<BYTE>(255 - 255 * i), 0};
      if (row.coloured)
        image.colors[i] = {static_cast<BYTE>(40 + i * 3), static_cast<BYTE>(i * 11),
                           static_cast<BYTE>(200 - i), 0};
    }
    std::uint32_t seed = 12345;
    for (std::size_t i = 0; i < image.bytes.size(); ++i) {
      seed = seed * 1664525 + 1013904223;
      image.bytes[i] = static_cast<std::uint8_t>(seed >> 24);
      if (row.bits > 1 || row.noise) continue;
      // Blocks rather than noise: what fax coding is for.
      const auto column = i % static_cast<std::size_t>(image.view.stride);
      const auto line = i / static_cast<std::size_t>(image.view.stride);
      image.bytes[i] =
          (column / 5 + line / 20) % 2 == 0 ? 0 : static_cast<std::uint8_t>(column == 7 ? 0x3c : 0xff);
    }
    if (row.bottomUp) {
      image.view.top += image.view.stride * (kHeight - 1);
      image.view.stride = -image.view.stride;
    }
    const std::string pdf = Print([&](HDC dc) {
      EXPECT_TRUE(platform::DrawImageOnPrinter(dc, image.view, {10, 20, 10 + kWidth, 20 + kHeight},
                                               {0, 0, kWidth, kHeight}));
    });
    const std::string list = Output("pdfimages -list " + pdf);
    EXPECT_NE(list.find(row.listed), std::string::npos) << list;
    // Renderers widen an image to whole pixels; the middle of a dot tells its colour all the same.
    constexpr int kScale = 4;
    const Picture page =
        Render(pdf, {kMargin + 10, kMargin + 20, kMargin + 10 + kWidth, kMargin + 20 + kHeight}, 300, kScale);
    int wrong = 0;
    for (int y = 0; y < kHeight; ++y)
      for (int x = 0; x < kWidth; ++x) {
        const std::uint8_t* line = image.view.top + y * image.view.stride;
        RGBQUAD color{};
        if (row.bits <= 8)
          color = image.colors[static_cast<std::size_t>(
              line[x * row.bits / 8] >> (8 - row.bits - x * row.bits % 8) & ((1 << row.bits) - 1))];
        else
          color = {line[x * row.bits / 8], line[x * row.bits / 8 + 1], line[x * row.bits / 8 + 2], 0};
        const std::uint8_t* shown = page.At(x * kScale + kScale / 2, y * kScale + kScale / 2);
        if (shown[0] != color.rgbRed || shown[1] != color.rgbGreen || shown[2] != color.rgbBlue) ++wrong;
      }
    EXPECT_EQ(wrong, 0);
  }
}

// Where a black image lies on the page, in dots from the printable area's corner.
TEST_F(Pdf, PlacesPartsAndClips) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  struct Case {
    const char* name;
    RECT destination;
    RECT source;
    POINT origin;
    RECT black;
  };
  const RECT all{0, 0, 100, 100};
  const Case cases[] = {
      {"enlarged", {10, 20, 210, 420}, all, {0, 0}, {10, 20, 210, 420}},
      {"window origin at the paper's corner", {0, 0, 100, 100}, all, {kMargin, kMargin}, {0, 0, 50, 50}},
      {"a part", {10, 10, 110, 110}, {0, 0, 50, 25}, {0, 0}, {10, 10, 110, 110}},
      {"a part that reaches outside", {0, 0, 100, 100}, {-100, 0, 100, 100}, {0, 0}, {50, 0, 100, 100}},
      {"cut off at the printable area", {2300, 3400, 2500, 3600}, all, {0, 0}, {2300, 3400, 2380, 3408}},
      {"mirrored", {110, 10, 10, 110}, {0, 0, 50, 100}, {0, 0}, {10, 10, 110, 110}},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    const TestImage image(100, 100, 1);
    const std::string pdf = Print([&](HDC dc) {
      SetWindowOrgEx(dc, row.origin.x, row.origin.y, nullptr);
      EXPECT_TRUE(platform::DrawImageOnPrinter(dc, image.view, row.destination, row.source));
    });
    const Picture page = Render(pdf, {0, 0, 2480, 3508}, 300, 1);
    RECT black{page.width, page.height, 0, 0};
    for (int y = 0; y < page.height; ++y)
      for (int x = 0; x < page.width; ++x)
        if (*page.At(x, y) == 0)
          black = {std::min(black.left, x), std::min(black.top, y), std::max(black.right, x + 1),
                   std::max(black.bottom, y + 1)};
    // Renderers give an edge between dots to the whole dot.
    EXPECT_NEAR(black.left - kMargin, row.black.left, 1);
    EXPECT_NEAR(black.top - kMargin, row.black.top, 1);
    EXPECT_NEAR(black.right - kMargin, row.black.right, 1);
    EXPECT_NEAR(black.bottom - kMargin, row.black.bottom, 1);
  }
}

// What the drawing functions send: the same way, not through a painter.
TEST_F(Pdf, BlocksOfPixelsStayBilevel) {
  if (!HasPoppler()) GTEST_SKIP() << "no poppler-utils";
  struct {
    BITMAPINFOHEADER header{sizeof header, 64, 32, 1, 1, BI_RGB, 0, 0, 0, 0, 0};
    RGBQUAD colors[2] = {{255, 255, 255, 0}, {0, 0, 0, 0}};
  } info;
  std::vector<std::uint8_t> bits(8 * 32, 0);
  std::fill_n(bits.begin(), 8, 0xff);  // the lowest row is black
  const std::string pdf = Print([&](HDC dc) {
    EXPECT_EQ(StretchDIBits(dc, 0, 0, 640, 320, 0, 0, 64, 32, bits.data(),
                            reinterpret_cast<BITMAPINFO*>(&info), DIB_RGB_COLORS, SRCCOPY),
              32);
    const HDC memory = CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = CreateBitmap(16, 16, 1, 1, nullptr);  // black
    const HGDIOBJ old = SelectObject(memory, bitmap);
    EXPECT_TRUE(BitBlt(dc, 700, 0, 16, 16, memory, 0, 0, SRCCOPY));
    SelectObject(memory, old);
    DeleteObject(bitmap);
    DeleteDC(memory);
    EXPECT_FALSE(Rectangle(dc, 0, 0, 10, 10)) << "nothing but images";
  });
  const std::string list = Output("pdfimages -list " + pdf);
  EXPECT_NE(list.find("image      64    32  gray    1   1  ccitt"), std::string::npos) << list;
  EXPECT_NE(list.find("image      16    16  gray    1   1  ccitt"), std::string::npos) << list;
  const Picture page = Render(pdf, {0, 0, 2480, 3508}, 300, 1);
  EXPECT_EQ(*page.At(kMargin + 300, kMargin + 315), 0);
  EXPECT_EQ(*page.At(kMargin + 300, kMargin + 100), 255);
  EXPECT_EQ(*page.At(kMargin + 708, kMargin + 8), 0);
}
