#pragma once

#include <QObject>

namespace platform {

/// Drops what the user does while a command takes long, except in loops that run within it, of a message box
/// for example. Keys are noted, so that one that is let go meanwhile doesn't count as held afterwards.
class BusyFilter : public QObject {
 public:
  BusyFilter();
  ~BusyFilter() override;
  bool IsEscapePressed() const { return m_escape; }
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void NoteKey(const QEvent& event);

  int m_level;
  bool m_escape = false;
};

}  // namespace platform
