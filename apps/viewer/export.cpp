#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

#include "input_file.h"
#include "resources.h"
#include "windowless.h"

namespace {

namespace fs = std::filesystem;

/// A decoded page, in its own depth.
class Page {
 public:
  Page(const InputFile& file, int number) {
    LEADTOOLS::InitBitmap(&m_bitmap, 0, 0, 1);
    Imaging(file, [&] {
      _LOADFILEOPTION options{};
      LEADTOOLS::GetDefaultLoadFileOption(&options);
      options.PageNumber = number;
      LEADTOOLS::LoadBitmapA(file.Path().c_str(), &m_bitmap, 0, 1, &options, nullptr);
    });
  }
  ~Page() { LEADTOOLS::FreeBitmap(&m_bitmap); }
  Page(const Page&) = delete;
  Page& operator=(const Page&) = delete;
  struct_LEAD_Bitmap* Get() { return &m_bitmap; }

 private:
  struct_LEAD_Bitmap m_bitmap{};
};

/// Codes of LEADTOOLS::SaveBitmap.
enum : int { kTifBilevel = 27, kPng = 75, kTifPackBits = 87, kJpeg = 98 };

/// Pages in their order, told of one by one.
class Pages {
 public:
  Pages(std::vector<int> numbers, const Reach& reach) : m_numbers(std::move(numbers)), m_reach(reach) {}
  std::size_t Count() const { return m_numbers.size(); }
  /// Throws Stopped.
  template <typename Write>
  void ForEach(Write write) const {
    int done = 0;
    for (const int number : m_numbers) {
      if (!m_reach(++done, static_cast<int>(m_numbers.size()))) throw Stopped();
      write(number);
    }
  }

 private:
  std::vector<int> m_numbers;
  const Reach& m_reach;
};

std::vector<int> PagesOf(const PageRanges& ranges) {
  std::vector<int> pages;
  for (const PageRange& range : ranges)
    for (int page = range.first; page <= range.last; ++page) pages.push_back(page);
  return pages;
}

void WriteTif(const InputFile& file, const std::string& target, const Pages& pages) {
  Imaging(file, [&] {
    leadtools12::NewFile output(target.c_str());
    _SAVEFILEOPTION options{};
    LEADTOOLS::GetDefaultSaveFileOption(&options);
    options.PageNumber = 0;
    pages.ForEach([&](int number) {
      Page page(file, number);
      ++options.PageNumber;
      const bool bilevel = page.Get()->BitsPerPixel == 1;
      LEADTOOLS::SaveBitmap(target.c_str(), page.Get(), bilevel ? kTifBilevel : kTifPackBits, 0,
                            bilevel ? -1 : 0, &options);
    });
    output.Complete();
  });
}

/// The target, or with more than one page as many files: out-1.png, out-2.png.
std::string PictureName(const std::string& target, int page, std::size_t pages) {
  if (pages == 1) return target;
  const fs::path path(target);
  const std::string name = path.stem().string() + "-" + std::to_string(page) + path.extension().string();
  return (path.parent_path() / name).string();
}

bool HoldsOnePage(const std::string& ending) {
  return ending == ".png" || ending == ".jpg" || ending == ".jpeg";
}

void WritePictures(const InputFile& file, const std::string& target, const Pages& pages, int format) {
  pages.ForEach([&](int number) {
    Page page(file, number);
    Imaging(file, [&] {
      LEADTOOLS::SaveBitmap(PictureName(target, number, pages.Count()).c_str(), page.Get(), format, 0, 0,
                            nullptr);
    });
  });
}

/// A length on paper in tenths of a millimetre.
short Tenths(int pixels, int dpi) {
  constexpr int kUsualDpi = 96;
  constexpr double kTenthsAnInch = 254;
  constexpr double kLongest = 32767;
  const double length = std::round(pixels * kTenthsAnInch / (dpi > 0 ? dpi : kUsualDpi));
  return static_cast<short>(std::clamp(length, 1.0, kLongest));
}

/// A sheet as large as the page, to its edges.
DEVMODE SheetOf(const struct_LEAD_Bitmap& page) {
  DEVMODE mode{};
  mode.dmSize = sizeof mode;
  mode.dmFields = DM_PAPERWIDTH | DM_PAPERLENGTH | DM_FORMNAME;
  mode.dmPaperWidth = Tenths(page.Width, page.XResolution);
  mode.dmPaperLength = Tenths(page.Height, page.YResolution);
  constexpr int kFirstOnItsSide = 5;  // orientations 5 to 8
  if (page.ViewPerspective >= kFirstOnItsSide) std::swap(mode.dmPaperWidth, mode.dmPaperLength);
  std::copy_n(kFormBorderless, sizeof kFormBorderless, mode.dmFormName);
  return mode;
}

[[noreturn]] void FailToWrite(const std::string& target) {
  throw FileError(static_cast<const char*>(TextWith(IDS_CANT_WRITE, target.c_str())));
}

void Require(int result, const std::string& target) {
  if (result <= 0) FailToWrite(target);
}

void WritePdf(const InputFile& file, const std::string& target, const Pages& pages) {
  CDC dc;
  DEVMODE first{};
  if (dc.Attach(CreateDCA(nullptr, nullptr, target.c_str(), &first)) == FALSE) FailToWrite(target);
  DOCINFO document{};
  document.cbSize = sizeof document;
  document.lpszDocName = file.Name().c_str();
  Require(StartDoc(dc.m_hDC, &document), target);
  pages.ForEach([&](int number) {
    Page page(file, number);
    const DEVMODE sheet = SheetOf(*page.Get());
    ResetDC(dc.m_hDC, &sheet);
    Require(StartPage(dc.m_hDC), target);
    Imaging(file, [&] {
      LEADTOOLS::PrintBitmapExt(dc.m_hDC, page.Get(), 0, 0, dc.GetDeviceCaps(HORZRES),
                                dc.GetDeviceCaps(VERTRES), 0);
    });
    Require(EndPage(dc.m_hDC), target);
  });
  Require(EndDoc(dc.m_hDC), target);
}

}  // namespace

std::string ExportEnding(const std::string& target) {
  std::string ending = fs::path(target).extension().string();
  std::ranges::transform(ending, ending.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
  const bool known = HoldsOnePage(ending) || ending == ".tif" || ending == ".tiff" || ending == ".pdf";
  return known ? ending : std::string();
}

std::vector<std::string> ExportTargets(const std::string& target, const PageRanges& ranges) {
  if (!HoldsOnePage(ExportEnding(target))) return {target};
  const std::vector<int> pages = PagesOf(ranges);
  std::vector<std::string> targets;
  targets.reserve(pages.size());
  for (const int page : pages) targets.push_back(PictureName(target, page, pages.size()));
  return targets;
}

void ExportPages(const InputFile& file, const Options& options, const Reach& reach) {
  const Pages pages(PagesOf(RangesWithin(options.pages, Describe(file).TotalPages)), reach);
  const std::string ending = ExportEnding(options.target);
  if (ending == ".pdf")
    WritePdf(file, options.target, pages);
  else if (HoldsOnePage(ending))
    WritePictures(file, options.target, pages, ending == ".png" ? kPng : kJpeg);
  else
    WriteTif(file, options.target, pages);
}
