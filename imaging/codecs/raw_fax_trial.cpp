#include "imaging/codecs/raw_fax_trial.h"

#include <algorithm>
#include <array>
#include <bit>
#include <map>
#include <numeric>
#include <vector>

namespace imaging {
namespace {

constexpr int kWidest = 10240;
constexpr int kWidestTried = 5120;     // of all widths one after the other, which takes its time
constexpr std::int64_t kHead = 32768;  // bytes that are looked at
// Of fax machines at 204 and 408 dots per inch (ITU-T T.4, 2.2), then of A4 and letter sheets at the usual
// resolutions of scanners.
constexpr std::array kUsualWidths = {1728, 2048, 2432, 3456, 4096, 4864, 2480, 2550, 2560, 1654, 1656, 1700,
                                     1704, 1240, 1275, 2592, 3307, 3400, 4960, 5100, 3508, 7016, 864,  1216};

/// How far a width gets on group 4 coding.
struct Progress {
  bool sound = true;
  bool endsAtMark = false;
  int rows = 0;
  std::int64_t bits = 0;
};

/// How much is decoded: so many rows and bits, if there are as many. A few bits fit many widths.
struct Trial {
  int rows = 0;
  std::int64_t bits = 0;
};
constexpr Trial kThorough = {128, 4096};

Progress TryWidth(FaxDecoder& decoder, std::span<const std::uint8_t> coded, std::int64_t firstBit, int width,
                  const Trial& trial) {
  Progress progress;
  decoder.SetWidth(width);
  decoder.Start(coded, firstBit);
  const std::int64_t enough = firstBit + trial.bits;
  while (progress.sound && (progress.rows < trial.rows || decoder.BitPosition() < enough)) {
    const FaxDecoder::Row row = decoder.Next();
    progress.endsAtMark = row == FaxDecoder::Row::kEndOfBlock;
    if (progress.endsAtMark) break;
    if (row == FaxDecoder::Row::kDamaged || !decoder.WithinData())
      progress.sound = false;
    else
      ++progress.rows;
  }
  progress.bits = decoder.BitPosition() - firstBit;
  // The bad code at the end of data that was cut off is no fault of the width.
  if (!progress.sound) progress.sound = decoder.BitPosition() >= std::ssize(coded) * 8 - 16;
  return progress;
}

/// White rows at the top are a one each and fit every width.
std::int64_t SkipWhiteRows(std::span<const std::uint8_t> coded, std::int64_t bit) {
  const std::int64_t end = std::ssize(coded) * 8;
  while (bit < end && (coded[static_cast<std::size_t>(bit / 8)] << bit % 8 & 0x80) != 0) ++bit;
  return bit;
}

int Likeliest(const std::vector<int>& widths) {
  for (const int usual : kUsualWidths)
    if (std::find(widths.begin(), widths.end(), usual) != widths.end()) return usual;
  return widths.front();
}

/// The width that most rows of group 3 coding have, and how many agree.
struct Agreement {
  int width = 0;
  int rows = 0;
  int others = 0;  ///< damaged, or of another width
};

/// Eleven zeros one after the other, which every end-of-line code begins with and group 4 coding has at its
/// end only.
bool MayHaveEndOfLine(std::span<const std::uint8_t> coded) {
  constexpr int kZeros = 11;
  int zeros = 0;
  for (const std::uint8_t byte : coded) {
    if (zeros + std::countl_zero(byte) >= kZeros) return true;
    zeros = byte == 0 ? zeros + 8 : std::countr_zero(byte);
  }
  return false;
}

Agreement MeasureRows(std::span<const std::uint8_t> coded, std::int64_t firstBit, FaxCoding coding) {
  constexpr int kRows = 128;
  // Group 4 coding has no ends of line, and a search for them would go through all of it.
  constexpr std::int64_t kReach = 4096;
  const auto last = static_cast<std::size_t>(std::min(std::ssize(coded), firstBit / 8 + kReach));
  if (!MayHaveEndOfLine(coded.first(last))) return {};
  FaxDecoder decoder(kWidest);
  decoder.Start(coded.first(last), firstBit);
  std::map<int, int> votes;
  for (int row = 0; row < kRows && decoder.WithinData(); ++row)
    if (const auto width = decoder.MeasureRow(coding == FaxCoding::kTwoDimensional)) ++votes[*width];
  Agreement best;
  for (const auto& [width, rows] : votes) {
    best.others += rows;
    if (width > 0 && rows > best.rows) best = {width, rows, best.others};
  }
  best.others -= best.rows;
  return best;
}

constexpr std::array kGroup3 = {FaxCoding::kOneDimensional, FaxCoding::kTwoDimensional};

/// The data that was last found clean and its width: what was recognised by a trial is opened next, and the
/// trial takes a tenth of the time that a page does.
struct CleanTrial {
  std::vector<std::uint8_t> coded;
  int width = 0;
};
/// Never ended, and not of a thread: the C library ends the process where it has no memory to note the end of
/// one.
CleanTrial& LastClean() {
  static auto& last = *new CleanTrial;
  return last;
}

/// Group 4 coding of a usual width that has ink and goes on for many rows without a fault.
bool IsCleanGroup4(std::span<const std::uint8_t> coded) {
  constexpr int kFewest = 16;
  constexpr int kFewestBits = 256;
  FaxDecoder decoder(kWidest);
  const std::int64_t firstBit = SkipWhiteRows(coded, 0);
  return std::any_of(kUsualWidths.begin(), kUsualWidths.end(), [&](int width) {
    const Progress progress = TryWidth(decoder, coded, firstBit, width, kThorough);
    const bool clean = progress.sound && progress.rows >= kFewest && progress.bits >= kFewestBits;
    if (clean) LastClean() = {{coded.begin(), coded.end()}, width};
    return clean;
  });
}

/// Group 3 coding from an end-of-line code on.
bool IsCleanGroup3(std::span<const std::uint8_t> coded) {
  constexpr int kFewest = 8;
  if (coded.size() < 2 || coded[0] != 0 || coded[1] >= 0x20) return false;
  return std::any_of(kGroup3.begin(), kGroup3.end(), [&](FaxCoding coding) {
    const Agreement rows = MeasureRows(coded, 0, coding);
    return rows.rows >= kFewest && rows.others <= 1;
  });
}

/// Asked before all widths are tried: nearly every file has one of these.
int FindUsualWidth(std::span<const std::uint8_t> coded) {
  if (const CleanTrial& last = LastClean(); last.width != 0 && std::ranges::equal(last.coded, coded))
    return last.width;
  FaxDecoder decoder(kWidest);
  const std::int64_t firstBit = SkipWhiteRows(coded, 0);
  for (const int width : kUsualWidths) {
    const Progress progress = TryWidth(decoder, coded, firstBit, width, kThorough);
    if (progress.sound && (progress.rows > 0 || progress.endsAtMark)) return width;
  }
  return 0;
}

std::optional<RawFaxForm> FindGroup3(FaxData& head) {
  constexpr int kFewest = 2;
  for (const bool reversed : {false, true}) {
    int most = kFewest - 1;
    std::optional<RawFaxForm> found;
    for (const FaxCoding coding : kGroup3) {
      const Agreement rows = MeasureRows(head.Coded(), 0, coding);
      if (rows.rows + rows.others < kFewest) break;  // there are no ends of line
      if (rows.rows <= most || rows.others > 3 * rows.rows) continue;
      most = rows.rows;
      found = {coding, reversed, rows.width};
    }
    if (found) return found;
    head.Reverse();
  }
  return std::nullopt;
}

std::optional<RawFaxForm> FindGroup4(FaxData& head) {
  for (const bool reversed : {false, true}) {
    const int width = FindUsualWidth(head.Coded());
    if (width != 0) return RawFaxForm{FaxCoding::kGroup4, reversed, width};
    head.Reverse();
  }
  // Few rows without a fault show neither width nor order.
  constexpr int kFewest = 8;
  RawFaxForm found;
  int most = kFewest - 1;
  for (const bool reversed : {false, true}) {
    const int width = FindGroup4Width(head.Coded(), 0);
    FaxDecoder decoder(width);
    const std::int64_t firstBit = SkipWhiteRows(head.Coded(), 0);
    const int rows = TryWidth(decoder, head.Coded(), firstBit, width, kThorough).rows;
    if (rows > most) found = {FaxCoding::kGroup4, reversed, width};
    most = std::max(most, rows);
    head.Reverse();
  }
  return found.width != 0 ? std::optional(found) : std::nullopt;
}

}  // namespace

int FindGroup3Width(std::span<const std::uint8_t> coded, std::int64_t firstBit, FaxCoding coding) {
  return MeasureRows(coded, firstBit, coding).width;
}

bool FitsGroup4(std::span<const std::uint8_t> coded, std::int64_t firstBit, int width) {
  FaxDecoder decoder(width);
  return TryWidth(decoder, coded, SkipWhiteRows(coded, firstBit), width, kThorough).sound;
}

int FindGroup4Width(std::span<const std::uint8_t> coded, std::int64_t firstBit) {
  firstBit = SkipWhiteRows(coded, firstBit);
  FaxDecoder decoder(kWidestTried);
  std::vector<int> widths(kWidestTried);
  std::iota(widths.begin(), widths.end(), 1);
  for (const Trial& trial : {Trial{2, 0}, Trial{8, 0}, Trial{32, 0}, kThorough}) {
    std::vector<int> left;
    std::pair<std::int64_t, int> farthest;
    for (const int width : widths) {
      const Progress progress = TryWidth(decoder, coded, firstBit, width, trial);
      if (progress.sound) left.push_back(width);
      farthest = std::max(farthest, std::pair(progress.bits, width));
    }
    if (left.empty()) return farthest.second;
    widths = std::move(left);
  }
  return Likeliest(widths);
}

std::optional<RawFaxForm> FindRawFaxForm(const Source& source) {
  FaxData head = FaxData::Read(source, 0, kHead);
  const auto found = FindGroup3(head);
  return found ? found : FindGroup4(head);
}

bool IsCleanRawFax(const Source& source) {
  FaxData head = FaxData::Read(source, 0, kHead);
  for (int order = 0; order < 2; ++order, head.Reverse())
    if (IsCleanGroup3(head.Coded()) || IsCleanGroup4(head.Coded())) return true;
  return false;
}

}  // namespace imaging
