#pragma once

#include <QLineEdit>
#include <QPointer>

#include "platform/base/types.h"

namespace platform {

/// What the edit control and the field of a combo box have in common: keys and characters as the classic
/// messages bring them, a limit for typing, selection. Positions count UTF-16 units.
class LineField {
 public:
  explicit LineField(QLineEdit& line);

  void KeyDown(int virtualKey, Qt::KeyboardModifiers modifiers);
  void Char(char32_t c);

  /// Binds typing and pasting only; 0 takes the limit away. Text that the program sets stays whole.
  void SetLimit(int limit) { m_limit = limit <= 0 ? kNoLimit : limit; }
  /// On each change by the user: takes away what typing or pasting brought in beyond the limit.
  void CutExcess();
  /// On each change, after CutExcess. False if the text is what it was.
  bool Settle();

  /// start -1: nothing; end -1: to the end of the text.
  void Select(int start, int end);
  /// Both ends in the words of the result; the pointers may be null.
  LRESULT Selection(DWORD* start, DWORD* end) const;
  /// The editing menu at a screen position (-1: at the field).
  void ShowMenu(LPARAM place);

 private:
  static constexpr int kNoLimit = 0x7ffe;
  QPointer<QLineEdit> m_line;
  int m_limit = kNoLimit;
  QString m_settled;
};

}  // namespace platform
