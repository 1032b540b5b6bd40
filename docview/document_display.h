#pragma once

#include "docview/hints.h"
#include "docview/zp_doc.h"
#include "docview/zp_view.h"
#include "viewing/commands/window_display.h"
#include "viewing/fit.h"

/// A document and its view, as the commands of their frame know them: what concerns pages goes to the
/// document, what concerns scale and mouse to the view. Empty without a document.
class DocumentDisplay : public WindowDisplay<CZPView, ViewMouseDrag, ViewMouseZoomIn, ViewMouseZoomOut> {
 public:
  /// The frame's fields.
  DocumentDisplay(CZPDoc*& document, CZPView*& view) : WindowDisplay(view), m_document(document) {}

  int Page() const override { return m_document == nullptr ? 0 : m_document->GetActivePageNum() + 1; }
  int Pages() const override { return m_document == nullptr ? 0 : m_document->GetPagesNum(); }
  bool IsOpen() const override { return Pages() != 0; }
  bool IsShown() const override {
    return m_document != nullptr && m_document->GetHBitmap(view::kActivePage) != nullptr;
  }
  bool ShowPage(int page) override {
    return m_document != nullptr && m_document->SetActivePage(page - 1) != 0;
  }
  void Rotate(int degrees) override {
    if (m_document != nullptr) m_document->Rotate(degrees * kHundredths);
  }
  void ShowProperties() override {
    if (m_document != nullptr) m_document->ShowPageInfo();
  }
  void PrintFile(CWnd* parent) override {
    if (m_document != nullptr) m_document->PrintDocument(parent, false, 0, -1);
  }
  void PrintPage() override {
    if (m_document != nullptr) m_document->PrintPage(view::kActivePage);
  }

  /// Given again, a fit ends; the scale stays.
  void Fit(int mode) override { m_window->SetFitMode(IsFitting(mode) ? int{FitModeNone} : mode); }
  bool IsFitting(int mode) const override { return m_window->GetFitMode() == mode; }
  /// Both modes for dragging do.
  bool IsClick(Click what) const override {
    return what == Click::Drag ? PageWindowTraits<CView>::kModes.Drags(m_window->GetMouseMode())
                               : WindowDisplay::IsClick(what);
  }

 private:
  static constexpr int kHundredths = 100;  ///< of a degree, in which documents turn

  CZPDoc*& m_document;
};
