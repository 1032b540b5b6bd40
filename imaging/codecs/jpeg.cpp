#include <algorithm>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <exception>
#include <utility>
#include <vector>

// clang-format off: the library's header needs FILE first
#include <jpeglib.h>
// clang-format on

#include "imaging/codecs/codec.h"
#include "imaging/codecs/helper.h"
#include "imaging/codecs/jpeg_header.h"
#include "imaging/codecs/jpeg_lossless.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/work.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

/// The library's decompressor over a source. Its errors come back as false from a step, with the text kept:
/// the library is C and must not be left by an exception, so a step jumps out of it and no object with a
/// destructor lives inside one.
class JpegDecoder {
 public:
  explicit JpegDecoder(const Source& source, const JpegHeader& header)
      : m_source(source), m_header(header), m_work(source) {
    m_work.AllowPage(PagePixels());
    m_info.err = jpeg_std_error(&m_errors);
    m_info.client_data = this;
    m_errors.error_exit = [](j_common_ptr info) {
      info->err->format_message(info, Self(info).m_text);
      std::longjmp(Self(info).m_jump, 1);
    };
    m_errors.emit_message = [](j_common_ptr info, int level) {
      if (level < 0) ++info->err->num_warnings;
    };
    m_errors.output_message = [](j_common_ptr) {};
    m_progress.progress_monitor = [](j_common_ptr info) {
      if (!Self(info).IsToGoOn(reinterpret_cast<j_decompress_ptr>(info))) std::longjmp(Self(info).m_jump, 1);
    };
    m_manager.init_source = [](j_decompress_ptr) {};
    m_manager.fill_input_buffer = Fill;
    m_manager.skip_input_data = Skip;
    m_manager.resync_to_restart = jpeg_resync_to_restart;
    m_manager.term_source = [](j_decompress_ptr) {};
  }
  ~JpegDecoder() {
    if (m_created) jpeg_destroy_decompress(&m_info);
  }
  JpegDecoder(const JpegDecoder&) = delete;
  JpegDecoder& operator=(const JpegDecoder&) = delete;

  jpeg_decompress_struct& Info() { return m_info; }
  [[noreturn]] void FailDecoding() const {
    if (m_thrown != nullptr) std::rethrow_exception(m_thrown);
    if (m_work.IsSpent()) m_work.Fail();
    const char* name = m_source.Name().c_str();
    if (m_scan > Limit().scans)
      Fail(kErrorLimit, "%s: the picture has more than %d scans", name, Limit().scans);
    Fail(kErrorCorrupt, "%s: %s", name, m_text);
  }

  bool ReadHeader() {
    return Step([this] {
      jpeg_create_decompress(&m_info);
      m_created = true;
      m_info.mem->max_memory_to_use = static_cast<long>(Limit().codecBytes);
      m_info.progress = &m_progress;
      m_info.src = &m_manager;
      jpeg_read_header(&m_info, TRUE);
    });
  }
  bool Start() {
    return Step([this] { jpeg_start_decompress(&m_info); });
  }
  /// Decodes as many rows as there are pointers; returns how many came out.
  int ReadRows(JSAMPARRAY rows, int count) {
    FailIfEndWanted();
    m_rowsRead = 0;
    Step([this, rows, count] {
      while (m_rowsRead < count)
        m_rowsRead += static_cast<int>(
            jpeg_read_scanlines(&m_info, rows + m_rowsRead, static_cast<JDIMENSION>(count - m_rowsRead)));
    });
    if (m_thrown != nullptr) std::rethrow_exception(m_thrown);
    return m_rowsRead;
  }

 private:
  static JpegDecoder& Self(j_common_ptr info) { return *static_cast<JpegDecoder*>(info->client_data); }

  template <typename Action>
  bool Step(const Action& action) {
    if (setjmp(m_jump) != 0) return false;
    action();
    return true;
  }

  std::int64_t PagePixels() const { return std::int64_t{m_header.width} * m_header.height; }

  /// Called now and then while scans are read. A progressive file may consist of very many empty ones, each
  /// of which visits the coefficients of the page.
  bool IsToGoOn(j_decompress_ptr info) {
    constexpr int kVisits = 2;  // a coefficient costs what two pixels do elsewhere
    const bool isNew = info->input_scan_number > m_scan;
    m_scan = std::max(m_scan, info->input_scan_number);
    if (m_scan > Limit().scans || (isNew && !m_work.SpendPixels(PagePixels() * kVisits))) return false;
    try {
      if (info->output_scanline == 0) FailIfEndWanted();
    } catch (...) {
      m_thrown = std::current_exception();  // the library must not be left by it
    }
    return m_thrown == nullptr;
  }

  static boolean Fill(j_decompress_ptr info) {
    static constexpr JOCTET kEnd[] = {0xff, JPEG_EOI};
    JpegDecoder& self = Self(reinterpret_cast<j_common_ptr>(info));
    std::size_t got = self.m_source.ReadAt(self.m_position, self.m_buffer);
    if (!self.m_work.SpendBytes(static_cast<std::int64_t>(got))) got = 0;
    self.PatchHeight(got);
    self.m_position += static_cast<std::int64_t>(got);
    // At the end of a cut file, and of what is worth reading, the library is told that the picture ends; it
    // fills the rest.
    self.m_manager.next_input_byte = got != 0 ? self.m_buffer.data() : kEnd;
    self.m_manager.bytes_in_buffer = got != 0 ? got : sizeof kEnd;
    return TRUE;
  }
  static void Skip(j_decompress_ptr info, long count) {
    JpegDecoder& self = Self(reinterpret_cast<j_common_ptr>(info));
    if (count <= 0) return;
    const auto wanted = static_cast<std::size_t>(count);
    const std::size_t there = std::min(wanted, self.m_manager.bytes_in_buffer);
    self.m_manager.next_input_byte += there;
    self.m_manager.bytes_in_buffer -= there;
    self.m_position += static_cast<std::int64_t>(wanted - there);
  }

  /// The library wants the height in the frame header, where a file with a DNL segment has 0.
  void PatchHeight(std::size_t filled) {
    if (!m_header.heightFromDnl) return;
    const int bytes[] = {m_header.height >> 8, m_header.height & 0xff};
    for (std::int64_t i = 0; i < 2; ++i) {
      const std::int64_t at = m_header.heightAt + i - m_position;
      if (at >= 0 && at < static_cast<std::int64_t>(filled))
        m_buffer[static_cast<std::size_t>(at)] = static_cast<JOCTET>(bytes[i]);
    }
  }

  const Source& m_source;
  const JpegHeader& m_header;
  WorkBudget m_work;
  std::exception_ptr m_thrown;
  int m_scan = 0;  ///< the latest that was begun
  jpeg_decompress_struct m_info{};
  jpeg_error_mgr m_errors{};
  jpeg_progress_mgr m_progress{};
  jpeg_source_mgr m_manager{};
  std::jmp_buf m_jump{};
  char m_text[JMSG_LENGTH_MAX] = "";
  bool m_created = false;
  int m_rowsRead = 0;
  std::int64_t m_position = 0;
  std::array<JOCTET, 65536> m_buffer;
};

/// How many luma samples share one pair of chroma samples; 0 for sampling that has no name.
int ChromaReduction(const JpegHeader& header) {
  if (header.components == 1) return 1;
  if (header.components != 3) return 0;
  if (!header.ColorsAreYcc()) return 1;
  const bool alike = header.horizontal[1] == header.horizontal[2] && header.vertical[1] == header.vertical[2];
  const int chroma = header.horizontal[1] * header.vertical[1];
  const int luma = header.horizontal[0] * header.vertical[0];
  return alike && chroma != 0 && luma % chroma == 0 ? luma / chroma : 0;
}

/// A file is of the Exif kind if that block takes the place of JFIF's.
int FormatCode(const JpegHeader& header) {
  const bool exif = header.exif.has_value() && !header.jfif;
  switch (ChromaReduction(header)) {
    case 1:
      return kFormatJpeg444;
    case 2:
      return exif ? kFormatExifJpeg422 : kFormatJpeg422;
    case 4:
      return exif ? kFormatExifJpeg411 : kFormatJpeg411;
    default:
      return kFormatNone;
  }
}

const char* CompressionName(JpegProcess process) {
  switch (process) {
    case JpegProcess::kBaseline:
      return "JPEG baseline";
    case JpegProcess::kExtended:
      return "JPEG extended";
    case JpegProcess::kProgressive:
      return "JPEG progressive";
    case JpegProcess::kLossless:
      return "JPEG lossless";
    default:
      return "JPEG";
  }
}

/// JFIF's density counts before Exif's if it has a unit.
void SetResolution(const JpegHeader& header, PageInfo& info) {
  constexpr int kInch = 1;
  constexpr int kCentimetre = 2;
  if (header.jfif && (header.densityUnit == kInch || header.densityUnit == kCentimetre)) {
    const double perInch = header.densityUnit == kCentimetre ? kCentimetresPerInch : 1;
    info.xResolution = DotsPerInch(header.xDensity * perInch);
    info.yResolution = DotsPerInch(header.yDensity * perInch);
  } else if (header.exif) {
    info.xResolution = header.exif->xResolution;
    info.yResolution = header.exif->yResolution;
  }
}

class JpegReader final : public Reader {
 public:
  explicit JpegReader(const Source& source) : m_source(source), m_header(ReadJpegHeader(source)) {
    if (IsTwelveBit()) m_elsewhere = OpenTwelveBitJpeg(source);
  }

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, 1);
    RequireShowable();
    PageInfo info;
    info.format = FormatCode(m_header);
    info.width = m_header.width;
    info.height = m_header.height;
    info.bits = m_header.precision * m_header.components;
    info.compression = CompressionName(m_header.process);
    if (m_header.exif && m_header.exif->orientation > 1) info.viewPerspective = m_header.exif->orientation;
    SetResolution(m_header, info);
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    DecodedPage decoded;
    decoded.info = Describe(page);
    if (m_elsewhere != nullptr) return DecodeElsewhere(decoded.info, wish);
    if (m_header.process == JpegProcess::kLossless) {
      decoded.pixels = ReadLossless();
      return decoded;
    }
    constexpr int kDctExpansion = 2000;
    CheckPlausible(m_source, std::int64_t{m_header.width} * m_header.height, kDctExpansion);
    JpegDecoder decoder(m_source, m_header);
    if (!decoder.ReadHeader()) decoder.FailDecoding();
    jpeg_decompress_struct& jpeg = decoder.Info();
    CheckPageSize(m_source, jpeg.image_width, jpeg.image_height);
    switch (jpeg.jpeg_color_space) {
      case JCS_GRAYSCALE:
        jpeg.out_color_space = JCS_GRAYSCALE;
        break;
      case JCS_CMYK:
      case JCS_YCCK:
        jpeg.out_color_space = JCS_CMYK;
        break;
      case JCS_YCbCr:
      case JCS_RGB:
        jpeg.out_color_space = wish.order == 1 ? JCS_EXT_BGR : JCS_RGB;
        decoded.order = wish.order == 1 ? 1 : 0;
        break;
      default:
        Fail(kErrorUnsupported, "%s: JPEG with %d components", m_source.Name().c_str(), jpeg.num_components);
    }
    jpeg.scale_denom = Reduction(wish);
    if (!decoder.Start()) decoder.FailDecoding();
    decoded.pixels =
        jpeg.out_color_space == JCS_CMYK ? ReadInk(decoder) : ReadDirect(decoder, wish, decoded.order);
    decoded.lossy = true;
    const bool sound = jpeg.err->num_warnings == 0 && jpeg.output_scanline == jpeg.output_height;
    if (sound && jpeg.scale_denom == 1 && MayBePassedOn(jpeg))
      decoded.coded = std::make_shared<CodedPage>(m_source, WholeFile());
    return decoded;
  }

 private:
  /// Blocks can be decoded to a half, a quarter or an eighth of their sides, which takes a fraction of the
  /// time.
  unsigned Reduction(const DecodeWish& wish) const {
    unsigned reduction = 1;
    while (wish.side > 0 && reduction < 8 &&
           std::max(m_header.width, m_header.height) / static_cast<int>(reduction * 2) >= 2 * wish.side)
      reduction *= 2;
    return reduction;
  }
  /// Readers of PDF know no arithmetic coding, and ask the frame for the height.
  bool MayBePassedOn(const jpeg_decompress_struct& jpeg) const {
    return !m_header.arithmetic && !m_header.heightFromDnl &&
           (jpeg.out_color_space == JCS_GRAYSCALE || m_header.components == 3);
  }
  CodedPage::Compose WholeFile() const {
    return [header = m_header](const Source& source) -> std::optional<CodedForm> {
      if (source.Size() > Limit().codecBytes) return std::nullopt;
      CodedForm form{CodedForm::Coding::kJpeg, header.components, header.ColorsAreYcc(), false, {}};
      form.bytes.resize(static_cast<std::size_t>(source.Size()));
      if (!source.ReadExactly(0, form.bytes)) return std::nullopt;
      return form;
    };
  }

  /// The library is built for 8 bits.
  bool IsTwelveBit() const {
    return m_header.precision == 12 && !m_header.arithmetic && m_header.process == JpegProcess::kExtended;
  }
  DecodedPage DecodeElsewhere(const PageInfo& info, const DecodeWish& wish) const {
    DecodedPage decoded = m_elsewhere->Decode(1, wish);
    if (decoded.info.width != info.width || decoded.info.height != info.height)
      Fail(kErrorCorrupt, "%s: the page has another size than its description", m_source.Name().c_str());
    decoded.info = info;
    decoded.lossy = true;
    return decoded;
  }

  void RequireShowable() const {
    const char* name = m_source.Name().c_str();
    if (m_header.process == JpegProcess::kNone || m_header.scanData == 0)
      Fail(kErrorCorrupt, "%s: the JPEG file has no picture", name);
    if (m_header.scanData >= m_source.Size())
      Fail(kErrorCorrupt, "%s: the JPEG file ends before its pixels", name);
    const bool lossless = m_header.process == JpegProcess::kLossless && !m_header.arithmetic &&
                          (m_header.components == 1 || m_header.components == 3) && m_header.precision >= 2 &&
                          m_header.precision <= 16;
    const bool dct = m_header.process != JpegProcess::kLossless && m_header.process != JpegProcess::kOther;
    if (IsTwelveBit() && m_elsewhere == nullptr)
      Fail(kErrorUnsupported,
           "%s: JPEG with 12 bits a sample is read by the module media, which isn't installed", name);
    if (!lossless && m_elsewhere == nullptr && (!dct || m_header.precision != 8))
      Fail(kErrorUnsupported, "%s: %s with %d bits a sample can't be decoded", name,
           CompressionName(m_header.process), m_header.precision);
    CheckPageSize(m_source, m_header.width, m_header.height);
  }

  /// The library can't decode this process.
  std::unique_ptr<PixelStorage> ReadLossless() const {
    constexpr int kLosslessExpansion = 64;
    const int bits = m_header.components == 1 ? 8 : 24;
    CheckPlausible(m_source, std::int64_t{m_header.width} * m_header.height * bits / 8, kLosslessExpansion);
    auto pixels = PixelStorage::Create(m_header.width, m_header.height, bits);
    const int rows = DecodeLosslessInto(m_source, m_header, *pixels, 0, 0);
    if (rows == 0) Fail(kErrorCorrupt, "%s: no row can be decoded", m_source.Name().c_str());
    // Unlike in the other processes, components without a mark are colours as they stand.
    if (bits == 24 && (m_header.jfif || m_header.adobeTransform.value_or(0) != 0)) ConvertFromYcc(*pixels);
    FillRest(*pixels, rows);
    return pixels;
  }

  /// JFIF 1.02, with a scale of 65,536.
  static void ConvertFromYcc(PixelStorage& pixels) {
    const auto level = [](int luma, int scaled) {
      return static_cast<std::uint8_t>(std::clamp(luma + ((scaled + 32768) >> 16), 0, 255));
    };
    for (int y = 0; y < pixels.Height(); ++y) {
      std::uint8_t* pixel = pixels.Row(y);
      for (int x = 0; x < pixels.Width(); ++x, pixel += 3) {
        const int luma = pixel[0];
        const int blue = pixel[1] - 128;
        const int red = pixel[2] - 128;
        pixel[0] = level(luma, 91881 * red);
        pixel[1] = level(luma, -22554 * blue - 46802 * red);
        pixel[2] = level(luma, 116130 * blue);
      }
    }
  }

  /// Rows that the decoder didn't reach are white.
  static void FillRest(PixelStorage& pixels, int first) {
    for (int y = first; y < pixels.Height(); ++y) std::memset(pixels.Row(y), 0xff, pixels.RowBytes());
  }

  std::unique_ptr<PixelStorage> ReadDirect(JpegDecoder& decoder, const DecodeWish& wish, int order) const {
    constexpr int kRowsAtOnce = 16;
    const jpeg_decompress_struct& jpeg = decoder.Info();
    auto pixels = PixelStorage::Create(static_cast<int>(jpeg.output_width),
                                       static_cast<int>(jpeg.output_height), jpeg.output_components * 8);
    std::vector<JSAMPROW> rows(jpeg.output_height);
    for (std::size_t y = 0; y < rows.size(); ++y) rows[y] = pixels->Row(static_cast<int>(y));
    int read = 0;
    for (int wanted = 0; read == wanted && read < pixels->Height();) {
      wanted = std::min(read + kRowsAtOnce, pixels->Height());
      read += decoder.ReadRows(rows.data() + read, wanted - read);
      wish.Reached(*pixels, order, read);
    }
    if (read == 0) decoder.FailDecoding();
    FillRest(*pixels, read);
    return pixels;
  }

  std::unique_ptr<PixelStorage> ReadInk(JpegDecoder& decoder) const {
    const jpeg_decompress_struct& jpeg = decoder.Info();
    auto pixels =
        PixelStorage::Create(static_cast<int>(jpeg.output_width), static_cast<int>(jpeg.output_height), 24);
    std::vector<JSAMPLE> inks(static_cast<std::size_t>(jpeg.output_width) * 4);
    // Adobe's writers store ink inverted, 255 being none.
    const unsigned flip = jpeg.saw_Adobe_marker != 0 ? 0xff : 0;
    int y = 0;
    for (JSAMPROW row = inks.data(); y < pixels->Height() && decoder.ReadRows(&row, 1) == 1; ++y) {
      std::uint8_t* target = pixels->Row(y);
      for (int x = 0; x < pixels->Width(); ++x, target += 3) {
        const JSAMPLE* ink = &inks[static_cast<std::size_t>(x) * 4];
        const Rgb color = InkToRgb(ink[0] ^ flip, ink[1] ^ flip, ink[2] ^ flip, ink[3] ^ flip);
        target[0] = color.red;
        target[1] = color.green;
        target[2] = color.blue;
      }
    }
    if (y == 0) decoder.FailDecoding();
    FillRest(*pixels, y);
    return pixels;
  }

  const Source& m_source;
  JpegHeader m_header;
  std::unique_ptr<Reader> m_elsewhere;  ///< what this process can't decode itself
};

bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  return head.size() >= 3 && head[0] == 0xff && head[1] == 0xd8 && head[2] == 0xff;
}

}  // namespace

const Codec kJpegCodec = {Recognise, OpenAs<JpegReader>};

}  // namespace imaging
