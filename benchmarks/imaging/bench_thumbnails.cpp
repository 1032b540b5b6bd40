#include <sys/wait.h>
#include <tiffio.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/ratio.h"
#include "benchmarks/viewer/peak_memory.h"
#include "imaging/ltwrap.h"

// Thumbnails of a file of 100 pages: the time for bilevel pages against the codec library's decoding alone,
// from the file and from pages that a document holds already; the memory for true-colour pages against two
// pages and the thumbnails.
namespace {

constexpr int kPages = 100;
constexpr int kThumbnailHeight = 79;
constexpr int kThumbnailWidth = kThumbnailHeight * kWidth / kHeight;

void MakeThumbnails(std::string path) {
  void* list = nullptr;
  LEADTOOLS::LoadBitmapList(path.data(), &list, 0, 1, nullptr, nullptr);
  for (unsigned i = 0; i < kPages; ++i) {
    struct_LEAD_Bitmap header{};
    LEADTOOLS::GetBitmapListItem(list, i, &header);
    const bool isBilevel = header.BitsPerPixel == 1;
    if (isBilevel) LEADTOOLS::GrayScaleBitmap(&header, 8);
    LEADTOOLS::SizeBitmapExt(&header, kThumbnailWidth, kThumbnailHeight, isBilevel ? 2 : 0);
    LEADTOOLS::SetBitmapListItem(list, i, &header);
  }
  LEADTOOLS::DestroyBitmapList(list);
}

/// The pages of a document, in memory at their own depth.
class HeldPages {
 public:
  explicit HeldPages(const std::string& path) : m_pages(kPages) {
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    for (struct_LEAD_Bitmap& page : m_pages) {
      LEADTOOLS::LoadBitmapA(path.c_str(), &page, 0, 1, &options, nullptr);
      ++options.PageNumber;
    }
  }
  ~HeldPages() {
    for (struct_LEAD_Bitmap& page : m_pages) LEADTOOLS::FreeBitmap(&page);
  }
  HeldPages(const HeldPages&) = delete;
  HeldPages& operator=(const HeldPages&) = delete;

  void MakeThumbnails() {
    constexpr double kFactor = 80.0 / kHeight;
    for (struct_LEAD_Bitmap& page : m_pages) {
      struct_LEAD_Bitmap thumbnail{};
      LEADTOOLS::SmartResize(&page, &thumbnail, kFactor);
      LEADTOOLS::FreeBitmap(&thumbnail);
    }
  }

 private:
  std::vector<struct_LEAD_Bitmap> m_pages;
};

/// In a process of its own, since the peak of a process never falls.
void MeasureMemory(const std::string& path) {
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    execl("/proc/self/exe", "bench_thumbnails", path.c_str(), nullptr);
    std::_Exit(1);
  }
  int status = 0;
  waitpid(child, &status, 0);
  if (status != 0) std::abort();
}

void PrintMemory(const std::string& path) {
  const long before = PeakMemory();
  MakeThumbnails(path);
  const double used = 1024.0 * static_cast<double>(PeakMemory() - before);
  const double page = 3.0 * kWidth * kHeight;
  const double thumbnails = 3.0 * kPages * kThumbnailWidth * kThumbnailHeight;
  std::printf("RATIO thumbnails_24_bits_memory %.3f %.2f\n", used / (2 * page + thumbnails), 1.0);
  std::fprintf(stderr, "  thumbnails_24_bits_memory: %.1f MB, a page is %.1f MB\n", used / 1e6, page / 1e6);
}

std::string MakeFolder() {
  const std::filesystem::path memory = "/dev/shm";
  const bool inMemory = std::filesystem::is_directory(memory);
  std::string name =
      ((inMemory ? memory : std::filesystem::temp_directory_path()) / "bench_thumbs_XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

}  // namespace

int main(int count, char** arguments) {
  if (count > 1 && arguments[1][0] != '-') {  // no option for all benchmarks
    PrintMemory(arguments[1]);
    return 0;
  }
  const std::string folder = MakeFolder();
  const std::string g4 = folder + "/g4.tif";
  const std::string color = folder + "/color.tif";
  std::vector<std::uint8_t> page = TextPage();
  WritePages(g4, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, kPages);
  constexpr int kRepeats = 5;
  Ratio(
      "thumbnails_g4_vs_libtiff_decode", 0.65, [&] { MakeThumbnails(g4); }, [&] { DecodeAll(g4, page); },
      [] {}, kRepeats);
  {
    HeldPages held(g4);
    Ratio(
        "thumbnails_of_held_pages_vs_libtiff_decode", 0.5, [&] { held.MakeThumbnails(); },
        [&] { DecodeAll(g4, page); }, [] {}, kRepeats);
  }
  std::vector<std::uint8_t> colors(3U * kWidth * kHeight);
  for (std::size_t i = 0; i < colors.size(); ++i) colors[i] = static_cast<std::uint8_t>(i / 1000);
  WritePages(color, {3, 8, COMPRESSION_LZW, PHOTOMETRIC_RGB}, colors, kPages);
  MeasureMemory(color);
  std::filesystem::remove_all(folder);
}
