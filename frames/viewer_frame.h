#pragma once

#include <functional>

#include "controls/splitter.h"
#include "controls/tool_bar_256.h"
#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "library/export.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/status_bar.h"
#include "thumbs/thumbs_window.h"
#include "viewing/bars/combo_page_num.h"
#include "viewing/bars/combo_scale.h"

/// Where the two viewer frames differ, beside their base.
template <typename Base>
struct ViewerFrameTraits;

template <>
struct ViewerFrameTraits<CFrameWnd> {
  static constexpr bool kSharesMenu = false;     ///< its menu comes with LoadFrame
  static constexpr bool kHasSiblings = false;    ///< in front once it is shown
  static constexpr bool kScaleFromEntry = true;  ///< a scale picked from the list is read from its entry
};

template <>
struct ViewerFrameTraits<CMDIChildWnd> {
  static constexpr bool kHasSiblings = true;      ///< has to be activated among other document windows
  static constexpr bool kSharesMenu = true;       ///< shown in the main frame's menu bar while active
  static constexpr bool kScaleFromEntry = false;  ///< it is read from the edit field, which shows it already
};

/// A whole viewer window: toolbar with page and scale combos, status bar, a column of thumbnails that can be
/// hidden, and the image window. Two classes are made of it, CImageFrame and CImageMDIChild. All commands end
/// here; the frame calls the image window and then brings its displays along.
///
/// Life: construct, LoadFrame, open; the object ends with its window. Everything runs on the window's thread.
template <typename Base>
class CViewerFrame : public Base, public CImageWindowFrame {
 public:
  CViewerFrame() = default;

  /// Opens a file and shows its first page. Null asks the user; if he cancels, nothing changes and the result
  /// is true. False after a reported failure, which leaves the frame empty.
  bool OpenImageFile(const char* path);
  /// The same for a file image in memory. The block stays the caller's and must live as long as it is shown.
  bool OpenImageMemory(void* block, unsigned long size);
  /// Brings zoom pane and scale combo in line with the image window, and has the scale saved a second later.
  void UpdateZoomStatus() override;
  bool OpenDroppedFile(const char* path) override;

  bool m_bModal = false;
  CStatusBar m_wndStatusBar;
  CToolBar256 m_wndToolBar;
  CImageWindow* m_pImageWnd = nullptr;  ///< null before the frame is made and after it was closed
  CComboPageNum m_wndComboPage;
  CComboScale m_wndComboScale;
  CFont m_fontCombos;
  BOOL m_bThumbsCreated = FALSE;  ///< the strip holds the pages of what is open
  CThumbsWindow* m_pThumbsWnd = nullptr;
  BOOL m_bThumbsVisible = FALSE;
  CSplitter m_wndSplitter;

 protected:
  ~CViewerFrame() override;

  // Shell (detail/viewer_frame_shell.h)

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context) override;
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
  int OnCreate(LPCREATESTRUCT cs);
  void OnSetFocus(CWnd* former);
  BOOL CreateToolBar();
  BOOL CreateStatusBar();
  /// Back to the look of a frame with nothing open.
  void Clear();
  void OnViewThumbnails();
  void OnUpdateViewThumbnails(CCmdUI* ui);

  // Opening, modal viewing, export (detail/viewer_frame_open.h)

  /// Shows a frame that was just constructed, on top of its parent, until the user closes it. False if it
  /// could not be made or nothing could be opened; the frame is gone in any case.
  static bool RunModal(CViewerFrame* frame, CWnd* parent, const char* title, bool disableParent,
                       const std::function<bool()>& open);
  static bool RunModalFile(CViewerFrame* frame, CWnd* parent, const char* path, const char* title);
  static bool RunModalMemory(CViewerFrame* frame, CWnd* parent, void* block, unsigned long size,
                             const char* title);
  /// The message loop of a modal viewer. False if the frame has gone meanwhile.
  bool DoModalLoop();
  void OnClose();
  /// A modal viewer is closed; otherwise the application is asked first.
  void OnAppExit();
  void OnFileExport();
  void OnUpdateFileExport(CCmdUI* ui);

  // Pages (detail/viewer_frame_pages.h)

  void InitPageComboBox(int pages);
  void OnFirstPage();
  void OnPrevPage();
  void OnNextPage();
  void OnLastPage();
  void OnGotoPage();
  void OnPageProperties();
  void OnComboPageSelChange();
  void OnComboPageKillFocus();
  void OnUpdateFirstPage(CCmdUI* ui);
  void OnUpdatePrevPage(CCmdUI* ui);
  void OnUpdateNextPage(CCmdUI* ui);
  void OnUpdateLastPage(CCmdUI* ui);
  void OnUpdateGotoPage(CCmdUI* ui);
  void OnUpdatePageProperties(CCmdUI* ui);

  // Printing (detail/viewer_frame_print.h)

  void OnFilePrint();
  void OnPagePrint();
  void OnUpdateFilePrint(CCmdUI* ui);
  void OnUpdatePagePrint(CCmdUI* ui);

  // Zoom, rotation, mouse modes (detail/viewer_frame_zoom.h)

  /// Has the scale written to the user's settings once no further call has come for a second.
  void SaveZoomFactor();
  void OnTimer(std::uintptr_t timer);
  void OnZoomIn();
  void OnZoomOut();
  void OnZoomBestFit();
  void OnZoomFitToHeight();
  void OnZoomFitToWidth();
  void OnZoomCustom();
  void OnZoomSelected();
  void OnDragMode();
  void OnZpZoomInMode();
  void OnZpZoomOutMode();
  void OnRotateLeft();
  void OnRotateRight();
  void OnRotate180();
  void OnComboScaleSelChange();
  void OnComboScaleKillFocus();
  void OnUpdateZoomIn(CCmdUI* ui);
  void OnUpdateZoomOut(CCmdUI* ui);
  void OnUpdateZoomBestFit(CCmdUI* ui);
  void OnUpdateZoomFitToHeight(CCmdUI* ui);
  void OnUpdateZoomFitToWidth(CCmdUI* ui);
  void OnUpdateZoomCustom(CCmdUI* ui);
  void OnUpdateZoomSelected(CCmdUI* ui);
  void OnUpdateDragMode(CCmdUI* ui);
  void OnUpdateZpZoomInMode(CCmdUI* ui);
  void OnUpdateZpZoomOutMode(CCmdUI* ui);
  void OnUpdateRotateLeft(CCmdUI* ui);
  void OnUpdateRotateRight(CCmdUI* ui);
  void OnUpdateRotate180(CCmdUI* ui);

 private:
  using Traits = ViewerFrameTraits<Base>;

  HMENU m_hOwnMenu = nullptr;  ///< what it shows in another window's menu bar

  bool HasPage() const { return m_pImageWnd != nullptr && m_pImageWnd->m_nCurrPage >= 1; }
  int Page() const { return m_pImageWnd == nullptr ? 0 : m_pImageWnd->m_nCurrPage; }
  int Pages() const { return m_pImageWnd == nullptr ? 0 : m_pImageWnd->m_nMaxPage; }

  /// A text of the table in the message pane, on the screen at once.
  void ShowMessage(UINT text);
  void EnablePane(UINT pane, bool enable);

  bool AskForFile(CString* path);
  void FillThumbs();
  bool FailedOpen();
  bool ShowOpened();

  void ShowPageStatus(BOOL update);
  void ShowPage(int page);
  void ShowZoomStatus(BOOL update);
  void EnableWithPage(CCmdUI* ui);
  void UpdateMode(CCmdUI* ui, int mode);
  bool UpdatePopup(CCmdUI* ui);

  DECLARE_MESSAGE_MAP()
};

extern template class TESSAREL_API CViewerFrame<CFrameWnd>;
extern template class TESSAREL_API CViewerFrame<CMDIChildWnd>;
