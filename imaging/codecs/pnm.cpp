#include <cctype>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"

// The portable bitmap, greymap and pixelmap, each in plain text (P1 to P3) and raw (P4 to P6).
namespace imaging {
namespace {

/// Numbers in text, with comments from # to the end of a line between them.
class Numbers {
 public:
  static constexpr std::int64_t kNone = -1;

  /// The next number; none if something else comes or it is too large for anything.
  static std::int64_t Next(ByteReader& data) {
    int letter = Token(data);
    if (std::isdigit(letter) == 0) return kNone;
    constexpr std::int64_t kMost = 0x7fffffff;
    std::int64_t value = 0;
    for (; std::isdigit(letter) != 0 && value <= kMost; letter = data.U8())
      value = value * 10 + (letter - '0');
    if (letter == '#') SkipComment(data);
    return value <= kMost ? value : kNone;
  }
  /// Digits of plain bitmaps need nothing between them.
  static std::int64_t NextDigit(ByteReader& data) {
    const int letter = Token(data);
    return letter == '0' || letter == '1' ? letter - '0' : kNone;
  }

 private:
  static int Token(ByteReader& data) {
    int letter = data.U8();
    for (; !data.AtEnd() && (std::isspace(letter) != 0 || letter == '#'); letter = data.U8())
      if (letter == '#') SkipComment(data);
    return letter;
  }
  static void SkipComment(ByteReader& data) {
    for (int letter = '#'; letter != '\n' && letter != '\r' && !data.AtEnd();) letter = data.U8();
  }
};

/// Of the letter behind the P.
struct Kind {
  bool plain;
  int samples;  ///< of a pixel
  bool bitmap;
  FileFormat format;
};
constexpr std::array<Kind, 6> kKinds = {{{true, 1, true, kFormatPbmPlain},
                                         {true, 1, false, kFormatPgmPlain},
                                         {true, 3, false, kFormatPpmPlain},
                                         {false, 1, true, kFormatPbm},
                                         {false, 1, false, kFormatPgm},
                                         {false, 3, false, kFormatPpm}}};

bool ReadPlainSamples(ByteReader& data, std::uint64_t most, std::uint8_t* row, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::int64_t value = Numbers::Next(data);
    if (value == Numbers::kNone) return false;
    row[i] = ScaleLevel(static_cast<std::uint64_t>(value), most);
  }
  return true;
}

bool ReadPlainBits(ByteReader& data, std::uint8_t* row, std::size_t width) {
  std::vector<std::uint8_t> bits(width);
  for (std::uint8_t& bit : bits) {
    const std::int64_t value = Numbers::NextDigit(data);
    if (value == Numbers::kNone) return false;
    bit = static_cast<std::uint8_t>(value);
  }
  PackSamples(bits.data(), 1, row, static_cast<int>(width));
  return true;
}

void ReadRawSamples(ByteReader& data, std::uint64_t most, std::uint8_t* row, std::size_t count) {
  if (most > 255) {
    for (std::size_t i = 0; i < count; ++i) row[i] = ScaleLevel(data.BigU16(), most);
    return;
  }
  data.Read(std::span(row, count));
  for (std::size_t i = 0; most < 255 && i < count; ++i) row[i] = ScaleLevel(row[i], most);
}

RasterPage ReadPnm(const Source& source) {
  ByteReader header(source, 1);
  const Kind kind = kKinds.at(static_cast<std::size_t>(header.U8() - '1'));
  const std::int64_t width = Numbers::Next(header);
  const std::int64_t height = Numbers::Next(header);
  const std::int64_t most = kind.bitmap ? 1 : Numbers::Next(header);
  if (width == Numbers::kNone || height == Numbers::kNone || most < 1 || most > 0xffff)
    Fail(kErrorCorrupt, "%s: the header isn't three numbers", source.Name().c_str());
  RasterPage page = MakePage(source, kind.format, width, height,
                             kind.bitmap ? 1 : kind.samples * (most > 255 ? 16 : 8), "None");
  page.memoryBits = kind.bitmap ? 1 : kind.samples * 8;
  if (kind.bitmap) page.colors = OneIsBlack();
  page.dataOffset = header.Position();  // one space, or a comment, ended the last number
  const auto pixels = static_cast<std::size_t>(width);
  const auto samples = pixels * static_cast<std::size_t>(kind.samples);
  page.nextRow = [=](ByteReader& data, std::uint8_t* row) {
    if (kind.plain)
      return kind.bitmap ? ReadPlainBits(data, row, pixels)
                         : ReadPlainSamples(data, static_cast<std::uint64_t>(most), row, samples);
    if (kind.bitmap)
      data.Read(std::span(row, (pixels + 7) / 8));
    else
      ReadRawSamples(data, static_cast<std::uint64_t>(most), row, samples);
    return !data.AtEnd();
  };
  return page;
}

bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  return head.size() >= 8 && head[0] == 'P' && head[1] >= '1' && head[1] <= '6' &&
         (std::isspace(head[2]) != 0 || head[2] == '#');
}

}  // namespace

const Codec kPnmCodec = {Recognise, OpenRasterAs<ReadPnm>};

}  // namespace imaging
