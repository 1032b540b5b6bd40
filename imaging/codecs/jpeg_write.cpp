#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <functional>
#include <new>
#include <span>
#include <utility>
#include <vector>

// clang-format off: the library's header needs FILE first
#include <jerror.h>
#include <jpeglib.h>
// clang-format on

#include "imaging/codecs/exif.h"
#include "imaging/codecs/writer.h"
#include "imaging/core/exception.h"
#include "imaging/pixels/row_reader.h"

namespace imaging {
namespace {

constexpr int kHighQuality = 90;

/// The library's compressor. Like every step into the library, Write is left by a jump when it
/// fails, so that no object with a destructor lives inside it.
class JpegEncoder {
 public:
  /// Takes the bytes as they come; false ends the work.
  using Sink = std::function<bool(std::span<const std::uint8_t>)>;

  explicit JpegEncoder(Sink sink) : m_sink(std::move(sink)) {
    m_info.err = jpeg_std_error(&m_errors);
    m_info.client_data = this;
    m_errors.error_exit = [](j_common_ptr info) {
      info->err->format_message(info, Self(info).m_text);
      std::longjmp(Self(info).m_jump, 1);
    };
    m_errors.emit_message = [](j_common_ptr, int) {};
    m_errors.output_message = [](j_common_ptr) {};
    m_manager.init_destination = Restart;
    m_manager.empty_output_buffer = [](j_compress_ptr info) -> boolean {
      Drain(info, Self(info).m_buffer.size());
      Restart(info);
      return TRUE;
    };
    m_manager.term_destination = [](j_compress_ptr info) {
      Drain(info, Self(info).m_buffer.size() - Self(info).m_manager.free_in_buffer);
    };
  }
  ~JpegEncoder() {
    if (m_created) jpeg_destroy_compress(&m_info);
  }
  JpegEncoder(const JpegEncoder&) = delete;
  JpegEncoder& operator=(const JpegEncoder&) = delete;

  const char* Text() const { return m_text; }

  /// scratch holds four bytes for each pixel of a row.
  bool Write(const SavedPage& page, const RowReader& reader, std::vector<std::uint8_t>& scratch,
             const std::vector<std::uint8_t>& exif) {
    if (setjmp(m_jump) != 0) return false;
    jpeg_create_compress(&m_info);
    m_created = true;
    m_info.dest = &m_manager;
    SetUp(page, reader);
    jpeg_start_compress(&m_info, TRUE);
    // Exif takes the place of JFIF: its segment has to be the first (Exif 2.3, 4.7.2).
    if (!exif.empty())
      jpeg_write_marker(&m_info, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
    for (int y = 0; y < page.pixels.Height(); ++y) {
      const std::uint8_t* row = reader.Read(y, 0, page.pixels.Width(), scratch.data());
      if (reader.Channels() == 1) row = Spread(row, page.pixels.Width(), scratch.data());
      JSAMPROW rows[] = {const_cast<JSAMPROW>(row)};  // the library only reads them
      jpeg_write_scanlines(&m_info, rows, 1);
    }
    jpeg_finish_compress(&m_info);
    return true;
  }

 private:
  template <typename Info>
  static JpegEncoder& Self(Info* info) {
    return *static_cast<JpegEncoder*>(info->client_data);
  }
  static void Restart(j_compress_ptr info) {
    JpegEncoder& self = Self(info);
    self.m_manager.next_output_byte = self.m_buffer.data();
    self.m_manager.free_in_buffer = self.m_buffer.size();
  }
  static void Drain(j_compress_ptr info, std::size_t count) {
    if (!Self(info).m_sink({Self(info).m_buffer.data(), count})) ERREXIT(info, JERR_FILE_WRITE);
  }

  /// Colour and grey alike become YCbCr 4:2:2, which the format promises: with neutral chroma every reader
  /// shows the very greys.
  void SetUp(const SavedPage& page, const RowReader& reader) {
    const bool blueFirst = reader.HasRecordOrder() ? page.order == 1 : reader.Channels() > 1;
    const bool four = reader.Channels() == 4;
    m_info.image_width = static_cast<JDIMENSION>(page.pixels.Width());
    m_info.image_height = static_cast<JDIMENSION>(page.pixels.Height());
    m_info.input_components = four ? 4 : 3;
    if (blueFirst)
      m_info.in_color_space = four ? JCS_EXT_BGRX : JCS_EXT_BGR;
    else
      m_info.in_color_space = four ? JCS_EXT_RGBX : JCS_RGB;
    jpeg_set_defaults(&m_info);
    jpeg_set_colorspace(&m_info, JCS_YCbCr);
    m_info.write_JFIF_header = FALSE;
    m_info.write_Adobe_marker = FALSE;
    const bool told = page.quality >= 1 && page.quality <= 100;
    jpeg_set_quality(&m_info, told ? page.quality : kHighQuality, TRUE);
    m_info.comp_info[0].h_samp_factor = 2;
    m_info.comp_info[0].v_samp_factor = 1;
    for (int i = 1; i < 3; ++i) m_info.comp_info[i].h_samp_factor = m_info.comp_info[i].v_samp_factor = 1;
  }

  /// Greys as three bytes. They may lie at the scratch's start, so the last goes first.
  static const std::uint8_t* Spread(const std::uint8_t* grays, int width, std::uint8_t* scratch) {
    for (std::ptrdiff_t x = width - 1; x >= 0; --x) {
      const std::uint8_t gray = grays[x];
      scratch[3 * x + 2] = scratch[3 * x + 1] = scratch[3 * x] = gray;
    }
    return scratch;
  }

  Sink m_sink;
  jpeg_compress_struct m_info{};
  jpeg_error_mgr m_errors{};
  jpeg_destination_mgr m_manager{};
  std::jmp_buf m_jump{};
  char m_text[JMSG_LENGTH_MAX] = "";
  bool m_created = false;
  std::array<JOCTET, 65536> m_buffer;
};

}  // namespace

/// A page without alpha; a transparent one is laid on white, as it is shown.
void WriteExifJpeg(TargetFile& file, const SavedPage& page) {
  const int width = page.pixels.Width();
  const int height = page.pixels.Height();
  constexpr int kMost = JPEG_MAX_DIMENSION;
  if (width > kMost || height > kMost)
    Fail(kErrorLimit, "%s can't be written: a JPEG file holds at most %d by %d pixels", file.Path(), kMost,
         kMost);
  const RowReader reader(page.pixels, Alpha::FlattenOnWhite);
  std::vector<std::uint8_t> scratch(static_cast<std::size_t>(width) * 4 + 64);
  const auto exif = MakeExifSegment({page.Orientation(), page.xResolution, page.yResolution}, width, height);
  JpegEncoder encoder([&file](std::span<const std::uint8_t> bytes) { return file.Append(bytes); });
  if (!encoder.Write(page, reader, scratch, exif)) file.FailWriting(encoder.Text());
}

std::vector<std::uint8_t> CodeAsJpeg(const SavedPage& page) {
  std::vector<std::uint8_t> coded;
  if (std::max(page.pixels.Width(), page.pixels.Height()) > JPEG_MAX_DIMENSION) return coded;
  const RowReader reader(page.pixels, Alpha::FlattenOnWhite);
  std::vector<std::uint8_t> scratch(static_cast<std::size_t>(page.pixels.Width()) * 4 + 64);
  JpegEncoder encoder([&coded](std::span<const std::uint8_t> bytes) {
    try {
      coded.insert(coded.end(), bytes.begin(), bytes.end());
      return true;
    } catch (const std::bad_alloc&) {
      return false;  // the library is C
    }
  });
  if (!encoder.Write(page, reader, scratch, {})) coded.clear();
  return coded;
}

}  // namespace imaging
