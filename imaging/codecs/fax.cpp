#include "imaging/codecs/fax.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace imaging {
namespace {

// Entries behind the changes of a row that hold the width: the search for b1 and b2 looks that far ahead, and
// copies are made in blocks.
constexpr int kCopyBlock = 8;
constexpr int kSlack = kCopyBlock + 4;
// The reader never holds fewer bits than this after a refill.
constexpr int kRefilled = 56;

/// Codes of the two-dimensional modes, T.6, table 1; the vertical one without offset is handled apart.
enum class Mode : std::uint8_t { kNone, kVertical, kHorizontal, kPass };
struct ModeCode {
  Mode mode = Mode::kNone;
  std::int8_t offset = 0;
  std::uint8_t length = 0;
};
constexpr int kModeBits = 7;

constexpr auto kModes = [] {
  std::array<ModeCode, 1U << kModeBits> table{};
  const auto enter = [&table](unsigned code, std::uint8_t length, Mode mode, std::int8_t offset) {
    const unsigned count = 1U << (kModeBits - length);
    for (unsigned i = 0; i < count; ++i) table[code * count + i] = {mode, offset, length};
  };
  enter(0b1, 1, Mode::kVertical, 0);
  enter(0b011, 3, Mode::kVertical, 1);
  enter(0b010, 3, Mode::kVertical, -1);
  enter(0b000011, 6, Mode::kVertical, 2);
  enter(0b000010, 6, Mode::kVertical, -2);
  enter(0b0000011, 7, Mode::kVertical, 3);
  enter(0b0000010, 7, Mode::kVertical, -3);
  enter(0b001, 3, Mode::kHorizontal, 0);
  enter(0b0001, 4, Mode::kPass, 0);
  return table;
}();

// One half of the end-of-block code, T.6, 2.4.1.1; some writers leave the other half out.
constexpr int kEndOfLineBits = 12;
constexpr std::uint64_t kEndOfLine = 1;
constexpr std::uint64_t kEndOfBlock = kEndOfLine << kEndOfLineBits | kEndOfLine;

std::uint64_t LoadBigEndian(const std::uint8_t* bytes) {
  std::uint64_t word = 0;
  std::memcpy(&word, bytes, sizeof word);
  return std::endian::native == std::endian::little ? __builtin_bswap64(word) : word;
}

}  // namespace

FaxDecoder::FaxDecoder(int width)
    : m_white(WhiteRuns()),
      m_black(BlackRuns()),
      m_width(width),
      m_above(static_cast<std::size_t>(width) + 1 + kSlack),
      m_current(static_cast<std::size_t>(width) + 1 + kSlack),
      m_words((static_cast<std::size_t>(width) + 63) / 64) {}

void FaxDecoder::Start(std::span<const std::uint8_t> coded, std::int64_t firstBit) {
  m_coded = coded;
  Seek(firstBit);
  m_aboveIsDamaged = m_endsStand = false;
  m_currentCount = 0;  // the imaginary row above the first is white
  std::fill_n(m_current.begin(), kSlack, m_width);
}

void FaxDecoder::Seek(std::int64_t bit) {
  m_next = m_coded.data() + bit / 8;
  m_bits = 0;
  m_have = 0;
  Refill();
  Consume(static_cast<int>(bit % 8));
}

void FaxDecoder::Refill() {
  // Past the end only zeros follow, which are no code, so the reader stays within the padding.
  if (m_next > m_coded.data() + m_coded.size() + kPadding - 8) return;
  m_bits |= LoadBigEndian(m_next) >> m_have;
  m_next += (63 - m_have) >> 3;
  m_have |= kRefilled;
}

FaxDecoder::Row FaxDecoder::Next() {
  std::swap(m_above, m_current);
  m_aboveCount = m_currentCount;
  m_rowStart = BitPosition();
  const Row row = DecodeRow();
  if (row == Row::kDecoded || row == Row::kSameAsAbove)
    std::fill_n(m_current.begin() + m_currentCount, kSlack, m_width);
  return row;
}

/// The names a0, b1 and b2 are those of T.6, 2.2.1. The colour of a0 is white while an even number of changes
/// is known, and b1 is the first change above to the right of a0 with an index as even as that number.
FaxDecoder::Row FaxDecoder::DecodeRow() {
  const std::int32_t* above = m_above.data();
  std::int32_t* current = m_current.data();
  int count = 0;
  int a0 = -1;
  int b1 = 0;  // index
  bool same = true;
  const auto seek = [&] {
    while (above[b1] <= a0) b1 += 2;
  };
  while (a0 < m_width) {
    Refill();
    if (static_cast<std::int64_t>(m_bits) < 0) {
      // As many changes as there are ones lie right below those above, up to the end of the row.
      const int left = std::max(m_aboveCount - b1, 0) + 1;
      const int run = std::min({std::countl_one(m_bits), m_have, left});
      if (run <= kCopyBlock)
        std::memcpy(current + count, above + b1, kCopyBlock * sizeof *current);
      else
        std::memcpy(current + count, above + b1, static_cast<std::size_t>(run) * sizeof *current);
      Consume(run);
      count += run;
      b1 += run;
      a0 = above[b1 - 1];
      continue;
    }
    same = false;
    const ModeCode code = kModes[m_bits >> (64 - kModeBits)];
    if (code.mode == Mode::kVertical) {
      const int a1 = above[b1] + code.offset;
      if (a1 <= a0 || a1 > m_width) return Row::kDamaged;
      Consume(code.length);
      current[count++] = a0 = a1;
      // Two changes above may lie between a1 and b1 only if a1 is to the left, and then by one step.
      if (code.offset < 0 && b1 > 0 && above[b1 - 1] > a0) {
        --b1;
      } else {
        ++b1;
        if (a0 < m_width) seek();
      }
    } else if (code.mode == Mode::kPass) {
      Consume(code.length);
      a0 = above[b1 + 1];
      b1 += 2;
    } else if (code.mode == Mode::kHorizontal) {
      Consume(code.length);
      if (!DecodeHorizontal(a0, count)) return Row::kDamaged;
      if (a0 < m_width) seek();
    } else {
      const bool end = a0 < 0 && m_bits >> (64 - kEndOfLineBits) == kEndOfLine;
      return end ? Row::kEndOfBlock : Row::kDamaged;
    }
  }
  while (count > 0 && current[count - 1] >= m_width) --count;
  m_currentCount = count;
  return same ? Row::kSameAsAbove : Row::kDecoded;
}

/// Two runs from a0 on (T.6, 2.2.3). Only the first run of a row may be empty, or the last.
bool FaxDecoder::DecodeHorizontal(int& position, int& count) {
  const bool black = count % 2 != 0;
  const int first = ReadRun(black ? m_black : m_white);
  const int second = ReadRun(black ? m_white : m_black);
  if (first < 0 || second < 0 || (first == 0 && position >= 0)) return false;
  const int a1 = std::max(position, 0) + first;
  const int a2 = a1 + second;
  if (a2 > m_width || (second == 0 && a1 < m_width)) return false;
  m_current[static_cast<std::size_t>(count)] = a1;
  m_current[static_cast<std::size_t>(count) + 1] = a2;
  count += 2;
  position = a2;
  return true;
}

/// Make-up codes and the terminating code; -1 for what is none or longer than a row.
int FaxDecoder::ReadRun(const FaxRunTable& table) {
  constexpr int kFirstMakeUp = 64;
  int total = 0;
  while (total <= m_width) {
    Refill();
    const FaxRunCode code = table[m_bits >> (64 - kFaxRunBits)];
    if (code.run < 0) return -1;
    Consume(code.length);
    total += code.run;
    if (code.run < kFirstMakeUp) return total;
  }
  return -1;
}

/// An end-of-line code is at least eleven zeros and a one.
bool FaxDecoder::AtEndOfLine() const {
  return m_bits >> (64 - (kEndOfLineBits - 1)) == 0;
}

/// False if the stream ends instead.
bool FaxDecoder::SkipEndOfLine() {
  while (std::countl_zero(m_bits) >= m_have) {
    if (m_next >= m_coded.data() + m_coded.size()) return false;
    Consume(m_have);
    Refill();
  }
  Consume(std::countl_zero(m_bits) + 1);
  Refill();
  return true;
}

bool FaxDecoder::SkipEndsOfLine() {
  Refill();
  while (AtEndOfLine())
    if (!SkipEndOfLine()) return false;
  return true;
}

FaxDecoder::Row FaxDecoder::NextAfterEndOfLine() {
  Refill();
  if (!AtEndOfLine() || !SkipEndOfLine() || AtEndOfLine()) return Row::kDamaged;
  return NextOneDimensional();
}

FaxDecoder::Row FaxDecoder::NextOneDimensional() {
  return SkipEndsOfLine() ? DecodeRuns() : Row::kEndOfBlock;
}

FaxDecoder::Row FaxDecoder::DecodeRuns() {
  int position = 0;
  int count = 0;
  for (bool black = false; position < m_width; black = !black) {
    const int run = ReadRun(black ? m_black : m_white);
    if (run < 0 || run > m_width - position || count > m_width) return Row::kDamaged;
    position += run;
    if (position < m_width) m_current[static_cast<std::size_t>(count++)] = position;
  }
  m_currentCount = count;
  return WithinData() ? Row::kDecoded : Row::kDamaged;
}

/// Passes the end-of-line codes in front of a row, each with its tag bit (T.4, 4.2.2) if the coding has one.
/// Rows without such codes are one-dimensional.
FaxDecoder::RowStart FaxDecoder::SkipToRow(bool twoDimensional) {
  // T.4, 4.1.4 has six. One alone is normal, two stand for a row that got lost.
  constexpr int kEndsOfPage = 3;
  bool tag = true;
  int ends = 0;
  Refill();
  for (; AtEndOfLine(); ++ends) {
    if (!SkipEndOfLine()) return RowStart::kEnd;
    if (!twoDimensional) continue;
    tag = static_cast<std::int64_t>(m_bits) < 0;
    Consume(1);
    Refill();
  }
  m_rowStart = BitPosition();
  m_endsStand = m_endsStand || ends > 0;
  if (ends >= kEndsOfPage || m_rowStart >= std::ssize(m_coded) * 8) return RowStart::kEnd;
  return tag ? RowStart::kOneDimensional : RowStart::kTwoDimensional;
}

FaxDecoder::Row FaxDecoder::NextGroup3(bool twoDimensional) {
  const RowStart start = SkipToRow(twoDimensional);
  if (start == RowStart::kEnd) return Row::kEndOfBlock;
  Row row = Row::kDamaged;
  if (start == RowStart::kOneDimensional)
    row = DecodeRuns();
  else if (!m_aboveIsDamaged)
    row = Next();
  Refill();
  // A row that is longer than it should be goes on where an end of line is due.
  if (row == Row::kEndOfBlock || !WithinData() || (m_endsStand && !AtEndOfLine())) row = Row::kDamaged;
  m_aboveIsDamaged = row == Row::kDamaged;
  if (twoDimensional && !m_aboveIsDamaged) std::fill_n(m_current.begin() + m_currentCount, kSlack, m_width);
  return row;
}

/// The search begins at the row's start, since a bad code may have swallowed the end of the row. It ends in
/// the zeros behind the data at the latest.
void FaxDecoder::SkipDamagedRow() {
  Seek(m_rowStart);
  while (!AtEndOfLine()) {
    Consume(std::countl_zero(m_bits) + 1);
    Refill();
  }
}

bool FaxDecoder::AtFilling() const {
  const std::int64_t first = m_rowStart / 8;
  if (first >= std::ssize(m_coded)) return true;
  const auto rest = m_coded.subspan(static_cast<std::size_t>(first));
  return static_cast<std::uint8_t>(rest[0] << m_rowStart % 8) == 0 &&
         std::all_of(rest.begin() + 1, rest.end(), [](std::uint8_t byte) { return byte == 0; });
}

std::optional<int> FaxDecoder::MeasureRow(bool twoDimensional) {
  const RowStart start = SkipToRow(twoDimensional);
  int sum = 0;
  for (bool black = false; start == RowStart::kOneDimensional && !AtEndOfLine(); black = !black) {
    const int run = ReadRun(black ? m_black : m_white);
    if (run < 0 || sum > m_width - run || !WithinData()) {
      SkipDamagedRow();
      return 0;
    }
    sum += run;
    Refill();
  }
  if (start == RowStart::kOneDimensional) return sum;
  if (start == RowStart::kTwoDimensional) SkipDamagedRow();
  return std::nullopt;
}

/// The page's own end may be half a code; in damaged data only a whole one counts.
bool FaxDecoder::SkipToEndOfBlock() {
  const auto atEnd = [this](int codes) {
    return m_bits >> (64 - codes * kEndOfLineBits) == (codes == 1 ? kEndOfLine : kEndOfBlock);
  };
  Seek(m_rowStart);
  const int codes = atEnd(1) && !atEnd(2) ? 1 : 2;
  while (WithinData()) {
    if (atEnd(codes)) {
      Consume(codes * kEndOfLineBits);
      return true;
    }
    Consume(std::countl_zero(m_bits) < kEndOfLineBits ? std::countl_zero(m_bits) : 1);
    Consume(std::min(std::countl_one(m_bits), m_have));
    Refill();
  }
  return false;
}

/// Sets one bit for each change; each pixel is then the sum of the bits up to it.
void FaxDecoder::Paint(std::uint8_t* row, std::uint8_t white) {
  if (m_currentCount == 0) {
    std::memset(row, white, m_words.size() * 8);
    return;
  }
  std::fill(m_words.begin(), m_words.end(), 0);
  for (int i = 0; i < m_currentCount; ++i) {
    const auto column = static_cast<unsigned>(m_current[static_cast<std::size_t>(i)]);
    m_words[column / 64] ^= std::uint64_t{1} << (63 - column % 64);
  }
  std::uint64_t carry = white != 0 ? ~std::uint64_t{0} : 0;
  for (const std::uint64_t changes : m_words) {
    std::uint64_t pixels = changes ^ changes >> 1;
    for (int shift = 2; shift < 64; shift *= 2) pixels ^= pixels >> shift;
    pixels ^= carry;
    carry = 0 - (pixels & 1);
    if (std::endian::native == std::endian::little) pixels = __builtin_bswap64(pixels);
    std::memcpy(row, &pixels, sizeof pixels);
    row += sizeof pixels;
  }
}

}  // namespace imaging
