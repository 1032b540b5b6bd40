#include <algorithm>
#include <array>
#include <cstring>
#include <span>
#include <vector>

#include "imaging/codecs/raster.h"
#include "imaging/codecs/rows.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

// FLIC animations, FLI and FLC: pictures of 256 colours, most of which tell how they differ from the one
// before. Each frame is a page, but for the last one, which leads back to the first.
namespace imaging {
namespace {

constexpr std::int64_t kHeader = 128;
constexpr std::int64_t kFrameHeader = 16;
constexpr std::int64_t kChunkHeader = 6;
constexpr unsigned kFrame = 0xf1fa;

enum class ChunkType {
  kColors8 = 4,
  kWords = 7,
  kColors6 = 11,
  kBytes = 12,
  kBlack = 13,
  kRuns = 15,
  kPlain = 16,
};

/// Pictures that need none before them.
bool IsWhole(ChunkType type) {
  return type == ChunkType::kBlack || type == ChunkType::kRuns || type == ChunkType::kPlain;
}

struct Chunk {
  ChunkType type;
  std::int64_t data;
  std::int64_t end;
};

/// What a chunk holds, and zeros behind it: one that goes on in the next would make the work on a file
/// endless.
class ChunkReader {
 public:
  ChunkReader(const Source& source, const Chunk& chunk) : m_reader(source, chunk.data), m_end(chunk.end) {}
  bool AtEnd() const { return m_reader.AtEnd() || m_reader.Position() >= m_end; }
  std::uint8_t U8() { return AtEnd() ? 0 : m_reader.U8(); }
  unsigned U16() {
    const unsigned low = U8();
    return low | static_cast<unsigned>(U8()) << 8;
  }
  void Read(std::span<std::uint8_t> target) {
    const auto left = static_cast<std::size_t>(std::max<std::int64_t>(m_end - m_reader.Position(), 0));
    m_reader.Read(target.first(std::min(left, target.size())));
  }
  void Skip(std::size_t count) { m_reader.Skip(static_cast<std::int64_t>(count)); }

 private:
  ByteReader m_reader;
  std::int64_t m_end;
};

using Colors = std::array<RGBQUAD, 256>;

void ReadColors(ChunkReader& data, int bits, Colors& colors) {
  const auto level = [&data, bits] {
    const unsigned value = data.U8();
    return static_cast<std::uint8_t>(bits == 8 ? value : value << 2 | (value >> 4 & 3));
  };
  std::size_t next = 0;
  for (unsigned packets = data.U16(); packets > 0 && !data.AtEnd(); --packets) {
    next += data.U8();
    const unsigned told = data.U8();
    for (unsigned count = told == 0 ? 256 : told; count > 0 && next < colors.size(); --count, ++next) {
      const std::uint8_t red = level();
      const std::uint8_t green = level();
      colors[next] = {level(), green, red, 0};
    }
  }
}

/// A row that is written from left to right; what would go over its end is dropped.
class Row {
 public:
  explicit Row(std::span<std::uint8_t> pixels) : m_left(pixels) {}
  std::size_t Left() const { return m_left.size(); }
  void Skip(std::size_t count) { m_left = m_left.subspan(std::min(count, m_left.size())); }
  void Copy(ChunkReader& data, std::size_t count) {
    const auto target = m_left.first(std::min(count, m_left.size()));
    data.Read(target);
    data.Skip(count - target.size());
    Skip(count);
  }
  void Repeat(std::span<const std::uint8_t> pattern, int times) {
    for (; times > 0 && !m_left.empty(); --times) {
      std::copy_n(pattern.begin(), std::min(pattern.size(), m_left.size()), m_left.begin());
      Skip(pattern.size());
    }
  }

 private:
  std::span<std::uint8_t> m_left;
};

/// The picture of the page asked for, which the chunks up to it make.
class Screen {
 public:
  explicit Screen(PixelStorage& pixels) : m_pixels(pixels) {}

  void Draw(ChunkReader& data, ChunkType type) {
    switch (type) {
      case ChunkType::kBlack:
        for (int y = 0; y < m_pixels.Height(); ++y) std::ranges::fill(PixelsOf(y), std::uint8_t{0});
        break;
      case ChunkType::kPlain:
        for (int y = 0; y < m_pixels.Height() && !data.AtEnd(); ++y) data.Read(PixelsOf(y));
        break;
      case ChunkType::kRuns:
        for (int y = 0; y < m_pixels.Height() && !data.AtEnd(); ++y) DrawRuns(data, Row(PixelsOf(y)));
        break;
      case ChunkType::kBytes:
        DrawBytes(data);
        break;
      default:
        DrawWords(data);
    }
  }

 private:
  std::span<std::uint8_t> PixelsOf(int y) const {
    return {m_pixels.Row(y), static_cast<std::size_t>(m_pixels.Width())};
  }

  /// The count of packets in front is too small for wide pictures; the width ends the row.
  static void DrawRuns(ChunkReader& data, Row row) {
    data.U8();
    while (row.Left() > 0 && !data.AtEnd()) {
      const auto count = static_cast<std::int8_t>(data.U8());
      if (count < 0) {
        row.Copy(data, static_cast<std::size_t>(-count));
      } else {
        const std::array pixel = {data.U8()};
        row.Repeat(pixel, count);
      }
    }
  }

  void DrawBytes(ChunkReader& data) {
    int y = static_cast<int>(data.U16());
    for (unsigned rows = data.U16(); rows > 0 && y < m_pixels.Height() && !data.AtEnd(); --rows, ++y) {
      Row row(PixelsOf(y));
      for (int packets = data.U8(); packets > 0; --packets) {
        row.Skip(data.U8());
        const auto count = static_cast<std::int8_t>(data.U8());
        if (count >= 0) {
          row.Copy(data, static_cast<std::size_t>(count));
        } else {
          const std::array pixel = {data.U8()};
          row.Repeat(pixel, -count);
        }
      }
    }
  }

  /// Words before a row skip rows or set the last pixel of a picture of odd width.
  void DrawWords(ChunkReader& data) {
    constexpr unsigned kSkipsRows = 3;
    constexpr unsigned kSetsLast = 2;
    int y = 0;
    for (unsigned rows = data.U16(); rows > 0 && y < m_pixels.Height() && !data.AtEnd();) {
      const unsigned word = data.U16();
      if (word >> 14 == kSkipsRows) {
        y += 0x10000 - static_cast<int>(word);
        continue;
      }
      if (word >> 14 == kSetsLast) {
        PixelsOf(y).back() = static_cast<std::uint8_t>(word);
        continue;
      }
      DrawWordRow(data, Row(PixelsOf(y)), static_cast<int>(word));
      ++y;
      --rows;
    }
  }

  static void DrawWordRow(ChunkReader& data, Row row, int packets) {
    for (; packets > 0 && !data.AtEnd(); --packets) {
      row.Skip(data.U8());
      const auto count = static_cast<std::int8_t>(data.U8());
      if (count >= 0) {
        row.Copy(data, static_cast<std::size_t>(count) * 2);
      } else {
        const std::array pixels = {data.U8(), data.U8()};
        row.Repeat(pixels, -count);
      }
    }
  }

  PixelStorage& m_pixels;
};

class FlicReader final : public Reader {
 public:
  explicit FlicReader(const Source& source) : m_source(source), m_header(ReadHeader<kHeader>(source)) {}

  int CountPages() override {
    ListFrames();
    return static_cast<int>(m_frames.size());
  }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, CountPages());
    PageInfo info;
    info.format = LittleU16(&m_header[4]) == 0xaf11 ? kFormatFli : kFormatFlc;
    info.width = LittleU16(&m_header[8]);
    info.height = LittleU16(&m_header[10]);
    info.bits = 8;
    info.compression = "FLIC";
    CheckPageSize(m_source, info.width, info.height);
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& /*wish*/) override {
    constexpr int kMostExpansion = 20'000;  // a black picture is a chunk of six bytes
    DecodedPage decoded;
    decoded.info = Describe(page);
    CheckPlausible(m_source, std::int64_t{decoded.info.width} * decoded.info.height, kMostExpansion);
    decoded.pixels = PixelStorage::Create(decoded.info.width, decoded.info.height, 8);
    for (int y = 0; y < decoded.info.height; ++y)
      std::memset(decoded.pixels->Row(y), 0, decoded.pixels->RowBytes());
    Colors colors{};
    const std::vector<Chunk> chunks = ChunksUpTo(page, colors);
    if (chunks.empty())
      Fail(kErrorCorrupt, "%s: nothing of the animation can be decoded", m_source.Name().c_str());
    Screen screen(*decoded.pixels);
    for (const Chunk& chunk : chunks) {
      ChunkReader data(m_source, chunk);
      screen.Draw(data, chunk.type);
    }
    SetPalette(*decoded.pixels, {colors.begin(), colors.end()});
    return decoded;
  }

 private:
  /// As many as the header says, if it says how many.
  void ListFrames() {
    if (!m_frames.empty()) return;
    const std::size_t told = LittleU16(&m_header[6]);
    const std::size_t most = told != 0 ? told : static_cast<std::size_t>(Limit().pages);
    std::array<std::uint8_t, kChunkHeader> head{};
    for (std::int64_t at = kHeader; m_frames.size() < most && m_source.ReadExactly(at, head);) {
      const std::int64_t size = LittleU32(head.data());
      if (size < kChunkHeader) break;
      if (LittleU16(&head[4]) == kFrame) m_frames.push_back(at);
      at += size;
    }
    if (m_frames.empty()) Fail(kErrorCorrupt, "%s: the animation has no frame", m_source.Name().c_str());
  }

  /// What the page is drawn by, from the last whole picture on, so that no file has to be drawn twice over.
  /// The colours are those of all frames up to it.
  std::vector<Chunk> ChunksUpTo(int page, Colors& colors) const {
    std::vector<Chunk> chunks;
    for (int number = 0; number < page; ++number) {
      std::array<std::uint8_t, kFrameHeader> head{};
      std::int64_t at = m_frames[static_cast<std::size_t>(number)];
      if (!m_source.ReadExactly(at, head)) break;
      const std::int64_t end = at + LittleU32(head.data());
      at += kFrameHeader;
      for (int count = LittleU16(&head[6]); count > 0 && at + kChunkHeader <= end; --count) {
        std::array<std::uint8_t, kChunkHeader> chunk{};
        if (!m_source.ReadExactly(at, chunk)) break;
        const std::int64_t next = at + std::max<std::int64_t>(LittleU32(chunk.data()), kChunkHeader);
        Take({static_cast<ChunkType>(LittleU16(&chunk[4])), at + kChunkHeader, next}, colors, chunks);
        at = next;
      }
    }
    return chunks;
  }

  void Take(const Chunk& chunk, Colors& colors, std::vector<Chunk>& chunks) const {
    const bool eight = chunk.type == ChunkType::kColors8;
    if (eight || chunk.type == ChunkType::kColors6) {
      ChunkReader data(m_source, chunk);
      ReadColors(data, eight ? 8 : 6, colors);
    }
    if (IsWhole(chunk.type)) chunks.clear();
    if (IsWhole(chunk.type) || chunk.type == ChunkType::kBytes || chunk.type == ChunkType::kWords)
      chunks.push_back(chunk);
  }

  const Source& m_source;
  std::array<std::uint8_t, kHeader> m_header;
  std::vector<std::int64_t> m_frames;
};

/// Two bytes, and a depth and flags that mean something.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (head.size() < kHeader || head[5] != 0xaf || (head[4] != 0x11 && head[4] != 0x12)) return false;
  return (head[12] == 8 || head[12] == 0) && head[13] == 0;
}

}  // namespace

extern const Codec kFlicCodec = {Recognise, OpenAs<FlicReader>};

}  // namespace imaging
