#include <gtest/gtest.h>

#include <initializer_list>

#include "imaging/helper/place.h"
#include "tests/helper/damage.h"
#include "tests/imaging/codec_files.h"

// Drawings of other systems: a blue box in the middle of the sheet, in each of their languages.

namespace codec_test {
namespace {

class Writer {
 public:
  Writer& U16(std::initializer_list<int> values) {
    for (const int value : values) Add(static_cast<std::uint32_t>(value), 2);
    return *this;
  }
  Writer& U32(std::initializer_list<std::int64_t> values) {
    for (const std::int64_t value : values) Add(static_cast<std::uint32_t>(value), 4);
    return *this;
  }
  Writer& Text(const char* text) {
    while (*text != '\0') m_bytes.push_back(static_cast<std::uint8_t>(*text++));
    return *this;
  }
  const Bytes& Take() const { return m_bytes; }

 private:
  void Add(std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) m_bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  }
  Bytes m_bytes;
};

/// A sheet of 72 by 36 points, 1440 units an inch.
Bytes MakeWmf() {
  constexpr int kCheck = 0xcdd7 ^ 0x9ac6 ^ 1440 ^ 720 ^ 1440;
  Writer out;
  out.U16({0xcdd7, 0x9ac6, 0, 0, 0, 1440, 720, 1440, 0, 0, kCheck});
  constexpr int kWords = 9 + 5 + 5 + 8 + 4 + 2 * (7 + 4 + 7) + 3;
  out.U16({1, 9, 0x300, kWords, 0, 3, 8, 0, 0});
  out.U16({5, 0, 0x20b, 0, 0});           // window origin
  out.U16({5, 0, 0x20c, 720, 1440});      // and extent
  out.U16({8, 0, 0x2fa, 5, 0, 0, 0, 0});  // no pen, selected
  out.U16({4, 0, 0x12d, 0});
  out.U16({7, 0, 0x2fc, 0, 0xffff, 0xff, 0});  // white brush, selected, and the whole sheet: what isn't drawn
  out.U16({4, 0, 0x12d, 1});                   // is cut off
  out.U16({7, 0, 0x41b, 720, 1440, 0, 0});
  out.U16({7, 0, 0x2fc, 0, 0, 0xff, 0});  // blue brush, selected, and the box
  out.U16({4, 0, 0x12d, 2});
  out.U16({7, 0, 0x41b, 540, 1080, 180, 360});
  out.U16({3, 0, 0});
  return out.Take();
}

/// 96 by 48 pixels of a device with 96 dots per inch.
Bytes MakeEmf() {
  Writer out;
  constexpr int kBytes = 88 + 24 + 12 + 12 + 24 + 20;
  out.U32({1, 88, 0, 0, 96, 48, 0, 0, 2540, 1270}).Text(" EMF");
  out.U32({0x10000, kBytes, 6}).U16({2, 0}).U32({0, 0, 0, 960, 960, 254, 254});
  out.U32({39, 24, 1, 0, 0xff0000, 0});  // solid brush
  out.U32({37, 12, 1});                  // selected
  out.U32({37, 12, 0x80000008});         // no pen
  out.U32({43, 24, 24, 12, 72, 36});     // rectangle
  out.U32({14, 20, 0, 16, 20});
  return out.Take();
}

/// 1200 units an inch, counted from the bottom; records of a kind and a length.
Bytes MakeWpg() {
  Writer out;
  out.U16({0x57ff, 0x4350, 16, 0, 0x1601, 1, 0, 0});
  out.U16({0x60f, 0x0001}).U16({1200, 600});         // version and sheet
  out.U16({0xa0e, 0, 2, 0xffff, 0x00ff, 0xff00});    // white and blue
  out.U16({0x201, 0x0101}).U16({0x402, 0, 0});       // solid blue, no line
  out.U16({0x807, 300, 150, 600, 300}).U16({0x10});  // rectangle, and the end
  return out.Take();
}

/// Points counted from the bottom of a box that lies off the origin; the comments tell it at the end.
Bytes MakePostScript(const std::string& program = "0 0 1 setrgbcolor 28 29 36 18 rectfill showpage") {
  const std::string text = "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: (atend)\n%%EndComments\n" + program +
                           "\n%%Trailer\n%%BoundingBox: 10 20 82 56\n%%EOF\n";
  return {text.begin(), text.end()};
}

/// The program alone, or with a header and a preview in front.
Bytes WithMetafile(const Bytes& program, const Bytes& metafile) {
  Writer out;
  const auto size = std::ssize(program);
  out.U32({0xc6d3d0c5, 32 + std::ssize(metafile), size, 32, std::ssize(metafile), 0, 0, 0xffff});
  Bytes file = out.Take();
  file.insert(file.end(), metafile.begin(), metafile.end());
  file.insert(file.end(), program.begin(), program.end());
  return file;
}

struct Drawing {
  const char* module;
  const char* name;
  int code;
  Bytes file;
};

std::vector<Drawing> Drawings() {
  std::vector<Drawing> drawings;
  for (const Drawing& drawing : {Drawing{"wmf", "WMF", 15, MakeWmf()}, Drawing{"emf", "EMF", 116, MakeEmf()},
                                 Drawing{"wpg", "WPG", 54, MakeWpg()},
                                 Drawing{"wmf", "WMF", 64, WithMetafile(MakePostScript(), MakeWmf())},
                                 Drawing{"eps", "EPS", 16, MakePostScript()},
                                 Drawing{"eps", "EPS", 16, WithMetafile(MakePostScript(), {})}})
    if (imaging::helper_client::HasModule(drawing.module)) drawings.push_back(drawing);
  return drawings;
}

TEST(Drawings, AreDrawnAtTheResolutionAskedFor) {
  constexpr Color kBlue = {0, 0, 255, 255};
  constexpr Color kWhite = {255, 255, 255, 255};
  for (const Drawing& drawing : Drawings())
    for (const int dots : {0, 72, 300}) {
      SCOPED_TRACE(std::string(drawing.name) + " at " + std::to_string(dots));
      LEADTOOLS::SetDrawnResolution(dots);
      const Loaded page = LoadMemory(drawing.file);
      ASSERT_EQ(page.error, "");
      const int inch = dots == 0 ? 200 : dots;
      EXPECT_EQ(page.info.Format, drawing.code);
      EXPECT_STREQ(page.info.Compression, drawing.name);
      EXPECT_EQ(page.record.XResolution, inch);
      EXPECT_EQ(page.record.Width, inch);
      EXPECT_EQ(page.record.Height, inch / 2);
      EXPECT_EQ(ColorAt(page, inch / 2, inch / 4), kBlue);
      EXPECT_EQ(ColorAt(page, inch * 5 / 16, inch / 4), kBlue);
      EXPECT_EQ(ColorAt(page, inch * 3 / 16, inch / 4), kWhite);
      EXPECT_EQ(ColorAt(page, inch / 2, inch / 16), kWhite);
    }
  LEADTOOLS::SetDrawnResolution(0);
}

// What a program does to a document that it is put in, and what it may not do at all.
TEST(Drawings, PostScriptPrograms) {
  if (!imaging::helper_client::HasModule("eps")) GTEST_SKIP() << "the module eps isn't installed";
  struct Case {
    const char* program;
    const char* fault;  ///< in the error's text; empty: the middle is blue
  };
  const std::string box = "0 0 1 setrgbcolor 28 29 36 18 rectfill ";
  for (const auto& [program, fault] : std::initializer_list<Case>{
           {"quit", ""},
           {"<< /PageSize [9 9] >> setpagedevice", ""},
           {"1 2 3 userdict begin", ""},
           {"save /leftover exch def", ""},
           {"showpage 1 0 0 setrgbcolor 0 0 9 9 rectfill", ""},
           {"nonsense", "undefined in nonsense"},
           {"1 0 div", "undefinedresult in div"},
           {"(/etc/passwd) (r) file", "invalidfileaccess in"},
           {"(/tmp/x) (w) file", "invalidfileaccess in"},
           {"(%pipe%ls) (r) file", "invalidfileaccess in"},
       }) {
    SCOPED_TRACE(program);
    const Loaded page = LoadMemory(MakePostScript(box + program));
    if (*fault != '\0') {
      EXPECT_NE(page.error.find(fault), std::string::npos) << page.error;
      continue;
    }
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(ColorAt(page, 100, 50), (Color{0, 0, 255, 255}));
  }
  // Its fonts are there.
  const Loaded text =
      LoadMemory(MakePostScript("/Helvetica findfont 30 scalefont setfont 12 26 moveto (III) show"));
  ASSERT_EQ(text.error, "");
  int changes = 0;
  for (int x = 1; x < text.record.Width; ++x)
    if ((ColorAt(text, x, 50).red < 128) != (ColorAt(text, x - 1, 50).red < 128)) ++changes;
  EXPECT_EQ(changes, 6);
}

TEST(Drawings, DamagedFiles) {
  for (const Drawing& drawing : Drawings())
    ExpectPageOrError(drawing.file, {7, 0, drawing.file.size() * 8, 61});
}

}  // namespace
}  // namespace codec_test
