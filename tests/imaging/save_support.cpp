#include "tests/imaging/save_support.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <sstream>

#include <jpeglib.h>

namespace codec_test {
namespace {

constexpr int kHeight = 29;

unsigned Mixed(int x, int y, int c) {
  return (static_cast<unsigned>(x * 31 + y * 17 + c * 57 + x * y) * 2654435761U) >> 24;
}

unsigned Level(Look look, int bits, int x, int y, int c) {
  const int low = bits < 8 ? 8 - bits : 0;
  if (look == Look::kSoft)
    return bits == 1 ? static_cast<unsigned>(y > 14) : static_cast<unsigned>(60 + x * 2 + y + c * 20) >> low;
  if (look != Look::kRuns) return Mixed(x, y, c) >> low;
  // Stretches of constant pixels between those that change, of all lengths up to some hundreds.
  const int length = 1 + y * y;
  return Mixed(x / length % 5 == 4 ? x : x / length, y, c) >> low;
}

void SetPixel(imaging::PixelStorage& pixels, int x, int y, unsigned value) {
  std::uint8_t* row = pixels.Row(y);
  const auto byte = static_cast<std::size_t>(x) * static_cast<std::size_t>(pixels.Bits()) / 8;
  if (pixels.Bits() == 8) {
    row[byte] = static_cast<std::uint8_t>(value);
    return;
  }
  const int shift = 8 - pixels.Bits() - x * pixels.Bits() % 8;
  const unsigned mask = ((1U << pixels.Bits()) - 1) << shift;
  row[byte] = static_cast<std::uint8_t>((row[byte] & ~mask) | value << shift);
}

void SetColors(imaging::PixelStorage& pixels, Look look) {
  const int count = 1 << pixels.Bits();
  for (int i = 0; i < count; ++i) {
    RGBQUAD& color = pixels.Palette()[static_cast<std::size_t>(i)];
    const auto level = static_cast<BYTE>(i * 255 / (count - 1));
    if (look == Look::kPalette)
      color = {static_cast<BYTE>(255 - level), static_cast<BYTE>(level / 2), level, 0};
    else if (look == Look::kWhiteFirst)
      color = {static_cast<BYTE>(255 - level), static_cast<BYTE>(255 - level), static_cast<BYTE>(255 - level),
               0};
  }
}

bool Near(const Color& a, const Color& b, int tolerance) {
  return std::abs(a.red - b.red) <= tolerance && std::abs(a.green - b.green) <= tolerance &&
         std::abs(a.blue - b.blue) <= tolerance && (tolerance > 0 || a.alpha == b.alpha);
}

std::string Differ(int x, int y, const Color& wanted, const Color& found) {
  std::ostringstream text;
  text << "at " << x << ", " << y << ": (" << wanted.red << " " << wanted.green << " " << wanted.blue << " "
       << wanted.alpha << ") became (" << found.red << " " << found.green << " " << found.blue << " "
       << found.alpha << ")";
  return text.str();
}

template <typename ColorOf>
std::string Compare(const Loaded& page, int width, int height, int tolerance, const ColorOf& colorOf) {
  if (width != page.pixels->Width() || height != page.pixels->Height()) return "another size";
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x)
      if (!Near(ColorAt(page, x, y), colorOf(x, y), tolerance))
        return Differ(x, y, ColorAt(page, x, y), colorOf(x, y));
  return "";
}

}  // namespace

Loaded MakePage(int bits, Look look, int width, int order) {
  Loaded page;
  page.pixels = imaging::PixelStorage::Create(width, kHeight, bits);
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < width; ++x) {
      if (bits <= 8) {
        SetPixel(*page.pixels, x, y, Level(look, bits, x, y, 0));
        continue;
      }
      for (int c = 0; c < bits / 8; ++c)
        page.pixels->Row(y)[x * (bits / 8) + c] =
            look == Look::kSoft && c == 3 ? 255 : static_cast<std::uint8_t>(Level(look, 8, x, y, c));
    }
  if (bits <= 8) SetColors(*page.pixels, look);
  page.record = {sizeof page.record, width, kHeight, bits, 1, nullptr, 6, order, 204, 98, page.pixels.get()};
  return page;
}

int ShortTag(TIFF* tiff, std::uint32_t tag) {
  std::uint16_t value = 0;
  return TIFFGetFieldDefaulted(tiff, tag, &value) != 0 ? value : -1;
}

std::uint32_t LongTag(TIFF* tiff, std::uint32_t tag) {
  std::uint32_t value = UINT32_MAX;
  TIFFGetField(tiff, tag, &value);
  return value;
}

namespace {

int Resolution(TIFF* tiff, std::uint32_t tag) {
  float value = 0;
  if (ShortTag(tiff, TIFFTAG_RESOLUTIONUNIT) != RESUNIT_INCH) return 0;
  return TIFFGetField(tiff, tag, &value) != 0 ? static_cast<int>(std::lround(value)) : 0;
}

Color TiffColor(TIFF* tiff, const Bytes& row, int x) {
  const int bits = std::max(ShortTag(tiff, TIFFTAG_BITSPERSAMPLE), 1);
  const int samples = ShortTag(tiff, TIFFTAG_SAMPLESPERPIXEL);
  const int photometric = ShortTag(tiff, TIFFTAG_PHOTOMETRIC);
  if (photometric == PHOTOMETRIC_RGB) {
    const std::uint8_t* p = &row[static_cast<std::size_t>(x) * static_cast<std::size_t>(samples)];
    return {p[0], p[1], p[2], samples == 4 ? p[3] : 255};
  }
  const auto bit = static_cast<std::size_t>(x) * static_cast<std::size_t>(bits);
  const int most = (1 << bits) - 1;
  const int index = row[bit / 8] >> (8 - bits - static_cast<int>(bit % 8)) & most;
  if (photometric == PHOTOMETRIC_PALETTE) {
    std::uint16_t* map[3] = {};
    TIFFGetField(tiff, TIFFTAG_COLORMAP, &map[0], &map[1], &map[2]);
    return {map[0][index] >> 8, map[1][index] >> 8, map[2][index] >> 8, 255};
  }
  const int level = (photometric == PHOTOMETRIC_MINISWHITE ? most - index : index) * 255 / most;
  return {level, level, level, 255};
}

}  // namespace

Picture ReadTiff(const std::string& path, int page) {
  Picture picture;
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  if (tiff == nullptr || TIFFSetDirectory(tiff, static_cast<std::uint16_t>(page - 1)) == 0) {
    picture.error = "no such page";
    if (tiff != nullptr) TIFFClose(tiff);
    return picture;
  }
  picture.width = static_cast<int>(LongTag(tiff, TIFFTAG_IMAGEWIDTH));
  picture.height = static_cast<int>(LongTag(tiff, TIFFTAG_IMAGELENGTH));
  picture.xResolution = Resolution(tiff, TIFFTAG_XRESOLUTION);
  picture.yResolution = Resolution(tiff, TIFFTAG_YRESOLUTION);
  picture.orientation = ShortTag(tiff, TIFFTAG_ORIENTATION);
  picture.compression = ShortTag(tiff, TIFFTAG_COMPRESSION);
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds);
  const bool four = ShortTag(tiff, TIFFTAG_SAMPLESPERPIXEL) == 4;
  if (four != (count == 1 && kinds[0] == EXTRASAMPLE_UNASSALPHA)) picture.error = "wrong extra samples";
  Bytes row(static_cast<std::size_t>(TIFFScanlineSize(tiff)));
  for (int y = 0; y < picture.height; ++y) {
    if (TIFFReadScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) != 1)
      picture.error = "row " + std::to_string(y) + " is damaged";
    for (int x = 0; x < picture.width; ++x) picture.colors.push_back(TiffColor(tiff, row, x));
  }
  TIFFClose(tiff);
  return picture;
}

namespace {

unsigned Little(const Bytes& file, std::size_t at, int bytes) {
  unsigned value = 0;
  for (int i = bytes - 1; i >= 0; --i) value = value << 8 | file.at(at + static_cast<std::size_t>(i));
  return value;
}

/// The value of a field, a rational one rounded to whole numbers; 0 if it isn't there.
unsigned ExifField(const Bytes& block, std::size_t directory, unsigned tag) {
  constexpr unsigned kShort = 3;
  constexpr unsigned kRational = 5;
  unsigned last = 0;
  unsigned value = 0;
  for (unsigned i = 0; i < Little(block, directory, 2); ++i) {
    const std::size_t entry = directory + 2 + std::size_t{12} * i;
    const unsigned type = Little(block, entry + 2, 2);
    if (Little(block, entry, 2) <= last) return 0;  // tags have to rise
    last = Little(block, entry, 2);
    if (last != tag) continue;
    value = Little(block, entry + 8, type == kShort ? 2 : 4);
    if (type == kRational) value = Little(block, value, 4) / Little(block, value + 4, 4);
  }
  return value;
}

void ReadExifBlock(const Bytes& file, Picture& picture) {
  const std::string head(file.begin() + 6, file.begin() + 12);
  if (file[2] != 0xff || file[3] != 0xe1 || head != std::string("Exif\0\0", 6)) {
    picture.error = "the first segment is not Exif's";
    return;
  }
  const std::ptrdiff_t length = file[4] << 8 | file[5];
  const Bytes block(file.begin() + 12, file.begin() + 4 + length);
  const unsigned first = Little(block, 4, 4);
  const bool inch = ExifField(block, first, 0x128) == 2;
  picture.orientation = static_cast<int>(ExifField(block, first, 0x112));
  picture.xResolution = inch ? static_cast<int>(ExifField(block, first, 0x11a)) : 0;
  picture.yResolution = inch ? static_cast<int>(ExifField(block, first, 0x11b)) : 0;
  const unsigned second = ExifField(block, first, 0x8769);
  if (ExifField(block, second, 0xa002) != static_cast<unsigned>(picture.width) ||
      ExifField(block, second, 0xa003) != static_cast<unsigned>(picture.height) ||
      ExifField(block, second, 0x9101) != 0x00030201 || ExifField(block, second, 0x9000) == 0)
    picture.error = "the Exif fields are missing or wrong";
}

}  // namespace

Picture ReadExifJpeg(const std::string& path) {
  Picture picture;
  const Bytes file = ReadAll(path);
  jpeg_decompress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_decompress(&jpeg);
  jpeg_mem_src(&jpeg, file.data(), file.size());
  jpeg_read_header(&jpeg, TRUE);
  picture.width = static_cast<int>(jpeg.image_width);
  picture.height = static_cast<int>(jpeg.image_height);
  ReadExifBlock(file, picture);
  const jpeg_component_info* parts = jpeg.comp_info;
  if (jpeg.jpeg_color_space != JCS_YCbCr || jpeg.saw_JFIF_marker != 0 || parts[0].h_samp_factor != 2 ||
      parts[0].v_samp_factor != 1 || parts[1].h_samp_factor != 1 || parts[1].v_samp_factor != 1)
    picture.error = "not 4:2:2 of the Exif kind";
  jpeg.out_color_space = JCS_RGB;
  jpeg_start_decompress(&jpeg);
  Bytes row(static_cast<std::size_t>(picture.width) * 3);
  JSAMPROW rows[] = {row.data()};
  for (int y = 0; y < picture.height; ++y) {
    jpeg_read_scanlines(&jpeg, rows, 1);
    for (std::size_t at = 0; at < row.size(); at += 3)
      picture.colors.push_back({row[at], row[at + 1], row[at + 2], 255});
  }
  jpeg_finish_decompress(&jpeg);
  jpeg_destroy_decompress(&jpeg);
  return picture;
}

namespace {

/// Every row must be full, end by its own code, and the bitmap's end be that of the file.
std::vector<int> ReadRle(const Bytes& file, std::size_t at, const Picture& picture, bool half) {
  std::vector<int> indices;
  const auto half4 = [](int byte, int i) { return i % 2 == 0 ? byte >> 4 : byte & 15; };
  for (std::size_t row = 1;; at += 2) {
    const int count = file.at(at);
    const int second = file.at(at + 1);
    if (count > 0) {
      for (int i = 0; i < count; ++i) indices.push_back(half ? half4(second, i) : second);
    } else if (second <= 1) {
      if (indices.size() != row++ * static_cast<std::size_t>(picture.width)) return {};
      if (second == 1) return at + 2 == file.size() ? indices : std::vector<int>{};
    } else if (second == 2) {
      return {};
    } else {
      for (int i = 0; i < second; ++i)
        indices.push_back(half ? half4(file.at(at + 2 + static_cast<std::size_t>(i / 2)), i)
                               : file.at(at + 2 + static_cast<std::size_t>(i)));
      const int bytes = half ? (second + 1) / 2 : second;
      at += static_cast<std::size_t>((bytes + 1) / 2 * 2);
    }
  }
}

std::size_t Index(const Picture& picture, int x, int y) {
  return static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x);
}

Color TableColor(const Bytes& file, int index) {
  const std::size_t entry = 54 + static_cast<std::size_t>(index) * 4;
  return {file.at(entry + 2), file.at(entry + 1), file.at(entry), 255};
}

/// Counts rows from below.
Color PlainColor(const Bytes& file, std::size_t data, int width, int x, int y) {
  const std::size_t bits = Little(file, 28, 2);
  const std::size_t pitch = (static_cast<std::size_t>(width) * bits + 31) / 32 * 4;
  const std::size_t at = data + static_cast<std::size_t>(y) * pitch + static_cast<std::size_t>(x) * bits / 8;
  if (bits == 1) return TableColor(file, file.at(at) >> (7 - x % 8) & 1);
  return {file.at(at + 2), file.at(at + 1), file.at(at), bits == 32 ? file.at(at + 3) : 255};
}

}  // namespace

Picture ReadBmp(const Bytes& file) {
  Picture picture;
  const std::size_t data = Little(file, 10, 4);
  picture.width = static_cast<int>(Little(file, 18, 4));
  picture.height = static_cast<int>(Little(file, 22, 4));
  picture.compression = static_cast<int>(Little(file, 30, 4));
  picture.xResolution = static_cast<int>(std::lround(Little(file, 38, 4) * 0.0254));
  picture.yResolution = static_cast<int>(std::lround(Little(file, 42, 4) * 0.0254));
  if (file[0] != 'B' || file[1] != 'M' || Little(file, 2, 4) != file.size() || Little(file, 14, 4) != 40 ||
      Little(file, 26, 2) != 1 || Little(file, 34, 4) != file.size() - data)
    picture.error = "wrong header";
  std::vector<int> indices;
  if (picture.compression != 0) indices = ReadRle(file, data, picture, picture.compression == 2);
  const auto pixels = static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
  if (picture.compression != 0 && indices.size() != pixels) {
    picture.error = "wrong run lengths";
    return picture;
  }
  for (int y = picture.height - 1; y >= 0; --y)
    for (int x = 0; x < picture.width; ++x)
      picture.colors.push_back(picture.compression != 0 ? TableColor(file, indices[Index(picture, x, y)])
                                                        : PlainColor(file, data, picture.width, x, y));
  return picture;
}

std::string FirstDifference(const Loaded& page, const Picture& picture, int tolerance) {
  if (!picture.error.empty()) return picture.error;
  return Compare(page, picture.width, picture.height, tolerance,
                 [&](int x, int y) { return picture.colors[Index(picture, x, y)]; });
}

std::string FirstDifference(const Loaded& page, const Loaded& again, int tolerance) {
  if (!again.error.empty()) return again.error;
  return Compare(page, again.pixels->Width(), again.pixels->Height(), tolerance,
                 [&](int x, int y) { return ColorAt(again, x, y); });
}

}  // namespace codec_test
