#include "platform/window/controls/detail/line_field.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <algorithm>

#include "platform/base/translation.h"
#include "platform/window/messages.h"

namespace platform {
namespace {

struct FieldKey {
  int virtualKey;
  int qt;
};

// Keys that act when they go down. Everything else acts by the character it types.
constexpr FieldKey kFieldKeys[] = {
    {VK_LEFT, Qt::Key_Left}, {VK_RIGHT, Qt::Key_Right},   {VK_HOME, Qt::Key_Home},
    {VK_END, Qt::Key_End},   {VK_DELETE, Qt::Key_Delete}, {VK_INSERT, Qt::Key_Insert},
};

struct MenuText {
  const char* action;  // Qt's object name of it
  const char* text;
};

constexpr MenuText kMenuTexts[] = {
    {"edit-undo", "&Annulla"},
    {"edit-redo", "&Ripristina"},
    {"edit-cut", "&Taglia"},
    {"edit-copy", "&Copia"},
    {"edit-paste", "&Incolla"},
    {"edit-delete", "&Elimina"},
    {"select-all", "&Seleziona tutto"},
};

void Press(QLineEdit& line, int qtKey, Qt::KeyboardModifiers modifiers, const QString& text = {}) {
  QKeyEvent event(QEvent::KeyPress, qtKey, modifiers, text);
  static_cast<QObject&>(line).event(&event);
}

}  // namespace

LineField::LineField(QLineEdit& line) : m_line(&line) {}

void LineField::KeyDown(int virtualKey, Qt::KeyboardModifiers modifiers) {
  if (modifiers.testFlag(Qt::AltModifier)) return;
  // By the key: programs that let digits through only keep its character back.
  if (virtualKey == 'A' && modifiers == Qt::ControlModifier) m_line->selectAll();
  for (const FieldKey& key : kFieldKeys) {
    if (key.virtualKey != virtualKey) continue;
    Press(*m_line, key.qt, modifiers);
    return;
  }
}

void LineField::Char(char32_t c) {
  if (!m_line->isEnabled()) return;
  switch (c) {
    case 1:
      m_line->selectAll();
      break;
    case 3:
      m_line->copy();
      break;
    case 8:
      Press(*m_line, Qt::Key_Backspace, Qt::NoModifier);
      break;
    case 22:
      if (!m_line->isReadOnly()) m_line->paste();
      break;
    case 24:
      if (!m_line->isReadOnly()) m_line->cut();
      break;
    case 26:
      if (!m_line->isReadOnly()) m_line->undo();
      break;
    default:
      if (c >= U' ' && c != 0x7f) Press(*m_line, 0, Qt::NoModifier, QString::fromUcs4(&c, 1));
      break;
  }
}

bool LineField::Settle() {
  const QString text = m_line->text();
  if (text == m_settled) return false;
  m_settled = text;
  return true;
}

void LineField::CutExcess() {
  // A text that was too long already may stay as it was, but takes nothing more.
  const auto room = std::max(m_limit, static_cast<int>(m_settled.size()));
  const int excess = static_cast<int>(m_line->text().size()) - room;
  if (excess <= 0) return;
  const int end = m_line->cursorPosition();
  m_line->setSelection(std::max(0, end - excess), std::min(excess, end));
  m_line->del();
}

void LineField::Select(int start, int end) {
  const auto length = static_cast<int>(m_line->text().size());
  if (start < 0) {
    m_line->deselect();
    return;
  }
  const int from = std::min(start, length);
  const int to = end < 0 ? length : std::min(end, length);
  if (from == to)
    m_line->setCursorPosition(from);
  else
    m_line->setSelection(std::min(from, to), std::abs(to - from));
}

LRESULT LineField::Selection(DWORD* start, DWORD* end) const {
  const bool any = m_line->hasSelectedText();
  const int from = any ? m_line->selectionStart() : m_line->cursorPosition();
  const int to = any ? m_line->selectionEnd() : from;
  if (start != nullptr) *start = static_cast<DWORD>(from);
  if (end != nullptr) *end = static_cast<DWORD>(to);
  return MAKELONG(from, to);
}

void LineField::ShowMenu(LPARAM place) {
  QMenu* menu = m_line->createStandardContextMenu();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (QAction* action : menu->actions())
    for (const MenuText& text : kMenuTexts)
      if (action->objectName() == QLatin1String(text.action))
        action->setText(QString::fromUtf8(Localized(text.text)));
  // The texts before the tab name keys; they stay out, since the program may use those itself.
  const QPoint point = place == -1 ? m_line->mapToGlobal(m_line->rect().bottomLeft())
                                   : QPoint(GET_X_LPARAM(place), GET_Y_LPARAM(place));
  menu->popup(point);
}

}  // namespace platform
