#include "platform/window/controls/detail/accessible_edit.h"

#include <QLineEdit>
#include <algorithm>

namespace platform {

QLineEdit& EditInterface::Field() const {
  return *static_cast<QLineEdit*>(widget());
}

void* EditInterface::interface_cast(QAccessible::InterfaceType type) {
  if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
  if (type == QAccessible::EditableTextInterface && !Field().isReadOnly())
    return static_cast<QAccessibleEditableTextInterface*>(this);
  return QAccessibleWidget::interface_cast(type);
}

QAccessible::State EditInterface::state() const {
  QAccessible::State state = QAccessibleWidget::state();
  state.readOnly = Field().isReadOnly();
  state.editable = !state.readOnly;
  state.passwordEdit = Field().echoMode() != QLineEdit::Normal;
  state.selectableText = true;
  return state;
}

/// Of a password what is seen of it.
QString EditInterface::text(QAccessible::Text kind) const {
  return kind == QAccessible::Value ? Field().displayText() : QAccessibleWidget::text(kind);
}

QString EditInterface::text(int start, int end) const {
  return Field().displayText().mid(start, end - start);
}

int EditInterface::characterCount() const {
  return static_cast<int>(Field().displayText().size());
}

QString EditInterface::attributes(int, int* start, int* end) const {
  *start = 0;
  *end = characterCount();
  return {};
}

// Selection and caret

int EditInterface::selectionCount() const {
  return Field().hasSelectedText() ? 1 : 0;
}

void EditInterface::selection(int index, int* start, int* end) const {
  const bool any = index == 0 && Field().hasSelectedText();
  *start = any ? Field().selectionStart() : 0;
  *end = any ? Field().selectionEnd() : 0;
}

void EditInterface::removeSelection(int index) {
  if (index == 0) Field().deselect();
}

void EditInterface::setSelection(int index, int start, int end) {
  const int from = std::clamp(std::min(start, end), 0, characterCount());
  const int to = std::clamp(std::max(start, end), 0, characterCount());
  if (index == 0) Field().setSelection(from, to - from);
}

int EditInterface::cursorPosition() const {
  return Field().cursorPosition();
}

void EditInterface::setCursorPosition(int position) {
  Field().setCursorPosition(std::clamp(position, 0, characterCount()));
}

// Places on the screen

QRect EditInterface::characterRect(int offset) const {
  if (offset < 0 || offset > characterCount()) return {};
  // The field tells the caret's place only; the text moves as that goes out of sight.
  const QString shown = Field().displayText();
  const QFontMetrics metrics = Field().fontMetrics();
  const QRect caret = Field().inputMethodQuery(Qt::ImCursorRectangle).toRect();
  const int x = caret.center().x() + metrics.horizontalAdvance(shown.left(offset)) -
                metrics.horizontalAdvance(shown.left(cursorPosition()));
  const QRect place(x, caret.top(), metrics.horizontalAdvance(shown.mid(offset, 1)), caret.height());
  return {Field().mapToGlobal(place.topLeft()), place.size()};
}

int EditInterface::offsetAtPoint(const QPoint& point) const {
  const QPoint inside = Field().mapFromGlobal(point);
  return Field().rect().contains(inside) ? Field().cursorPositionAt(inside) : -1;
}

// Changes

void EditInterface::replaceText(int start, int end, const QString& text) {
  if (Field().isReadOnly() || !Field().isEnabled()) return;
  const int from = std::clamp(start, 0, characterCount());
  Field().setSelection(from, std::clamp(end, from, characterCount()) - from);
  Field().insert(text);
}

}  // namespace platform
