#include <tiffio.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_page.h"
#include "benchmarks/ratio.h"
#include "imaging/ltwrap.h"

// Export of a page through the service against the codec library alone, on a page of A4 at 300 dots per inch.
// Both sides take turns, on a file system in memory where there is one, and their shortest times are
// compared: what a disk takes to make a file safe is not a matter of coding.
namespace {

constexpr int kG3 = 27;

void WritePage(const std::string& path, int compression, std::vector<std::uint8_t>& page) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kHeight);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kHeight);
  if (TIFFWriteEncodedStrip(tiff, 0, page.data(), static_cast<tmsize_t>(page.size())) < 0) std::abort();
  TIFFClose(tiff);
}

/// The library's fastest way: the strip as a whole, in memory that was touched before.
void ConvertByLibrary(const std::string& from, const std::string& to, std::vector<std::uint8_t>& page) {
  TIFF* tiff = TIFFOpen(from.c_str(), "r");
  if (TIFFReadEncodedStrip(tiff, 0, page.data(), -1) < 0) std::abort();
  TIFFClose(tiff);
  WritePage(to, COMPRESSION_CCITTFAX3, page);
}

void Convert(const std::string& from, const std::string& to) {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::LoadBitmapA(from.c_str(), &bitmap, 1, 1, nullptr, nullptr);
  LEADTOOLS::SaveBitmap(to.c_str(), &bitmap, kG3, 1, -1, nullptr);
  LEADTOOLS::FreeBitmap(&bitmap);
}

std::string MakeFolder(const std::filesystem::path& parent) {
  std::string name = (parent / "bench_save_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

}  // namespace

int main() {
  const std::filesystem::path memory = "/dev/shm";
  const bool inMemory = std::filesystem::is_directory(memory);
  const std::string folder = MakeFolder(inMemory ? memory : std::filesystem::temp_directory_path());
  const std::string from = folder + "/g4.tif";
  const std::string to = folder + "/g3.tif";
  std::vector<std::uint8_t> page = TextPage();
  WritePage(from, COMPRESSION_CCITTFAX4, page);
  Ratio(
      "g4_to_g3_export_vs_libtiff_both_ways", 0.6, [&] { Convert(from, to); },
      [&] { ConvertByLibrary(from, to, page); });
  std::filesystem::remove_all(folder);
}
