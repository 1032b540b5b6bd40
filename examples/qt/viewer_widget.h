#pragma once

#include <tessarel12.h>

#include <QApplication>
#include <QWidget>

/// The ready-made viewer as a widget for any layout: toolbar, page, strip of thumbnails, status bar.
class ViewerWidget : public QWidget {
 public:
  explicit ViewerWidget(QWidget* parent = nullptr) : QWidget(parent) {
    setMinimumSize(320, 240);
    m_inside.Attach(AfxWindowInWidget(this));
    m_frame = new CImageFrame;  // ends with its window, as that does with this widget
    m_frame->LoadFrame(IDR_ZP_VIEWER, DWORD{WS_CHILD} | WS_VISIBLE, &m_inside);
  }
  ~ViewerWidget() override { m_inside.Detach(); }

  /// False if the file can't be shown, which the user has been told.
  bool Open(const QByteArray& file) { return m_frame->OpenImageFile(file.constData()); }
  CImageFrame* Frame() { return m_frame; }

 private:
  CWnd m_inside;
  CImageFrame* m_frame;
};

/// Shows a file until the user closes the viewer; the program's window is disabled meanwhile. An empty name
/// asks for a file. False if nothing was shown.
inline bool ShowModal(QWidget* window, const QByteArray& file) {
  window->setEnabled(false);
  const bool shown = CImageFrame::DoModalViewer(nullptr, file.isEmpty() ? nullptr : file.constData(), "Fax");
  window->setEnabled(true);
  window->activateWindow();
  return shown;
}
