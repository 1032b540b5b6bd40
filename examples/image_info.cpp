// Prints what an image file says of its pages, one line a page, tab-separated:
//   page width height bits xdpi ydpi orientation format-code compression
// The orientation is the number of TIFF and Exif, 1 to 8. A fax page with damaged rows has one more column:
// how many of them there are. With --decode the page is also written as a PNG, in the depth in which the
// imaging layer holds it.
//
//   image_info FILE [--decode N OUT.png]
//   image_info --formats
// The second form lists what this machine reads, and what a module that isn't installed would read.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "imaging/ltwrap.h"

namespace {

void PrintPages(const char* file) {
  struct_file_information info{};
  LEADTOOLS::FileInfo(file, &info, leadtools12::kInfoCountsPages, nullptr);
  const int pages = info.TotalPages;
  for (int page = 1; page <= pages; ++page) {
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    options.PageNumber = page;
    LEADTOOLS::FileInfo(file, &info, 0, &options);
    std::printf("%d\t%d\t%d\t%d\t%d\t%d\t%d\t%d\t%s", page, info.Width, info.Height, info.BitsPerPixel,
                info.XResolution, info.YResolution, info.ViewPerspective == 0 ? 1 : info.ViewPerspective,
                info.Format, info.Compression);
    if (info.DamagedRows != 0) std::printf("\t%d", info.DamagedRows);
    std::putchar('\n');
  }
}

void WritePage(const char* file, int page, const char* target) {
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = page;
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::InitBitmap(&bitmap, 0, 0, 1);
  LEADTOOLS::LoadBitmapA(file, &bitmap, 0, 1, &options, nullptr);
  constexpr int kPng = 75;
  LEADTOOLS::SaveBitmap(target, &bitmap, kPng, 0, 0, nullptr);
  LEADTOOLS::FreeBitmap(&bitmap);
}

void PrintFormat(const char* name, const char* module, int installed, void*) {
  std::printf("%s\t%s%s%s\n", name, module == nullptr ? "in process" : "module ",
              module == nullptr ? "" : module, installed != 0 ? "" : ", not installed");
}

}  // namespace

int main(int argc, char** argv) {
  const bool decode = argc == 5 && std::strcmp(argv[2], "--decode") == 0;
  if (argc != 2 && !decode) {
    std::fputs("usage: image_info FILE [--decode N OUT.png]\n       image_info --formats\n", stderr);
    return 2;
  }
  if (std::strcmp(argv[1], "--formats") == 0) {
    LEADTOOLS::ListFormats(PrintFormat, nullptr);
    return 0;
  }
  try {
    PrintPages(argv[1]);
    if (decode) WritePage(argv[1], std::atoi(argv[3]), argv[4]);
  } catch (CLeadtoolsException* exception) {
    const CString text = CLeadtoolsException::GetErrorMessage(exception->m_nError);
    std::fflush(stdout);
    std::fprintf(stderr, "Error ZP%04d: %s\n", exception->GetLastError(), static_cast<const char*>(text));
    exception->Delete();
    return 1;
  }
  return 0;
}
