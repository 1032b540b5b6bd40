#include <algorithm>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"

// Truevision's Targa. Old files have no mark at all, and new ones only at their end.
namespace imaging {
namespace {

constexpr std::size_t kHeaderBytes = 18;

struct Header {
  int idBytes;
  bool table;
  int type;  ///< 1 indices, 2 colours, 3 grey; 8 more where runs are coded
  int firstColor;
  int colorCount;
  int colorBits;
  int width;
  int height;
  int bits;
  int alphaBits;
  bool rightToLeft;
  bool topDown;
  bool interleaved;

  explicit Header(std::span<const std::uint8_t> bytes)
      : idBytes(bytes[0]),
        table(bytes[1] == 1),
        type(bytes[2]),
        firstColor(static_cast<int>(LittleU16(&bytes[3]))),
        colorCount(static_cast<int>(LittleU16(&bytes[5]))),
        colorBits(bytes[7]),
        width(static_cast<int>(LittleU16(&bytes[12]))),
        height(static_cast<int>(LittleU16(&bytes[14]))),
        bits(bytes[16]),
        alphaBits(bytes[17] & 15),
        rightToLeft((bytes[17] & 0x10) != 0),
        topDown((bytes[17] & 0x20) != 0),
        interleaved((bytes[17] & 0xc0) != 0) {}

  bool Packed() const { return (type & 8) != 0; }
  bool Indexed() const { return (type & 7) == 1; }
  bool Gray() const { return (type & 7) == 3; }
  std::int64_t TableBytes() const { return table ? std::int64_t{colorCount} * ((colorBits + 7) / 8) : 0; }

  /// Grey with alpha has 16 bits; so has colour of 5 bits a channel, with or without one of alpha.
  bool Alpha() const { return Gray() ? bits == 16 : (bits == 16 || bits == 32) && alphaBits > 0; }
  bool SoundDepth() const {
    if ((type & ~8) < 1 || (type & ~8) > 3) return false;
    if (Indexed()) return bits == 8;
    return Gray() ? bits == 8 || bits == 16 : bits == 15 || bits == 16 || bits == 24 || bits == 32;
  }
  bool SoundTable() const {
    if (!table) return firstColor == 0 && colorCount == 0;
    return colorCount > 0 && (colorBits == 15 || colorBits == 16 || colorBits == 24 || colorBits == 32);
  }
};

RunStep NextStep(ByteReader& data) {
  const int code = data.U8();
  return {code < 128 ? RunStep::kLiteral : RunStep::kRepeat, (code & 127) + 1};
}

/// One colour of 15 to 32 bits as blue, green, red and alpha.
std::array<std::uint8_t, 4> ColorAt(const std::uint8_t* stored, int bits) {
  if (bits > 16) return {stored[0], stored[1], stored[2], bits == 32 ? stored[3] : std::uint8_t{255}};
  const unsigned value = LittleU16(stored);
  return {ScaleLevel(value & 31, 31), ScaleLevel(value >> 5 & 31, 31), ScaleLevel(value >> 10 & 31, 31),
          (value & 0x8000) != 0 ? std::uint8_t{255} : std::uint8_t{0}};
}

/// Indices count from 0, but the table may begin with a later colour.
std::vector<RGBQUAD> ReadTable(const Source& source, const Header& header) {
  std::vector<RGBQUAD> colors(static_cast<std::size_t>(std::min(header.firstColor, 255)));
  const int bytes = (header.colorBits + 7) / 8;
  ByteReader data(source, static_cast<std::int64_t>(kHeaderBytes) + header.idBytes);
  for (int i = 0; i < header.colorCount && colors.size() < 256; ++i) {
    std::array<std::uint8_t, 4> stored{};
    data.Read(std::span(stored).first(static_cast<std::size_t>(bytes)));
    const auto color = ColorAt(stored.data(), header.colorBits);
    colors.push_back({color[0], color[1], color[2], 0});
  }
  return colors;
}

/// Writes one stored pixel in the depth of memory.
void StorePixel(const std::uint8_t* stored, const Header& header, int memoryBits, std::uint8_t* pixel) {
  if (memoryBits == 8) {
    *pixel = *stored;
    return;
  }
  const auto color =
      header.Gray() ? std::array{stored[0], stored[0], stored[0], stored[1]} : ColorAt(stored, header.bits);
  std::copy_n(color.begin(), memoryBits / 8, pixel);
}

void StoreLine(std::span<const std::uint8_t> line, const Header& header, int memoryBits, std::uint8_t* row) {
  const int bytes = (header.bits + 7) / 8;
  for (int x = 0; x < header.width; ++x) {
    const std::ptrdiff_t target = header.rightToLeft ? header.width - 1 - x : x;
    StorePixel(line.data() + static_cast<std::ptrdiff_t>(x) * bytes, header, memoryBits,
               row + target * (memoryBits / 8));
  }
}

RasterPage ReadTarga(const Source& source) {
  const Header header(ReadHeader<kHeaderBytes>(source));
  if (!header.SoundDepth() || header.interleaved || (header.Indexed() && !header.SoundTable()))
    Fail(kErrorUnsupported, "%s: a Targa file of type %d and %d bits can't be decoded", source.Name().c_str(),
         header.type, header.bits);
  RasterPage page = MakePage(source, kFormatTarga, header.width, header.height, header.bits,
                             header.Packed() ? "RLE" : "None");
  page.info.order = 1;
  page.memoryBits = header.Alpha() ? 32 : header.bits == 8 ? 8 : 24;
  page.expansion = 128;
  if (header.Indexed()) page.colors = ReadTable(source, header);
  page.dataOffset = static_cast<std::int64_t>(kHeaderBytes) + header.idBytes + header.TableBytes();
  page.bottomUp = !header.topDown;
  const auto unit = static_cast<std::size_t>((header.bits + 7) / 8);
  std::vector<std::uint8_t> line(static_cast<std::size_t>(header.width) * unit);
  page.nextRow = [=, memoryBits = page.memoryBits, runs = RunDecoder<NextStep>(unit)](
                     ByteReader& data, std::uint8_t* row) mutable {
    if (header.Packed())
      runs.Read(data, line);
    else
      data.Read(line);
    StoreLine(line, header, memoryBits, row);
    return !data.AtEnd();
  };
  return page;
}

/// Without a mark every field must make sense; under its own name a file may hold nonsense where no table is.
bool Recognise(const Candidate& candidate) {
  if (candidate.head.size() < kHeaderBytes || candidate.head[1] > 1) return false;
  const Header header(candidate.head);
  return header.SoundDepth() && header.Indexed() <= header.table &&
         (header.SoundTable() || (!header.table && candidate.ending == "tga")) && !header.interleaved &&
         header.alphaBits <= 8 && header.width > 0 && header.height > 0;
}

}  // namespace

const Codec kTargaCodec = {Recognise, OpenRasterAs<ReadTarga>, Evidence::kLikeness};

}  // namespace imaging
