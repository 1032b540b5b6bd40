#include "folder.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 22> kEndings = {
    ".tif", ".tiff", ".fax", ".g3",  ".g4",  ".cal", ".ica", ".mda", ".bmp", ".jpg", ".jpeg",
    ".png", ".gif",  ".pcx", ".dcx", ".tga", ".pbm", ".pgm", ".ppm", ".jp2", ".jbg", ".cit"};

}  // namespace

bool IsImageName(const fs::path& path) {
  std::string ending = path.extension().string();
  std::ranges::transform(ending, ending.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
  return std::ranges::find(kEndings, ending) != kEndings.end();
}

std::string FileBeside(const std::string& path, int step) {
  const fs::path own(path);
  const fs::path folder = own.has_parent_path() ? own.parent_path() : fs::path(".");
  std::vector<fs::path> names{own.filename()};
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
    const fs::path name = entry->path().filename();
    std::error_code ignored;
    if (name != own.filename() && IsImageName(name) && entry->is_regular_file(ignored)) names.push_back(name);
  }
  std::ranges::sort(names);
  const auto at = std::ranges::find(names, own.filename()) - names.begin() + step;
  if (at < 0 || at >= std::ssize(names)) return {};
  return (own.parent_path() / names[static_cast<std::size_t>(at)]).string();
}
