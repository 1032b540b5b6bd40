#pragma once

#include <sys/types.h>

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

// What comes and changes on the disk, found by looking at it once a second: that works over every network,
// where notices of the system don't reach.

/// A file as it was looked at; all zero: there is none.
struct FileState {
  ino_t number = 0;
  std::int64_t size = 0;
  std::int64_t changed = 0;  ///< nanoseconds

  bool operator==(const FileState&) const = default;
  bool Exists() const { return number != 0; }
};
FileState StateOf(const std::string& path);

/// One file. A change counts once it has come to rest: the one that writes it may take its time.
class FileWatch {
 public:
  enum class News { None, Changed, Gone };

  explicit FileWatch(const std::string& path);
  News Look();
  /// What is there now is known.
  void Accept() { m_known = m_last = StateOf(m_path); }

 private:
  std::string m_path;
  FileState m_known;
  FileState m_last;
};

/// A folder, of whose images only the new ones count, each once and when it has come to rest.
class FolderWatch {
 public:
  explicit FolderWatch(const std::string& folder);
  const std::string& Folder() const { return m_folder; }
  /// Their paths, by name.
  std::vector<std::string> Look();

 private:
  std::set<std::string> ImageNames() const;

  std::string m_folder;
  std::set<std::string> m_known;
  std::map<std::string, FileState> m_arriving;
};
