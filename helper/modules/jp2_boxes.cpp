#include "helper/modules/jp2_boxes.h"

#include <array>
#include <cmath>
#include <cstring>
#include <optional>

namespace helper {
namespace {

constexpr std::uint32_t Tag(const char (&name)[5]) {
  std::uint32_t tag = 0;
  for (int i = 0; i < 4; ++i) tag = tag << 8 | static_cast<std::uint8_t>(name[i]);
  return tag;
}

/// A box: its kind, and where its contents begin and end.
struct Box {
  std::uint32_t tag;
  std::int64_t begin;
  std::int64_t end;
};

std::uint64_t Big(std::span<const std::uint8_t> bytes) {
  std::uint64_t value = 0;
  for (const std::uint8_t byte : bytes) value = value << 8 | byte;
  return value;
}

std::optional<Box> BoxAt(const Input& input, std::int64_t offset, std::int64_t end) {
  std::array<std::uint8_t, 16> head{};
  const std::size_t got = input.ReadAt(offset, head);
  if (got < 8) return std::nullopt;
  std::uint64_t length = Big(std::span(head).first(4));
  std::int64_t header = 8;
  if (length == 1 && got == 16) {
    header = 16;
    length = Big(std::span(head).subspan(8));
  }
  // 0: up to the end of the file
  const std::uint64_t room = static_cast<std::uint64_t>(end - offset);
  if (length == 0 || length > room) length = room;
  if (length < static_cast<std::uint64_t>(header)) return std::nullopt;
  return Box{static_cast<std::uint32_t>(Big(std::span(head).subspan(4, 4))), offset + header,
             offset + static_cast<std::int64_t>(length)};
}

/// The first box of that kind between two places.
std::optional<Box> FindBox(const Input& input, std::uint32_t tag, std::int64_t begin, std::int64_t end) {
  constexpr int kMostBoxes = 1000;
  for (int i = 0; i < kMostBoxes && begin < end; ++i) {
    const auto box = BoxAt(input, begin, end);
    if (!box || box->tag == tag) return box;
    begin = box->end;
  }
  return std::nullopt;
}

/// A number of points in a metre, as a fraction and a power of ten.
int DotsPerInch(std::uint64_t numerator, std::uint64_t denominator, std::uint8_t exponent) {
  constexpr double kMetresPerInch = 0.0254;
  constexpr double kMost = 100'000;
  if (denominator == 0) return 0;
  const double dots = static_cast<double>(numerator) / static_cast<double>(denominator) *
                      std::pow(10.0, static_cast<std::int8_t>(exponent)) * kMetresPerInch;
  return dots > 0 && dots < kMost ? static_cast<int>(std::lround(dots)) : 0;
}

/// For display, else as captured.
void ReadDensity(const Input& input, const Box& resolution, Jp2Header& header) {
  auto box = FindBox(input, Tag("resd"), resolution.begin, resolution.end);
  if (!box) box = FindBox(input, Tag("resc"), resolution.begin, resolution.end);
  std::array<std::uint8_t, 10> fields{};
  if (!box || box->end - box->begin < 10 || input.ReadAt(box->begin, fields) != fields.size()) return;
  const auto word = [&](std::size_t at) { return Big(std::span(fields).subspan(at, 2)); };
  header.yResolution = DotsPerInch(word(0), word(2), fields[8]);
  header.xResolution = DotsPerInch(word(4), word(6), fields[9]);
}

int ReadPaletteColumns(const Input& input, const Box& box) {
  std::array<std::uint8_t, 3> fields{};
  return input.ReadAt(box.begin, fields) == fields.size() ? fields[2] : 0;
}

/// Channel, kind and what it belongs to, of each.
bool HasAlpha(const Input& input, const Box& box) {
  constexpr std::uint64_t kOpacity = 1;
  constexpr std::uint64_t kPremultiplied = 2;
  std::array<std::uint8_t, 6> entry{};
  for (std::int64_t at = box.begin + 2; at + 6 <= box.end && input.ReadAt(at, entry) == entry.size();
       at += 6) {
    const std::uint64_t kind = Big(std::span(entry).subspan(2, 2));
    if (kind == kOpacity || kind == kPremultiplied) return true;
  }
  return false;
}

/// By a number, or by a profile, which names it in its header.
Jp2Header::Space ReadSpace(const Input& input, const Box& box) {
  using Space = Jp2Header::Space;
  std::array<std::uint8_t, 23> fields{};
  input.ReadAt(box.begin, fields);
  const auto word = [&](std::size_t at) {
    return static_cast<std::uint32_t>(Big(std::span(fields).subspan(at, 4)));
  };
  const bool numbered = fields[0] == 1;
  switch (numbered ? word(3) : word(19)) {
    case 16:
    case Tag("RGB "):
      return Space::kRgb;
    case 17:
    case Tag("GRAY"):
      return Space::kGray;
    case 18:
    case 24:
      return Space::kYcc;
    case 12:
    case Tag("CMYK"):
      return Space::kCmyk;
    default:
      return Space::kUntold;
  }
}

}  // namespace

Jp2Header ReadJp2Header(const Input& input) {
  Jp2Header header;
  const auto whole = FindBox(input, Tag("jp2h"), 0, input.Size());
  if (!whole) return header;
  const auto find = [&](std::uint32_t tag) { return FindBox(input, tag, whole->begin, whole->end); };
  if (const auto box = find(Tag("res "))) ReadDensity(input, *box, header);
  if (const auto box = find(Tag("pclr"))) header.paletteColumns = ReadPaletteColumns(input, *box);
  if (const auto box = find(Tag("colr"))) header.space = ReadSpace(input, *box);
  if (const auto box = find(Tag("cdef"))) header.alpha = HasAlpha(input, *box);
  return header;
}

}  // namespace helper
