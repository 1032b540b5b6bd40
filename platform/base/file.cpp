#include "platform/base/file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>

BOOL CFile::GetStatus(LPCTSTR name, CFileStatus& status) {
  struct stat found {};
  if (name == nullptr || *name == 0 || stat(name, &found) != 0) return FALSE;
  std::error_code error;
  const std::string full = std::filesystem::absolute(name, error).lexically_normal().string();
  status = {};
  status.m_ctime = found.st_ctime;
  status.m_mtime = found.st_mtime;
  status.m_atime = found.st_atime;
  status.m_size = found.st_size;
  unsigned attributes = normal;
  if (S_ISDIR(found.st_mode)) attributes |= directory;
  if (access(name, W_OK) != 0) attributes |= readOnly;
  if (std::filesystem::path(full).filename().string().starts_with('.')) attributes |= hidden;
  status.m_attribute = static_cast<BYTE>(attributes);
  full.copy(status.m_szFullName, sizeof status.m_szFullName - 1);
  return TRUE;
}
