#include "helper/modules/flashpix_jpeg.h"

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
  if (setjmp(m_jump) != 0) {
    jpeg_abort_decompress(&m_info);
    return false;
  }
  jpeg_mem_src(&m_info, tables.data(), tables.size());
  const bool read = jpeg_read_header(&m_info, FALSE) == JPEG_HEADER_TABLES_ONLY;
  jpeg_abort_decompress(&m_info);
  return read;
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
