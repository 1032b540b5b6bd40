#include <malloc.h>
#include <tiffio.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_page.h"
#include "benchmarks/ratio.h"
#include "imaging/ltwrap.h"
#include "platform/graphics/gdi.h"
#include "platform/spooler/printers.h"

// A fax of a hundred pages printed to a PDF, as a print job does it page by page, against the codec library
// copying the strips of the same pages; then the size of the PDF against that of the fax, and the memory of
// the job against a decoded page. The program's code isn't counted: a tiny job has brought it in before.
namespace {

constexpr int kPages = 100;
constexpr std::size_t kPageBytes = kRowBytes * kHeight;

void WriteFax(const std::string& path, std::vector<std::uint8_t>& page, int pages, int height) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  for (int i = 0; i < pages; ++i) {
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 300.0);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 300.0);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height);
    const auto bytes = static_cast<tmsize_t>(kRowBytes) * height;
    if (TIFFWriteEncodedStrip(tiff, 0, page.data(), bytes) < 0) std::abort();
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
}

/// The coded strips as they are, which is what tiff2pdf does with pages of this kind.
void CopyByLibrary(const std::string& from, const std::string& to, std::vector<std::uint8_t>& strip) {
  TIFF* tiff = TIFFOpen(from.c_str(), "r");
  TIFF* target = TIFFOpen(to.c_str(), "w");
  do {
    const tmsize_t size = TIFFReadRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size()));
    if (size < 0) std::abort();
    TIFFSetField(target, TIFFTAG_IMAGEWIDTH, kWidth);
    TIFFSetField(target, TIFFTAG_IMAGELENGTH, kHeight);
    TIFFSetField(target, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(target, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(target, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
    TIFFSetField(target, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(target, TIFFTAG_ROWSPERSTRIP, kHeight);
    TIFFWriteRawStrip(target, 0, strip.data(), size);
    TIFFWriteDirectory(target);
  } while (TIFFReadDirectory(tiff) != 0);
  TIFFClose(target);
  TIFFClose(tiff);
}

void Print(const std::string& from, const std::string& to, int pages) {
  const HDC dc = CreateDCA(nullptr, nullptr, to.c_str(), nullptr);
  const DOCINFOA info{sizeof info, "Fax", nullptr, nullptr, 0};
  if (StartDocA(dc, &info) < 0) std::abort();
  struct_LEAD_Bitmap bitmap{};
  for (int page = 1; page <= pages; ++page) {
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    options.PageNumber = page;
    LEADTOOLS::LoadBitmapA(from.c_str(), &bitmap, 1, 0, &options, nullptr);
    StartPage(dc);
    LEADTOOLS::PrintBitmapExt(dc, &bitmap, 1, 1, 0, 0, 0);
    EndPage(dc);
    LEADTOOLS::FreeBitmap(&bitmap);
  }
  if (EndDoc(dc) < 0) std::abort();
  DeleteDC(dc);
}

/// A line of the kernel's account of this process, in KiB.
long Account(const std::string& name) {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);)
    if (line.starts_with(name + ":")) return std::atol(line.c_str() + name.size() + 1);
  std::abort();
}

/// Runs the work; the most memory it held over what was in use before, in bytes.
template <typename Work>
double GrownBy(Work work) {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5\n";  // the peak begins anew
  const long before = Account("VmRSS");
  work();
  return static_cast<double>(Account("VmHWM") - before) * 1024;
}

}  // namespace

int main() {
  const std::filesystem::path memory = "/dev/shm";
  const bool inMemory = std::filesystem::is_directory(memory);
  std::string folder =
      ((inMemory ? memory : std::filesystem::temp_directory_path()) / "bench_print_XXXXXX").string();
  if (mkdtemp(folder.data()) == nullptr) std::abort();
  const std::string from = folder + "/fax.tif";
  const std::string to = folder + "/fax.pdf";
  const std::string copy = folder + "/copy.tif";
  std::vector<std::uint8_t> page = TextPage();
  WriteFax(from, page, 1, 100);
  Print(from, to, 1);
  WriteFax(from, page, kPages, kHeight);
  const double grown = GrownBy([&] { Print(from, to, kPages); });
  constexpr int kRepeats = 8;
  Ratio(
      "print_100_fax_pages_vs_raw_strips_by_libtiff", 1.2, [&] { Print(from, to, kPages); },
      [&] { CopyByLibrary(from, copy, page); }, [] {}, kRepeats);
  const auto size = [](const std::string& path) {
    return static_cast<double>(std::filesystem::file_size(path));
  };
  std::printf("RATIO print_100_fax_pages_size_vs_file %.3f %.2f\n", size(to) / size(from), 1.02);
  std::printf("RATIO print_100_fax_pages_memory_vs_page %.3f %.2f\n", grown / kPageBytes, 1.5);
  std::filesystem::remove_all(folder);
}
