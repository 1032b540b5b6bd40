#include "helper/modules/media_headers.h"

#include <algorithm>
#include <array>

namespace helper {
namespace {

constexpr std::uint32_t Tag(std::string_view text) {
  std::uint32_t tag = 0;
  for (const char letter : text) tag = tag << 8 | static_cast<std::uint8_t>(letter);
  return tag;
}

constexpr std::int64_t kChunkHead = 8;

bool IsPicture(std::uint32_t type) {
  constexpr std::uint32_t kTypes[] = {Tag("ILBM"), Tag("PBM "), Tag("ACBM"),
                                      Tag("DEEP"), Tag("RGB8"), Tag("RGBN")};
  return std::find(std::begin(kTypes), std::end(kTypes), type) != std::end(kTypes);
}

/// 16.16 fixed point.
int DotsOf(std::uint32_t fixed) {
  constexpr std::uint32_t kHalf = 0x8000;
  return static_cast<int>((std::uint64_t{fixed} + kHalf) >> 16);
}

/// Where the pixels begin, with the number of their coding: behind colours, resources and layers.
std::int64_t PsdPixels(const Input& input) {
  constexpr int kSections = 3;
  std::int64_t at = 26;
  for (int i = 0; i < kSections; ++i) at += 4 + std::int64_t{BigAt(input, at, 4)};
  return at;
}

/// Runs of a byte and literal ones, up to the end of the row.
void UnpackRow(std::span<const std::uint8_t> packed, std::span<std::uint8_t> row) {
  std::size_t x = 0;
  for (std::size_t i = 0; i + 1 < packed.size() && x < row.size();) {
    const auto code = static_cast<std::int8_t>(packed[i++]);
    if (code == -128) continue;
    const bool literal = code >= 0;
    std::size_t count = static_cast<std::size_t>(literal ? code : -code) + 1;
    count = std::min({count, row.size() - x, literal ? packed.size() - i : count});
    for (std::size_t k = 0; k < count; ++k) row[x++] = packed[i + (literal ? k : 0)];
    i += literal ? count : 1;
  }
}

void SetCoding(PageRecord& page, std::uint32_t coding) {
  SetCompression(page, coding == 0 ? "None" : coding == 1 ? "RLE" : "Other");
}

}  // namespace

std::uint32_t BigAt(const Input& input, std::int64_t offset, std::size_t bytes) {
  std::array<std::uint8_t, 4> buffer{};
  if (input.ReadAt(offset, std::span(buffer).first(bytes)) != bytes) return 0;
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes; ++i) value = value << 8 | buffer[i];
  return value;
}

std::uint32_t LittleAt(const Input& input, std::int64_t offset, std::size_t bytes) {
  std::uint32_t value = 0;
  for (std::size_t i = 0; i < bytes; ++i)
    value |= BigAt(input, offset + static_cast<std::int64_t>(i), 1) << 8 * i;
  return value;
}

std::vector<std::uint8_t> LoadPsd(const Input& input) {
  constexpr std::uint64_t kMostBytes = 1'000'000'000;
  std::vector<std::uint8_t> bytes = input.ReadAll();
  const auto pixels = static_cast<std::size_t>(PsdPixels(input));
  constexpr std::uint32_t kRuns = 1;
  if (BigAt(input, static_cast<std::int64_t>(pixels), 2) != kRuns) return bytes;
  const std::uint64_t rows = std::uint64_t{BigAt(input, 12, 2)} * BigAt(input, 14, 4);
  const std::size_t rowBytes = (std::size_t{BigAt(input, 18, 4)} * BigAt(input, 22, 2) + 7) / 8;
  if (rows > kMostBytes || rowBytes > kMostBytes || rows * rowBytes > kMostBytes)
    throw Failure(Status::kTooLarge, "the picture is too large");
  std::vector<std::uint8_t> plain(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(pixels));
  plain.resize(pixels + 2 + rows * rowBytes);
  std::size_t at = pixels + 2 + rows * 2;
  for (std::size_t row = 0; row < rows && at < bytes.size(); ++row) {
    const std::size_t counts = pixels + 2 + row * 2;
    const std::size_t size =
        std::min<std::size_t>(bytes[counts] * 256U + bytes[counts + 1], bytes.size() - at);
    UnpackRow({bytes.data() + at, size}, {plain.data() + pixels + 2 + row * rowBytes, rowBytes});
    at += size;
  }
  return plain;
}

void ReadPsdHeader(const Input& input, PageRecord& page) {
  constexpr std::int64_t kHeaderBytes = 26;
  constexpr std::uint32_t kResolution = 1005;
  const std::int64_t resources = kHeaderBytes + 4 + BigAt(input, kHeaderBytes, 4);
  const std::int64_t end = std::min(resources + 4 + BigAt(input, resources, 4), input.Size());
  for (std::int64_t at = resources + 4; at + 12 <= end && BigAt(input, at, 4) == Tag("8BIM");) {
    const std::int64_t name = (std::int64_t{BigAt(input, at + 6, 1)} + 2) & ~std::int64_t{1};
    const std::int64_t data = at + 6 + name + 4;
    if (BigAt(input, at + 4, 2) == kResolution) {
      page.xResolution = DotsOf(BigAt(input, data, 4));
      page.yResolution = DotsOf(BigAt(input, data + 8, 4));
    }
    at = data + ((std::int64_t{BigAt(input, data - 4, 4)} + 1) & ~std::int64_t{1});
  }
  SetCoding(page, BigAt(input, PsdPixels(input), 2));
}

std::vector<Range> ListIffForms(const Input& input) {
  constexpr std::size_t kMostForms = 10'000;
  std::vector<Range> forms;
  const std::int64_t whole = input.Size();
  if (BigAt(input, 0, 4) == Tag("FORM")) return {{0, whole}};
  for (std::int64_t at = kChunkHead + 4; at + kChunkHead < whole && forms.size() < kMostForms;) {
    const std::int64_t size = kChunkHead + BigAt(input, at + 4, 4);
    if (BigAt(input, at, 4) == Tag("FORM") && IsPicture(BigAt(input, at + kChunkHead, 4)))
      forms.push_back({at, std::min(size, whole - at)});
    at += (size + 1) & ~std::int64_t{1};
  }
  if (forms.empty()) throw Failure(Status::kCorrupt, "the list holds no picture");
  return forms;
}

void ReadIffForm(const Input& input, const Range& form, PageRecord& page) {
  constexpr int kForm = 111;
  constexpr int kList = 112;
  page.format = BigAt(input, 0, 4) == Tag("FORM") ? kForm : kList;
  const std::int64_t end = form.begin + form.size;
  for (std::int64_t at = form.begin + kChunkHead + 4; at + kChunkHead <= end;) {
    const std::int64_t data = at + kChunkHead;
    switch (BigAt(input, at, 4)) {
      case Tag("BMHD"):
        page.bits = static_cast<int>(BigAt(input, data + 8, 1));
        SetCoding(page, BigAt(input, data + 10, 1));
        break;
      case Tag("DGBL"):
        SetCoding(page, BigAt(input, data + 4, 2));
        break;
      case Tag("DPI "):
        page.xResolution = static_cast<int>(BigAt(input, data, 2));
        page.yResolution = static_cast<int>(BigAt(input, data + 2, 2));
        break;
      default:
        break;
    }
    at = data + ((std::int64_t{BigAt(input, at + 4, 4)} + 1) & ~std::int64_t{1});
  }
}

}  // namespace helper
