#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "imaging/codecs/cals_tiles.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax_page.h"
#include "imaging/core/exception.h"

// CALS raster (MIL-PRF-28002): sixteen records of text, then one page in group 4 coding (type I), or a
// document whose content portion holds such a page, or tiles of one (type II).
namespace imaging {
namespace {

constexpr std::size_t kRecord = 128;
constexpr std::size_t kHeader = 16 * kRecord;

struct CalsHeader {
  std::array<int, 1> type{1};
  std::array<int, 2> orientation{0, 270};  ///< degrees: of a row's pixels, of the rows against these
  std::array<int, 2> size{};               ///< pixels in a row, rows
  std::array<int, 1> density{};            ///< dots per inch
};

/// Numbers with something between them, as "000,270". Those that aren't there stay as they are.
template <std::size_t N>
void ReadNumbers(std::string_view text, std::array<int, N>& numbers) {
  for (int& number : numbers) {
    const std::size_t digit = text.find_first_of("0123456789");
    if (digit == std::string_view::npos) return;
    text.remove_prefix(digit);
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) number = 0;  // longer than any size could be
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  }
}

CalsHeader ReadHeader(const Source& source) {
  std::array<char, kHeader> text{};
  source.ReadAt(0, std::span(reinterpret_cast<std::uint8_t*>(text.data()), text.size()));
  CalsHeader header;
  for (std::size_t at = 0; at < kHeader; at += kRecord) {
    const std::string_view record(text.data() + at, kRecord);
    if (record.starts_with("rtype:")) ReadNumbers(record, header.type);
    if (record.starts_with("rorient:")) ReadNumbers(record, header.orientation);
    if (record.starts_with("rpelcnt:")) ReadNumbers(record, header.size);
    if (record.starts_with("rdensty:")) ReadNumbers(record, header.density);
  }
  return header;
}

/// The number of TIFF and Exif for a picture that is stored in rows of that direction. Degrees count against
/// the clock, from left to right; those of the row order from the direction of the pixels.
int Orientation(const CalsHeader& header) {
  constexpr std::array kRowsTurnedRight = {1, 8, 3, 6};
  constexpr std::array kRowsTurnedLeft = {4, 7, 2, 5};
  const int quarters = header.orientation[0] / 90 % 4;
  const auto& table = header.orientation[1] == 90 ? kRowsTurnedLeft : kRowsTurnedRight;
  return table[static_cast<std::size_t>(quarters)];
}

class CalsReader final : public Reader {
 public:
  explicit CalsReader(const Source& source) : m_source(source), m_header(ReadHeader(source)) {}

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, 1);
    const CalsTiles* tiles = Tiles();
    PageInfo info;
    info.format = tiles != nullptr && tiles->tileWidth != 0 ? kFormatCalsTiled : kFormatCals;
    info.width = tiles != nullptr && tiles->width != 0 ? tiles->width : m_header.size[0];
    info.height = tiles != nullptr && tiles->height != 0 ? tiles->height : m_header.size[1];
    CheckPageSize(m_source, info.width, info.height);
    info.bits = 1;
    info.compression = FaxCodingName(FaxCoding::kGroup4);
    const int orientation = Orientation(m_header);
    info.viewPerspective = orientation == 1 ? 0 : orientation;
    info.xResolution = info.yResolution = DotsPerInch(m_header.density[0]);
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    DecodedPage decoded;
    decoded.info = Describe(page);
    if (decoded.info.format == kFormatCalsTiled)
      DecodeTiles(decoded);
    else
      decoded.pixels = DecodeFaxPage(
          m_source, Tiles() != nullptr ? Tiles()->coded : FaxData::Read(m_source, kHeader, m_source.Size()),
          FaxCoding::kGroup4, wish, decoded.info);
    return decoded;
  }

 private:
  /// Null for type I.
  const CalsTiles* Tiles() {
    constexpr int kType1 = 1;
    constexpr int kType2 = 2;
    if (m_header.type[0] == kType1) return nullptr;
    if (m_header.type[0] != kType2)
      Fail(kErrorUnsupported, "%s: CALS raster of type %d can't be decoded", m_source.Name().c_str(),
           m_header.type[0]);
    if (!m_tiles) m_tiles = ReadCalsTiles(m_source, kHeader);
    return &*m_tiles;
  }

  void DecodeTiles(DecodedPage& decoded) {
    constexpr int kMostExpansion = 200'000;  // as a sheet that is white
    PageInfo& info = decoded.info;
    CheckPlausible(m_source, std::int64_t{info.width} * info.height, kMostExpansion);
    decoded.pixels = PixelStorage::Create(info.width, info.height, 1);
    info.damagedRows = std::min(info.height, DecodeCalsTiles(*Tiles(), *decoded.pixels));
  }

  const Source& m_source;
  CalsHeader m_header;
  std::optional<CalsTiles> m_tiles;
};

bool Recognise(const Candidate& candidate) {
  const std::string_view head(reinterpret_cast<const char*>(candidate.head.data()), candidate.head.size());
  return head.starts_with("srcdocid:") || head.starts_with("version: MIL-STD-1840");
}

}  // namespace

extern const Codec kCalsCodec = {Recognise, OpenAs<CalsReader>};

}  // namespace imaging
