#pragma once

#include "imaging/ltwrap.h"
#include "platform/base/string.h"

/// Where pages are read from: a file, or a file image in memory, which stays the caller's. Failures are
/// thrown by the imaging service.
class PageSource {
 public:
  /// A file, whose path is kept.
  static PageSource File(const char* path) { return {true, path, nullptr, 0}; }
  /// A file's image; size in bytes. The block stays the caller's and has to outlive this.
  static PageSource Memory(void* block, long size) { return {false, "", static_cast<char*>(block), size}; }
  /// The block where the path is empty.
  static PageSource Of(const CString& path, void* block, long size) {
    return path.IsEmpty() == FALSE ? File(path) : Memory(block, size);
  }

  /// False: an image in memory.
  bool IsFile() const { return m_isFile; }

  /// options null: the first page. The pages are counted only if that is asked for.
  void Describe(struct_file_information* info, _LOADFILEOPTION* options, bool countPages = false) const {
    const unsigned flags = countPages ? leadtools12::kInfoCountsPages : 0;
    if (m_isFile)
      LEADTOOLS::FileInfo(m_path, info, flags, options);
    else
      LEADTOOLS::FileInfoMemory(m_block, info, m_size, flags, options);
  }

  /// At least 1; throws CLeadtoolsException* if the source can't be shown.
  int CountPages() const {
    struct_file_information info{};
    Describe(&info, nullptr, true);
    return info.TotalPages;
  }

  /// info, if given, is filled.
  void Load(struct_LEAD_Bitmap* bitmap, int bits, int order, _LOADFILEOPTION* options,
            struct_file_information* info = nullptr) const {
    if (m_isFile)
      LEADTOOLS::LoadBitmapA(m_path, bitmap, bits, order, options, info);
    else
      LEADTOOLS::LoadBitmapMemory(m_block, bitmap, bits, order, m_size, options, info);
  }

  /// The same in the page's own depth, blue first, with a callback (null: none) for each row. The record goes
  /// along with a load from memory.
  void LoadRows(struct_LEAD_Bitmap* bitmap, leadtools12::LoadRowCallback callback, void* userData,
                _LOADFILEOPTION* options, struct_file_information* info) const {
    if (m_isFile)
      LEADTOOLS::LoadFile(m_path, bitmap, 0, 1, kLoadFlags, callback, userData, options, nullptr);
    else
      LEADTOOLS::LoadMemory(m_block, bitmap, 0, 1, kLoadFlags, callback, userData, m_size, options, info);
  }

 private:
  static constexpr unsigned kLoadFlags = 3;

  PageSource(bool isFile, const char* path, char* block, long size)
      : m_isFile(isFile), m_path(path), m_block(block), m_size(size) {}

  bool m_isFile;
  CString m_path;
  char* m_block;
  long m_size;
};
