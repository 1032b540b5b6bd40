#include <gtest/gtest.h>

#include <array>

#include "imaging/core/exception.h"
#include "imaging/helper/place.h"
#include "tests/imaging/fax_files.h"

// Fax and archive files: raw fax, CALS, IOCA, Intergraph, previews of PostScript.
namespace codec_test {
namespace {

Bytes Join(const std::vector<Bytes>& parts) {
  Bytes whole;
  for (const Bytes& part : parts) whole.insert(whole.end(), part.begin(), part.end());
  return whole;
}

struct FaxKind {
  const char* ending;
  int compression;
  int options;
  int code;
  const char* name;
};
constexpr std::array kFaxKinds = {
    FaxKind{"g3", COMPRESSION_CCITTFAX3, 0, 66, "CCITT G3 1D"},
    FaxKind{"g3", COMPRESSION_CCITTFAX3, GROUP3OPT_FILLBITS, 66, "CCITT G3 1D"},
    FaxKind{"g3", COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING, 67, "CCITT G3 2D"},
    FaxKind{"fax", COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING | GROUP3OPT_FILLBITS, 67, "CCITT G3 2D"},
    FaxKind{"g4", COMPRESSION_CCITTFAX4, 0, 68, "CCITT G4"},
};

Bytes RawPage(const FaxKind& kind, const std::vector<Bytes>& rows, int width) {
  Bytes coded = EncodeFax(rows, width, kind.compression, kind.options);
  if (kind.code == 68) return coded;
  return Join({coded, ReturnToControl(kind.code == 67)});
}

TEST(RawFax, CodingWidthOrderAndPagesAreFound) {
  const TempFolder folder;
  for (const FaxKind& kind : kFaxKinds)
    for (const bool reversed : {false, true})
      for (const int width : {153, 1728, 2371}) {
        SCOPED_TRACE(std::string(kind.name) + " " + std::to_string(width) + (reversed ? " reversed" : ""));
        const std::array pages = {RandomFaxRows(width, 130, 5), RandomFaxRows(width, 1500, 8)};
        Bytes file = Join({RawPage(kind, pages[0], width), RawPage(kind, pages[1], width), Bytes(3)});
        if (reversed) ReverseFaxBits(file);
        const std::string path = folder.Path(std::string("a.") + kind.ending);
        WriteAll(path, file);
        for (const int page : {2, 1}) {
          const Loaded loaded = LoadFile(path, page, page == 1 ? 8 : 0);
          EXPECT_EQ(FaxDifference(loaded, pages[static_cast<std::size_t>(page) - 1]), "");
          EXPECT_EQ(loaded.info.DamagedRows, 0);
          EXPECT_EQ(loaded.record.BitsPerPixel, page == 1 ? 8 : 1);
        }
        const Information info = InformFile(path, 2);
        EXPECT_EQ(info.record.TotalPages, 2);
        EXPECT_EQ(info.record.Format, kind.code);
        EXPECT_STREQ(info.record.Compression, kind.name);
        EXPECT_EQ(info.record.XResolution, 204);
        EXPECT_EQ(info.record.YResolution, 196);
        EXPECT_EQ(InformFile(path, 1).record.YResolution, 98);
        // Without a name a clean start is enough; of group 4 only the usual widths are tried then.
        EXPECT_EQ(InformMemory(file).error.empty(), kind.code != 68 || width == 1728);
      }
}

TEST(RawFax, DamagedRowsShowTheRowAboveAndAreCounted) {
  constexpr int kWidth = 1728;
  auto rows = RandomFaxRows(kWidth, 60, 21);
  auto coded = EncodeFaxRows(rows, kWidth);
  int damaged = 0;
  for (std::size_t y = 5; y < rows.size(); y += 9, ++damaged) {
    for (std::size_t i = 3; i < coded[y].size(); ++i) coded[y][i] ^= 0x5a;
    rows[y] = rows[y - 1];
  }
  const Bytes file = Join({Join(coded), ReturnToControl()});
  const TempFolder folder;
  WriteAll(folder.Path("a.fax"), file);
  const Loaded page = LoadFile(folder.Path("a.fax"));
  EXPECT_EQ(FaxDifference(page, rows), "");
  EXPECT_EQ(page.info.DamagedRows, damaged);
  EXPECT_EQ(InformFile(folder.Path("a.fax")).record.DamagedRows, damaged);
}

// A two-dimensional row that refers to a damaged one is damaged as well, up to the next that stands alone.
TEST(RawFax, DamageSpreadsToTheRowsThatReferToIt) {
  constexpr int kWidth = 1728;
  const auto rows = RandomFaxRows(kWidth, 400, 2);
  Bytes file =
      Join({EncodeFax(rows, kWidth, COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING), ReturnToControl(true)});
  file[file.size() / 2] ^= 0xff;
  const Loaded page = LoadMemory(file);
  ASSERT_EQ(page.error, "");
  EXPECT_GE(page.info.DamagedRows, 1);
  EXPECT_LE(page.info.DamagedRows, 4);  // every fourth row stands alone at the fine resolution
  EXPECT_NEAR(page.record.Height, 400, 1);
}

TEST(RawFax, GroupFourEndsAtDamageAndGoesOnWithTheNextPage) {
  constexpr int kWidth = 1728;
  const auto rows = RandomFaxRows(kWidth, 200, 3);
  Bytes first = EncodeFax(rows, kWidth);
  first[first.size() / 2] ^= 0x5a;
  const TempFolder folder;
  WriteAll(folder.Path("a.g4"), Join({first, EncodeFax(rows, kWidth)}));
  const Loaded damaged = LoadFile(folder.Path("a.g4"), 1);
  EXPECT_GT(damaged.record.Height, 50);
  EXPECT_LT(damaged.record.Height, 200);
  EXPECT_EQ(damaged.info.DamagedRows, 1);
  EXPECT_EQ(FaxDifference(LoadFile(folder.Path("a.g4"), 2), rows), "");
}

TEST(RawFax, TakesNoOtherFile) {
  const std::string text = "All work and no play makes Jack a dull boy.\n";
  Bytes words;
  Bytes noise(20000);
  for (int i = 0; i < 500; ++i) words.insert(words.end(), text.begin(), text.end());
  for (std::size_t i = 0; i < noise.size(); ++i) noise[i] = static_cast<std::uint8_t>(i * i * 40503U >> 7);
  const TempFolder folder;
  const std::array<Bytes, 6> files = {words,       noise,      Bytes(20000), Bytes(20000, 0xff),
                                      Bytes{0, 1}, Bytes{0xff}};
  for (const Bytes& bytes : files) {
    SCOPED_TRACE(&bytes - files.data());
    EXPECT_EQ(LoadMemory(bytes).code, imaging::kErrorFileFormat);
    WriteAll(folder.Path("a.g3"), bytes);
    EXPECT_EQ(LoadFile(folder.Path("a.g3")).code, imaging::kErrorFileFormat);
  }
  WriteAll(folder.Path("b.g4"), MakeBmp(32, 32, 8, 0, Bytes(1024, 9), Bytes(1024, 3)));
  EXPECT_EQ(InformFile(folder.Path("b.g4")).record.Format, 6);
}

TEST(Cals, SizeOrientationAndResolution) {
  const auto rows = RandomFaxRows(300, 200, 4);
  const Bytes coded = EncodeFax(rows, 300);
  const std::string size = "\nrpelcnt: 000300,000200\nrdensty: 0240\n";
  struct Row {
    const char* directions;
    int orientation;
  };
  // The first pixel's corner and the way of the rows, turned against the clock.
  for (const Row& row : {Row{"000,270", 0}, Row{"000,090", 4}, Row{"090,270", 8}, Row{"090,090", 7},
                         Row{"180,270", 3}, Row{"180,090", 2}, Row{"270,270", 6}, Row{"270,090", 5}}) {
    const Loaded page =
        LoadMemory(MakeCals("rtype: 1\nrorient: " + std::string(row.directions) + size, coded));
    EXPECT_EQ(FaxDifference(page, rows), "");
    EXPECT_EQ(page.record.ViewPerspective, row.orientation);
    EXPECT_EQ(page.record.XResolution, 240);
    EXPECT_EQ(page.info.Format, 50);
  }
  EXPECT_EQ(LoadMemory(MakeCals("rtype: 2" + size, coded)).code, imaging::kErrorCorrupt);
  EXPECT_EQ(LoadMemory(MakeCals("rtype: 3" + size, coded)).code, imaging::kErrorUnsupported);
  EXPECT_EQ(LoadMemory(MakeCals("rpelcnt: 999999,99999999999999\n", coded)).code, imaging::kErrorCorrupt);
  EXPECT_EQ(LoadMemory(MakeCals("rpelcnt: 199999,199999\n", coded)).code, imaging::kErrorLimit);
  EXPECT_EQ(LoadMemory(MakeCals(size, Bytes(10))).code, imaging::kErrorCorrupt);
  // Rows that aren't there are white.
  const Loaded cut = LoadMemory(MakeCals(size, Bytes(coded.begin(), coded.begin() + 400)), 1, 8);
  ASSERT_EQ(cut.error, "");
  EXPECT_GT(cut.info.DamagedRows, 0);
  EXPECT_EQ(IndexAt(*cut.pixels, 7, 199), 255);
}

// White and black ones hold nothing; those on the edges are whole or cut. A picture in one piece is no tiled
// one.
TEST(Cals, TilesOfType2) {
  const int width = 300;
  auto rows = RandomFaxRows(width, 200, 4);
  for (std::size_t y = 0; y < 128; ++y) std::fill_n(rows[y].begin() + 16, 16, 0);
  for (std::size_t y = 128; y < 200; ++y) std::fill_n(rows[y].begin() + 16, 16, 0xff);
  for (const bool cut : {false, true})
    for (const bool endless : {false, true})
      for (const CalsTileForm& form :
           {CalsTileForm{128, {2, 0, 2, 3, 1, 2}, cut, endless}, CalsTileForm{64, {}, cut, endless},
            CalsTileForm{512, {3}, cut, endless}, CalsTileForm{0, {}, cut, endless}}) {
        SCOPED_TRACE(std::to_string(form.side) + (cut ? " cut" : "") + (endless ? " endless" : ""));
        const Loaded page = LoadMemory(MakeTiledCals(rows, width, form));
        EXPECT_EQ(page.error, "");
        if (!page.error.empty()) continue;
        EXPECT_EQ(FaxDifference(page, rows), "");
        EXPECT_EQ(page.info.Format, form.side == 0 ? 50 : 129);
        EXPECT_STREQ(page.info.Compression, "CCITT G4");
        EXPECT_EQ(page.info.XResolution, 300);
        EXPECT_EQ(page.info.DamagedRows, 0);
      }
  const Bytes whole = MakeTiledCals(rows, width, {128, {2, 0, 2, 3, 1, 2}});
  const Loaded part = LoadMemory(Bytes(whole.begin(), whole.end() - 500));
  ASSERT_EQ(part.error, "");
  EXPECT_GT(part.info.DamagedRows, 0);
  EXPECT_EQ(ColorAt(part, 299, 199).red, 255);
  EXPECT_EQ(LoadMemory(Bytes(whole.begin(), whole.begin() + 2070)).code, imaging::kErrorCorrupt);
}

TEST(Ioca, CodingsAloneAndInDocuments) {
  const auto rows = RandomFaxRows(300, 200, 6);
  for (const FaxKind& kind : kFaxKinds)
    for (const bool reversed : {false, true}) {
      IocaForm form;
      form.coding = 0x80 + kind.code - 66;
      form.reversed = reversed;
      Bytes coded = EncodeFax(rows, 300, kind.compression, kind.options);
      if (reversed) ReverseFaxBits(coded);
      const Bytes segment = MakeIoca(form, coded);
      const Loaded bare = LoadMemory(segment, 1, 8);
      EXPECT_EQ(FaxDifference(bare, rows), "");
      EXPECT_EQ(bare.info.Format, kind.code + 11);
      EXPECT_EQ(bare.record.XResolution, 240);
      EXPECT_EQ(bare.record.YResolution, 120);
      const Bytes document = MakeModca({segment, segment, segment});
      EXPECT_EQ(InformMemory(document).record.TotalPages, 3);
      const Loaded wrapped = LoadMemory(document, 3);
      EXPECT_EQ(FaxDifference(wrapped, rows), "");
      EXPECT_EQ(wrapped.info.Format, kind.code + 5);
      EXPECT_STREQ(wrapped.info.Compression, kind.name);
      EXPECT_EQ(LoadMemory(document, 4).code, imaging::kErrorPageNotFound);
    }
}

TEST(Ioca, UncompressedDepthsAndJpeg) {
  IocaForm form{40, 3, 3};
  const Loaded bilevel = LoadMemory(MakeIoca(form, Bytes{0x80, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0xff, 0, 0, 0, 0}));
  ASSERT_EQ(bilevel.error, "");
  EXPECT_EQ(ColorAt(bilevel, 0, 0).red, 0);  // a bit that is set is ink
  EXPECT_EQ(ColorAt(bilevel, 1, 0).red, 255);
  EXPECT_EQ(ColorAt(bilevel, 39, 0).red, 0);
  EXPECT_EQ(bilevel.info.Format, 0);
  form = {5, 2, 3, 8};
  for (const bool subtractive : {false, true}) {
    form.subtractive = subtractive;
    const Loaded gray = LoadMemory(MakeIoca(form, Bytes{10, 20, 30, 40, 50, 60, 70, 80, 90, 100}));
    ASSERT_EQ(gray.error, "");
    EXPECT_EQ(ColorAt(gray, 3, 1).red, subtractive ? 255 - 90 : 90);
  }
  form = {2, 2, 3, 24};
  const Loaded color = LoadMemory(MakeIoca(form, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
  ASSERT_EQ(color.error, "");
  EXPECT_EQ(ColorAt(color, 1, 1), (Color{10, 11, 12, 255}));
  form = {16, 16, 0x83, 8};
  const Loaded jpeg =
      LoadMemory(MakeIoca(form, MakeJpeg(16, 16, 1, false, [](int, int, int) { return std::uint8_t{90}; })));
  ASSERT_EQ(jpeg.error, "");
  EXPECT_NEAR(ColorAt(jpeg, 7, 7).red, 90, 2);
  EXPECT_EQ(jpeg.record.XResolution, 240);
  for (const int coding : {0x01, 0x84}) {
    form.coding = coding;
    EXPECT_EQ(LoadMemory(MakeIoca(form, Bytes(100))).code, imaging::kErrorUnsupported);
  }
  EXPECT_EQ(LoadMemory(MakeModca({})).code, imaging::kErrorUnsupported);
}

void AppendWord(Bytes& bytes, int word) {
  bytes.push_back(static_cast<std::uint8_t>(word));
  bytes.push_back(static_cast<std::uint8_t>(word >> 8));
}

/// The level of a pixel of the test raster.
int RasterLevel(int x, int y, int channel) {
  return (x / 3 * 29 + y / 2 * 71 + channel * 40) & 255;
}

/// Bytes in runs with signed counts, the literal ones of three.
Bytes SignedRuns(const Bytes& bytes) {
  Bytes coded;
  for (std::size_t i = 0; i < bytes.size();) {
    std::size_t same = 1;
    while (i + same < bytes.size() && bytes[i + same] == bytes[i] && same < 127) ++same;
    if (same > 1) {
      coded.push_back(static_cast<std::uint8_t>(256 - same));
      coded.push_back(bytes[i]);
      i += same;
    } else {
      const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
      coded.push_back(static_cast<std::uint8_t>(count));
      coded.insert(coded.end(), bytes.begin() + static_cast<std::ptrdiff_t>(i),
                   bytes.begin() + static_cast<std::ptrdiff_t>(i + count));
      i += count;
    }
  }
  return coded;
}

/// A rectangle of the test raster in a coding of Intergraph.
Bytes IntergraphBlock(int type, int left, int top, int width, int height, bool rowHeaders) {
  Bytes block;
  std::vector<Bytes> fax;
  for (int y = top; y < top + height; ++y) {
    const auto row = [&](int channels, int first) {
      Bytes bytes;
      for (int x = left; x < left + width; ++x)
        for (int c = first; c < first + channels; ++c)
          bytes.push_back(static_cast<std::uint8_t>(RasterLevel(x, y, c)));
      return bytes;
    };
    const Bytes gray = row(1, 0);
    const auto on = [&](int x) { return gray[static_cast<std::size_t>(x)] >= 128; };
    if (rowHeaders && (type == 9 || type == 10))
      for (const int word : {0x5900, 0, y, 0}) AppendWord(block, word);
    if (type == 9) {
      bool color = false;
      for (int x = 0; x < width || !color; color = !color) {
        int run = 0;
        while (x + run < width && on(x + run) == color) ++run;
        AppendWord(block, run);
        x += run;
      }
    } else if (type == 10) {
      for (int x = 0, run = 0; x < width; x += run) {
        for (run = 1;
             x + run < width && gray[static_cast<std::size_t>(x + run)] == gray[static_cast<std::size_t>(x)];)
          ++run;
        AppendWord(block, gray[static_cast<std::size_t>(x)]);
        AppendWord(block, run);
      }
    } else if (type == 24) {
      fax.emplace_back(static_cast<std::size_t>(width + 7) / 8);
      for (int x = 0; x < width; ++x)
        if (on(x)) ToggleFaxPixels(fax.back(), x, x + 1);
    } else if (type == 27) {
      for (int c = 0; c < 3; ++c) block = Join({block, SignedRuns(row(1, c))});
    } else {
      block = Join({block, type == 28 ? row(3, 0) : type == 29 ? SignedRuns(gray) : gray});
    }
  }
  if (type != 24) return block;
  block = EncodeFax(fax, width);
  ReverseFaxBits(block);
  return block;
}

TEST(Intergraph, EveryTypeInRowsAndTiles) {
  constexpr int kWidth = 77;
  constexpr int kHeight = 50;
  constexpr std::array kOrientations = {5, 6, 8, 7, 0, 2, 4, 3};
  int scanLines = 0;
  for (const int type : {2, 9, 10, 24, 27, 28, 29})
    for (const int tile : {0, 32})
      for (const bool special : {false, true}) {  // a palette, headers of rows
        SCOPED_TRACE("type " + std::to_string(type) + " tile " + std::to_string(tile));
        scanLines = (scanLines + 1) % 8;
        std::vector<Bytes> blocks;
        const int step = tile == 0 ? 1000 : tile;
        for (int y = 0; y < kHeight; y += step)
          for (int x = 0; x < kWidth; x += step)
            blocks.push_back(IntergraphBlock(type, x, y, std::min(step, kWidth - x),
                                             std::min(step, kHeight - y), special));
        const Bytes file = MakeIntergraph({type, kWidth, kHeight, scanLines, tile, special}, blocks);
        const Loaded page = LoadMemory(file);
        ASSERT_EQ(page.error, "");
        EXPECT_EQ(page.info.Format, 122);
        EXPECT_EQ(page.record.ViewPerspective, kOrientations[static_cast<std::size_t>(scanLines)]);
        const bool bilevel = type == 9 || type == 24;
        const bool colors = type == 27 || type == 28;
        EXPECT_EQ(page.record.BitsPerPixel, bilevel ? 1 : colors ? 24 : 8);
        for (int y = 0; y < kHeight; ++y)
          for (int x = 0; x < kWidth; ++x) {
            int red = RasterLevel(x, y, 0);
            if (bilevel) red = red < 128 ? 255 : 0;  // on is black, whatever the palette
            if (special && !bilevel && !colors) red = 255 - red;
            ASSERT_EQ(ColorAt(page, x, y).red, red) << x << "," << y;
            if (colors) {
              ASSERT_EQ(ColorAt(page, x, y).blue, RasterLevel(x, y, 2)) << x << "," << y;
            }
          }
        EXPECT_EQ(LoadMemory(file, 1, 8).error, "");
      }
  EXPECT_EQ(LoadMemory(MakeIntergraph({30, 10, 10, 4, 0, false}, {Bytes(100)})).code,
            imaging::kErrorUnsupported);
  EXPECT_EQ(LoadMemory(MakeIntergraph({9, 100000, 100000, 4, 0, false}, {Bytes(100)})).code,
            imaging::kErrorLimit);
}

TEST(EpsPreview, IsATiffInside) {
  TiffForm form{"preview", 8, 3, PHOTOMETRIC_RGB};
  const Loaded whole = LoadMemory(MakeTiff({form}));
  const Loaded page = LoadMemory(MakeEps(MakeTiff({form})));
  ASSERT_EQ(page.error, "");
  EXPECT_EQ(page.info.Format, 63);
  EXPECT_EQ(page.info.BitsPerPixel, 24);
  EXPECT_EQ(ColorAt(page, 11, 13), ColorAt(whole, 11, 13));
  const bool drawn = imaging::helper_client::HasModule("eps");  // which misses the box
  EXPECT_EQ(LoadMemory(MakeEps({})).code, drawn ? imaging::kErrorCorrupt : imaging::kErrorFileFormat);
  EXPECT_EQ(LoadMemory(MakeEps(Bytes(100), true)).code, imaging::kErrorCorrupt);
  EXPECT_EQ(LoadMemory(MakeEps(Bytes(100))).code, imaging::kErrorCorrupt);
  EXPECT_EQ(LoadMemory(MakeEps(MakeEps(MakeTiff({form})))).code, imaging::kErrorCorrupt);
}

TEST(ExifTiff, IsNamedByItsDirectory) {
  const TempFolder folder;
  for (const int photometric : {PHOTOMETRIC_MINISBLACK, PHOTOMETRIC_RGB, PHOTOMETRIC_YCBCR}) {
    TIFF* tiff = TIFFOpen(folder.Path("a.tif").c_str(), "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, 4);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, 1);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, photometric == PHOTOMETRIC_MINISBLACK ? 1 : 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
    if (photometric == PHOTOMETRIC_YCBCR) TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
    TIFFSetField(tiff, TIFFTAG_EXIFIFD, std::uint64_t{8});
    Bytes row(12, 100);
    TIFFWriteScanline(tiff, row.data(), 0, 0);
    TIFFClose(tiff);
    EXPECT_EQ(InformFile(folder.Path("a.tif")).record.Format, photometric == PHOTOMETRIC_RGB     ? 96
                                                              : photometric == PHOTOMETRIC_YCBCR ? 97
                                                                                                 : 3);
  }
}

}  // namespace
}  // namespace codec_test
