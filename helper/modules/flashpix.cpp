#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

#include "helper/module.h"
#include "helper/modules/compound_file.h"
#include "helper/modules/flashpix_jpeg.h"
#include "helper/modules/flashpix_properties.h"

// FlashPix: a compound file that holds a picture at several resolutions, each in tiles of its own coding. The
// highest resolution is shown. Turns and crops that a file may ask for on top are left out.
namespace helper {
namespace {

constexpr int kSide = 64;
constexpr std::size_t kTilePixels = std::size_t{kSide} * kSide;
constexpr int kMostChannels = 4;

enum Coding : std::uint32_t { kPlain = 0, kSingleColor = 1, kJpeg = 2 };
enum class Space { kOther, kPhotoYcc };

struct Tile {
  std::uint32_t offset = 0;
  std::uint32_t bytes = 0;
  std::uint32_t coding = 0;
  std::array<std::uint8_t, 4> detail{};  ///< the colour; or of JPEG whether converted [2], and its tables [3]
};

/// One of the resolutions.
struct Layer {
  int number = 0;
  int width = 0;
  int height = 0;
  int channels = 0;
  std::vector<Tile> tiles;  ///< as far as the table goes, row by row
  CompoundFile::Stream data;
};

int TilesIn(int pixels) {
  return (pixels - 1) / kSide + 1;
}

/// The number at the end of a name, -1 for another name.
int NumberOf(std::string_view name, std::string_view start) {
  constexpr std::size_t kDigits = 4;
  if (!name.starts_with(start) || name.size() != start.size() + kDigits) return -1;
  int number = 0;
  for (const char digit : name.substr(start.size())) {
    if (digit < '0' || digit > '9') return -1;
    number = number * 10 + digit - '0';
  }
  return number;
}

/// The folder with the resolutions: the root of a bare picture, or the first of those in a file of views.
std::size_t StoreOf(const CompoundFile& file) {
  std::size_t found = CompoundFile::kRoot;
  for (const std::size_t child : file.Children(CompoundFile::kRoot)) {
    if (!file.At(child).folder || !file.At(child).name.starts_with("Data Object Store ")) continue;
    if (found == CompoundFile::kRoot || file.At(child).name < file.At(found).name) found = child;
  }
  return found;
}

constexpr std::size_t kStreamPrefix = 28;  ///< before what the streams of tiles hold

std::vector<Tile> TilesOf(std::span<const std::uint8_t> header, std::size_t most) {
  const std::size_t table = kStreamPrefix + std::size_t{LittleU32(&header[56])};
  const std::size_t pitch = LittleU32(&header[60]);
  std::vector<Tile> tiles;
  for (std::size_t at = table; pitch >= 16 && at + 16 <= header.size() && tiles.size() < most; at += pitch)
    tiles.push_back({LittleU32(&header[at]),
                     LittleU32(&header[at + 4]),
                     LittleU32(&header[at + 8]),
                     {header[at + 12], header[at + 13], header[at + 14], header[at + 15]}});
  return tiles;
}

/// Nothing if the resolution's header is damaged.
std::optional<Layer> LayerOf(const CompoundFile& file, std::size_t folder) {
  constexpr std::size_t kMostHeader = 100'000'000;
  constexpr std::size_t kTableStart = 64;
  const std::size_t headerEntry = file.Find(folder, "Subimage 0000 Header");
  const std::size_t dataEntry = file.Find(folder, "Subimage 0000 Data");
  if (headerEntry == CompoundFile::kNone || dataEntry == CompoundFile::kNone) return {};
  const auto header = file.ReadAll(headerEntry, kMostHeader);
  if (header.size() < kTableStart) return {};
  const std::uint32_t width = LittleU32(&header[32]);
  const std::uint32_t height = LittleU32(&header[36]);
  if (width < 1 || height < 1 || width > INT32_MAX || height > INT32_MAX) return {};
  if (LittleU32(&header[44]) != kSide || LittleU32(&header[48]) != kSide) return {};
  Layer layer;
  layer.width = static_cast<int>(width);
  layer.height = static_cast<int>(height);
  layer.channels = static_cast<int>(std::min(LittleU32(&header[52]), std::uint32_t{INT16_MAX}));
  const std::size_t count = std::size_t(TilesIn(layer.width)) * std::size_t(TilesIn(layer.height));
  layer.tiles = TilesOf(header, count);
  layer.data = file.Open(dataEntry);
  return layer;
}

std::optional<Layer> HighestOf(const CompoundFile& file, std::size_t store) {
  std::optional<Layer> highest;
  for (const std::size_t child : file.Children(store)) {
    const int number = NumberOf(file.At(child).name, "Resolution ");
    if (number < 0 || !file.At(child).folder || (highest && highest->number > number)) continue;
    std::optional<Layer> layer = LayerOf(file, child);
    if (!layer) continue;
    layer->number = number;
    highest = std::move(layer);
  }
  return highest;
}

std::uint8_t Clamped(double level) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(level, 0.0, 255.0)));
}

/// The colours of PhotoYCC, whose white lies below its highest level.
void ConvertPhotoYcc(std::uint8_t* pixel) {
  const double light = 1.3584 * pixel[0];
  const double blue = 2.2179 * (pixel[1] - 156);
  const double red = 1.8215 * (pixel[2] - 137);
  pixel[0] = Clamped(light + red);
  pixel[1] = Clamped(light - 0.194 * blue - 0.509 * red);
  pixel[2] = Clamped(light + blue);
}

class Flashpix final : public Document {
 public:
  explicit Flashpix(const Input& input) : m_file(input) {
    constexpr std::size_t kMostContents = 16'000'000;
    const std::size_t store = StoreOf(m_file);
    std::optional<Layer> layer = HighestOf(m_file, store);
    if (!layer) throw Failure(Status::kCorrupt, "no resolution of the picture can be read");
    m_layer = std::move(*layer);
    if (m_layer.channels < 1 || m_layer.channels > kMostChannels)
      throw Failure(Status::kUnsupported,
                    "pictures of " + std::to_string(m_layer.channels) + " channels can't be shown");
    const std::size_t contents = m_file.Find(store, "\5Image Contents");
    if (contents != CompoundFile::kNone) m_contents.emplace(m_file.ReadAll(contents, kMostContents));
    m_space = FindSpace();
  }

  int CountPages() override { return 1; }

  PageRecord Describe(int, int) override {
    constexpr int kBits = 8;
    m_page.width = m_layer.width;
    m_page.height = m_layer.height;
    m_page.bits = kBits * m_layer.channels;
    m_page.memoryBits = kBits * ShownChannels();
    if (Holds(kJpeg))
      Name(HasOwnQuality() ? 83 : 82, "JPEG");
    else if (Holds(kSingleColor))
      Name(81, "Single color");
    else
      Name(80, "None");
    return m_page;
  }

  Decoded Decode(int, int, const Canvas& canvas) override {
    std::vector<std::uint8_t> pixels(kTilePixels * kMostChannels);
    Decoded decoded = {m_layer.height, 0};
    std::size_t good = 0;
    const int columns = TilesIn(m_layer.width);
    for (int top = 0; top < m_layer.height; top += kSide) {
      const std::size_t before = good;
      for (int column = 0; column < columns; ++column) {
        const auto index = static_cast<std::size_t>(top / kSide) * static_cast<std::size_t>(columns) +
                           static_cast<std::size_t>(column);
        if (index < m_layer.tiles.size() && ReadTile(m_layer.tiles[index], pixels))
          ++good;
        else
          std::fill(pixels.begin(), pixels.end(), std::uint8_t{0xff});
        Place(pixels, column * kSide, top, canvas);
      }
      if (good - before != static_cast<std::size_t>(columns))
        decoded.damagedRows += std::min(kSide, m_layer.height - top);
    }
    if (good == 0) throw Failure(Status::kCorrupt, "no tile of the picture can be decoded");
    return decoded;
  }

 private:
  void Name(int format, const char* compression) {
    m_page.format = format;
    SetCompression(m_page, compression);
  }

  bool Holds(Coding coding) const {
    return std::any_of(m_layer.tiles.begin(), m_layer.tiles.end(),
                       [coding](const Tile& tile) { return tile.coding == coding; });
  }

  /// Grey is shown without its opacity.
  int ShownChannels() const { return m_layer.channels == 2 ? 1 : m_layer.channels; }

  /// After two counts a word for each channel, whose upper half is the space.
  Space FindSpace() const {
    constexpr std::uint32_t kPhotoYcc = 2;
    constexpr std::uint32_t kUncalibrated = 0x8000;
    if (!m_contents || m_layer.channels < 3) return Space::kOther;
    const auto color = m_contents->Block(0x02000002 | static_cast<std::uint32_t>(m_layer.number) << 16);
    if (color.size() < 12) return Space::kOther;
    return (LittleU32(&color[8]) >> 16 & ~kUncalibrated) == kPhotoYcc ? Space::kPhotoYcc : Space::kOther;
  }

  bool ReadTile(const Tile& tile, std::span<std::uint8_t> pixels) {
    const auto channels = static_cast<std::size_t>(m_layer.channels);
    pixels = pixels.first(kTilePixels * channels);
    bool read = true;
    if (tile.coding == kSingleColor)
      for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = tile.detail[i % channels];
    else if (tile.coding == kPlain)
      read = tile.bytes >= pixels.size() && m_file.Read(m_layer.data, StartOf(tile), pixels);
    else
      read = tile.coding == kJpeg && ReadJpeg(tile, pixels);
    if (read && m_space == Space::kPhotoYcc)
      for (std::size_t i = 0; i < pixels.size(); i += channels) ConvertPhotoYcc(&pixels[i]);
    return read;
  }

  static std::uint64_t StartOf(const Tile& tile) { return std::uint64_t{kStreamPrefix} + tile.offset; }

  /// Whether the first tile in JPEG was made with a factor that its writer was told. What can't be read
  /// doesn't tell.
  bool HasOwnQuality() {
    const Tile& tile = *std::find_if(m_layer.tiles.begin(), m_layer.tiles.end(),
                                     [](const Tile& any) { return any.coding == kJpeg; });
    const std::uint8_t number = tile.detail[3];
    const bool read = number != 0 ? UseTables(number) : ReadCoded(tile) && m_jpeg.ReadTablesOf(m_coded);
    return read && !m_jpeg.HasStandardQuantisation();
  }

  bool ReadCoded(const Tile& tile) {
    constexpr std::size_t kMostBytes = 1'000'000;
    if (tile.bytes > kMostBytes) return false;
    m_coded.resize(tile.bytes);
    return m_file.Read(m_layer.data, StartOf(tile), m_coded);
  }

  bool ReadJpeg(const Tile& tile, std::span<std::uint8_t> pixels) {
    return UseTables(tile.detail[3]) && ReadCoded(tile) &&
           m_jpeg.Decode(m_coded, kSide, m_layer.channels, tile.detail[2] != 0, pixels);
  }

  /// 0: the tile has its own.
  bool UseTables(std::uint8_t number) {
    if (number == 0 || number == m_tables) return true;
    m_tables = 0;
    if (!m_contents) return false;
    const auto tables = m_contents->Block(0x03000001 | static_cast<std::uint32_t>(number) << 16);
    if (tables.empty() || !m_jpeg.ReadTables(tables)) return false;
    m_tables = number;
    return true;
  }

  void Place(std::span<const std::uint8_t> pixels, int left, int top, const Canvas& canvas) const {
    const int from = m_layer.channels;
    const int to = ShownChannels();
    const int width = std::min(kSide, m_layer.width - left);
    const int height = std::min(kSide, m_layer.height - top);
    for (int y = 0; y < height; ++y) {
      const std::uint8_t* pixel =
          &pixels[static_cast<std::size_t>(y) * kSide * static_cast<std::size_t>(from)];
      std::uint8_t* row = canvas.Row(top + y) + std::ptrdiff_t{left} * to;
      for (int x = 0; x < width; ++x, pixel += from, row += to) std::copy_n(pixel, to, row);
    }
  }

  CompoundFile m_file;
  Layer m_layer;
  std::optional<PropertySet> m_contents;
  Space m_space = Space::kOther;
  TileJpeg m_jpeg;
  std::uint8_t m_tables = 0;
  std::vector<std::uint8_t> m_coded;
  PageRecord m_page;
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Flashpix>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
