#pragma once

#include <ctime>

#include "platform/base/export.h"
#include "platform/base/types.h"

enum : int { MAX_PATH = 260 };

/// What is known of a file without opening it.
struct CFileStatus {
  std::time_t m_ctime;
  std::time_t m_mtime;
  std::time_t m_atime;
  std::int64_t m_size;
  BYTE m_attribute;             ///< CFile::normal ...
  char m_szFullName[MAX_PATH];  ///< absolute, cut if longer
};

class PLATFORM_API CFile {
 public:
  enum Attribute { normal = 0x00, readOnly = 0x01, hidden = 0x02, directory = 0x10 };

  /// FALSE if there is no such file or folder.
  static BOOL GetStatus(LPCTSTR name, CFileStatus& status);
};
