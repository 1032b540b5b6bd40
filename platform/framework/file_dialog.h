#pragma once

#include "platform/base/file.h"
#include "platform/base/string.h"
#include "platform/framework/dialog.h"

inline constexpr DWORD OFN_OVERWRITEPROMPT = 0x2;
inline constexpr DWORD OFN_HIDEREADONLY = 0x4;
inline constexpr DWORD OFN_PATHMUSTEXIST = 0x800;
inline constexpr DWORD OFN_FILEMUSTEXIST = 0x1000;

/// What a file dialog is asked and what it answers.
struct tagOFNA {
  DWORD lStructSize;
  HWND hwndOwner;
  HINSTANCE hInstance;
  LPCSTR lpstrFilter;  ///< text, 0, pattern, 0, ..., 0; the patterns of a line parted by ";"
  LPSTR lpstrCustomFilter;
  DWORD nMaxCustFilter;
  DWORD nFilterIndex;  ///< from 1, in and out
  LPSTR lpstrFile;     ///< the name to begin with, and the path chosen
  DWORD nMaxFile;      ///< bytes of lpstrFile, the closing 0 counted
  LPSTR lpstrFileTitle;
  DWORD nMaxFileTitle;
  LPCSTR lpstrInitialDir;
  LPCSTR lpstrTitle;
  DWORD Flags;          ///< OFN_...
  WORD nFileOffset;     ///< of the name in the path
  WORD nFileExtension;  ///< of the extension in the path, its dot not counted; 0 if the name ends in a dot
  LPCSTR lpstrDefExt;   ///< for a name without extension; null: none
  LPARAM lCustData;
};
using OPENFILENAMEA = tagOFNA;
using OPENFILENAME = tagOFNA;

/// Asks the user for one file, to be opened or to be written. What m_ofn points at must outlive DoModal.
class PLATFORM_API CFileDialog : public CDialog {
  DECLARE_DYNAMIC(CFileDialog)
 public:
  /// filter: "text|pattern|...||".
  explicit CFileDialog(BOOL open, LPCTSTR defaultExtension = nullptr, LPCTSTR fileName = nullptr,
                       DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCTSTR filter = nullptr,
                       CWnd* parent = nullptr);
  CFileDialog(const CFileDialog&) = delete;
  CFileDialog& operator=(const CFileDialog&) = delete;
  ~CFileDialog() override = default;

  OPENFILENAME m_ofn{};

  /// IDOK or IDCANCEL.
  int DoModal() override;
  CString GetPathName() const { return m_ofn.lpstrFile; }
  CString GetFileName() const;

 private:
  bool Accepts(const std::string& path);
  void TakeOver(const std::string& path);
  std::string WithExtension(const std::string& path) const;

  BOOL m_open;
  CString m_defaultExtension;
  std::string m_filter;
  char m_file[MAX_PATH] = {};
};
