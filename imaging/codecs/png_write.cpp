#include <png.h>

#include <cmath>
#include <csetjmp>
#include <cstdio>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/writer.h"

namespace imaging {
namespace {

struct PngState {
  png_structp png = nullptr;
  png_infop info = nullptr;
  std::jmp_buf jump{};
  char text[200] = "not enough memory";

  PngState() {
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, OnError, [](png_structp, png_const_charp) {});
    if (png != nullptr) info = png_create_info_struct(png);
  }
  ~PngState() { png_destroy_write_struct(&png, &info); }
  PngState(const PngState&) = delete;
  PngState& operator=(const PngState&) = delete;

  [[noreturn]] static void OnError(png_structp png, png_const_charp text) {
    auto& self = *static_cast<PngState*>(png_get_error_ptr(png));
    std::snprintf(self.text, sizeof self.text, "%s", text);
    std::longjmp(self.jump, 1);
  }
};

int ColorType(const PixelStorage& pixels) {
  if (pixels.Bits() == 32) return PNG_COLOR_TYPE_RGB_ALPHA;
  if (pixels.Bits() == 24) return PNG_COLOR_TYPE_RGB;
  return HasLinearGrays(pixels) ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_PALETTE;
}

void SetHeader(const PngState& writer, const SavedPage& page) {
  const PixelStorage& pixels = page.pixels;
  const int type = ColorType(pixels);
  png_set_IHDR(writer.png, writer.info, static_cast<png_uint_32>(pixels.Width()),
               static_cast<png_uint_32>(pixels.Height()), pixels.Bits() < 8 ? pixels.Bits() : 8, type,
               PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  if (type == PNG_COLOR_TYPE_PALETTE) {
    png_color colors[256];
    const int count = 1 << pixels.Bits();
    for (int i = 0; i < count; ++i) {
      const RGBQUAD& color = pixels.Palette()[static_cast<std::size_t>(i)];
      colors[i] = {color.rgbRed, color.rgbGreen, color.rgbBlue};
    }
    png_set_PLTE(writer.png, writer.info, colors, count);
  }
  if (page.xResolution > 0 && page.yResolution > 0)
    png_set_pHYs(
        writer.png, writer.info, static_cast<png_uint_32>(std::lround(page.xResolution / kMetresPerInch)),
        static_cast<png_uint_32>(std::lround(page.yResolution / kMetresPerInch)), PNG_RESOLUTION_METER);
}

void AppendBytes(png_structp png, png_bytep bytes, std::size_t count) {
  auto& file = *static_cast<TargetFile*>(png_get_io_ptr(png));
  if (!file.Append({bytes, count})) png_error(png, "write error");
}

/// False if the library reported an error. No object with a destructor lives in here.
bool WriteAll(PngState& writer, TargetFile& file, const SavedPage& page) {
  if (writer.info == nullptr || setjmp(writer.jump) != 0) return false;
  const PixelStorage& pixels = page.pixels;
  png_set_write_fn(writer.png, &file, AppendBytes, nullptr);
  png_set_user_limits(writer.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  SetHeader(writer, page);
  png_write_info(writer.png, writer.info);
  if (page.order == 1 && pixels.Bits() >= 24) png_set_bgr(writer.png);
  for (int y = 0; y < pixels.Height(); ++y) png_write_row(writer.png, pixels.Row(y));
  png_write_end(writer.png, writer.info);
  return true;
}

}  // namespace

void WritePng(TargetFile& file, const SavedPage& page) {
  PngState writer;
  if (!WriteAll(writer, file, page)) file.FailWriting(writer.text);
}

}  // namespace imaging
