#include "tests/imaging/codec_files.h"

#include <gif_lib.h>
#include <png.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>

#include <jpeglib.h>

namespace codec_test {

TempFolder::TempFolder() {
  std::string name = (std::filesystem::temp_directory_path() / "codec_test_XXXXXX").string();
  m_path = mkdtemp(name.data());
}

TempFolder::~TempFolder() {
  std::filesystem::remove_all(m_path);
}

Bytes ReadAll(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(file), {});
}

void WriteAll(const std::string& path, const Bytes& bytes) {
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

std::uint32_t SampleAt(const TiffForm& form, int x, int y, int sample) {
  const auto mixed = static_cast<std::uint32_t>(x * 7 + y * 13 + sample * 101 + x * y);
  const std::uint32_t spread = mixed * 2654435761U;
  if (form.bits >= 32) return spread;
  // Lossy coding needs a picture without sharp edges.
  if (form.compression == COMPRESSION_JPEG) return static_cast<std::uint32_t>(60 + x * 2 + y + sample * 20);
  return spread >> (32 - form.bits);
}

namespace {

/// Packs samples of any width, most significant bit first; whole bytes in the machine's order.
void Pack(Bytes& row, std::size_t index, int bits, std::uint32_t value) {
  if (bits == 16 || bits == 32) {
    std::memcpy(row.data() + index * static_cast<std::size_t>(bits / 8), &value,
                static_cast<std::size_t>(bits / 8));
    return;
  }
  for (int bit = 0; bit < bits; ++bit) {
    const std::size_t at = index * static_cast<std::size_t>(bits) + static_cast<std::size_t>(bit);
    if ((value >> (bits - 1 - bit) & 1) != 0) row[at / 8] |= static_cast<std::uint8_t>(0x80U >> at % 8);
  }
}

Bytes PackRow(const TiffForm& form, int y, int first, int width, int plane) {
  const int samples = form.planar ? 1 : form.samples;
  Bytes row((static_cast<std::size_t>(width) * static_cast<std::size_t>(samples * form.bits) + 7) / 8);
  for (int x = 0; x < width; ++x)
    for (int sample = 0; sample < samples; ++sample)
      Pack(row, static_cast<std::size_t>(x * samples + sample), form.bits,
           SampleAt(form, first + x, y, form.planar ? plane : sample));
  return row;
}

void SetTags(TIFF* tiff, const TiffForm& form) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, form.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, form.height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.samples);
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, form.format);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, form.compression);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
  TIFFSetField(tiff, TIFFTAG_FILLORDER, form.fillOrder);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, form.planar ? PLANARCONFIG_SEPARATE : PLANARCONFIG_CONTIG);
  if (form.compression == COMPRESSION_CCITTFAX3) TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, form.g3Options);
  if (form.photometric == PHOTOMETRIC_YCBCR) {
    if (form.compression == COMPRESSION_JPEG)
      TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    else
      TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, 1, 1);
  }
  const auto extra = static_cast<std::uint16_t>(form.extra);
  if (form.extra >= 0) TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &extra);
  if (form.photometric == PHOTOMETRIC_PALETTE) {
    std::vector<std::uint16_t> red, green, blue;
    for (unsigned i = 0; i < 1U << form.bits; ++i) {
      red.push_back(static_cast<std::uint16_t>((i * 37 & 255) * 257));
      green.push_back(static_cast<std::uint16_t>((255 - i) * 257));
      blue.push_back(static_cast<std::uint16_t>((i * 11 & 255) * 257));
    }
    TIFFSetField(tiff, TIFFTAG_COLORMAP, red.data(), green.data(), blue.data());
  }
  if (form.tiled) {
    TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
    TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
  } else {
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, form.rowsPerStrip);
  }
}

void WriteTiles(TIFF* tiff, const TiffForm& form, int plane) {
  for (int top = 0; top < form.height; top += 16)
    for (int left = 0; left < form.width; left += 16) {
      Bytes tile;
      for (int y = top; y < top + 16; ++y) {
        const Bytes row = PackRow(form, y, left, 16, plane);
        tile.insert(tile.end(), row.begin(), row.end());
      }
      TIFFWriteTile(tiff, tile.data(), static_cast<std::uint32_t>(left), static_cast<std::uint32_t>(top), 0,
                    static_cast<std::uint16_t>(plane));
    }
}

}  // namespace

void WriteTiffPage(TIFF* tiff, const TiffForm& form) {
  SetTags(tiff, form);
  for (int plane = 0; plane < (form.planar ? form.samples : 1); ++plane) {
    if (form.tiled) WriteTiles(tiff, form, plane);
    for (int y = 0; y < form.height && !form.tiled; ++y) {
      Bytes row = PackRow(form, y, 0, form.width, plane);
      TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), static_cast<std::uint16_t>(plane));
    }
  }
}

Bytes MakeTiff(const std::vector<TiffForm>& pages) {
  const TempFolder folder;
  const std::string path = folder.Path("made.tif");
  TIFF* tiff = TIFFOpen(path.c_str(), pages.front().mode);
  for (const TiffForm& page : pages) {
    WriteTiffPage(tiff, page);
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
  return ReadAll(path);
}

Bytes MakeJpeg(int width, int height, int components, bool progressive,
               const std::function<std::uint8_t(int, int, int)>& sample, int densityUnit, int density,
               const Bytes& exif, int lumaRows, int quality) {
  jpeg_compress_struct jpeg{};
  jpeg_error_mgr errors{};
  jpeg.err = jpeg_std_error(&errors);
  jpeg_create_compress(&jpeg);
  unsigned char* buffer = nullptr;
  unsigned long size = 0;
  jpeg_mem_dest(&jpeg, &buffer, &size);
  jpeg.image_width = static_cast<JDIMENSION>(width);
  jpeg.image_height = static_cast<JDIMENSION>(height);
  jpeg.input_components = components;
  jpeg.in_color_space = components == 1 ? JCS_GRAYSCALE : components == 3 ? JCS_RGB : JCS_CMYK;
  jpeg_set_defaults(&jpeg);
  jpeg_set_quality(&jpeg, quality, TRUE);
  if (components == 3) jpeg.comp_info[0].v_samp_factor = lumaRows;
  if (progressive) jpeg_simple_progression(&jpeg);
  jpeg.density_unit = static_cast<UINT8>(densityUnit);
  if (density > 0) jpeg.X_density = jpeg.Y_density = static_cast<UINT16>(density);
  if (!exif.empty()) jpeg.write_JFIF_header = FALSE;
  jpeg_start_compress(&jpeg, TRUE);
  if (!exif.empty()) jpeg_write_marker(&jpeg, JPEG_APP0 + 1, exif.data(), static_cast<unsigned>(exif.size()));
  for (int y = 0; y < height; ++y) {
    Bytes row;
    for (int x = 0; x < width; ++x)
      for (int component = 0; component < components; ++component) row.push_back(sample(x, y, component));
    JSAMPROW pointer = row.data();
    jpeg_write_scanlines(&jpeg, &pointer, 1);
  }
  jpeg_finish_compress(&jpeg);
  jpeg_destroy_compress(&jpeg);
  Bytes bytes(buffer, buffer + size);
  std::free(buffer);
  return bytes;
}

Bytes MakePng(int width, int height, int depth, int colorType, bool interlaced,
              const std::function<unsigned(int, int, int)>& sample) {
  Bytes bytes;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  png_set_write_fn(
      png, &bytes,
      [](png_structp state, png_bytep data, std::size_t size) {
        auto& target = *static_cast<Bytes*>(png_get_io_ptr(state));
        target.insert(target.end(), data, data + size);
      },
      nullptr);
  png_set_IHDR(png, info, static_cast<png_uint_32>(width), static_cast<png_uint_32>(height), depth, colorType,
               interlaced ? PNG_INTERLACE_ADAM7 : PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
               PNG_FILTER_TYPE_DEFAULT);
  if (colorType == PNG_COLOR_TYPE_PALETTE) {
    std::vector<png_color> colors;
    for (unsigned i = 0; i < 1U << depth; ++i)
      colors.push_back(
          {static_cast<png_byte>(i * 37), static_cast<png_byte>(255 - i), static_cast<png_byte>(i * 11)});
    png_set_PLTE(png, info, colors.data(), static_cast<int>(colors.size()));
  }
  png_set_pHYs(png, info, 11811, 5906, PNG_RESOLUTION_METER);
  png_write_info(png, info);
  const int channels = png_get_channels(png, info);
  std::vector<Bytes> rows;
  for (int y = 0; y < height; ++y) {
    Bytes row((static_cast<std::size_t>(width * channels * depth) + 7) / 8);
    for (int i = 0; i < width * channels; ++i) {
      const unsigned value = sample(i / channels, y, i % channels);
      if (depth == 16) {  // big-endian in the file
        row[static_cast<std::size_t>(i) * 2] = static_cast<std::uint8_t>(value >> 8);
        row[static_cast<std::size_t>(i) * 2 + 1] = static_cast<std::uint8_t>(value);
      } else {
        Pack(row, static_cast<std::size_t>(i), depth, value);
      }
    }
    rows.push_back(row);
  }
  std::vector<png_bytep> pointers;
  for (Bytes& row : rows) pointers.push_back(row.data());
  png_write_image(png, pointers.data());
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
  return bytes;
}

Bytes MakeBmp(int width, int height, int bits, unsigned compression, const Bytes& tables,
              const Bytes& pixels) {
  Bytes bytes;
  const auto put = [&bytes](std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  };
  const auto offset = static_cast<std::uint32_t>(54 + tables.size());
  put(0x4d42, 2);
  put(offset + static_cast<std::uint32_t>(pixels.size()), 4);
  put(0, 4);
  put(offset, 4);
  put(40, 4);
  put(static_cast<std::uint32_t>(width), 4);
  put(static_cast<std::uint32_t>(height), 4);
  put(1, 2);
  put(static_cast<std::uint32_t>(bits), 2);
  put(compression, 4);
  put(static_cast<std::uint32_t>(pixels.size()), 4);
  put(3937, 4);
  put(7874, 4);
  put(0, 4);
  put(0, 4);
  bytes.insert(bytes.end(), tables.begin(), tables.end());
  bytes.insert(bytes.end(), pixels.begin(), pixels.end());
  return bytes;
}

Bytes MakeGif(int width, int height, const std::vector<GifFrame>& frames) {
  Bytes bytes;
  int error = 0;
  GifFileType* gif = EGifOpen(
      &bytes,
      [](GifFileType* file, const GifByteType* data, int size) {
        auto& target = *static_cast<Bytes*>(file->UserData);
        target.insert(target.end(), data, data + size);
        return size;
      },
      &error);
  const GifColorType colors[] = {{0, 0, 0}, {255, 0, 0}, {0, 255, 0}, {255, 255, 255}};
  ColorMapObject* map = GifMakeMapObject(4, colors);
  EGifSetGifVersion(gif, true);
  EGifPutScreenDesc(gif, width, height, 2, 0, map);
  for (const GifFrame& frame : frames) {
    const GraphicsControlBlock control{frame.disposal, false, 0, frame.transparent};
    GifByteType extension[4];
    EGifPutExtension(gif, GRAPHICS_EXT_FUNC_CODE, static_cast<int>(EGifGCBToExtension(&control, extension)),
                     extension);
    EGifPutImageDesc(gif, frame.left, frame.top, frame.width, frame.height, false, nullptr);
    Bytes line(static_cast<std::size_t>(frame.width), static_cast<std::uint8_t>(frame.index));
    for (int y = 0; y < frame.height; ++y) EGifPutLine(gif, line.data(), frame.width);
  }
  EGifCloseFile(gif, &error);
  GifFreeMapObject(map);
  return bytes;
}

}  // namespace codec_test
