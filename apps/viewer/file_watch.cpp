#include "file_watch.h"

#include <sys/stat.h>

#include <filesystem>

#include "folder.h"

namespace fs = std::filesystem;

FileState StateOf(const std::string& path) {
  struct stat found {};
  if (stat(path.c_str(), &found) != 0) return {};
  constexpr std::int64_t kNanoseconds = 1'000'000'000;
  return {found.st_ino, found.st_size, found.st_mtim.tv_sec * kNanoseconds + found.st_mtim.tv_nsec};
}

FileWatch::FileWatch(const std::string& path) : m_path(path) {
  Accept();
}

FileWatch::News FileWatch::Look() {
  const FileState now = StateOf(m_path);
  const bool rests = now == m_last;
  m_last = now;
  if (!rests || now == m_known) return News::None;
  m_known = now;
  return now.Exists() ? News::Changed : News::Gone;
}

FolderWatch::FolderWatch(const std::string& folder) : m_folder(folder), m_known(ImageNames()) {}

std::set<std::string> FolderWatch::ImageNames() const {
  std::set<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(m_folder, error), end; !error && entry != end; entry.increment(error))
    if (IsImageName(entry->path())) names.insert(entry->path().filename().string());
  return names;
}

std::vector<std::string> FolderWatch::Look() {
  std::vector<std::string> arrived;
  std::map<std::string, FileState> arriving;
  std::set<std::string> names = ImageNames();
  for (const std::string& name : names) {
    if (m_known.contains(name)) continue;
    const std::string path = (fs::path(m_folder) / name).string();
    const FileState now = StateOf(path);
    const auto before = m_arriving.find(name);
    if (now.size > 0 && before != m_arriving.end() && before->second == now)
      arrived.push_back(path);
    else
      arriving[name] = now;
  }
  for (const auto& [name, state] : arriving) names.erase(name);
  m_known = std::move(names);  // what went may come again
  m_arriving = std::move(arriving);
  return arrived;
}
