#pragma once

#include "controls/splitter.h"
#include "docview/document_display.h"
#include "docview/document_frame.h"
#include "docview/zp_doc.h"
#include "docview/zp_view.h"
#include "library/export.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/status_bar.h"
#include "viewing/commands/viewer_commands.h"

class CZPThumbsView;

/// A frame that shows a document: a column of thumbnails, hidden at first, beside the view of the active
/// page. Two classes are made of it, CZPmdiChild and CZPsdiFrame, which have their bars from different
/// places. Commands end in it or in CViewerCommands.
///
/// It is made by a document template, whose view class isn't looked at: the frame makes both views itself.
/// Commands without a handler stay enabled. Everything runs on the window's thread.
template <typename Base>
class CZPFrame : public CViewerCommands<Base>, public CZPDocumentFrame {
 public:
  void UpdateFrame() override;
  void UpdateZoomStatus() override { Commands::UpdateZoomStatus(); }
  void InitialFrameUpdate() override;

  CZPDoc* m_pDoc = nullptr;          ///< the views' document
  CSplitter* m_pSplitter = nullptr;  ///< owned
  int m_bThumbsVisible = 0;          ///< not saved
  CZPView* m_pView = nullptr;        ///< ends with its window, and so does the other view
  CZPThumbsView* m_pThumbsView = nullptr;

 protected:
  CZPFrame();
  ~CZPFrame() override;

  ViewerDisplay* CommandDisplay() override { return m_pView == nullptr ? nullptr : &m_display; }
  void FollowPage() override { UpdateFrame(); }

  // Shell (detail/zp_frame_shell.h)

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
  void OnZpViewThumbnails();
  void OnUpdateZpViewThumbnails(CCmdUI* ui);

  void InitPageComboBox(int pages);
  /// The export's command is the host's.
  void OnUpdateZpFileExport(CCmdUI* ui);

  // The shared commands, by the names that the hosts of this stack call them

  void OnZpFirstPage() { this->OnFirstPage(); }
  void OnZpPrevPage() { this->OnPrevPage(); }
  void OnZpNextPage() { this->OnNextPage(); }
  void OnZpLastPage() { this->OnLastPage(); }
  void OnZpGotoPage() { this->OnGotoPage(); }
  void OnZpPageProperties() { this->OnPageProperties(); }
  void OnZpPagePrint() { this->OnPagePrint(); }
  void OnZpRotateLeft() { this->OnRotateLeft(); }
  void OnZpRotateRight() { this->OnRotateRight(); }
  void OnZpRotate180() { this->OnRotate180(); }
  void OnZpZoomIn() { this->OnZoomIn(); }
  void OnZpZoomOut() { this->OnZoomOut(); }
  void OnZpZoomBestFit() { this->OnZoomBestFit(); }
  void OnZpZoomFitToHeight() { this->OnZoomFitToHeight(); }
  void OnZpZoomFitToWidth() { this->OnZoomFitToWidth(); }
  void OnZpZoomCustom() { this->OnZoomCustom(); }
  void OnZpZoomSelected() { this->OnZoomSelected(); }
  void OnZpDragMode() { this->OnDragMode(); }
  void OnUpdateZpFirstPage(CCmdUI* ui) { this->OnUpdateFirstPage(ui); }
  void OnUpdateZpPrevPage(CCmdUI* ui) { this->OnUpdatePrevPage(ui); }
  void OnUpdateZpLastPage(CCmdUI* ui) { this->OnUpdateLastPage(ui); }
  void OnUpdateZpGotoPage(CCmdUI* ui) { this->OnUpdateGotoPage(ui); }
  void OnUpdateZpPagePrint(CCmdUI* ui) { this->OnUpdatePagePrint(ui); }
  void OnUpdateZpZoomIn(CCmdUI* ui) { this->OnUpdateZoomIn(ui); }
  void OnUpdateZpZoomOut(CCmdUI* ui) { this->OnUpdateZoomOut(ui); }
  void OnUpdateZpZoomBestFit(CCmdUI* ui) { this->OnUpdateZoomBestFit(ui); }
  void OnUpdateZpZoomFitToHeight(CCmdUI* ui) { this->OnUpdateZoomFitToHeight(ui); }
  void OnUpdateZpZoomFitToWidth(CCmdUI* ui) { this->OnUpdateZoomFitToWidth(ui); }
  void OnUpdateZpZoomCustom(CCmdUI* ui) { this->OnUpdateZoomCustom(ui); }
  void OnUpdateZpZoomSelected(CCmdUI* ui) { this->OnUpdateZoomSelected(ui); }
  void OnUpdateZpDragMode(CCmdUI* ui) { this->OnUpdateDragMode(ui); }

 private:
  using Commands = CViewerCommands<Base>;

  DocumentDisplay m_display{m_pDoc, m_pView};

  /// What the bars show of pages and scale.
  void UpdateBars(const viewer_bars::ViewerBars& bars);
  void UpdatePageCombo(CComboPageNum& combo);

  DECLARE_MESSAGE_MAP()
};

extern template class TESSAREL_API CZPFrame<CFrameWnd>;
extern template class TESSAREL_API CZPFrame<CMDIChildWnd>;
