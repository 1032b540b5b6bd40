#include <algorithm>
#include <optional>
#include <sstream>
#include <string_view>
#include <unordered_map>

#include "imaging/codecs/c_tokens.h"
#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/x_colors.h"

// X pixmaps, version 3: C source with an array of strings for the size, the colours and the rows.
namespace imaging {
namespace {

constexpr std::size_t kMostLetters = 8;  // that stand for a pixel

struct Size {
  std::int64_t width = 0;
  std::int64_t height = 0;
  std::size_t colors = 0;
  std::size_t letters = 0;
};

Size ReadSize(const Source& source, CTokens& tokens) {
  Size size;
  if (tokens.NextString())
    std::istringstream(tokens.Text()) >> size.width >> size.height >> size.colors >> size.letters;
  if (size.colors == 0 || size.letters == 0 || size.letters > kMostLetters)
    Fail(kErrorCorrupt, "%s: the string with the pixmap's size is damaged", source.Name().c_str());
  CheckPageSize(source, size.width, size.height);
  return size;
}

std::uint64_t KeyOf(std::string_view letters) {
  std::uint64_t key = 0;
  for (const char letter : letters) key = key << 8 | static_cast<std::uint8_t>(letter);
  return key;
}

/// The colour for a kind of screen out of pairs of kind and colour: colour screens before grey and bilevel
/// ones, and the symbolic name if there is nothing else.
std::string ColorFor(const std::string& pairs) {
  static constexpr std::array<std::string_view, 5> kKinds = {"c", "g", "g4", "m", "s"};
  std::array<std::string, kKinds.size()> colors;
  std::istringstream words(pairs);
  std::string* color = nullptr;
  for (std::string word; words >> word;) {
    const auto* const kind = std::find(kKinds.begin(), kKinds.end(), word);
    if (kind != kKinds.end() && (color == nullptr || !color->empty()))
      color = &colors[static_cast<std::size_t>(kind - kKinds.begin())];
    else if (color != nullptr)
      *color += word;  // names are known without their spaces
  }
  for (std::string& found : colors)
    if (!found.empty()) return found;
  return {};
}

/// The letters of each colour and its place in the table; a transparent one counts as black there.
struct Colors {
  std::unordered_map<std::uint64_t, std::uint32_t> places;
  std::vector<RGBQUAD> table;
  std::optional<std::uint32_t> transparent;
};

Colors ReadColors(const Source& source, CTokens& tokens, const Size& size) {
  Colors colors;
  for (std::size_t i = 0; i < size.colors; ++i) {
    if (!tokens.NextString() || tokens.Text().size() < size.letters)
      Fail(kErrorCorrupt, "%s: the pixmap ends before its pixels", source.Name().c_str());
    const std::string color = ColorFor(tokens.Text().substr(size.letters));
    const auto place = static_cast<std::uint32_t>(colors.table.size());
    if (color == "None" || color == "none") colors.transparent = place;
    colors.places[KeyOf(std::string_view(tokens.Text()).substr(0, size.letters))] = place;
    colors.table.push_back(ColorOf(XColor(color).value_or(0)));
  }
  return colors;
}

class RowMaker {
 public:
  RowMaker(const Size& size, int memoryBits, Colors colors)
      : m_size(size),
        m_memoryBits(memoryBits),
        m_colors(std::move(colors)),
        m_places(static_cast<std::size_t>(size.width)) {}

  bool operator()(ByteReader& data, std::uint8_t* row) {
    CTokens tokens(data);
    if (!tokens.NextString() || tokens.Text().size() < m_places.size() * m_size.letters) return false;
    for (std::size_t x = 0; x < m_places.size(); ++x) {
      const auto found = m_colors.places.find(
          KeyOf(std::string_view(tokens.Text()).substr(x * m_size.letters, m_size.letters)));
      m_places[x] = found == m_colors.places.end() ? 0 : found->second;
    }
    if (m_memoryBits <= 8)
      StoreIndices(row);
    else
      StoreColors(row);
    return true;
  }

 private:
  void StoreIndices(std::uint8_t* row) const {
    const std::vector<std::uint8_t> samples(m_places.begin(), m_places.end());
    PackSamples(samples.data(), m_memoryBits, row, static_cast<int>(samples.size()));
  }
  void StoreColors(std::uint8_t* row) const {
    for (const std::uint32_t place : m_places) {
      const RGBQUAD& color = m_colors.table[place];
      for (const BYTE level : {color.rgbBlue, color.rgbGreen, color.rgbRed}) *row++ = level;
      if (m_memoryBits == 32) *row++ = place == m_colors.transparent ? 0 : 0xff;
    }
  }

  Size m_size;
  int m_memoryBits;
  Colors m_colors;
  std::vector<std::uint32_t> m_places;
};

RasterPage ReadXpm(const Source& source) {
  ByteReader data(source);
  CTokens tokens(data);
  const Size size = ReadSize(source, tokens);
  Colors colors = ReadColors(source, tokens, size);
  const int bits = size.colors <= 2 ? 1 : size.colors <= 16 ? 4 : size.colors <= 256 ? 8 : 24;
  RasterPage page = MakePage(source, kFormatXpm, size.width, size.height, bits, "None");
  page.info.order = 1;
  if (colors.transparent) page.memoryBits = 32;
  if (page.memoryBits <= 8) page.colors = colors.table;
  page.expansion = 4;
  page.dataOffset = data.Position();
  page.nextRow = RowMaker(size, page.memoryBits, std::move(colors));
  return page;
}

bool Recognise(const Candidate& candidate) {
  const std::string_view head(reinterpret_cast<const char*>(candidate.head.data()), candidate.head.size());
  return head.starts_with("/* XPM */");
}

}  // namespace

const Codec kXpmCodec = {Recognise, OpenRasterAs<ReadXpm>};

}  // namespace imaging
