#pragma once

#include "imaging/ltwrap.h"
#include "platform/base/string.h"

/// Where pages are read from: a file, or a file image in memory where the path is empty. Refers to what it is
/// made of. Failures are thrown by the imaging service.
class PageSource {
 public:
  PageSource(const CString& path, char* block, int size) : m_path(path), m_block(block), m_size(size) {}

  bool IsFile() const { return m_path.IsEmpty() == FALSE; }

  /// options null: the first page. flags as of LEADTOOLS::FileInfo.
  void Describe(struct_file_information* info, unsigned flags, _LOADFILEOPTION* options) const {
    if (IsFile())
      LEADTOOLS::FileInfo(m_path, info, flags, options);
    else
      LEADTOOLS::FileInfoMemory(m_block, info, m_size, flags, options);
  }

  void Load(struct_LEAD_Bitmap* bitmap, int bits, int order, _LOADFILEOPTION* options) const {
    if (IsFile())
      LEADTOOLS::LoadBitmapA(m_path, bitmap, bits, order, options, nullptr);
    else
      LEADTOOLS::LoadBitmapMemory(m_block, bitmap, bits, order, m_size, options, nullptr);
  }

 private:
  const CString& m_path;
  char* m_block;
  int m_size;
};
