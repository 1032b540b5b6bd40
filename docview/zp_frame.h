#pragma once

#include <cstdint>

#include "controls/splitter.h"
#include "docview/document_frame.h"
#include "docview/zp_doc.h"
#include "docview/zp_view.h"
#include "library/export.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/status_bar.h"
#include "viewing/bars/combo_page_num.h"
#include "viewing/bars/combo_scale.h"

class CZPThumbsView;

/// A frame that shows a document: a column of thumbnails, hidden at first, beside the view of the active
/// page. Two classes are made of it, CZPmdiChild and CZPsdiFrame, which have their bars from different
/// places. All commands end here; what concerns pages goes to the document, what concerns scale and mouse to
/// the view.
///
/// It is made by a document template, whose view class isn't looked at: the frame makes both views itself.
/// Commands without a handler stay enabled. Everything runs on the window's thread.
template <typename Base>
class CZPFrame : public Base, public CZPDocumentFrame {
 public:
  void UpdateFrame() override;
  void UpdateZoomStatus() override;
  void InitialFrameUpdate() override;

  CZPDoc* m_pDoc = nullptr;          ///< the views' document
  CSplitter* m_pSplitter = nullptr;  ///< owned
  int m_bThumbsVisible = 0;          ///< not saved
  CZPView* m_pView = nullptr;        ///< ends with its window, and so does the other view
  CZPThumbsView* m_pThumbsView = nullptr;

 protected:
  CZPFrame();
  ~CZPFrame() override;

  // Where the frame's bars are; null where there are none

  virtual CStatusBar* StatusBar() = 0;
  virtual CComboPageNum* PageCombo() = 0;
  virtual CComboScale* ScaleCombo() = 0;
  /// False while the bars show another frame's document.
  virtual bool OwnsBars() { return true; }
  /// The window that a print job disables.
  virtual CWnd* JobParent() = 0;

  // Shell (detail/zp_frame_shell.h)

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
  void OnZpViewThumbnails();
  void OnUpdateZpViewThumbnails(CCmdUI* ui);

  // Pages and printing (detail/zp_frame_pages.h)

  void InitPageComboBox(int pages);
  void OnFilePrint();
  void OnZpPagePrint();
  void OnZpPageProperties();
  void OnZpRotateLeft();
  void OnZpRotateRight();
  void OnZpRotate180();
  void OnZpFirstPage();
  void OnZpLastPage();
  void OnZpNextPage();
  void OnZpPrevPage();
  void OnZpGotoPage();
  void OnComboPageSelChange();
  void OnComboPageKillFocus();
  void OnUpdateFilePrint(CCmdUI* ui);
  void OnUpdateZpPagePrint(CCmdUI* ui);
  /// The export's command is the host's.
  void OnUpdateZpFileExport(CCmdUI* ui);
  void OnUpdateZpFirstPage(CCmdUI* ui);
  void OnUpdateZpPrevPage(CCmdUI* ui);
  void OnUpdateZpLastPage(CCmdUI* ui);
  void OnUpdateZpGotoPage(CCmdUI* ui);

  // Scale and mouse (detail/zp_frame_zoom.h)

  /// Has the scale written to the user's settings once no further call has come for a second.
  void SaveZoomFactor();
  void OnTimer(std::uintptr_t timer);
  void OnZpZoomIn();
  void OnZpZoomOut();
  void OnZpZoomBestFit();
  void OnZpZoomFitToHeight();
  void OnZpZoomFitToWidth();
  void OnZpZoomCustom();
  void OnZpZoomSelected();
  void OnZpDragMode();
  void OnZpZoomInMode();
  void OnZpZoomOutMode();
  void OnComboScaleSelChange();
  void OnComboScaleKillFocus();
  void OnUpdateZpZoomIn(CCmdUI* ui);
  void OnUpdateZpZoomOut(CCmdUI* ui);
  void OnUpdateZpZoomBestFit(CCmdUI* ui);
  void OnUpdateZpZoomFitToHeight(CCmdUI* ui);
  void OnUpdateZpZoomFitToWidth(CCmdUI* ui);
  void OnUpdateZpZoomCustom(CCmdUI* ui);
  void OnUpdateZpZoomSelected(CCmdUI* ui);
  void OnUpdateZpDragMode(CCmdUI* ui);
  void OnUpdateZpZoomInMode(CCmdUI* ui);
  void OnUpdateZpZoomOutMode(CCmdUI* ui);

 private:
  int Pages() const { return m_pDoc == nullptr ? 0 : m_pDoc->GetPagesNum(); }
  /// From 0; -1 for none.
  int Page() const { return m_pDoc == nullptr ? -1 : m_pDoc->GetActivePageNum(); }
  bool IsOpen() const { return Pages() != 0; }
  /// Whether the active page has a bitmap.
  bool IsShown() const {
    return m_pDoc != nullptr && m_pView != nullptr && m_pDoc->GetHBitmap(-1) != nullptr;
  }
  bool CanZoom() const { return IsOpen() && IsShown(); }
  bool HasBars();
  /// What the bars show of pages and scale.
  void UpdateBars();
  /// From 0; the document refuses what is no page of it.
  void ShowPage(int page);
  /// Nothing for the page that is shown already.
  void ShowOtherPage(int page);
  void ToggleFit(int mode);
  void UpdateFit(CCmdUI* ui, int mode);
  void UpdateMode(CCmdUI* ui, bool enabled, bool current);
  /// True if the command's update came for the pop-up that it stands first in.
  bool UpdatePopup(CCmdUI* ui, bool enabled);

  DECLARE_MESSAGE_MAP()
};

extern template class TESSAREL_API CZPFrame<CFrameWnd>;
extern template class TESSAREL_API CZPFrame<CMDIChildWnd>;
