#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax_page.h"
#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/runs.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

// Intergraph raster files (COT, CIT, RLE), of one page, in rows or tiles. Numbers are little-endian.
namespace imaging {
namespace {

/// Codes of the data type.
enum class DataType : unsigned {
  kBytes = 2,
  kBilevelRuns = 9,  ///< words: off and on pixels in turn
  kColorRuns = 10,   ///< words: a level and a count
  kGroup4 = 24,      ///< least significant bit first
  kRgbRuns = 27,     ///< for each row its red, green and blue levels as byte runs
  kRgb = 28,
  kByteRuns = 29,
  kTiled = 65,  ///< the real type is the tiles'
};

constexpr std::size_t kHeader = 1024;
constexpr std::size_t kTileDirectory = 128;
constexpr std::size_t kTileEntry = 12;

/// A rectangle of pixels and where its data lies: a tile, or the whole page.
struct Piece {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  std::int64_t offset = 0;
  std::int64_t size = 0;
};

struct IntergraphHeader {
  DataType type = DataType::kBytes;
  std::int64_t width = 0;
  std::int64_t height = 0;
  int orientation = 1;    ///< as in TIFF and Exif
  std::int64_t data = 0;  ///< offset
  int tileSize = 0;       ///< pixels of a side, 0 for rows
  std::vector<RGBQUAD> colors;
};

int Orientation(unsigned scanLines) {
  // From the corners upper left, upper right, lower left, lower right: columns first, then rows.
  constexpr std::array kNumbers = {5, 6, 8, 7, 1, 2, 4, 3};
  return kNumbers[scanLines % kNumbers.size()];
}

void ReadColors(const Source& source, const std::array<std::uint8_t, kHeader>& bytes,
                IntergraphHeader& header) {
  constexpr unsigned kWords = 2;  // kind of table: number, red, green, blue, sixteen bits each
  constexpr std::size_t kMost = 256;
  const std::size_t count = std::min<std::size_t>(LittleU32(&bytes[536]), kMost);
  if (LittleU16(&bytes[532]) != kWords || header.data < static_cast<std::int64_t>(kHeader + count * 8))
    return;
  std::array<std::uint8_t, kMost * 8> table{};
  if (!source.ReadExactly(kHeader, std::span(table).first(count * 8))) return;
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* entry = &table[i * 8];
    header.colors.push_back({entry[7], entry[5], entry[3], 0});
  }
}

IntergraphHeader ParseHeader(const Source& source) {
  const auto bytes = ReadHeader<kHeader>(source);
  IntergraphHeader header;
  header.data = std::int64_t{LittleU16(&bytes[2])} * 2 + 4;
  header.type = static_cast<DataType>(LittleU16(&bytes[4]));
  header.width = LittleU32(&bytes[184]);
  header.height = LittleU32(&bytes[188]);
  header.orientation = Orientation(bytes[194]);
  ReadColors(source, bytes, header);
  if (header.type != DataType::kTiled) return header;
  const auto directory = ReadHeader<kTileDirectory>(source, header.data);
  header.type = static_cast<DataType>(LittleU16(&directory[18]));
  header.tileSize = static_cast<int>(std::min<std::uint32_t>(LittleU32(&directory[120]), INT32_MAX));
  if (header.tileSize == 0 || header.tileSize % 8 != 0)
    Fail(kErrorUnsupported, "%s: tiles of %d pixels", source.Name().c_str(), header.tileSize);
  return header;
}

int BitsOf(DataType type) {
  switch (type) {
    case DataType::kBilevelRuns:
    case DataType::kGroup4:
      return 1;
    case DataType::kRgb:
    case DataType::kRgbRuns:
      return 24;
    default:
      return 8;
  }
}

const char* CompressionName(DataType type) {
  if (type == DataType::kGroup4) return FaxCodingName(FaxCoding::kGroup4);
  return type == DataType::kBytes || type == DataType::kRgb ? "None" : "RLE";
}

/// A signed count: so many bytes follow, or one that is repeated.
RunStep NextSignedRun(ByteReader& data) {
  constexpr int kNegative = 128;
  int count = data.U8();
  if (count >= kNegative) count -= 2 * kNegative;
  return {count < 0 ? RunStep::kRepeat : RunStep::kLiteral, std::abs(count)};
}

/// The bytes of a piece.
class PieceReader {
 public:
  PieceReader(const Source& source, const Piece& piece)
      : m_window(OpenWindowSource(source, piece.offset, piece.size)), m_reader(*m_window) {}

  bool AtEnd() const { return m_reader.AtEnd(); }
  void Read(std::span<std::uint8_t> row) { m_reader.Read(row); }
  unsigned Word() { return m_reader.LittleU16(); }
  /// A row may have its own header: a mark, the words of the row, its number, its first pixel.
  unsigned FirstWord() {
    constexpr unsigned kRowMark = 0x5900;
    const unsigned word = Word();
    if (word != kRowMark) return word;
    for (int i = 0; i < 3; ++i) Word();
    return Word();
  }
  void ReadRuns(std::span<std::uint8_t> row) { m_runs.Read(m_reader, row); }

 private:
  std::unique_ptr<Source> m_window;
  ByteReader m_reader;
  RunDecoder<NextSignedRun> m_runs;
};

/// Off and on pixels in turn; a row begins with an off run, which may be empty, and ends with one. As in fax
/// coding, what is on is black; a colour table doesn't count for it.
void ReadBilevelRow(PieceReader& reader, std::uint8_t* row, int width) {
  std::memset(row, 0xff, (static_cast<std::size_t>(width) + 7) / 8);
  unsigned run = reader.FirstWord();
  int x = 0;
  for (bool on = false; !reader.AtEnd(); on = !on, run = reader.Word()) {
    const int end = std::min(width, x + static_cast<int>(run));
    for (; on && x < end; ++x) row[x / 8] &= static_cast<std::uint8_t>(~(0x80U >> x % 8));
    x = end;
    if (!on && x >= width) return;
  }
}

void ReadColorRow(PieceReader& reader, std::uint8_t* row, int width) {
  unsigned level = reader.FirstWord();
  for (int x = 0; x < width && !reader.AtEnd(); level = x < width ? reader.Word() : 0) {
    const auto count = static_cast<int>(std::min<unsigned>(reader.Word(), static_cast<unsigned>(width - x)));
    std::memset(row + x, static_cast<int>(level & 0xff), static_cast<std::size_t>(count));
    x += count;
  }
}

void ReadRgbRow(PieceReader& reader, std::uint8_t* row, int width) {
  std::vector<std::uint8_t> levels(static_cast<std::size_t>(width));
  for (int channel = 0; channel < 3; ++channel) {
    reader.ReadRuns(levels);
    for (int x = 0; x < width; ++x) row[x * 3 + channel] = levels[static_cast<std::size_t>(x)];
  }
}

void ReadRow(PieceReader& reader, DataType type, std::uint8_t* row, int width) {
  switch (type) {
    case DataType::kBilevelRuns:
      return ReadBilevelRow(reader, row, width);
    case DataType::kColorRuns:
      return ReadColorRow(reader, row, width);
    case DataType::kRgbRuns:
      return ReadRgbRow(reader, row, width);
    case DataType::kByteRuns:
      return reader.ReadRuns({row, static_cast<std::size_t>(width)});
    default:
      reader.Read({row, static_cast<std::size_t>(width) * static_cast<std::size_t>(BitsOf(type)) / 8});
  }
}

class IntergraphReader final : public Reader {
 public:
  explicit IntergraphReader(const Source& source) : m_source(source), m_header(ParseHeader(source)) {}

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, 1);
    RequireShowable();
    PageInfo info;
    info.format = kFormatIntergraph;
    info.width = static_cast<int>(m_header.width);
    info.height = static_cast<int>(m_header.height);
    info.bits = BitsOf(m_header.type);
    info.compression = CompressionName(m_header.type);
    info.viewPerspective = m_header.orientation == 1 ? 0 : m_header.orientation;
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& /*wish*/) override {
    DecodedPage decoded;
    PageInfo& info = decoded.info = Describe(page);
    // A run of words is 65,535 pixels at most, and group 4 coding has no bound.
    if (m_header.type != DataType::kGroup4)
      CheckPlausible(m_source, std::int64_t{info.width} * info.height * info.bits / 8,
                     CompressionName(m_header.type)[0] == 'N' ? 64 : 20000);
    decoded.pixels = PixelStorage::Create(info.width, info.height, info.bits);
    Blank(*decoded.pixels);
    bool any = false;
    for (const Piece& piece : Pieces()) any = ReadPiece(piece, *decoded.pixels, info) || any;
    if (!any) Fail(kErrorCorrupt, "%s: no row of the raster can be decoded", m_source.Name().c_str());
    if (info.bits == 8) SetPalette(*decoded.pixels, m_header.colors);
    return decoded;
  }

 private:
  void RequireShowable() const {
    static constexpr std::array kRead = {DataType::kBytes,   DataType::kBilevelRuns, DataType::kColorRuns,
                                         DataType::kGroup4,  DataType::kRgbRuns,     DataType::kRgb,
                                         DataType::kByteRuns};
    const char* name = m_source.Name().c_str();
    if (std::find(kRead.begin(), kRead.end(), m_header.type) == kRead.end())
      Fail(kErrorUnsupported, "%s: Intergraph raster of data type %u can't be decoded", name,
           static_cast<unsigned>(m_header.type));
    CheckPageSize(m_source, m_header.width, m_header.height);
    if (m_header.data >= m_source.Size()) Fail(kErrorCorrupt, "%s: the raster ends before its pixels", name);
  }

  std::vector<Piece> Pieces() const {
    const auto width = static_cast<int>(m_header.width);
    const auto height = static_cast<int>(m_header.height);
    const int side = m_header.tileSize;
    if (side == 0) return {{0, 0, width, height, m_header.data, m_source.Size()}};
    std::vector<Piece> pieces;
    ByteReader directory(m_source, m_header.data + static_cast<std::int64_t>(kTileDirectory));
    std::array<std::uint8_t, kTileEntry> entry{};
    for (int y = 0; y < height; y += side)
      for (int x = 0; x < width; x += side) {
        directory.Read(entry);
        if (directory.AtEnd()) return pieces;
        pieces.push_back({x, y, std::min(side, width - x), std::min(side, height - y),
                          m_header.data + LittleU32(&entry[0]), LittleU32(&entry[8])});
        if (side > width - x) break;
      }
    return pieces;
  }

  /// What isn't decoded is white, or the first colour.
  void Blank(PixelStorage& pixels) const {
    const int blank = pixels.Bits() == 8 && !m_header.colors.empty() ? 0 : 0xff;
    for (int y = 0; y < pixels.Height(); ++y) std::memset(pixels.Row(y), blank, pixels.RowBytes());
  }

  /// False if no row of the piece came out whole.
  bool ReadPiece(const Piece& piece, PixelStorage& pixels, PageInfo& info) const {
    return m_header.type == DataType::kGroup4 ? ReadFax(piece, pixels, info) : ReadRows(piece, pixels);
  }

  std::uint8_t* At(PixelStorage& pixels, const Piece& piece, int y) const {
    return pixels.Row(piece.y + y) + static_cast<std::ptrdiff_t>(piece.x) * pixels.Bits() / 8;
  }

  bool ReadRows(const Piece& piece, PixelStorage& pixels) const {
    PieceReader reader(m_source, piece);
    const std::size_t bytes = (static_cast<std::size_t>(piece.width) * pixels.Bits() + 7) / 8;
    std::vector<std::uint8_t> row(bytes);
    int y = 0;
    for (; y < piece.height; ++y) {
      ReadRow(reader, m_header.type, row.data(), piece.width);
      if (reader.AtEnd()) break;
      std::memcpy(At(pixels, piece, y), row.data(), bytes);
    }
    return y > 0;
  }

  bool ReadFax(const Piece& piece, PixelStorage& pixels, PageInfo& info) const {
    const FaxData data = FaxData::Read(m_source, piece.offset, piece.size, true);
    FaxRows rows(piece.width, FaxCoding::kGroup4);
    rows.Start(data.Coded());
    std::vector<std::uint8_t> row((static_cast<std::size_t>(piece.width) + 63) / 64 * 8);
    int y = 0;
    for (; y < piece.height && rows.Next() != FaxRows::Step::kEnd; ++y) {
      rows.Paint(row.data(), 0xff);
      std::memcpy(At(pixels, piece, y), row.data(), (static_cast<std::size_t>(piece.width) + 7) / 8);
    }
    info.damagedRows += piece.height - y;
    return y > 0;
  }

  const Source& m_source;
  IntergraphHeader m_header;
};

/// Type 9, version 8, two or three dimensions; then the words of a header in whole blocks of 512 bytes.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  constexpr unsigned kBlock = 512;
  if (head.size() < kBlock || head[0] != 0x08 || head[1] != 0x09) return false;
  const unsigned header = LittleU16(&head[2]) * 2 + 4;
  return header >= kHeader && header % kBlock == 0;
}

}  // namespace

extern const Codec kIntergraphCodec = {Recognise, OpenAs<IntergraphReader>};

}  // namespace imaging
