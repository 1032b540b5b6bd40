#include <tiffio.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "imaging/ltwrap.h"

// Export of a page through the service against the codec library alone, on a page of A4 at 300 dots per inch.
// Both sides take turns, on a file system in memory where there is one, and their shortest times are
// compared: what a disk takes to make a file safe is not a matter of coding.
namespace {

constexpr int kWidth = 2480;
constexpr int kHeight = 3508;
constexpr std::size_t kRowBytes = kWidth / 8;
constexpr int kRepeats = 41;
constexpr int kG3 = 27;

template <typename Action>
double Milliseconds(const Action& action) {
  const auto start = std::chrono::steady_clock::now();
  action();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// A page of text-like black strokes in lines and words; 1 is black.
std::vector<std::uint8_t> TextPage() {
  std::vector<std::uint8_t> page(kRowBytes * kHeight);
  unsigned seed = 1;
  const auto next = [&seed](unsigned limit) {
    seed = seed * 1664525U + 1013904223U;
    return (seed >> 8) % limit;
  };
  const auto blacken = [&page](int x, int y) {
    page[static_cast<std::size_t>(y) * kRowBytes + static_cast<std::size_t>(x / 8)] |=
        static_cast<std::uint8_t>(0x80U >> x % 8);
  };
  for (int top = 200; top < kHeight - 200; top += 60)
    for (int left = 200; left < kWidth - 200; left += 26) {
      if (next(6) == 0) continue;  // a gap between words
      for (int stroke = 0; stroke < 3; ++stroke) {
        const int x = left + static_cast<int>(next(16));
        const int slant = static_cast<int>(next(5)) - 2;
        const int length = 12 + static_cast<int>(next(24));
        for (int dy = 0; dy < length; ++dy)
          for (int dx = 0; dx < 4; ++dx) blacken(x + dx + slant * dy / 8, top + dy);
      }
    }
  return page;
}

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
  double ours = 1e9;
  double library = 1e9;
  for (int i = 0; i < kRepeats; ++i) {
    ours = std::min(ours, Milliseconds([&] { Convert(from, to); }));
    library = std::min(library, Milliseconds([&] { ConvertByLibrary(from, to, page); }));
  }
  std::printf("RATIO g4_to_g3_export %.3f 1.3\n", ours / library);
  std::printf("      g4_to_g3_export: %.3f ms against %.3f ms\n", ours, library);
  std::filesystem::remove_all(folder);
}
