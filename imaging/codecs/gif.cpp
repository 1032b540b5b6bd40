#include <gif_lib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/gif_canvas.h"
#include "imaging/codecs/gif_frames.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/work.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

/// giflib's decoder over a source, for one frame: the library keeps a record of each frame that it has seen,
/// and finds none without unpacking those before it.
class GifStream {
 public:
  explicit GifStream(const Source& source) : m_reader(source) {
    int error = 0;
    m_gif = DGifOpen(this, Read, &error);
    if (m_gif == nullptr) Fail(kErrorCorrupt, "%s: %s", source.Name().c_str(), Text(error));
  }
  ~GifStream() { DGifCloseFile(m_gif, nullptr); }
  GifStream(const GifStream&) = delete;
  GifStream& operator=(const GifStream&) = delete;

  const GifFileType& Gif() const { return *m_gif; }
  /// Of the index that leaves what is on the screen, or -1.
  int Transparent() const { return m_transparent; }
  std::int64_t Position() const { return m_reader.Position(); }

  /// Goes to the pixels of a frame; false if it is damaged.
  bool GoTo(const GifFrame& frame) {
    m_reader.Seek(frame.start);
    GifRecordType type = UNDEFINED_RECORD_TYPE;
    while (DGifGetRecordType(m_gif, &type) == GIF_OK) {
      if (type == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(m_gif) == GIF_OK;
      if (type != EXTENSION_RECORD_TYPE || !ReadExtension()) return false;
    }
    return false;
  }
  /// Calls visit with each line and its place in the frame; returns how many lines there were.
  template <typename Visit>
  int ReadLines(const Visit& visit);
  const char* ErrorText() const { return Text(m_gif->Error); }

 private:
  static const char* Text(int error) {
    const char* text = GifErrorString(error);
    return text == nullptr ? "the file ends too early" : text;
  }
  static int Read(GifFileType* gif, GifByteType* target, int size) {
    ByteReader& reader = static_cast<GifStream*>(gif->UserData)->m_reader;
    reader.Read({target, static_cast<std::size_t>(size)});
    return reader.AtEnd() ? 0 : size;
  }
  bool ReadExtension() {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(m_gif, &code, &block) != GIF_OK) return false;
    while (block != nullptr) {
      GraphicsControlBlock control{};
      if (code == GRAPHICS_EXT_FUNC_CODE && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
        m_transparent = control.TransparentColor;
      if (DGifGetExtensionNext(m_gif, &block) != GIF_OK) return false;
    }
    return true;
  }

  ByteReader m_reader;
  GifFileType* m_gif = nullptr;
  int m_transparent = NO_TRANSPARENT_COLOR;
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

template <typename Visit>
int GifStream::ReadLines(const Visit& visit) {
  const GifImageDesc& frame = m_gif->Image;
  std::vector<GifByteType> line(static_cast<std::size_t>(frame.Width));
  for (int i = 0; i < frame.Height; ++i) {
    if (DGifGetLine(m_gif, line.data(), frame.Width) != GIF_OK) return i;
    visit(std::span<const std::uint8_t>(line), frame.Interlace ? InterlacedLine(i, frame.Height) : i);
  }
  return frame.Height;
}

/// What was learnt of a file, for the next page of it: paging on then costs the frame that is new.
struct Playback {
  Playback(int width, int height, std::int64_t begin)
      : frames(width, height, begin), screens(width, height) {}
  std::optional<SourceIdentity> identity;
  GifFrames frames;
  GifScreens screens;
};

/// Of the file shown last, or a new one.
std::shared_ptr<Playback> PlaybackOf(const Source& source, const GifStream& stream) {
  static std::shared_ptr<Playback> last;
  const auto identity = source.Identity();
  if (identity && last && last->identity == identity) return last;
  auto playback = std::make_shared<Playback>(stream.Gif().SWidth, stream.Gif().SHeight, stream.Position());
  playback->identity = identity;
  if (identity) last = playback;
  return playback;
}

constexpr RECT AreaOf(const GifFrame& frame) {
  return {frame.left, frame.top, frame.left + frame.width, frame.top + frame.height};
}

class GifReader final : public Reader {
 public:
  explicit GifReader(const Source& source) : m_source(source), m_work(source) {
    const GifStream stream(source);
    m_width = stream.Gif().SWidth;
    m_height = stream.Gif().SHeight;
    m_work.AllowPage(std::int64_t{m_width} * m_height);
    m_playback = PlaybackOf(source, stream);
  }

  int CountPages() override { return m_playback->frames.Count(m_source); }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, Limit().pages);
    RequireFrame(page);
    return DescribeScreen();
  }

  /// A frame shows only together with those before it.
  DecodedPage Decode(int page, const DecodeWish& /*wish*/) override {
    DecodedPage decoded;
    decoded.info = Describe(page);
    const GifFrame frame = RequireFrame(page);
    if (page == 1 && IsPlain(frame)) {
      decoded.pixels = DecodePlain(frame);
      return decoded;
    }
    GifCanvas canvas = Compose(page);
    decoded.pixels = ReduceToPalette(canvas.Pixels());
    const bool keep = m_playback->identity && m_playback->screens.Holds();
    if (decoded.pixels == nullptr) decoded.pixels = keep ? GifCanvas(canvas.Pixels()).Take() : canvas.Take();
    if (!keep) return decoded;
    Dispose(canvas, frame, m_replaced);
    m_playback->screens.KeepLast(page + 1, canvas.Take());
    return decoded;
  }

 private:
  PageInfo DescribeScreen() const {
    PageInfo info;
    info.format = kFormatGif;
    info.width = m_width;
    info.height = m_height;
    // Frames may each have a table of their own; on the screen they meet as bytes.
    info.bits = 8;
    info.compression = "LZW";
    CheckPageSize(m_source, info.width, info.height);
    constexpr int kLzwExpansion = 3000;
    CheckPlausible(m_source, std::int64_t{info.width} * info.height, kLzwExpansion);
    return info;
  }

  /// The screen with the page's frame drawn; what that frame took the place of is kept. Composing begins
  /// where the screen doesn't count, or before that if a damaged frame doesn't cover it after all.
  GifCanvas Compose(int page) {
    for (int start = RequireFrame(page).composedFrom;; start = RequireFrame(start - 1).composedFrom) {
      int number = start;
      const PixelStorage* kept = m_playback->screens.Latest(start + 1, page, number);
      GifCanvas canvas = kept == nullptr ? GifCanvas(m_width, m_height) : GifCanvas(*kept);
      if (DrawUpTo(canvas, number, page, start == 1 || kept != nullptr)) return canvas;
    }
  }

  /// False if the first frame has missing lines though it has to cover the screen.
  bool DrawUpTo(GifCanvas& canvas, int first, int page, bool mayLackLines) {
    for (int number = first;; ++number) {
      const GifFrame frame = RequireFrame(number);
      m_replaced =
          frame.disposal == DISPOSE_PREVIOUS ? canvas.Save(AreaOf(frame)) : std::vector<std::uint8_t>();
      const int lines = Draw(canvas, frame, number);
      if (number == first && !mayLackLines && lines < frame.height) return false;
      if (number == page) return true;
      Dispose(canvas, frame, m_replaced);
      if (m_playback->identity && m_playback->screens.Wants(number + 1))
        m_playback->screens.Keep(number + 1, GifCanvas(canvas.Pixels()).Take());
    }
  }

  int Draw(GifCanvas& canvas, const GifFrame& frame, int number) {
    if (!m_work.SpendPixels(std::int64_t{frame.width} * frame.height)) m_work.Fail();
    GifStream stream(m_source);
    if (!stream.GoTo(frame)) FailFrame(stream, number);
    const auto colors = ReadColors(stream.Gif());
    const int lines = stream.ReadLines([&](auto line, int y) {
      FailIfEndWanted();
      canvas.DrawLine(frame.left, frame.top + y, line, colors, stream.Transparent());
    });
    if (lines == 0) FailFrame(stream, number);
    return lines;
  }

  static void Dispose(GifCanvas& canvas, const GifFrame& frame, const std::vector<std::uint8_t>& replaced) {
    if (frame.disposal == DISPOSE_PREVIOUS)
      canvas.Restore(AreaOf(frame), replaced);
    else if (frame.disposal == DISPOSE_BACKGROUND)
      canvas.Clear(AreaOf(frame));
  }

  [[noreturn]] void FailFrame(const GifStream& stream, int number) const {
    Fail(kErrorCorrupt, "%s, page %d: %s", m_source.Name().c_str(), number, stream.ErrorText());
  }

  /// Frames that hang over the edge of the screen are cut; one that is larger than the screen is no picture.
  GifFrame RequireFrame(int number) const {
    const GifFrame* frame = m_playback->frames.Find(m_source, number);
    if (frame == nullptr) {
      if (number == 1) Fail(kErrorCorrupt, "%s: the GIF file has no picture", m_source.Name().c_str());
      Fail(kErrorPageNotFound, "%s has no page %d", m_source.Name().c_str(), number);
    }
    CheckPageSize(m_source, frame->width, frame->height);
    if (frame->width > m_width || frame->height > m_height)
      Fail(kErrorCorrupt, "%s, page %d: a frame of %d by %d pixels is larger than the screen",
           m_source.Name().c_str(), number, frame->width, frame->height);
    return *frame;
  }

  bool IsPlain(const GifFrame& frame) const {
    return frame.left == 0 && frame.top == 0 && frame.width == m_width && frame.height == m_height &&
           !frame.hasTransparent;
  }

  /// Lines that a file that is cut off doesn't have are of the first colour.
  std::unique_ptr<PixelStorage> DecodePlain(const GifFrame& frame) const {
    GifStream stream(m_source);
    if (!stream.GoTo(frame)) FailFrame(stream, 1);
    auto pixels = PixelStorage::Create(frame.width, frame.height, 8);
    SetPalette(*pixels, ReadColors(stream.Gif()));
    const int lines = stream.ReadLines([&](auto line, int y) {
      FailIfEndWanted();
      std::copy(line.begin(), line.end(), pixels->Row(y));
    });
    if (lines == 0) FailFrame(stream, 1);
    const bool interlaced = stream.Gif().Image.Interlace;
    for (int i = lines; i < frame.height; ++i)
      std::memset(pixels->Row(interlaced ? InterlacedLine(i, frame.height) : i), 0, pixels->RowBytes());
    return pixels;
  }

  const Source& m_source;
  WorkBudget m_work;
  int m_width = 0;
  int m_height = 0;
  std::shared_ptr<Playback> m_playback;
  std::vector<std::uint8_t> m_replaced;  ///< by the frame drawn last, if it gives way to what was there
};

bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  return head.size() >= 6 &&
         (std::memcmp(head.data(), "GIF87a", 6) == 0 || std::memcmp(head.data(), "GIF89a", 6) == 0);
}

}  // namespace

const Codec kGifCodec = {Recognise, OpenAs<GifReader>};

}  // namespace imaging
