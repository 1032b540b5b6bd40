#include "imaging/codecs/icon.h"

#include <algorithm>

#include "imaging/codecs/bmp_header.h"
#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"

// Icons and cursors of Windows: a directory of bitmaps with masks, or of whole PNG files.
namespace imaging {
namespace {

constexpr std::int64_t kDirectoryHeader = 6;
constexpr std::int64_t kDirectoryEntry = 16;

void PutU32(std::uint8_t* bytes, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) bytes[i] = static_cast<std::uint8_t>(value >> 8 * i);
}

/// The start of a bitmap file made of the icon's header: without the mask, which the height counts too, and
/// with the fourth byte of 32 bits told as alpha. The rest of the icon follows from skip on.
struct FileStart {
  std::vector<std::uint8_t> bytes;
  std::int64_t skip = 0;

  explicit FileStart(const Source& icon) : bytes(14), skip(LittleU32(ReadHeader<4>(icon).data())) {
    if (skip < 40 || skip > 124) Fail(kErrorCorrupt, "%s: the icon's header is damaged", icon.Name().c_str());
    bytes[0] = 'B';
    bytes[1] = 'M';
    bytes.resize(bytes.size() + static_cast<std::size_t>(skip));
    if (!icon.ReadExactly(0, std::span(bytes).subspan(14)))
      Fail(kErrorCorrupt, "%s: the icon is cut off", icon.Name().c_str());
    PutU32(&bytes[14 + 8],
           static_cast<std::uint32_t>(static_cast<std::int32_t>(LittleU32(&bytes[14 + 8])) / 2));
    if (LittleU16(&bytes[14 + 14]) == 32) TellAlpha();
  }

 private:
  void TellAlpha() {
    constexpr std::uint32_t kHeaderWithAlpha = 56;
    constexpr std::uint32_t kBitFields = 3;
    skip += std::int64_t{4} * LittleU32(&bytes[14 + 32]);  // colours that a palette screen would use
    bytes.resize(14 + kHeaderWithAlpha);
    PutU32(&bytes[10], 14 + kHeaderWithAlpha);
    PutU32(&bytes[14], kHeaderWithAlpha);
    PutU32(&bytes[14 + 16], kBitFields);
    for (std::size_t i = 0; i < 3; ++i) PutU32(&bytes[14 + 40 + 4 * i], 0xff0000U >> 8 * i);
    PutU32(&bytes[14 + 52], 0xff000000U);
  }
};

/// An alpha that leaves all opaque tells nothing.
bool HasAlpha(const PixelStorage& pixels) {
  if (pixels.Bits() != 32) return false;
  for (int y = 0; y < pixels.Height(); ++y)
    for (int x = 0; x < pixels.Width(); ++x)
      if (pixels.Row(y)[x * 4 + 3] != 0xff) return true;
  return false;
}

/// A row of any depth as blue, green and red, with a byte between for alpha.
void ExpandRow(const PixelStorage& pixels, int y, std::uint8_t* row) {
  const std::uint8_t* stored = pixels.Row(y);
  const int width = pixels.Width();
  if (pixels.Bits() > 8) {
    for (int x = 0; x < width; ++x)
      std::copy_n(stored + static_cast<std::ptrdiff_t>(x) * pixels.Bits() / 8, 3,
                  row + static_cast<std::ptrdiff_t>(x) * 4);
    return;
  }
  std::vector<std::uint8_t> samples(static_cast<std::size_t>(width));
  SpreadSamples(stored, pixels.Bits(), samples.data(), width);
  for (const std::uint8_t sample : samples) {
    const RGBQUAD& color = pixels.Palette()[sample];
    row[0] = color.rgbBlue;
    row[1] = color.rgbGreen;
    row[2] = color.rgbRed;
    row += 4;
  }
}

class IconReader final : public Reader {
 public:
  explicit IconReader(const Source& icon) : IconReader(icon, FileStart(icon)) {}

  int CountPages() override { return 1; }
  PageInfo Describe(int page) override {
    PageInfo info = m_picture->Describe(page);
    info.compression = "None";
    info.xResolution = info.yResolution = 0;  // the field is there, but an icon has no size on paper
    return info;
  }
  DecodedPage Decode(int page, const DecodeWish& wish) override {
    // Its rows aren't told: the mask may give them another depth.
    DecodedPage decoded = m_picture->Decode(page, {wish.order});
    decoded.info = Describe(page);
    if (!HasAlpha(*decoded.pixels)) ApplyMask(decoded);
    return decoded;
  }

 private:
  IconReader(const Source& icon, const FileStart& start)
      : m_icon(icon),
        m_file(OpenPrefixedSource(start.bytes, icon, start.skip)),
        m_header(ReadBmpHeader(*m_file)),
        m_dataOffset(m_header.dataOffset - std::ssize(start.bytes) + start.skip),
        m_picture(kBmpCodec.open(*m_file)) {}

  /// Where a bit of the mask is set the screen shows through. A mask that is missing or cut off hides
  /// nothing; a picture of which nothing is hidden stays as it is.
  void ApplyMask(DecodedPage& page) const {
    const int height = page.pixels->Height();
    const std::size_t stride = static_cast<std::size_t>(m_header.width + 31) / 32 * 4;
    std::vector<std::uint8_t> mask(stride * static_cast<std::size_t>(height));
    m_icon.ReadAt(m_dataOffset + (m_header.width * m_header.bits + 31) / 32 * 4 * height, mask);
    if (std::all_of(mask.begin(), mask.end(), [](std::uint8_t byte) { return byte == 0; })) return;
    CheckPlausible(m_icon, m_header.width * height * 4, 64);
    auto masked = PixelStorage::Create(page.pixels->Width(), height, 32);
    std::vector<std::uint8_t> hidden(static_cast<std::size_t>(masked->Width()) + 7);
    for (int y = 0; y < height; ++y) {
      ExpandRow(*page.pixels, y, masked->Row(y));
      const int line = m_header.topDown ? y : height - 1 - y;
      ExpandBits(&mask[stride * static_cast<std::size_t>(line)], hidden.data(), masked->Width(), 0xff, 0);
      for (std::ptrdiff_t x = 0; x < masked->Width(); ++x)
        masked->Row(y)[x * 4 + 3] = hidden[static_cast<std::size_t>(x)];
    }
    page.pixels = std::move(masked);
  }

  const Source& m_icon;
  std::unique_ptr<Source> m_file;
  BmpHeader m_header;
  std::int64_t m_dataOffset;
  std::unique_ptr<Reader> m_picture;
};

std::unique_ptr<Reader> OpenPicture(const Source& part) {
  auto png = OpenReaderOf(kPngCodec, part);
  return png != nullptr ? std::move(png) : std::make_unique<IconReader>(part);
}

struct Entry {
  AlbumPart part;
  std::int64_t pixels;
  int bits;
};

/// Sizes in the directory are often wrong, so the pictures themselves are asked; what can't be shown comes
/// last.
Entry Measure(const Source& source, const AlbumPart& part) {
  try {
    const auto window = OpenWindowSource(source, part.offset, part.size);
    const PageInfo info = OpenPicture(*window)->Describe(1);
    return {part, std::int64_t{info.width} * info.height, info.bits};
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
    return {part, 0, 0};
  }
}

}  // namespace

std::unique_ptr<Reader> OpenIcons(const Source& source) {
  const auto header = ReadHeader<kDirectoryHeader>(source);
  constexpr unsigned kMostPictures = 256;  // far more than there are in any that is used
  std::vector<Entry> entries;
  for (unsigned i = 0; i < std::min(LittleU16(&header[4]), kMostPictures); ++i) {
    std::array<std::uint8_t, kDirectoryEntry> entry{};
    if (!source.ReadExactly(kDirectoryHeader + i * kDirectoryEntry, entry)) break;
    // A length in the directory may be wrong too.
    const std::int64_t offset = LittleU32(&entry[12]);
    entries.push_back(Measure(source, {offset, source.Size() - offset}));
  }
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) {
    return a.pixels != b.pixels ? a.pixels > b.pixels : a.bits > b.bits;
  });
  std::vector<AlbumPart> parts(entries.size());
  std::transform(entries.begin(), entries.end(), parts.begin(),
                 [](const Entry& entry) { return entry.part; });
  return OpenAlbum(source, std::move(parts), header[2] == 2 ? kFormatCursor : kFormatIcon, OpenPicture);
}

namespace {

/// Four bytes that are nearly nothing, and a directory that fits into the file and ends before its first
/// picture.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (head.size() < kDirectoryHeader + kDirectoryEntry) return false;
  const std::int64_t end =
      kDirectoryHeader + kDirectoryEntry * static_cast<std::int64_t>(LittleU16(&head[4]));
  return LittleU16(head.data()) == 0 && (head[2] == 1 || head[2] == 2) && head[3] == 0 &&
         end > kDirectoryHeader && end <= candidate.source.Size() &&
         LittleU32(&head[kDirectoryHeader + 12]) >= end;
}

}  // namespace

const Codec kIconCodec = {Recognise, OpenIcons};

}  // namespace imaging
