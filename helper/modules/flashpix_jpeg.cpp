#include "helper/modules/flashpix_jpeg.h"

#include <algorithm>
#include <array>

namespace helper {

TileJpeg::TileJpeg() {
  m_info.err = jpeg_std_error(&m_errors);
  m_errors.error_exit = [](j_common_ptr info) {
    std::longjmp(static_cast<TileJpeg*>(info->client_data)->m_jump, 1);
  };
  m_errors.output_message = [](j_common_ptr) {};
  if (setjmp(m_jump) != 0) return;
  m_info.client_data = this;
  jpeg_create_decompress(&m_info);
}

bool TileJpeg::ReadTables(std::span<const std::uint8_t> tables) {
  return ReadHeader(tables, JPEG_HEADER_TABLES_ONLY);
}

bool TileJpeg::ReadTablesOf(std::span<const std::uint8_t> tile) {
  return ReadHeader(tile, JPEG_HEADER_OK);
}

bool TileJpeg::ReadHeader(std::span<const std::uint8_t> bytes, int expected) {
  if (setjmp(m_jump) != 0) {
    jpeg_abort_decompress(&m_info);
    return false;
  }
  jpeg_mem_src(&m_info, bytes.data(), bytes.size());
  const bool read = jpeg_read_header(&m_info, FALSE) == expected;
  jpeg_abort_decompress(&m_info);
  return read;
}

bool TileJpeg::HasStandardQuantisation() const {
  static constexpr std::array<std::array<UINT16, DCTSIZE2>, 2> kStandard = {{
      {16, 11,  10,  16, 24, 40, 51, 61, 12,  12,  14,  19,  26, 58, 60, 55,  14,  13,  16,  24, 40, 57,
       69, 56,  14,  17, 22, 29, 51, 87, 80,  62,  18,  22,  37, 56, 68, 109, 103, 77,  24,  35, 55, 64,
       81, 104, 113, 92, 49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98,  112, 100, 103, 99},
      {17, 18, 24, 47, 99, 99, 99, 99, 18, 21, 26, 66, 99, 99, 99, 99, 24, 26, 56, 99, 99, 99,
       99, 99, 47, 66, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
       99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99},
  }};
  for (std::size_t i = 0; i < kStandard.size(); ++i) {
    const JQUANT_TBL* table = m_info.quant_tbl_ptrs[i];
    if (table != nullptr && !std::equal(kStandard[i].begin(), kStandard[i].end(), table->quantval))
      return false;
  }
  return true;
}

bool TileJpeg::Begin(int side, int channels, bool converted) {
  constexpr int kGreyAndOpacity = 2;
  jpeg_read_header(&m_info, TRUE);
  const auto wanted = static_cast<JDIMENSION>(side);
  if (m_info.image_width != wanted || m_info.image_height != wanted || m_info.num_components != channels)
    return false;
  if (channels == 1) {
    m_info.jpeg_color_space = m_info.out_color_space = JCS_GRAYSCALE;
  } else if (!converted || channels == kGreyAndOpacity) {
    m_info.jpeg_color_space = m_info.out_color_space = JCS_UNKNOWN;
  } else {
    m_info.jpeg_color_space = channels == 3 ? JCS_YCbCr : JCS_YCCK;
    m_info.out_color_space = channels == 3 ? JCS_RGB : JCS_CMYK;
  }
  return jpeg_start_decompress(&m_info) != FALSE;
}

bool TileJpeg::Decode(std::span<const std::uint8_t> tile, int side, int channels, bool converted,
                      std::span<std::uint8_t> pixels) {
  if (setjmp(m_jump) != 0) {
    jpeg_abort_decompress(&m_info);
    return false;
  }
  m_errors.num_warnings = 0;
  jpeg_mem_src(&m_info, tile.data(), tile.size());
  const bool begun = Begin(side, channels, converted);
  const std::size_t pitch = static_cast<std::size_t>(side) * static_cast<std::size_t>(channels);
  while (begun && m_info.output_scanline < m_info.output_height) {
    JSAMPROW row = &pixels[m_info.output_scanline * pitch];
    jpeg_read_scanlines(&m_info, &row, 1);
  }
  jpeg_abort_decompress(&m_info);
  return begun && m_errors.num_warnings == 0;
}

}  // namespace helper
