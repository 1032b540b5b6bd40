#pragma once

#include <string>

#include "platform/base/export.h"
#include "platform/base/types.h"

/// Text in UTF-8. Positions and lengths count bytes. A null argument stands for the empty string, and a
/// position outside the text is brought into it, so that no call can read past the end.
class PLATFORM_API CString {
 public:
  CString() = default;
  CString(const char* text)
      : m_text(text == nullptr ? "" : text) {}  // NOLINT: converts like the text it holds
  CString(const char* text, int length) : m_text(text, static_cast<std::size_t>(length)) {}
  explicit CString(char c, int repeat = 1) : m_text(repeat > 0 ? static_cast<std::size_t>(repeat) : 0, c) {}
  CString& operator=(const char* text) {
    m_text = text == nullptr ? "" : text;
    return *this;
  }

  operator const char*() const { return m_text.c_str(); }  // NOLINT: passed wherever a text is wanted
  int GetLength() const { return static_cast<int>(m_text.size()); }
  BOOL IsEmpty() const { return m_text.empty(); }
  void Empty() { m_text.clear(); }
  /// 0 for a position outside the text.
  char GetAt(int index) const;

  CString& operator+=(const CString& text) {
    m_text += text.m_text;
    return *this;
  }
  CString& operator+=(const char* text) {
    if (text != nullptr) m_text += text;
    return *this;
  }
  CString& operator+=(char c) {
    m_text += c;
    return *this;
  }

  /// printf-style. The result replaces the text, also when the text itself is an argument.
  void Format(const char* format, ...) __attribute__((format(printf, 2, 3)));

  /// The same with a message template, whose arguments are numbered: %1!s!, %2!d!, %% for a percent sign.
  void FormatMessage(const char* format, ...);
  /// With a template of the string resources; empty if there is none.
  void FormatMessage(UINT id, ...);

  CString Left(int count) const;
  CString Right(int count) const;
  CString Mid(int first) const;
  CString Mid(int first, int count) const;
  /// First place of the character or text from start on, -1 if there is none.
  int Find(char c, int start = 0) const;
  int Find(const char* text, int start = 0) const;
  int ReverseFind(char c) const;
  int Replace(const char* from, const char* to);
  /// Takes characters out; the length that is left. Places outside the text are left alone.
  int Delete(int index, int count = 1);
  void TrimLeft();
  void TrimRight();
  void MakeLower();
  int Compare(const char* text) const { return m_text.compare(text == nullptr ? "" : text); }
  /// ASCII letters count alike in either case.
  int CompareNoCase(const char* text) const;

  /// A buffer of at least minLength bytes and a closing 0 to write into; ReleaseBuffer must follow.
  char* GetBuffer(int minLength);
  /// Takes the buffer's text over, up to its 0 or to the given length.
  void ReleaseBuffer(int length = -1);

  /// Loads the string resource with this number. FALSE, and an empty text, if no module has it.
  BOOL LoadString(UINT id);

  friend CString operator+(const CString& a, const CString& b) {
    CString r(a);
    r += b;
    return r;
  }
  friend CString operator+(const CString& a, const char* b) {
    CString r(a);
    r += b;
    return r;
  }
  friend CString operator+(const char* a, const CString& b) {
    CString r(a);
    r += b;
    return r;
  }
  friend CString operator+(const CString& a, char b) {
    CString r(a);
    r += b;
    return r;
  }
  friend bool operator==(const CString& a, const CString& b) { return a.m_text == b.m_text; }
  friend bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
  friend bool operator<(const CString& a, const CString& b) { return a.m_text < b.m_text; }

 private:
  std::string m_text;
};
