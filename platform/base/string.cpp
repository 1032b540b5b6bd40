#include "platform/base/string.h"

#include <strings.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/base/detail/format_message.h"

namespace {

constexpr const char* kSpaces = " \t\r\n\v\f";

int Position(std::string::size_type found) {
  return found == std::string::npos ? -1 : static_cast<int>(found);
}

CString FromStd(const std::string& text) {
  return CString(text.data(), static_cast<int>(text.size()));
}

}  // namespace

char CString::GetAt(int index) const {
  return index >= 0 && index < GetLength() ? m_text[static_cast<std::size_t>(index)] : '\0';
}

void CString::Format(const char* format, ...) {
  va_list args;
  va_start(args, format);
  va_list again;
  va_copy(again, args);
  const int length = std::vsnprintf(nullptr, 0, format, args);
  va_end(args);
  std::string result(static_cast<std::size_t>(std::max(length, 0)), '\0');
  if (length > 0) std::vsnprintf(result.data(), result.size() + 1, format, again);
  va_end(again);
  m_text = std::move(result);
}

void CString::FormatMessage(const char* format, ...) {
  va_list args;
  va_start(args, format);
  m_text = platform::FormatMessageTemplate(format, args);
  va_end(args);
}

CString CString::Left(int count) const {
  return Mid(0, count);
}

CString CString::Right(int count) const {
  return Mid(GetLength() - std::clamp(count, 0, GetLength()));
}

CString CString::Mid(int first) const {
  return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const {
  first = std::clamp(first, 0, GetLength());
  count = std::clamp(count, 0, GetLength() - first);
  return FromStd(m_text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
}

int CString::Find(char c, int start) const {
  return Position(m_text.find(c, static_cast<std::size_t>(std::clamp(start, 0, GetLength()))));
}

int CString::Find(const char* text, int start) const {
  if (text == nullptr) return -1;
  return Position(m_text.find(text, static_cast<std::size_t>(std::clamp(start, 0, GetLength()))));
}

int CString::ReverseFind(char c) const {
  return Position(m_text.rfind(c));
}

int CString::Replace(const char* from, const char* to) {
  const std::size_t length = from == nullptr ? 0 : std::strlen(from);
  if (length == 0) return 0;
  const std::string with = to == nullptr ? "" : to;
  int count = 0;
  for (std::size_t at = 0; (at = m_text.find(from, at)) != std::string::npos; at += with.size(), ++count)
    m_text.replace(at, length, with);
  return count;
}

int CString::Delete(int index, int count) {
  if (index >= 0 && index < GetLength() && count > 0)
    m_text.erase(static_cast<std::size_t>(index), static_cast<std::size_t>(count));
  return GetLength();
}

void CString::TrimLeft() {
  m_text.erase(0, m_text.find_first_not_of(kSpaces));
}

void CString::TrimRight() {
  m_text.erase(m_text.find_last_not_of(kSpaces) + 1);
}

void CString::MakeLower() {
  std::transform(m_text.begin(), m_text.end(), m_text.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

int CString::CompareNoCase(const char* text) const {
  return strcasecmp(m_text.c_str(), text == nullptr ? "" : text);
}

char* CString::GetBuffer(int minLength) {
  m_text.resize(std::max(m_text.size(), static_cast<std::size_t>(std::max(minLength, 0))));
  return m_text.data();
}

void CString::ReleaseBuffer(int length) {
  m_text.resize(length < 0 ? std::strlen(m_text.c_str())
                           : std::min(static_cast<std::size_t>(length), m_text.size()));
}
