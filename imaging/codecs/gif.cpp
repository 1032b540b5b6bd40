#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <unordered_map>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/rows.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

constexpr int kBytes = 4;  // of a pixel of the canvas: red, green, blue, alpha

/// What the control extension in front of a frame says, GIF89a, section 23.
struct FrameControl {
  int disposal = DISPOSAL_UNSPECIFIED;
  int transparent = NO_TRANSPARENT_COLOR;
};

/// giflib's decoder over a source, from frame to frame.
class GifStream {
 public:
  explicit GifStream(const Source& source) : m_source(source) {
    int error = 0;
    m_gif = DGifOpen(this, Read, &error);
    if (m_gif == nullptr) Fail(kErrorCorrupt, "%s: %s", source.Name().c_str(), Text(error));
  }
  ~GifStream() { DGifCloseFile(m_gif, nullptr); }
  GifStream(const GifStream&) = delete;
  GifStream& operator=(const GifStream&) = delete;

  const GifFileType& Gif() const { return *m_gif; }
  const FrameControl& Control() const { return m_control; }

  /// Goes to the next frame's pixels; false at the end or where the file is damaged.
  bool NextFrame() {
    m_control = {};
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(m_gif, &type) == GIF_OK) {
      if (type == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(m_gif) == GIF_OK;
      if (type == TERMINATE_RECORD_TYPE || (type == EXTENSION_RECORD_TYPE && !ReadExtension())) return false;
    }
    return false;
  }
  bool SkipPixels() {
    int codeSize = 0;
    GifByteType* block = nullptr;
    if (DGifGetCode(m_gif, &codeSize, &block) != GIF_OK) return false;
    while (block != nullptr)
      if (DGifGetCodeNext(m_gif, &block) != GIF_OK) return false;
    return true;
  }
  bool ReadRow(std::vector<GifByteType>& row) {
    return DGifGetLine(m_gif, row.data(), static_cast<int>(row.size())) == GIF_OK;
  }
  const char* ErrorText() const { return Text(m_gif->Error); }

 private:
  static const char* Text(int error) {
    const char* text = GifErrorString(error);
    return text == nullptr ? "the file ends too early" : text;
  }
  static int Read(GifFileType* gif, GifByteType* target, int size) {
    auto& self = *static_cast<GifStream*>(gif->UserData);
    const std::size_t got = self.m_source.ReadAt(self.m_position, {target, static_cast<std::size_t>(size)});
    self.m_position += static_cast<std::int64_t>(got);
    return static_cast<int>(got);
  }
  bool ReadExtension() {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(m_gif, &code, &block) != GIF_OK) return false;
    while (block != nullptr) {
      GraphicsControlBlock control{};
      if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
        m_control = {control.DisposalMode, control.TransparentColor};
      if (DGifGetExtensionNext(m_gif, &block) != GIF_OK) return false;
    }
    return true;
  }

  const Source& m_source;
  std::int64_t m_position = 0;
  GifFileType* m_gif = nullptr;
  FrameControl m_control;
};

/// The colours of a frame; indices without a colour are black, a file without any table is grey.
std::array<RGBQUAD, 256> ReadColors(const GifFileType& gif) {
  std::array<RGBQUAD, 256> colors{};
  const ColorMapObject* map = gif.Image.ColorMap != nullptr ? gif.Image.ColorMap : gif.SColorMap;
  for (int i = 0; i < 256; ++i) {
    const auto level = static_cast<BYTE>(i);
    RGBQUAD& color = colors[static_cast<std::size_t>(i)];
    if (map == nullptr)
      color = {level, level, level, 0};
    else if (i < map->ColorCount)
      color = {map->Colors[i].Blue, map->Colors[i].Green, map->Colors[i].Red, 0};
  }
  return colors;
}

/// The line of the picture that comes as the n-th of an interlaced frame (GIF89a, appendix E).
int InterlacedLine(int n, int height) {
  static constexpr std::array<std::array<int, 2>, 4> kPasses = {{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
  for (const auto& [first, step] : kPasses) {
    const int lines = height > first ? (height - first + step - 1) / step : 0;
    if (n < lines) return first + n * step;
    n -= lines;
  }
  return height - 1;
}

/// The logical screen, on which frames are drawn one after the other.
class Canvas {
 public:
  Canvas(int width, int height) : m_pixels(PixelStorage::Create(width, height, kBytes * 8)) {
    for (int y = 0; y < height; ++y) std::memset(m_pixels->Row(y), 0, m_pixels->RowBytes());
  }

  std::unique_ptr<PixelStorage> Take() { return std::move(m_pixels); }
  const PixelStorage& Pixels() const { return *m_pixels; }

  /// Draws a frame; returns how many of its lines there were.
  int Draw(GifStream& stream) {
    const GifImageDesc& frame = stream.Gif().Image;
    const auto colors = ReadColors(stream.Gif());
    std::vector<GifByteType> line(static_cast<std::size_t>(frame.Width));
    for (int i = 0; i < frame.Height; ++i) {
      if (!stream.ReadRow(line)) return i;
      const int y = frame.Top + (frame.Interlace ? InterlacedLine(i, frame.Height) : i);
      if (y < m_pixels->Height()) DrawLine(frame.Left, y, line, colors, stream.Control().transparent);
    }
    return frame.Height;
  }

  void Clear(const GifImageDesc& frame) {
    const int right = std::min(frame.Left + frame.Width, m_pixels->Width());
    const int bottom = std::min(frame.Top + frame.Height, m_pixels->Height());
    for (int y = frame.Top; y < bottom && frame.Left < right; ++y)
      std::memset(m_pixels->Row(y) + static_cast<std::ptrdiff_t>(frame.Left) * kBytes, 0,
                  static_cast<std::size_t>(right - frame.Left) * kBytes);
  }

  std::unique_ptr<PixelStorage> Copy() const { return CopyOf(*m_pixels); }
  static std::unique_ptr<PixelStorage> CopyOf(const PixelStorage& pixels) {
    auto copy = PixelStorage::Create(pixels.Width(), pixels.Height(), kBytes * 8);
    for (int y = 0; y < copy->Height(); ++y) std::memcpy(copy->Row(y), pixels.Row(y), copy->RowBytes());
    return copy;
  }
  void Restore(std::unique_ptr<PixelStorage> pixels) { m_pixels = std::move(pixels); }

 private:
  void DrawLine(int left, int y, const std::vector<GifByteType>& line, const std::array<RGBQUAD, 256>& colors,
                int transparent) {
    const int count = std::min(static_cast<int>(line.size()), m_pixels->Width() - left);
    std::uint8_t* pixel = m_pixels->Row(y) + static_cast<std::ptrdiff_t>(left) * kBytes;
    for (int x = 0; x < count; ++x, pixel += kBytes) {
      const GifByteType index = line[static_cast<std::size_t>(x)];
      const bool clear = index == transparent;
      if (clear && pixel[3] != 0) continue;
      pixel[0] = colors[index].rgbRed;
      pixel[1] = colors[index].rgbGreen;
      pixel[2] = colors[index].rgbBlue;
      pixel[3] = clear ? 0 : 0xff;
    }
  }

  std::unique_ptr<PixelStorage> m_pixels;
};

/// An opaque screen of at most 256 colours as 8 bits; null if it is none.
std::unique_ptr<PixelStorage> ReduceToPalette(const PixelStorage& screen) {
  std::vector<RGBQUAD> colors;
  std::unordered_map<std::uint32_t, std::uint8_t> indices;
  auto reduced = PixelStorage::Create(screen.Width(), screen.Height(), 8);
  std::uint32_t last = 0;
  std::uint8_t lastIndex = 0;
  for (int y = 0; y < screen.Height(); ++y)
    for (int x = 0; x < screen.Width(); ++x) {
      std::uint32_t pixel = 0;
      const std::uint8_t* bytes = screen.Row(y) + static_cast<std::ptrdiff_t>(x) * kBytes;
      std::memcpy(&pixel, bytes, sizeof pixel);
      if (bytes[3] != 0xff) return nullptr;
      if (pixel != last) {
        const auto [entry, added] = indices.try_emplace(pixel, static_cast<std::uint8_t>(colors.size()));
        if (added && colors.size() == 256) return nullptr;
        if (added) colors.push_back({bytes[2], bytes[1], bytes[0], 0});
        last = pixel;
        lastIndex = entry->second;
      }
      reduced->Row(y)[x] = lastIndex;
    }
  SetPalette(*reduced, colors);
  return reduced;
}

/// The screen of the file shown last, just before a frame was drawn: paging through n frames so takes the
/// time of 2 n frames and not of n^2 / 2.
struct Playback {
  std::optional<SourceIdentity> identity;
  int next = 0;  ///< the frame to draw
  std::unique_ptr<PixelStorage> screen;
};

Playback& LastPlayback() {
  static Playback playback;
  return playback;
}

class GifReader final : public Reader {
 public:
  explicit GifReader(const Source& source) : m_source(source) {}

  int CountPages() override {
    GifStream stream(m_source);
    int count = 0;
    while (count < limits::kMaxPages && stream.NextFrame()) {
      ++count;
      if (!stream.SkipPixels()) break;
    }
    return count;
  }

  PageInfo Describe(int page) override {
    GifStream stream(m_source);
    for (int number = 1; number <= page; ++number) {
      RequireFrame(stream, number);
      if (number < page && !stream.SkipPixels()) RequireFrame(stream, page);
    }
    if (page < 1) RequirePage(m_source, page, 1);
    return DescribeScreen(stream);
  }

  /// A frame shows only together with those before it.
  DecodedPage Decode(int page, const DecodeWish& /*wish*/) override {
    RequirePage(m_source, page, limits::kMaxPages);
    GifStream stream(m_source);
    DecodedPage decoded;
    decoded.info = DescribeScreen(stream);
    RequireFrame(stream, 1);
    if (page == 1 && PlainFrame(stream)) {
      decoded.pixels = DecodePlain(stream);
      return decoded;
    }
    Canvas canvas(decoded.info.width, decoded.info.height);
    int number = Resume(stream, canvas, page);
    for (; number < page; ++number) {
      DrawAndDispose(stream, canvas, number);
      RequireFrame(stream, number + 1);
    }
    Remember(canvas, page);
    if (canvas.Draw(stream) == 0) FailFrame(stream, page);
    decoded.pixels = ReduceToPalette(canvas.Pixels());
    if (decoded.pixels == nullptr) decoded.pixels = canvas.Take();
    return decoded;
  }

 private:
  PageInfo DescribeScreen(const GifStream& stream) const {
    PageInfo info;
    info.format = kFormatGif;
    info.width = stream.Gif().SWidth;
    info.height = stream.Gif().SHeight;
    // Frames may each have a table of their own; on the screen they meet as bytes.
    info.bits = 8;
    info.compression = "LZW";
    CheckPageSize(m_source, info.width, info.height);
    constexpr int kLzwExpansion = 3000;
    CheckPlausible(m_source, std::int64_t{info.width} * info.height, kLzwExpansion);
    return info;
  }

  void DrawAndDispose(GifStream& stream, Canvas& canvas, int number) const {
    const bool restore = stream.Control().disposal == DISPOSE_PREVIOUS;
    auto before = restore ? canvas.Copy() : nullptr;
    if (canvas.Draw(stream) == 0) FailFrame(stream, number);
    if (restore)
      canvas.Restore(std::move(before));
    else if (stream.Control().disposal == DISPOSE_BACKGROUND)
      canvas.Clear(stream.Gif().Image);
  }

  /// Goes on from the remembered screen if it belongs to this file and lies before the page; the stream
  /// stands at frame 1 then, and afterwards at the frame whose number is returned.
  int Resume(GifStream& stream, Canvas& canvas, int page) const {
    const Playback& playback = LastPlayback();
    const auto identity = m_source.Identity();
    if (!identity || playback.identity != identity || playback.next > page) return 1;
    for (int number = 1; number < playback.next; ++number) {
      if (!stream.SkipPixels()) FailFrame(stream, number);
      RequireFrame(stream, number + 1);
    }
    canvas.Restore(Canvas::CopyOf(*playback.screen));
    return playback.next;
  }

  void Remember(const Canvas& canvas, int next) const {
    constexpr std::int64_t kMostPixels = 8'000'000;
    const auto identity = m_source.Identity();
    const std::int64_t pixels = std::int64_t{canvas.Pixels().Width()} * canvas.Pixels().Height();
    if (identity && next > 1 && pixels <= kMostPixels) LastPlayback() = {identity, next, canvas.Copy()};
  }

  [[noreturn]] void FailFrame(const GifStream& stream, int number) const {
    Fail(kErrorCorrupt, "%s, page %d: %s", m_source.Name().c_str(), number, stream.ErrorText());
  }

  /// Frames that hang over the edge of the screen are cut; one that is larger than the screen is no picture.
  void RequireFrame(GifStream& stream, int number) const {
    if (!stream.NextFrame()) {
      if (number == 1) Fail(kErrorCorrupt, "%s: the GIF file has no picture", m_source.Name().c_str());
      Fail(kErrorPageNotFound, "%s has no page %d", m_source.Name().c_str(), number);
    }
    const GifImageDesc& frame = stream.Gif().Image;
    CheckPageSize(m_source, frame.Width, frame.Height);
    if (frame.Width > stream.Gif().SWidth || frame.Height > stream.Gif().SHeight)
      Fail(kErrorCorrupt, "%s, page %d: a frame of %d by %d pixels is larger than the screen",
           m_source.Name().c_str(), number, frame.Width, frame.Height);
  }

  static bool PlainFrame(const GifStream& stream) {
    const GifFileType& gif = stream.Gif();
    return gif.Image.Left == 0 && gif.Image.Top == 0 && gif.Image.Width == gif.SWidth &&
           gif.Image.Height == gif.SHeight && stream.Control().transparent == NO_TRANSPARENT_COLOR;
  }

  /// Lines that a file that is cut off doesn't have are of the first colour.
  std::unique_ptr<PixelStorage> DecodePlain(GifStream& stream) const {
    const GifImageDesc& frame = stream.Gif().Image;
    auto pixels = PixelStorage::Create(frame.Width, frame.Height, 8);
    SetPalette(*pixels, ReadColors(stream.Gif()));
    std::vector<GifByteType> line(static_cast<std::size_t>(frame.Width));
    bool more = true;
    for (int i = 0; i < frame.Height; ++i) {
      std::uint8_t* row = pixels->Row(frame.Interlace ? InterlacedLine(i, frame.Height) : i);
      more = more && stream.ReadRow(line);
      if (!more && i == 0) FailFrame(stream, 1);
      if (more)
        std::memcpy(row, line.data(), line.size());
      else
        std::memset(row, 0, line.size());
    }
    return pixels;
  }

  const Source& m_source;
};

bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  return head.size() >= 6 &&
         (std::memcmp(head.data(), "GIF87a", 6) == 0 || std::memcmp(head.data(), "GIF89a", 6) == 0);
}

}  // namespace

const Codec kGifCodec = {Recognise, OpenAs<GifReader>};

}  // namespace imaging
