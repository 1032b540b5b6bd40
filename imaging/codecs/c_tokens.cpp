#include "imaging/codecs/c_tokens.h"

#include <cctype>

namespace imaging {
namespace {

bool InWord(int letter) {
  return std::isalnum(letter) != 0 || letter == '_' || letter == '#' || letter == '-' || letter == '.';
}

}  // namespace

CTokens::Kind CTokens::Next() {
  m_text.clear();
  int letter = m_data.U8();
  for (; std::isspace(letter) != 0 || letter == '/'; letter = m_data.U8())
    if (letter == '/') SkipComment();
  if (m_data.AtEnd()) return Kind::kEnd;
  if (letter == '"') {
    ReadString();
    return Kind::kString;
  }
  for (; InWord(letter) && !m_data.AtEnd(); letter = m_data.U8()) m_text.push_back(static_cast<char>(letter));
  if (!m_text.empty()) {
    if (!m_data.AtEnd()) m_data.Skip(-1);
    return Kind::kWord;
  }
  m_text.push_back(static_cast<char>(letter));
  return Kind::kOther;
}

bool CTokens::NextString() {
  for (Kind kind = Next(); kind != Kind::kEnd && !(kind == Kind::kOther && m_text == "}"); kind = Next())
    if (kind == Kind::kString) return true;
  return false;
}

/// Pictures escape nothing but the quote and the backslash.
void CTokens::ReadString() {
  for (int letter = m_data.U8(); letter != '"' && !m_data.AtEnd(); letter = m_data.U8()) {
    if (letter == '\\') letter = m_data.U8();
    m_text.push_back(static_cast<char>(letter));
  }
}

void CTokens::SkipComment() {
  if (m_data.U8() != '*') return;
  for (int letter = 0, before = 0; !(before == '*' && letter == '/') && !m_data.AtEnd();) {
    before = letter;
    letter = m_data.U8();
  }
}

}  // namespace imaging
