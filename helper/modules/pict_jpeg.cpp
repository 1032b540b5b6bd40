#include "helper/modules/pict_jpeg.h"

#include <cstddef>
#include <cstdio>

extern "C" {
#include <jpeglib.h>
}

#include <csetjmp>

namespace helper {
namespace {

/// The library's state. What it can't go on from jumps back to the call.
class Decoder {
 public:
  Decoder() {
    m_info.err = jpeg_std_error(&m_errors);
    m_errors.error_exit = [](j_common_ptr info) {
      std::longjmp(static_cast<Decoder*>(info->client_data)->m_jump, 1);
    };
    m_errors.output_message = [](j_common_ptr) {};
    if (setjmp(m_jump) != 0) return;
    m_info.client_data = this;
    jpeg_create_decompress(&m_info);
  }
  ~Decoder() { jpeg_destroy_decompress(&m_info); }
  Decoder(const Decoder&) = delete;
  Decoder& operator=(const Decoder&) = delete;

  bool Begin(std::span<const std::uint8_t> jpeg) {
    if (setjmp(m_jump) != 0) return false;
    jpeg_mem_src(&m_info, jpeg.data(), jpeg.size());
    jpeg_read_header(&m_info, TRUE);
    m_info.out_color_space = JCS_RGB;
    return m_info.num_components == 1 || m_info.num_components == 3;
  }
  int Width() const { return static_cast<int>(m_info.image_width); }
  int Height() const { return static_cast<int>(m_info.image_height); }

  /// How many rows there are.
  int Read(std::span<std::uint8_t> pixels) {
    if (setjmp(m_jump) != 0) return static_cast<int>(m_info.output_scanline);
    jpeg_start_decompress(&m_info);
    while (m_info.output_scanline < m_info.output_height) {
      JSAMPROW row = &pixels[std::size_t{m_info.output_scanline} * m_info.output_width * 3];
      jpeg_read_scanlines(&m_info, &row, 1);
    }
    return static_cast<int>(m_info.output_scanline);
  }

 private:
  jpeg_decompress_struct m_info{};
  jpeg_error_mgr m_errors{};
  std::jmp_buf m_jump;
};

}  // namespace

PictBitmap DecodePictJpeg(std::span<const std::uint8_t> jpeg) {
  constexpr std::int64_t kMostPixels = 150'000'000;
  Decoder decoder;
  if (!decoder.Begin(jpeg)) throw Failure(Status::kCorrupt, "the JPEG of the picture is damaged");
  if (std::int64_t{decoder.Width()} * decoder.Height() > kMostPixels)
    throw Failure(Status::kTooLarge, "a bitmap is too large");
  PictBitmap bitmap;
  bitmap.bits = 24;
  bitmap.packed = true;
  bitmap.bounds = bitmap.source = bitmap.target = {0, 0, decoder.Height(), decoder.Width()};
  bitmap.pixels.resize(static_cast<std::size_t>(decoder.Width()) *
                       static_cast<std::size_t>(decoder.Height()) * 3);
  bitmap.rows = decoder.Read(bitmap.pixels);
  if (bitmap.rows == 0) throw Failure(Status::kCorrupt, "the JPEG of the picture is damaged");
  return bitmap;
}

}  // namespace helper
