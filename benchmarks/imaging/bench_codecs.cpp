#include <tiffio.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "benchmarks/imaging/text_page.h"
#include "benchmarks/ratio.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"

// Loading through the service against the codec library alone, on pages of A4 at 300 dots per inch. Both
// sides are run in turns and their shortest times compared, so that a busy machine slows neither side only.
namespace {

/// A colour picture with soft areas and some noise.
std::vector<std::uint8_t> ColorPage() {
  std::vector<std::uint8_t> page(static_cast<std::size_t>(kWidth) * kHeight * 3);
  unsigned seed = 7;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      seed = seed * 1664525U + 1013904223U;
      const int noise = (seed >> 24) < 16 ? static_cast<int>(seed >> 20 & 7) : 0;
      std::uint8_t* pixel = &page[(static_cast<std::size_t>(y) * kWidth + static_cast<std::size_t>(x)) * 3];
      pixel[0] = static_cast<std::uint8_t>(std::min(255, x / 16 + noise));
      pixel[1] = static_cast<std::uint8_t>(std::min(255, y / 20 + noise));
      pixel[2] = static_cast<std::uint8_t>((x / 64 + y / 64) % 2 * 90 + noise);
    }
  return page;
}

void SetCommon(TIFF* tiff, int width, int height, int bits, int samples, int compression, int photometric) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samples);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
}

/// The rows are not const because the library may work in them.
void WriteRows(TIFF* tiff, std::vector<std::uint8_t>& rows, std::size_t rowBytes, int height) {
  for (int y = 0; y < height; ++y)
    TIFFWriteScanline(tiff, rows.data() + static_cast<std::size_t>(y) * rowBytes,
                      static_cast<std::uint32_t>(y), 0);
}

void WriteFax(const std::string& path, int rowsPerStrip, int compression = COMPRESSION_CCITTFAX4,
              std::uint32_t group3 = 0) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  SetCommon(tiff, kWidth, kHeight, 1, 1, compression, PHOTOMETRIC_MINISWHITE);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
  if (compression == COMPRESSION_CCITTFAX3) TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, group3);
  auto text = TextPage();
  WriteRows(tiff, text, kWidth / 8, kHeight);
  TIFFClose(tiff);
}

void WriteColor(const std::string& path, int compression) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  const bool jpeg = compression == COMPRESSION_JPEG;
  SetCommon(tiff, kWidth, kHeight, 8, 3, compression, jpeg ? PHOTOMETRIC_YCBCR : PHOTOMETRIC_RGB);
  if (jpeg) TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  if (!jpeg) TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
  auto colors = ColorPage();
  WriteRows(tiff, colors, static_cast<std::size_t>(kWidth) * 3, kHeight);
  TIFFClose(tiff);
}

void WriteMany(const std::string& path, int pages, int height) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  auto text = TextPage();
  for (int page = 0; page < pages; ++page) {
    SetCommon(tiff, kWidth, height, 1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height);
    WriteRows(tiff, text, kWidth / 8, height);
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
}

void Load(const std::string& path, int page, int bits) {
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = page;
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::LoadBitmapA(path.c_str(), &bitmap, bits, 0, &options, nullptr);
  delete bitmap.pStorage;  // as FreeBitmap does
}

/// The library's fastest way: each strip at once into memory that was touched before.
void ReadStrips(const std::string& path, std::vector<std::uint8_t>& target, bool jpegToRgb) {
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  if (jpegToRgb) TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
  std::uint8_t* at = target.data();
  const std::uint32_t strips = TIFFNumberOfStrips(tiff);
  for (std::uint32_t strip = 0; strip < strips; ++strip) at += TIFFReadEncodedStrip(tiff, strip, at, -1);
  TIFFClose(tiff);
}

/// The coded strip of a page, alone in a file or inside the fields of an image segment.
void WriteCoded(const std::string& tiffPath, const std::string& rawPath, const std::string& iocaPath) {
  TIFF* tiff = TIFFOpen(tiffPath.c_str(), "r");
  std::vector<char> coded(static_cast<std::size_t>(TIFFRawStripSize64(tiff, 0)));
  TIFFReadRawStrip(tiff, 0, coded.data(), static_cast<tmsize_t>(coded.size()));
  TIFFClose(tiff);
  std::ofstream(rawPath, std::ios::binary).write(coded.data(), std::ssize(coded));
  std::ofstream ioca(iocaPath, std::ios::binary);
  const auto put = [&ioca](std::initializer_list<int> bytes) {
    for (const int byte : bytes) ioca.put(static_cast<char>(byte));
  };
  put({0x70,
       0,
       0x91,
       1,
       0xff,
       0x94,
       9,
       0,
       11,
       184,
       11,
       184,
       kWidth >> 8,
       kWidth & 255,
       kHeight >> 8,
       kHeight & 255,
       0x95,
       2,
       0x82,
       1});
  constexpr std::ptrdiff_t kField = 8192;
  for (std::ptrdiff_t at = 0; at < std::ssize(coded); at += kField) {
    const std::ptrdiff_t size = std::min(kField, std::ssize(coded) - at);
    put({0xfe, 0x92, static_cast<int>(size >> 8), static_cast<int>(size & 255)});
    ioca.write(coded.data() + at, size);
  }
}

/// Faxes and scans as machines have made them, where the folder with real files is at hand.
void BenchRealFaxes(std::vector<std::uint8_t>& page) {
  const char* const corpus = std::getenv("TESSAREL_CORPUS");
  if (corpus == nullptr) return;
  const struct {
    const char* name;
    double target;
  } faxes[] = {{"feyn", 0.5},  {"pport_g4", 0.5}, {"pageseg1", 0.5},
               {"fax2d", 0.7}, {"g3aoe", 0.7},    {"1pagefax", 0.7}};
  for (const auto& fax : faxes) {
    const std::string path = std::string(corpus) + "/fax-and-bilevel/" + fax.name + ".tif";
    if (!std::filesystem::exists(path)) continue;
    Ratio((std::string("real_") + fax.name + "_to_1_bit_vs_libtiff").c_str(), fax.target,
          [&] { Load(path, 1, 1); }, [&] { ReadStrips(path, page, false); });
  }
}

void LoadCopy(std::vector<char>& file) {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::LoadBitmapMemory(file.data(), &bitmap, 1, 0, static_cast<long>(file.size()), nullptr, nullptr);
  delete bitmap.pStorage;
}

std::vector<char> Contents(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void CountDirectories(const std::string& path) {
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  if (TIFFNumberOfDirectories(tiff) == 0) std::abort();
  TIFFClose(tiff);
}

void CountPages(const std::string& path) {
  struct_file_information info{};
  LEADTOOLS::FileInfo(path.c_str(), &info, 1, nullptr);
  if (info.TotalPages == 0) std::abort();
}

}  // namespace

int main() {
  const auto folder =
      std::filesystem::temp_directory_path() / ("bench_codecs_" + std::to_string(std::rand()));
  std::filesystem::create_directories(folder);
  const auto path = [&folder](const char* name) { return (folder / name).string(); };
  WriteFax(path("one.tif"), kHeight);
  WriteFax(path("strips.tif"), 128);
  WriteCoded(path("one.tif"), path("one.g4"), path("one.ica"));
  WriteFax(path("g3.tif"), kHeight, COMPRESSION_CCITTFAX3);
  WriteFax(path("g3_2d.tif"), kHeight, COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING);
  WriteFax(path("rle.tif"), kHeight, COMPRESSION_CCITTRLE);
  WriteFax(path("packbits.tif"), kHeight, COMPRESSION_PACKBITS);
  WriteColor(path("lzw.tif"), COMPRESSION_LZW);
  WriteColor(path("jpeg.tif"), COMPRESSION_JPEG);
  WriteMany(path("100.tif"), 100, 1000);
  WriteMany(path("1000.tif"), 1000, 300);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));  // files that just changed aren't remembered

  std::vector<std::uint8_t> page(static_cast<std::size_t>(kWidth) * kHeight * 3);
  const auto bench = [&](const char* name, double target, const char* file, int bits, bool jpeg) {
    const std::string full = path(file);
    Ratio(
        name, target, [&] { Load(full, 1, bits); }, [&] { ReadStrips(full, page, jpeg); });
  };
  bench("g4_to_1_bit_vs_libtiff", 0.5, "one.tif", 1, false);
  bench("g4_strips_to_1_bit_vs_libtiff", 0.5, "strips.tif", 1, false);
  bench("g4_to_8_bits_vs_libtiff_to_1_bit", 0.8, "one.tif", 8, false);
  bench("g3_one_dimensional_to_1_bit_vs_libtiff", 0.7, "g3.tif", 1, false);
  bench("g3_two_dimensional_to_1_bit_vs_libtiff", 0.7, "g3_2d.tif", 1, false);
  bench("rle_to_1_bit_vs_libtiff", 0.7, "rle.tif", 1, false);
  bench("rle_to_8_bits_vs_libtiff_to_1_bit", 1.0, "rle.tif", 8, false);
  bench("packbits_to_1_bit_vs_libtiff", 0.7, "packbits.tif", 1, false);
  bench("lzw_strips_vs_libtiff", 1.05, "lzw.tif", 24, false);
  bench("jpeg_strips_vs_libtiff", 1.05, "jpeg.tif", 24, true);
  BenchRealFaxes(page);

  // The same coded data in other files. From memory nothing is remembered: width and order of raw fax are
  // found anew each time.
  const std::string inTiff = path("one.tif");
  for (const int bits : {1, 8}) {
    for (const char* kind : {"raw_fax", "ioca"}) {
      const std::string file = path(kind[0] == 'r' ? "one.g4" : "one.ica");
      Ratio((std::string(kind) + "_vs_tiff_" + std::to_string(bits)).c_str(), 1.1,
            [&] { Load(file, 1, bits); }, [&] { Load(inTiff, 1, bits); });
    }
  }
  auto rawCopy = Contents(path("one.g4"));
  auto tiffCopy = Contents(inTiff);
  Ratio(
      "raw_fax_unknown_vs_tiff", 1.1, [&] { LoadCopy(rawCopy); }, [&] { LoadCopy(tiffCopy); });

  const std::string hundred = path("100.tif");
  Ratio(
      "count_100_pages_remembered_vs_libtiff", 0.5, [&] { CountPages(hundred); },
      [&] { CountDirectories(hundred); });
  // What is known of a file counts no more once the file was changed.
  Ratio(
      "count_100_pages_fresh_vs_libtiff", 0.5, [&] { CountPages(hundred); },
      [&] { CountDirectories(hundred); },
      [&] { std::filesystem::last_write_time(hundred, std::filesystem::file_time_type::clock::now()); });
  const std::string thousand = path("1000.tif");
  CountPages(thousand);
  Ratio(
      "jump_to_page_900_vs_page_2", 1.02, [&] { Load(thousand, 900, 1); }, [&] { Load(thousand, 2, 1); });
  std::filesystem::remove_all(folder);
}
