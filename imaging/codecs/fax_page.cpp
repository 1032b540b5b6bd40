#include "imaging/codecs/fax_page.h"

#include <algorithm>
#include <utility>

#include "imaging/codecs/bilevel_page.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {

FaxData::FaxData(std::vector<std::uint8_t> coded) : m_bytes(std::move(coded)) {
  m_bytes.resize(m_bytes.size() + FaxDecoder::kPadding);
}

FaxData FaxData::Read(const Source& source, std::int64_t offset, std::int64_t size, bool reversed) {
  size = std::clamp<std::int64_t>(size, 0, std::max<std::int64_t>(source.Size() - offset, 0));
  if (offset < 0 || size > Limit().codecBytes) size = 0;
  std::vector<std::uint8_t> coded(static_cast<std::size_t>(size));
  coded.resize(source.ReadAt(offset, coded));
  FaxData data(std::move(coded));
  if (reversed) data.Reverse();
  return data;
}

void FaxData::Reverse() {
  std::transform(m_bytes.begin(), m_bytes.end(), m_bytes.begin(), ReverseBits);
}

void FaxRows::Start(std::span<const std::uint8_t> coded, std::int64_t firstBit) {
  m_decoder.Start(coded, firstBit);
  m_sound = m_repeated = m_damaged = 0;
  m_endsWhole = false;
}

FaxRows::Step FaxRows::Next() {
  if (m_coding == FaxCoding::kGroup4) return NextGroup4();
  const FaxDecoder::Row row = m_decoder.NextGroup3(m_coding == FaxCoding::kTwoDimensional);
  m_endsWhole = row == FaxDecoder::Row::kEndOfBlock;
  if (m_endsWhole) return Step::kEnd;
  if (row == FaxDecoder::Row::kDecoded || row == FaxDecoder::Row::kSameAsAbove) {
    ++m_sound;
    return Step::kRow;
  }
  ++m_damaged;
  m_decoder.SkipDamagedRow();
  if (!m_decoder.WithinData()) return Step::kEnd;
  ++m_repeated;
  return Step::kRepeat;
}

FaxRows::Step FaxRows::NextGroup4() {
  const FaxDecoder::Row row = m_decoder.Next();
  const bool decoded = row == FaxDecoder::Row::kDecoded || row == FaxDecoder::Row::kSameAsAbove;
  if (decoded && m_decoder.WithinData()) {
    ++m_sound;
    return row == FaxDecoder::Row::kDecoded ? Step::kRow : Step::kRepeat;
  }
  // Some writers leave the end-of-block code out; fewer bits than a byte are filling then.
  m_endsWhole = row == FaxDecoder::Row::kEndOfBlock || m_decoder.AtFilling();
  if (!m_endsWhole) ++m_damaged;
  return Step::kEnd;
}

const char* FaxCodingName(FaxCoding coding) {
  switch (coding) {
    case FaxCoding::kOneDimensional:
      return "CCITT G3 1D";
    case FaxCoding::kTwoDimensional:
      return "CCITT G3 2D";
    default:
      return "CCITT G4";
  }
}

std::unique_ptr<PixelStorage> DecodeFaxPage(const Source& source, const FaxData& data, FaxCoding coding,
                                            const DecodeWish& wish, PageInfo& info, std::int64_t firstBit) {
  constexpr int kMostExpansion = 200'000;  // a large white sheet
  CheckPlausible(source, std::int64_t{info.width} * info.height, kMostExpansion);
  FaxRows rows(info.width, coding);
  rows.Start(data.Coded(), firstBit);
  BilevelPage page(info.width, info.height);
  const std::vector<std::uint8_t> white((static_cast<std::size_t>(info.width) + 63) / 64 * 8, 0xff);
  int y = 0;
  for (; y < info.height; ++y) {
    const FaxRows::Step step = rows.Next();
    if (step == FaxRows::Step::kEnd) break;
    wish.Reached(page.Pixels(), 0, y);
    if (step == FaxRows::Step::kRepeat && y > 0) {
      page.Repeat(y);
      continue;
    }
    if (step == FaxRows::Step::kRow)
      rows.Paint(page.Row(y), 0xff);
    else
      page.Store(white.data(), y, 0);
  }
  if (rows.Sound() == 0) Fail(kErrorCorrupt, "%s: no row of the page can be decoded", source.Name().c_str());
  info.damagedRows = info.height - rows.Sound();
  for (; y < info.height; ++y) page.Store(white.data(), y, 0);
  return page.Take();
}

}  // namespace imaging
