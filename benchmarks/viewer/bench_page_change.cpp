#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "benchmarks/imaging/text_file.h"
#include "benchmarks/ratio.h"
#include "tessarel12.h"
#include "tessarel12_testing.h"

// The next page by command, until it is on the screen with all that follows it, against what nobody can do
// without: the library's decoding of that page and one copy of the window's pixels. Both sides go through the
// same pages. Wants QT_QPA_PLATFORM=offscreen where there is no display.

namespace {

constexpr int kPages = 50;
constexpr int kWindowWidth = 1000;
constexpr int kWindowHeight = 760;
constexpr int kFaxWidth = 1728;
constexpr int kFaxHeight = 2156;

/// The text page as a fax machine sends it, at 204 by 196 dots per inch in one-dimensional code: its top left
/// part, with lines as wide as the fax's.
void WriteFax(const std::string& path, const std::vector<std::uint8_t>& page) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  for (int i = 0; i < kPages; ++i) {
    SetFields(tiff, {1, 1, COMPRESSION_CCITTFAX3, PHOTOMETRIC_MINISWHITE});
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kFaxWidth);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kFaxHeight);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kFaxHeight);
    TIFFSetField(tiff, TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH);
    TIFFSetField(tiff, TIFFTAG_XRESOLUTION, 204.0F);
    TIFFSetField(tiff, TIFFTAG_YRESOLUTION, 196.0F);
    std::vector<std::uint8_t> row(kFaxWidth / 8);
    for (int y = 0; y < kFaxHeight; ++y) {
      std::memcpy(row.data(), page.data() + static_cast<std::size_t>(y) * kRowBytes, row.size());
      if (TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y)) < 0) std::abort();
    }
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
}

void Measure(const char* name, CImageFrame* frame, const std::string& file) {
  if (!frame->OpenImageFile(file.c_str())) std::abort();
  platform::testing::PumpUntilIdle();
  TIFF* tiff = TIFFOpen(file.c_str(), "r");
  std::vector<std::uint8_t> decoded(static_cast<std::size_t>(TIFFStripSize(tiff)));
  const std::vector<std::uint32_t> window(std::size_t{kWindowWidth} * kWindowHeight, 1);
  std::vector<std::uint32_t> screen(window.size());
  const auto turn = [frame] {
    frame->SendMessage(WM_COMMAND, ID_ZP_NEXT_PAGE);
    platform::testing::PumpUntilIdle();
  };
  const auto peer = [&] {
    TIFFReadDirectory(tiff);
    if (TIFFReadEncodedStrip(tiff, 0, decoded.data(), static_cast<tmsize_t>(decoded.size())) < 0)
      std::abort();
    std::memcpy(screen.data(), window.data(), window.size() * sizeof window[0]);
    asm volatile("" : : "r"(screen.data()) : "memory");  // the copy is wanted
  };
  Ratio(name, 1.2, turn, peer);
  TIFFClose(tiff);
}

}  // namespace

int main(int argc, char** argv) {
  if (AfxWinInit(argc, argv) == FALSE) return 1;
  auto* frame = new CImageFrame;  // ends with its window
  if (!frame->LoadFrame(IDR_ZP_VIEWER)) return 1;
  frame->MoveWindow(0, 0, kWindowWidth, kWindowHeight);
  frame->ShowWindow(SW_SHOW);
  const std::filesystem::path folder = std::filesystem::temp_directory_path();
  const std::string file = (folder / ("bench-page-change-" + std::to_string(getpid()) + ".tif")).string();
  std::vector<std::uint8_t> page = TextPage();
  WritePages(file, {1, 1, COMPRESSION_CCITTFAX4, PHOTOMETRIC_MINISWHITE}, page, kPages);
  Measure("page_change_a4_g4_vs_decode_and_blit", frame, file);
  WriteFax(file, page);
  Measure("page_change_fax_g3_vs_decode_and_blit", frame, file);
  std::filesystem::remove(file);
  frame->DestroyWindow();
  return 0;
}
