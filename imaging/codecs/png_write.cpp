#include "imaging/codecs/png_write.h"

#include <png.h>

#include <cerrno>
#include <cmath>
#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/exception.h"

namespace imaging {
namespace {

/// A file under a passing name beside its target; removed again unless it was completed.
class PartFile {
 public:
  explicit PartFile(const char* path) : m_path(path), m_part(m_path + ".part") {
    m_file = std::fopen(m_part.c_str(), "wbe");
    if (m_file == nullptr) Fail(kErrorFileWrite, "%s can't be written: %s", path, std::strerror(errno));
  }
  ~PartFile() {
    if (m_file != nullptr) std::fclose(m_file);
    if (!m_complete) std::remove(m_part.c_str());
  }
  PartFile(const PartFile&) = delete;
  PartFile& operator=(const PartFile&) = delete;

  std::FILE* Get() const { return m_file; }
  void Complete() {
    const bool closed = std::fclose(m_file) == 0;
    m_file = nullptr;
    if (!closed || std::rename(m_part.c_str(), m_path.c_str()) != 0)
      Fail(kErrorFileWrite, "%s can't be written: %s", m_path.c_str(), std::strerror(errno));
    m_complete = true;
  }

 private:
  std::string m_path;
  std::string m_part;
  std::FILE* m_file = nullptr;
  bool m_complete = false;
};

struct Writer {
  png_structp png = nullptr;
  png_infop info = nullptr;
  std::jmp_buf jump{};
  char text[200] = "not enough memory";

  Writer() {
    png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, OnError, [](png_structp, png_const_charp) {});
    if (png != nullptr) info = png_create_info_struct(png);
  }
  ~Writer() { png_destroy_write_struct(&png, &info); }
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  [[noreturn]] static void OnError(png_structp png, png_const_charp text) {
    auto& self = *static_cast<Writer*>(png_get_error_ptr(png));
    std::snprintf(self.text, sizeof self.text, "%s", text);
    std::longjmp(self.jump, 1);
  }
};

bool LinearGray(const PixelStorage& pixels) {
  const int most = (1 << pixels.Bits()) - 1;
  for (int i = 0; i <= most; ++i) {
    const RGBQUAD& color = pixels.Palette()[static_cast<std::size_t>(i)];
    const int level = i * 255 / most;
    if (color.rgbRed != level || color.rgbGreen != level || color.rgbBlue != level) return false;
  }
  return true;
}

int ColorType(const PixelStorage& pixels) {
  if (pixels.Bits() == 32) return PNG_COLOR_TYPE_RGB_ALPHA;
  if (pixels.Bits() == 24) return PNG_COLOR_TYPE_RGB;
  return LinearGray(pixels) ? PNG_COLOR_TYPE_GRAY : PNG_COLOR_TYPE_PALETTE;
}

void SetHeader(const Writer& writer, const PixelStorage& pixels, int xResolution, int yResolution) {
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
  if (xResolution > 0 && yResolution > 0)
    png_set_pHYs(writer.png, writer.info, static_cast<png_uint_32>(std::lround(xResolution / kMetresPerInch)),
                 static_cast<png_uint_32>(std::lround(yResolution / kMetresPerInch)), PNG_RESOLUTION_METER);
}

/// False if the library reported an error. No object with a destructor lives in here.
bool WriteAll(Writer& writer, std::FILE* file, const PixelStorage& pixels, int order, int xResolution,
              int yResolution) {
  if (writer.info == nullptr || setjmp(writer.jump) != 0) return false;
  png_init_io(writer.png, file);
  png_set_user_limits(writer.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
  SetHeader(writer, pixels, xResolution, yResolution);
  png_write_info(writer.png, writer.info);
  if (order == 1 && pixels.Bits() >= 24) png_set_bgr(writer.png);
  for (int y = 0; y < pixels.Height(); ++y) png_write_row(writer.png, pixels.Row(y));
  png_write_end(writer.png, writer.info);
  return true;
}

}  // namespace

void WritePng(const char* path, const PixelStorage& pixels, int order, int xResolution, int yResolution) {
  PartFile file(path);
  Writer writer;
  if (!WriteAll(writer, file.Get(), pixels, order, xResolution, yResolution))
    Fail(kErrorFileWrite, "%s can't be written: %s", path, writer.text);
  file.Complete();
}

}  // namespace imaging
