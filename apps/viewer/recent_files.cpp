#include "recent_files.h"

#include <algorithm>
#include <sstream>

#include "resource_ids.h"
#include "settings.h"

namespace {

constexpr std::size_t kMost = kLastRecent - kFirstRecent + 1;

// One value with a path a line: each value that is written is brought to the disk by itself.
constexpr char kValue[] = "Recent";

void Save(const std::vector<std::string>& files) {
  std::string lines;
  for (std::size_t i = 0; i < std::min(files.size(), kMost); ++i) lines += files[i] + "\n";
  settings::WriteText(kValue, lines);
}

}  // namespace

std::vector<std::string> RecentFiles() {
  std::istringstream lines(settings::ReadText(kValue));
  std::vector<std::string> files;
  for (std::string line; std::getline(lines, line) && files.size() < kMost;) files.push_back(line);
  return files;
}

void RememberFile(const std::string& path) {
  std::vector<std::string> files = RecentFiles();
  if (path.find('\n') != std::string::npos || (!files.empty() && files.front() == path)) return;
  std::erase(files, path);
  files.insert(files.begin(), path);
  Save(files);
}

void ForgetFile(const std::string& path) {
  std::vector<std::string> files = RecentFiles();
  if (std::erase(files, path) > 0) Save(files);
}
