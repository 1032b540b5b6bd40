#include "recent_files.h"

#include "resource_ids.h"
#include "settings.h"

namespace {

constexpr std::size_t kMost = kLastRecent - kFirstRecent + 1;

std::string NameOf(std::size_t index) {
  return "Recent" + std::to_string(index + 1);
}

void Save(std::vector<std::string> files) {
  files.resize(kMost);
  for (std::size_t i = 0; i < kMost; ++i) settings::WriteText(NameOf(i), files[i]);
}

}  // namespace

std::vector<std::string> RecentFiles() {
  std::vector<std::string> files;
  for (std::size_t i = 0; i < kMost; ++i) {
    const std::string path = settings::ReadText(NameOf(i));
    if (!path.empty()) files.push_back(path);
  }
  return files;
}

void RememberFile(const std::string& path) {
  std::vector<std::string> files = RecentFiles();
  if (!files.empty() && files.front() == path) return;
  std::erase(files, path);
  files.insert(files.begin(), path);
  Save(files);
}

void ForgetFile(const std::string& path) {
  std::vector<std::string> files = RecentFiles();
  if (std::erase(files, path) > 0) Save(files);
}
