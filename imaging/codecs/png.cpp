#include <png.h>

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/work.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

/// libpng's reading state over a source. As with JPEG a step jumps out of the library on an error, and no
/// object with a destructor lives inside a step.
class PngDecoder {
 public:
  explicit PngDecoder(const Source& source) : m_reader(source), m_work(source) {
    m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, OnError, [](png_structp, png_const_charp) {});
    if (m_png != nullptr) m_info = png_create_info_struct(m_png);
  }
  ~PngDecoder() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
  PngDecoder(const PngDecoder&) = delete;
  PngDecoder& operator=(const PngDecoder&) = delete;

  png_structp Png() const { return m_png; }
  png_infop Info() const { return m_info; }
  const char* Text() const { return m_text; }
  WorkBudget& Work() { return m_work; }

  /// Reads up to the first pixels.
  bool ReadHeader() {
    return m_info != nullptr && Step([this] {
             png_set_read_fn(m_png, this, OnRead);
             png_set_user_limits(m_png, Limit().side, Limit().side);
             SkipTexts();
             png_read_info(m_png, m_info);
           });
  }
  template <typename Action>
  bool Step(const Action& action) {
    if (setjmp(m_jump) != 0) return false;
    action();
    return true;
  }
  /// Reads some rows of a pass; how many came out.
  int ReadSome(PixelStorage& pixels, int first, int count) {
    m_row = 0;
    Step([this, &pixels, first, count] {
      for (; m_row < count; ++m_row) png_read_row(m_png, pixels.Row(first + m_row), nullptr);
    });
    return m_row;
  }

 private:
  [[noreturn]] static void OnError(png_structp png, png_const_charp text) {
    auto& self = *static_cast<PngDecoder*>(png_get_error_ptr(png));
    std::snprintf(self.m_text, sizeof self.m_text, "%s", text);
    std::longjmp(self.m_jump, 1);
  }
  static void OnRead(png_structp png, png_bytep target, std::size_t size) {
    auto& self = *static_cast<PngDecoder*>(png_get_io_ptr(png));
    if (!self.m_work.SpendBytes(static_cast<std::int64_t>(size))) png_error(png, "too much to read");
    self.m_reader.Read({target, size});
    if (self.m_reader.AtEnd()) png_error(png, "the file is cut off");
  }
  /// Texts and profiles are of no use here and may inflate to any size.
  void SkipTexts() {
    static constexpr png_byte kUnused[] = "tEXt\0zTXt\0iTXt\0iCCP\0eXIf\0sPLT\0hIST\0";
    png_set_keep_unknown_chunks(m_png, PNG_HANDLE_CHUNK_NEVER, kUnused, (sizeof kUnused - 1) / 5);
    constexpr png_alloc_size_t kMostChunkBytes = 8'000'000;
    png_set_chunk_malloc_max(m_png, kMostChunkBytes);
  }

  ByteReader m_reader;
  WorkBudget m_work;
  png_structp m_png = nullptr;
  png_infop m_info = nullptr;
  std::jmp_buf m_jump{};
  int m_row = 0;
  char m_text[200] = "not enough memory";
};

/// Properties of a picture from its header chunks.
struct PngHeader {
  int width = 0;
  int height = 0;
  int depth = 0;
  int colorType = 0;
  bool transparent = false;  ///< has a tRNS chunk
  std::vector<RGBQUAD> colors;
  std::vector<std::uint8_t> alphas;  ///< of the first colours

  bool Palette() const { return colorType == PNG_COLOR_TYPE_PALETTE; }
  bool Gray() const { return (colorType & PNG_COLOR_MASK_COLOR) == 0; }
  bool Bilevel() const { return depth == 1; }
  bool Alpha() const { return !Bilevel() && ((colorType & PNG_COLOR_MASK_ALPHA) != 0 || transparent); }
  int Bits() const {
    if (Alpha()) return 32;
    if (!Palette() && !Gray()) return 24;
    return depth == 1 || depth == 4 ? depth : 8;
  }
};

void ReadColors(const PngDecoder& decoder, PngHeader& header) {
  png_bytep alphas = nullptr;
  int alphaCount = 0;
  png_colorp colors = nullptr;
  int colorCount = 0;
  header.transparent = png_get_tRNS(decoder.Png(), decoder.Info(), &alphas, &alphaCount, nullptr) != 0;
  if (!header.Palette()) return;
  if (header.transparent && alphas != nullptr) header.alphas.assign(alphas, alphas + alphaCount);
  if (png_get_PLTE(decoder.Png(), decoder.Info(), &colors, &colorCount) == 0) return;
  for (int i = 0; i < colorCount; ++i)
    header.colors.push_back({colors[i].blue, colors[i].green, colors[i].red, 0});
}

PngHeader ReadHeader(const PngDecoder& decoder) {
  PngHeader header;
  header.width = static_cast<int>(png_get_image_width(decoder.Png(), decoder.Info()));
  header.height = static_cast<int>(png_get_image_height(decoder.Png(), decoder.Info()));
  header.depth = png_get_bit_depth(decoder.Png(), decoder.Info());
  header.colorType = png_get_color_type(decoder.Png(), decoder.Info());
  ReadColors(decoder, header);
  return header;
}

/// A bilevel picture stays bilevel; what is transparent of its two colours shows white paper.
void FlattenColors(PngHeader& header) {
  for (std::size_t i = 0; i < header.colors.size() && i < header.alphas.size(); ++i) {
    RGBQUAD& color = header.colors[i];
    const unsigned alpha = header.alphas[i];
    for (BYTE* level : {&color.rgbRed, &color.rgbGreen, &color.rgbBlue})
      *level = static_cast<BYTE>(Product255(*level, alpha) + (255 - alpha));
  }
}

void SetConversions(png_structp png, const PngHeader& header, int order) {
  if (header.depth == 16) png_set_scale_16(png);
  if (header.Alpha()) {
    png_set_expand(png);
    if (header.Gray()) png_set_gray_to_rgb(png);
  } else if (header.depth == 2) {
    if (header.Palette())
      png_set_packing(png);
    else
      png_set_expand_gray_1_2_4_to_8(png);
  }
  if (header.Bits() >= 24 && order == 1) png_set_bgr(png);
}

class PngReader final : public Reader {
 public:
  explicit PngReader(const Source& source) : m_source(source) {}

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    PngDecoder decoder(m_source);
    Open(decoder, page);
    return Describe(decoder);
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    PngDecoder decoder(m_source);
    Open(decoder, page);
    DecodedPage decoded;
    decoded.info = Describe(decoder);
    PngHeader header = ReadHeader(decoder);
    if (header.Bilevel()) FlattenColors(header);
    constexpr int kDeflateExpansion = 1040;
    CheckPlausible(m_source, std::int64_t{header.height} * header.width * decoded.info.bits / 8,
                   kDeflateExpansion);
    decoded.order = wish.order == 1 ? 1 : 0;
    decoded.pixels = PixelStorage::Create(header.width, header.height, header.Bits());
    if (header.Bits() <= 8) SetPalette(*decoded.pixels, header.colors);
    if (!Read(decoder, header, decoded, wish)) FailDecoding(decoder);
    return decoded;
  }

 private:
  void Open(PngDecoder& decoder, int page) const {
    RequirePage(m_source, page, 1);
    if (!decoder.ReadHeader()) FailDecoding(decoder);
    const std::int64_t width = png_get_image_width(decoder.Png(), decoder.Info());
    const std::int64_t height = png_get_image_height(decoder.Png(), decoder.Info());
    CheckPageSize(m_source, width, height);
    decoder.Work().AllowPage(width * height);
  }

  [[noreturn]] void FailDecoding(PngDecoder& decoder) const {
    if (decoder.Work().IsSpent()) decoder.Work().Fail();
    Fail(kErrorCorrupt, "%s: %s", m_source.Name().c_str(), decoder.Text());
  }

  static PageInfo Describe(const PngDecoder& decoder) {
    const PngHeader header = ReadHeader(decoder);
    PageInfo info;
    info.format = kFormatPng;
    info.width = header.width;
    info.height = header.height;
    info.bits = header.depth * png_get_channels(decoder.Png(), decoder.Info());
    info.compression = "Deflate";
    png_uint_32 x = 0;
    png_uint_32 y = 0;
    int unit = PNG_RESOLUTION_UNKNOWN;
    png_get_pHYs(decoder.Png(), decoder.Info(), &x, &y, &unit);
    if (unit == PNG_RESOLUTION_METER) {
      info.xResolution = DotsPerInch(x * kMetresPerInch);
      info.yResolution = DotsPerInch(y * kMetresPerInch);
    }
    return info;
  }

  /// A file that is cut off shows the rows that it has, and white below; false if it has none.
  static bool Read(PngDecoder& decoder, const PngHeader& header, const DecodedPage& decoded,
                   const DecodeWish& wish) {
    PixelStorage& pixels = *decoded.pixels;
    int passes = 1;
    const bool ready = decoder.Step([&decoder, &header, &decoded, &passes] {
      SetConversions(decoder.Png(), header, decoded.order);
      passes = png_set_interlace_handling(decoder.Png());
      png_read_update_info(decoder.Png(), decoder.Info());
    });
    // The row buffer must hold what the library writes.
    if (!ready || png_get_rowbytes(decoder.Png(), decoder.Info()) > static_cast<std::size_t>(pixels.Pitch()))
      return false;
    int rows = pixels.Height();
    for (int pass = 1; pass < passes && rows == pixels.Height(); ++pass)
      rows = ReadPass(decoder, pixels, [](int) { FailIfEndWanted(); });
    // Rows of the passes before the last aren't whole yet.
    rows = rows < pixels.Height() ? 0 : ReadPass(decoder, pixels, [&](int read) {
      passes == 1 ? wish.Reached(pixels, decoded.order, read) : FailIfEndWanted();
    });
    for (int y = rows; y < pixels.Height(); ++y) std::memset(pixels.Row(y), 0xff, pixels.RowBytes());
    return rows > 0;
  }

  template <typename Reached>
  static int ReadPass(PngDecoder& decoder, PixelStorage& pixels, const Reached& reached) {
    constexpr int kRowsAtOnce = 16;
    int read = 0;
    for (int wanted = 0; read == wanted && read < pixels.Height();) {
      wanted = std::min(read + kRowsAtOnce, pixels.Height());
      read += decoder.ReadSome(pixels, read, wanted - read);
      reached(read);
    }
    return read;
  }

  const Source& m_source;
};

bool Recognise(const Candidate& candidate) {
  return candidate.head.size() >= 8 && png_sig_cmp(candidate.head.data(), 0, 8) == 0;
}

}  // namespace

const Codec kPngCodec = {Recognise, OpenAs<PngReader>};

}  // namespace imaging
