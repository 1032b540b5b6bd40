#include <cstdio>

#include "input_file.h"
#include "windowless.h"

namespace {

void ShowPage(int page, const struct_file_information& info) {
  std::printf("page %d: %d x %d pixels, %d bit", page, info.Width, info.Height, info.BitsPerPixel);
  if (info.XResolution > 0 && info.YResolution > 0)
    std::printf(", %d x %d dpi", info.XResolution, info.YResolution);
  if (info.ViewPerspective > 1) std::printf(", orientation %d", info.ViewPerspective);
  std::printf(", %s", info.Compression);
  if (info.DamagedRows != 0) std::printf(", %d rows damaged", info.DamagedRows);
  std::putchar('\n');
}

}  // namespace

void ShowInfo(const InputFile& file) {
  const int pages = Describe(file).TotalPages;
  std::printf("%s: %d %s\n", file.Name().c_str(), pages, pages == 1 ? "page" : "pages");
  for (int page = 1; page <= pages; ++page) ShowPage(page, DescribePage(file, page));
}
