#pragma once

#include <QAccessibleWidget>

class QLineEdit;

namespace platform {

/// The field of an edit control. Qt's own can't be derived from.
class EditInterface : public QAccessibleWidget,
                      public QAccessibleTextInterface,
                      public QAccessibleEditableTextInterface {
 public:
  EditInterface(QWidget* field, QAccessible::Role role) : QAccessibleWidget(field, role) {}

  void* interface_cast(QAccessible::InterfaceType type) override;
  QAccessible::State state() const override;
  QString text(QAccessible::Text kind) const override;

  void selection(int index, int* start, int* end) const override;
  int selectionCount() const override;
  void addSelection(int start, int end) override { setSelection(0, start, end); }
  void removeSelection(int index) override;
  void setSelection(int index, int start, int end) override;
  int cursorPosition() const override;
  void setCursorPosition(int position) override;
  QString text(int start, int end) const override;
  int characterCount() const override;
  QRect characterRect(int offset) const override;
  int offsetAtPoint(const QPoint& point) const override;
  void scrollToSubstring(int start, int) override { setCursorPosition(start); }
  QString attributes(int offset, int* start, int* end) const override;

  void deleteText(int start, int end) override { replaceText(start, end, QString()); }
  void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
  void replaceText(int start, int end, const QString& text) override;

 private:
  QLineEdit& Field() const;
};

}  // namespace platform
