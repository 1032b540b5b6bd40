#pragma once

#include <QDialog>
#include <QPointer>

namespace platform {

/// Shows a dialog of Qt's until it is ended, by the user, with its owner or with the program.
int ExecModal(QDialog& dialog);
/// The program ends: whoever waits for an answer gets the one of a user who gives up.
void RejectModalWidgets();

/// A dialog of Qt's for the time of a call, within which its owner may end, and take it along.
template <typename Widget>
class ModalWidget {
 public:
  explicit ModalWidget(Widget* widget) : m_widget(widget) {}
  ModalWidget(const ModalWidget&) = delete;
  ModalWidget& operator=(const ModalWidget&) = delete;
  ~ModalWidget() { delete m_widget.data(); }

  Widget* Get() const { return m_widget; }
  /// QDialog::Rejected if it went with its owner; it isn't there any more then.
  int Exec() const { return ExecModal(*m_widget); }

 private:
  QPointer<Widget> m_widget;
};

}  // namespace platform
