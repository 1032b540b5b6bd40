#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "imaging/codecs/fax.h"
#include "tests/imaging/fax_files.h"

// The fax decoder against libtiff, an independent encoder and decoder.
namespace codec_test {
namespace {

using imaging::FaxDecoder;

struct Strip {
  Bytes coded;  ///< with padding
  std::size_t size = 0;
};

Strip Encode(const std::vector<Bytes>& rows, int width, int compression = COMPRESSION_CCITTFAX4) {
  Strip strip{EncodeFax(rows, width, compression)};
  strip.size = strip.coded.size();
  strip.coded.resize(strip.size + FaxDecoder::kPadding);
  return strip;
}

void ExpectRows(const std::vector<Bytes>& rows, int width) {
  const Strip strip = Encode(rows, width);
  FaxDecoder decoder(width);
  decoder.Start(std::span(strip.coded).first(strip.size));
  Bytes painted((static_cast<std::size_t>(width) + 63) / 64 * 8);
  for (std::size_t y = 0; y < rows.size(); ++y) {
    const FaxDecoder::Row row = decoder.Next();
    ASSERT_TRUE(row == FaxDecoder::Row::kDecoded || row == FaxDecoder::Row::kSameAsAbove) << "row " << y;
    const bool same = y == 0 ? rows[0] == Bytes(rows[0].size()) : rows[y] == rows[y - 1];
    EXPECT_EQ(row == FaxDecoder::Row::kSameAsAbove, same) << "row " << y;
    decoder.Paint(painted.data(), 0);
    if (width % 8 != 0) painted[rows[y].size() - 1] &= static_cast<std::uint8_t>(0xff00U >> width % 8);
    const auto [mine, theirs] =
        std::mismatch(painted.begin(), painted.begin() + std::ssize(rows[y]), rows[y].begin());
    ASSERT_EQ(theirs, rows[y].end()) << "row " << y << " byte " << theirs - rows[y].begin() << " of width "
                                     << width;
  }
  EXPECT_TRUE(decoder.WithinData());
  EXPECT_EQ(decoder.Next(), FaxDecoder::Row::kEndOfBlock);
}

TEST(FaxG4, RandomPages) {
  for (const int width : {1, 2, 7, 63, 64, 65, 129, 1728, 2480, 9000})
    for (unsigned seed = 1; seed <= 4; ++seed)
      ExpectRows(RandomFaxRows(width, 130, seed * 77 + static_cast<unsigned>(width)), width);
}

TEST(FaxG4, EveryRunLengthOfBothColours) {
  constexpr int kWidth = 6000;
  std::vector<Bytes> rows;
  for (int run = 1; run <= 2700; ++run) {
    Bytes row(kWidth / 8);
    ToggleFaxPixels(row, run % 2 == 0 ? 0 : run,
                    run % 2 == 0 ? run : run + run);  // white then black, or black first
    rows.push_back(row);
    rows.emplace_back(kWidth / 8, run % 2 == 0 ? 0xff : 0x00);  // far from the row above
  }
  ExpectRows(rows, kWidth);
}

TEST(FaxOneDimensional, RowsBetweenEndsOfLine) {
  constexpr int kWidth = 1000;
  const auto rows = RandomFaxRows(kWidth, 64, 9);
  const Strip strip = Encode(rows, kWidth, COMPRESSION_CCITTFAX3);
  FaxDecoder decoder(kWidth);
  Bytes painted(kWidth / 8 + 8);
  decoder.Start(std::span(strip.coded).first(strip.size));
  for (std::size_t y = 0; y < rows.size(); ++y) {
    ASSERT_EQ(decoder.NextOneDimensional(), FaxDecoder::Row::kDecoded) << y;
    decoder.Paint(painted.data(), 0);
    ASSERT_TRUE(std::equal(rows[y].begin(), rows[y].end(), painted.begin())) << "row " << y;
  }
  EXPECT_EQ(decoder.NextOneDimensional(), FaxDecoder::Row::kEndOfBlock);
}

TEST(FaxOneDimensional, OneEndOfLineWhereItIsWanted) {
  // Eight white pixels behind end-of-line codes: none, one, one after filling, the two that begin a page's
  // end.
  const std::pair<Bytes, FaxDecoder::Row> cases[] = {
      {{0x98}, FaxDecoder::Row::kDamaged},
      {{0x00, 0x19, 0x80}, FaxDecoder::Row::kDecoded},
      {{0x00, 0x00, 0x00, 0x19, 0x80}, FaxDecoder::Row::kDecoded},
      {{0x00, 0x10, 0x01, 0x98}, FaxDecoder::Row::kDamaged},
      {{0x00, 0x00, 0x00}, FaxDecoder::Row::kDamaged},
  };
  for (const auto& [strip, expected] : cases) {
    Bytes coded = strip;
    coded.resize(strip.size() + FaxDecoder::kPadding);
    FaxDecoder decoder(8);
    decoder.Start(std::span(coded).first(strip.size()));
    EXPECT_EQ(decoder.NextAfterEndOfLine(), expected) << strip.size() << " bytes";
  }
}

// libtiff finds one row in each strip of this file, which has no end-of-line codes. A line runs down its
// lower half, so a page that was read whole has black in most rows.
TEST(FaxOneDimensional, RowsWithoutEndsOfLine) {
  const std::string path = CorpusFolder() + "/fax-and-bilevel/testfax3_bug54_1dnoEOL.tif";
  if (!std::filesystem::exists(path)) GTEST_SKIP() << "no sample files";
  const Loaded page = LoadFile(path);
  ASSERT_EQ(page.error, "");
  int inked = 0;
  for (int y = 0; y < page.record.Height; ++y) {
    bool black = false;
    for (int x = 0; x < page.record.Width; ++x) black = black || IndexAt(*page.pixels, x, y) == 0;
    inked += black ? 1 : 0;
  }
  EXPECT_GT(inked, page.record.Height / 2);
}

TEST(FaxG4, DamageStopsIt) {
  const auto rows = RandomFaxRows(500, 64, 3);
  const Strip strip = Encode(rows, 500);
  int stopped = 0;
  for (std::size_t at = 0; at < strip.size; ++at) {
    Bytes coded = strip.coded;
    coded[at] ^= 0x5a;
    FaxDecoder decoder(500);
    decoder.Start(std::span(coded).first(strip.size));
    Bytes painted(64);
    for (int y = 0; y < 64; ++y) {
      const FaxDecoder::Row row = decoder.Next();
      if (row == FaxDecoder::Row::kDamaged || row == FaxDecoder::Row::kEndOfBlock) {
        ++stopped;
        break;
      }
      decoder.Paint(painted.data(), 0xff);
    }
  }
  EXPECT_GT(stopped, static_cast<int>(strip.size) / 2);
}

TEST(Fax, SampleFilesAgreeWithLibtiff) {
  if (!std::filesystem::exists(CorpusFolder() + "/TRUTH.tsv")) GTEST_SKIP() << "no sample files";
  for (const char* folder : {"fax-and-bilevel", "multipage", "orientation", "broken"})
    for (const auto& entry : std::filesystem::directory_iterator(CorpusFolder() + "/" + folder)) {
      const std::string path = entry.path().string();
      const Loaded page = LoadFile(path, 1, 1);
      // Two that the library doesn't read whole.
      const bool withEnds = page.info.Format == 27 && path.find("noEOL") == std::string::npos &&
                            path.find("bug_513") == std::string::npos;
      if (!page.error.empty() || (page.info.Format != 29 && !withEnds)) continue;
      SCOPED_TRACE(path);
      TIFF* tiff = TIFFOpen(path.c_str(), "r");
      std::uint16_t photometric = 0;
      TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
      const int flip = photometric == PHOTOMETRIC_MINISWHITE ? 1 : 0;
      Bytes row(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
      int y = 0;
      for (; y < page.record.Height &&
             TIFFReadScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) == 1;
           ++y)
        for (int x = 0; x < page.record.Width; ++x)
          ASSERT_EQ(IndexAt(*page.pixels, x, y),
                    (row[static_cast<std::size_t>(x / 8)] >> (7 - x % 8) & 1) ^ flip)
              << x << "," << y;
      EXPECT_EQ(y, page.record.Height);
      TIFFClose(tiff);
    }
}

}  // namespace
}  // namespace codec_test
