#include <charconv>
#include <string_view>

#include "imaging/codecs/c_tokens.h"
#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"

// X bitmaps: C source with the size as macros and an array of bytes, or of words in those of X10.
namespace imaging {
namespace {

constexpr std::int64_t kNoNumber = -1;

std::int64_t NumberOf(std::string_view word) {
  const bool hex = word.starts_with("0x") || word.starts_with("0X");
  if (hex) word.remove_prefix(2);
  std::uint32_t number = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), number, hex ? 16 : 10);
  return error == std::errc() && end == word.data() + word.size() ? number : kNoNumber;
}

/// What stands before the array.
struct Head {
  std::int64_t width = 0;
  std::int64_t height = 0;
  bool words = false;
};

Head ReadHead(const Source& source, ByteReader& data) {
  CTokens tokens(data);
  Head head;
  std::string name;
  for (auto kind = tokens.Next(); tokens.Text() != "{"; kind = tokens.Next()) {
    if (kind == CTokens::Kind::kEnd)
      Fail(kErrorCorrupt, "%s: an X bitmap without its array", source.Name().c_str());
    if (name.ends_with("_width")) head.width = NumberOf(tokens.Text());
    if (name.ends_with("_height")) head.height = NumberOf(tokens.Text());
    head.words = head.words || tokens.Text() == "short";
    name = tokens.Text();
  }
  return head;
}

/// Rows begin with a new number; the least significant bit is leftmost.
bool ReadNumbers(ByteReader& data, std::size_t bytes, bool words, std::uint8_t* row) {
  CTokens tokens(data);
  for (std::size_t i = 0; i < bytes;) {
    const auto kind = tokens.Next();
    if (kind == CTokens::Kind::kOther && tokens.Text() == ",") continue;
    const std::int64_t number = kind == CTokens::Kind::kWord ? NumberOf(tokens.Text()) : kNoNumber;
    if (number == kNoNumber) return false;
    row[i++] = ReverseBits(static_cast<std::uint8_t>(number));
    if (words && i < bytes) row[i++] = ReverseBits(static_cast<std::uint8_t>(number >> 8));
  }
  return true;
}

RasterPage ReadXbm(const Source& source) {
  ByteReader data(source);
  const Head head = ReadHead(source, data);
  RasterPage page = MakePage(source, kFormatXbm, head.width, head.height, 1, "None");
  page.colors = OneIsBlack();
  page.dataOffset = data.Position();
  page.nextRow = [bytes = static_cast<std::size_t>(head.width + 7) / 8, words = head.words](
                     ByteReader& array, std::uint8_t* row) { return ReadNumbers(array, bytes, words, row); };
  return page;
}

/// The first macro, behind comments if there are any.
bool Recognise(const Candidate& candidate) {
  const std::string_view head(reinterpret_cast<const char*>(candidate.head.data()), candidate.head.size());
  const std::size_t macro = head.find("#define");
  return macro != std::string_view::npos &&
         (macro == 0 || head.starts_with("/*") || head[0] == '\n' || head[0] == '\r') &&
         head.find("_width", macro) != std::string_view::npos;
}

}  // namespace

const Codec kXbmCodec = {Recognise, OpenRasterAs<ReadXbm>, Evidence::kLikeness};

}  // namespace imaging
