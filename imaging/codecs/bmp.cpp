#include <algorithm>
#include <cstring>
#include <vector>

#include "imaging/codecs/bmp_header.h"
#include "imaging/codecs/bmp_rle.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax.h"
#include "imaging/codecs/rows.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

int FormatCode(const BmpHeader& header) {
  if (header.Os2V1()) return kFormatBmpOs2V1;
  if (header.Os2V2()) return kFormatBmpOs2V2;
  if (header.Embedded()) return kFormatNone;
  return header.coding == BmpCoding::kRle4 || header.coding == BmpCoding::kRle8 ? kFormatBmpRle : kFormatBmp;
}

const char* CompressionName(BmpCoding coding) {
  switch (coding) {
    case BmpCoding::kBitFields:
      return "None (bit fields)";
    case BmpCoding::kRle4:
      return "RLE4";
    case BmpCoding::kRle8:
      return "RLE8";
    case BmpCoding::kRle24:
      return "RLE24";
    case BmpCoding::kHuffman:
      return "Huffman 1D";
    case BmpCoding::kJpeg:
      return "JPEG";
    case BmpCoding::kPng:
      return "PNG";
    default:
      return "None";
  }
}

class FieldConverter {
 public:
  explicit FieldConverter(const BmpHeader& header)
      : m_bytes(header.bits / 8),
        m_red(header.masks[0]),
        m_green(header.masks[1]),
        m_blue(header.masks[2]),
        m_alpha(header.masks[3]) {}

  void Convert(const std::uint8_t* stored, std::uint8_t* row, int width) const {
    const int step = m_alpha.Present() ? 4 : 3;
    for (int x = 0; x < width; ++x, stored += m_bytes, row += step) {
      const std::uint32_t pixel = m_bytes == 2 ? LittleU16(stored) : LittleU32(stored);
      row[0] = m_blue.Level(pixel);
      row[1] = m_green.Level(pixel);
      row[2] = m_red.Level(pixel);
      if (step == 4) row[3] = m_alpha.Level(pixel);
    }
  }

 private:
  int m_bytes;
  BitField m_red;
  BitField m_green;
  BitField m_blue;
  BitField m_alpha;
};

class BmpReader final : public Reader {
 public:
  explicit BmpReader(const Source& source) : m_source(source), m_header(ReadBmpHeader(source)) {
    if (!m_header.Embedded()) return;
    const std::int64_t size = m_header.dataSize != 0 ? m_header.dataSize : source.Size();
    m_window = OpenWindowSource(source, m_header.dataOffset, size);
    const Codec& codec = m_header.coding == BmpCoding::kPng ? kPngCodec : kJpegCodec;
    m_embedded = OpenReaderOf(codec, *m_window);
    if (m_embedded == nullptr)
      Fail(kErrorCorrupt, "%s: the bitmap's embedded picture is missing", source.Name().c_str());
  }

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, 1);
    PageInfo info;
    if (m_embedded != nullptr) {
      info = m_embedded->Describe(1);
      info.viewPerspective = 0;
    } else {
      RequireShowable();
      info.width = static_cast<int>(m_header.width);
      info.height = static_cast<int>(m_header.height);
      info.bits = m_header.bits;
      info.order = 1;
    }
    info.format = FormatCode(m_header);
    info.compression = CompressionName(m_header.coding);
    info.xResolution = DotsPerInch(m_header.xPerMetre * kMetresPerInch);
    info.yResolution = DotsPerInch(m_header.yPerMetre * kMetresPerInch);
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    DecodedPage decoded;
    decoded.info = Describe(page);
    if (m_embedded != nullptr) {
      DecodedPage inner = m_embedded->Decode(1, wish);
      decoded.pixels = std::move(inner.pixels);
      decoded.order = inner.order;
      return decoded;
    }
    // A file that is cut off may lack most of its rows; a run is 255 pixels in two bytes, and a line may be
    // skipped.
    const bool plain = m_header.coding == BmpCoding::kNone || m_header.coding == BmpCoding::kBitFields;
    CheckPlausible(m_source, m_header.width * m_header.height * m_header.bits / 8, plain ? 64 : 1000);
    decoded.order = 1;
    decoded.pixels = PixelStorage::Create(static_cast<int>(m_header.width), static_cast<int>(m_header.height),
                                          MemoryBits());
    if (decoded.pixels->Bits() <= 8) SetPalette(*decoded.pixels, m_header.colors);
    if (!DecodePixels(*decoded.pixels))
      Fail(kErrorCorrupt, "%s: the bitmap ends before its pixels", m_source.Name().c_str());
    return decoded;
  }

 private:
  void RequireShowable() const {
    CheckPageSize(m_source, m_header.width, m_header.height);
    if (m_header.dataOffset >= m_source.Size())
      Fail(kErrorCorrupt, "%s: the bitmap ends before its pixels", m_source.Name().c_str());
  }

  int MemoryBits() const {
    if (m_header.bits == 2) return 8;
    if (m_header.bits == 16 || m_header.bits == 32) return m_header.masks[3] != 0 ? 32 : 24;
    return m_header.bits;
  }

  bool DecodePixels(PixelStorage& pixels) const {
    switch (m_header.coding) {
      case BmpCoding::kRle4:
        return DecodeBmpRle(m_source, m_header.dataOffset, BmpRle::kRle4, m_header.topDown, pixels);
      case BmpCoding::kRle8:
        return DecodeBmpRle(m_source, m_header.dataOffset, BmpRle::kRle8, m_header.topDown, pixels);
      case BmpCoding::kRle24:
        return DecodeBmpRle(m_source, m_header.dataOffset, BmpRle::kRle24, m_header.topDown, pixels);
      case BmpCoding::kHuffman:
        return ReadFaxRows(pixels);
      default:
        return ReadRows(pixels);
    }
  }

  /// OS/2's Huffman coding is the one-dimensional one of fax machines. Rows that it doesn't reach are white.
  bool ReadFaxRows(PixelStorage& pixels) const {
    const std::int64_t size = std::min(m_source.Size() - m_header.dataOffset, Limit().codecBytes);
    std::vector<std::uint8_t> coded(static_cast<std::size_t>(size));
    coded.resize(m_source.ReadAt(m_header.dataOffset, coded));
    const std::size_t there = coded.size();
    coded.resize(there + FaxDecoder::kPadding);
    FaxDecoder decoder(pixels.Width());
    decoder.Start(std::span(coded).first(there));
    int line = 0;
    const auto row = [&] { return pixels.Row(m_header.topDown ? line : pixels.Height() - 1 - line); };
    for (; line < pixels.Height() && decoder.NextOneDimensional() == FaxDecoder::Row::kDecoded; ++line)
      decoder.Paint(row(), 0);
    const bool any = line > 0;
    for (; line < pixels.Height(); ++line) std::memset(row(), 0, pixels.RowBytes());
    return any;
  }

  /// Rows that a file that is cut off doesn't have are white, or of the first colour.
  bool ReadRows(PixelStorage& pixels) const {
    const FieldConverter converter(m_header);
    const std::int64_t stride = (m_header.width * m_header.bits + 31) / 32 * 4;
    std::vector<std::uint8_t> stored(static_cast<std::size_t>(stride));
    const auto needed = static_cast<std::size_t>((m_header.width * m_header.bits + 7) / 8);
    ByteReader reader(m_source, m_header.dataOffset);
    int whole = 0;
    for (int line = 0; line < pixels.Height(); ++line) {
      FailIfEndWanted();
      std::uint8_t* row = pixels.Row(m_header.topDown ? line : pixels.Height() - 1 - line);
      reader.Read(std::span(stored).first(needed));
      const bool missing = reader.AtEnd();
      reader.Read(std::span(stored).subspan(needed));
      if (missing)
        std::memset(row, pixels.Bits() > 8 ? 0xff : 0, pixels.RowBytes());
      else
        StoreRow(stored.data(), row, pixels, converter);
      whole += missing ? 0 : 1;
    }
    const int first = m_header.topDown ? 0 : pixels.Height() - whole;
    if (pixels.Bits() == 32) MakeOpaqueIfClear(pixels, first, first + whole);
    return whole > 0;
  }

  void StoreRow(const std::uint8_t* stored, std::uint8_t* row, const PixelStorage& pixels,
                const FieldConverter& converter) const {
    if (m_header.bits == 2) {
      for (int x = 0; x < pixels.Width(); ++x) row[x] = stored[x / 4] >> (6 - x % 4 * 2) & 3;
    } else if (m_header.bits == 16 || m_header.bits == 32) {
      converter.Convert(stored, row, pixels.Width());
    } else {
      std::memcpy(row, stored, pixels.RowBytes());
    }
  }

  const Source& m_source;
  BmpHeader m_header;
  std::unique_ptr<Source> m_window;
  std::unique_ptr<Reader> m_embedded;
};

/// Two letters are a weak sign, so the size of the second header must make sense too.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (head.size() < 18 || head[0] != 'B' || head[1] != 'M') return false;
  const std::uint32_t headerSize = LittleU32(head.data() + 14);
  return headerSize >= 12 && headerSize <= 1000;
}

}  // namespace

const Codec kBmpCodec = {Recognise, OpenAs<BmpReader>};

}  // namespace imaging
