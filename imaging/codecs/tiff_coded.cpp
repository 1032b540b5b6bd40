#include "imaging/codecs/tiff_coded.h"

#include <algorithm>
#include <span>

#include "imaging/codecs/jpeg_header.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

using Bytes = std::vector<std::uint8_t>;
using View = std::span<const std::uint8_t>;

constexpr std::uint8_t kRst0 = 0xd0;
constexpr std::uint8_t kEoi = 0xd9;
constexpr std::uint8_t kDri = 0xdd;
constexpr std::size_t kMark = 2;  // bytes of a marker
constexpr int kBlock = 8;         // pixels along the edge of a block

std::optional<Bytes> ReadStrip(const TiffHandle& tiff, std::uint32_t strip) {
  const std::uint64_t offset = TIFFGetStrileOffset(tiff.Get(), strip);
  const std::uint64_t count = TIFFGetStrileByteCount(tiff.Get(), strip);
  const auto size = static_cast<std::uint64_t>(tiff.File().Size());
  if (offset == 0 || count < 2 * kMark || offset > size || count > size - offset ||
      count > static_cast<std::uint64_t>(Limit().codecBytes))
    return std::nullopt;
  Bytes bytes(static_cast<std::size_t>(count));
  if (!tiff.File().ReadExactly(static_cast<std::int64_t>(offset), bytes)) return std::nullopt;
  return bytes;
}

/// A strip as a stream of its own, without the tables that all strips share.
struct JpegStrip {
  Bytes bytes;
  JpegHeader header;

  /// From behind the start to the first coded byte, the height left out.
  Bytes Head() const {
    Bytes head(bytes.begin() + kMark, bytes.begin() + header.scanData);
    const auto height = head.begin() + header.heightAt - static_cast<std::ptrdiff_t>(kMark);
    std::fill_n(height, 2, std::uint8_t{0});
    return head;
  }
  /// The coded bytes, up to the end mark.
  View Scan() const {
    constexpr std::uint8_t kEnd[] = {0xff, kEoi};
    const auto end = std::find_end(bytes.begin() + header.scanData, bytes.end(), kEnd, std::end(kEnd));
    return {bytes.begin() + header.scanData, end};
  }
};

std::optional<JpegStrip> ReadJpegStrip(const TiffHandle& tiff, std::uint32_t strip) {
  auto bytes = ReadStrip(tiff, strip);
  if (!bytes || (*bytes)[0] != 0xff || (*bytes)[1] != 0xd8) return std::nullopt;
  const auto source = OpenBlockSource(*bytes, tiff.File().Name());
  const JpegHeader header = ReadJpegHeader(*source);
  if (header.scanData <= 0 || header.scanData >= static_cast<std::int64_t>(bytes->size()) ||
      header.heightAt <= 0)
    return std::nullopt;
  return JpegStrip{*std::move(bytes), header};
}

/// A stretch between restart marks starts afresh as a strip does, so strips of whole rows of blocks become
/// the stretches of one scan (T.81, F.1.1.5.2), their coded bytes unchanged.
class JoinedStrips {
 public:
  JoinedStrips(const TiffHandle& tiff, const TiffLayout& layout) : m_tiff(tiff), m_layout(layout) {}

  std::optional<Bytes> Join() {
    const auto count = TIFFNumberOfStrips(m_tiff.Get());
    for (std::uint32_t strip = 0; strip < count; ++strip) {
      const auto read = ReadJpegStrip(m_tiff, strip);
      if (!read || !Fits(*read, strip) || (count > 1 && !MayBeJoined(*read))) return std::nullopt;
      if (strip == 0)
        Begin(*read, count);
      else if (read->Head() != m_head)
        return std::nullopt;
      if (count == 1) return Whole(*read);
      if (strip > 0) Mark(static_cast<std::uint8_t>(kRst0 + (strip - 1) % 8));
      const View scan = read->Scan();
      m_joined.insert(m_joined.end(), scan.begin(), scan.end());
    }
    Mark(kEoi);
    return m_joined;
  }

 private:
  int RowsOf(std::uint32_t strip) const {
    return std::min(m_layout.bandHeight, m_layout.height - static_cast<int>(strip) * m_layout.bandHeight);
  }
  bool Fits(const JpegStrip& strip, std::uint32_t number) const {
    const JpegHeader& header = strip.header;
    const bool known = header.process == JpegProcess::kBaseline || header.process == JpegProcess::kExtended ||
                       header.process == JpegProcess::kProgressive;
    return known && !header.arithmetic && header.precision == 8 && !header.heightFromDnl &&
           header.components == m_layout.samples && header.width == m_layout.width &&
           header.height == RowsOf(number);
  }
  /// Of several scans each would have to be joined; and stretches of a strip's own would need counting.
  bool MayBeJoined(const JpegStrip& strip) const {
    const JpegHeader& header = strip.header;
    const std::uint8_t* scan = strip.bytes.data() + header.scanData;
    const int inScan = scan[-4 - 2 * header.components];
    const View coded = strip.Scan();
    const auto mark = std::adjacent_find(coded.begin(), coded.end(),
                                         [](std::uint8_t a, std::uint8_t b) { return a == 0xff && b != 0; });
    return header.process != JpegProcess::kProgressive && inScan == header.components &&
           m_layout.bandHeight % BlockHeight(header) == 0 && Interval(header) <= 0xffff &&
           mark == coded.end();
  }
  static bool IsSingle(const JpegHeader& header) { return header.components == 1; }
  static int Highest(const JpegHeader& header, const std::array<int, 4>& factors) {
    if (IsSingle(header)) return 1;  // its blocks stand one by one, whatever the factor (A.2.2)
    return *std::max_element(factors.begin(), factors.begin() + header.components);
  }
  static int BlockHeight(const JpegHeader& header) { return kBlock * Highest(header, header.vertical); }
  int Interval(const JpegHeader& header) const {
    const int width = kBlock * Highest(header, header.horizontal);
    return (m_layout.width + width - 1) / width * (m_layout.bandHeight / BlockHeight(header));
  }

  void Mark(std::uint8_t code) {
    m_joined.push_back(0xff);
    m_joined.push_back(code);
  }
  void Begin(const JpegStrip& first, std::uint32_t count) {
    m_head = first.Head();
    m_joined.assign(first.bytes.begin(), first.bytes.begin() + kMark);
    std::uint32_t size = 0;
    const std::uint8_t* tables = nullptr;
    if (TIFFGetField(m_tiff.Get(), TIFFTAG_JPEGTABLES, &size, &tables) != 0 && size > 2 * kMark)
      m_joined.insert(m_joined.end(), tables + kMark, tables + size - kMark);
    if (count == 1) return;
    const int interval = Interval(first.header);
    Mark(kDri);
    for (const int byte : {0, 4, interval >> 8, interval & 0xff})
      m_joined.push_back(static_cast<std::uint8_t>(byte));
    const std::size_t head = m_joined.size();
    m_joined.insert(m_joined.end(), m_head.begin(), m_head.end());
    const std::size_t height = head + static_cast<std::size_t>(first.header.heightAt) - kMark;
    m_joined[height] = static_cast<std::uint8_t>(m_layout.height >> 8);
    m_joined[height + 1] = static_cast<std::uint8_t>(m_layout.height);
  }
  Bytes Whole(const JpegStrip& strip) {
    m_joined.insert(m_joined.end(), strip.bytes.begin() + kMark, strip.bytes.end());
    return m_joined;
  }

  const TiffHandle& m_tiff;
  const TiffLayout& m_layout;
  Bytes m_head;
  Bytes m_joined;
};

std::optional<CodedForm> ComposeJpeg(const TiffHandle& tiff, const TiffLayout& layout) {
  auto bytes = JoinedStrips(tiff, layout).Join();
  if (!bytes) return std::nullopt;
  return CodedForm{CodedForm::Coding::kJpeg, layout.samples, layout.photometric == PHOTOMETRIC_YCBCR, false,
                   *std::move(bytes)};
}

std::optional<CodedForm> ComposeFax(const TiffHandle& tiff, const TiffLayout& layout) {
  auto bytes = ReadStrip(tiff, 0);
  if (!bytes) return std::nullopt;
  return CodedForm{CodedForm::Coding::kGroup4, 1, false, !layout.MinIsWhite(), *std::move(bytes)};
}

bool IsPlainJpeg(const TiffLayout& layout) {
  const bool grey = layout.samples == 1 && layout.photometric == PHOTOMETRIC_MINISBLACK;
  const bool color = layout.samples == 3 && !layout.separatePlanes &&
                     (layout.photometric == PHOTOMETRIC_YCBCR || layout.photometric == PHOTOMETRIC_RGB);
  return layout.compression == COMPRESSION_JPEG && layout.bitsPerSample == 8 && layout.height <= 0xffff &&
         (grey || color);
}

/// Each strip of group 4 starts afresh without saying so, so there may be one alone.
bool IsPlainFax(const TiffHandle& tiff, const TiffLayout& layout) {
  return layout.compression == COMPRESSION_CCITTFAX4 && layout.Bilevel() &&
         layout.photometric <= PHOTOMETRIC_MINISBLACK && tiff.Long(TIFFTAG_GROUP4OPTIONS, 0) == 0 &&
         tiff.Short(TIFFTAG_FILLORDER, FILLORDER_MSB2LSB) == FILLORDER_MSB2LSB &&
         TIFFNumberOfStrips(tiff.Get()) == 1;
}

}  // namespace

std::shared_ptr<const CodedPage> CodedTiffPage(const TiffHandle& tiff, const TiffLayout& layout,
                                               std::uint64_t directory) {
  const bool jpeg = IsPlainJpeg(layout);
  if (layout.tiled || (!jpeg && !IsPlainFax(tiff, layout))) return nullptr;
  return std::make_shared<CodedPage>(tiff.File(),
                                     [jpeg, layout, directory, page = tiff.Page()](const Source& source) {
                                       const TiffHandle again(source, directory, page);
                                       return jpeg ? ComposeJpeg(again, layout) : ComposeFax(again, layout);
                                     });
}

}  // namespace imaging
