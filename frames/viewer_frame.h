#pragma once

#include <functional>

#include "controls/splitter.h"
#include "controls/tool_bar_256.h"
#include "frames/image_display.h"
#include "imagewindow/frame_link.h"
#include "imagewindow/image_window.h"
#include "library/export.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/mdi_wnd.h"
#include "platform/framework/status_bar.h"
#include "thumbs/thumbs_window.h"
#include "viewing/commands/viewer_commands.h"

/// Where the two viewer frames differ, beside their base.
template <typename Base>
struct ViewerFrameTraits;

template <>
struct ViewerFrameTraits<CFrameWnd> {
  static constexpr const ViewerKind& kKind = kImageFrame;
  static constexpr bool kSharesMenu = false;   ///< its menu comes with LoadFrame
  static constexpr bool kHasSiblings = false;  ///< in front once it is shown
};

template <>
struct ViewerFrameTraits<CMDIChildWnd> {
  static constexpr const ViewerKind& kKind = kImageChild;
  static constexpr bool kSharesMenu = true;   ///< shown in the main frame's menu bar while active
  static constexpr bool kHasSiblings = true;  ///< has to be activated among other document windows
};

/// A whole viewer window: toolbar with page and scale combos, status bar, a column of thumbnails that can be
/// hidden, and the image window. Two classes are made of it, CImageFrame and CImageMDIChild. Commands end in
/// it or in CViewerCommands; they call the image window and then bring the bars along.
///
/// Life: construct, LoadFrame, open; the object ends with its window. Everything runs on the window's thread.
template <typename Base>
class CViewerFrame : public CViewerCommands<Base>, public CImageWindowFrame {
 public:
  CViewerFrame() : Commands(Traits::kKind) {}

  /// Opens a file and shows its first page. Null asks the user; if he cancels, nothing changes and the result
  /// is true. False after a reported failure, which leaves the frame empty.
  bool OpenImageFile(const char* path);
  /// The same for a file image in memory. The block stays the caller's and must live as long as it is shown.
  bool OpenImageMemory(void* block, unsigned long size);
  void UpdateZoomStatus() override { Commands::UpdateZoomStatus(); }
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

  /// The class of the window that shows the pages: CImageWindow, or one that a host derives from it.
  virtual CRuntimeClass* ImageWindowClass() { return RUNTIME_CLASS(CImageWindow); }
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
  /// A modal viewer is closed; otherwise the main window of document windows and the application are asked
  /// first.
  void OnAppExit();
  void OnFileExport();
  void OnUpdateFileExport(CCmdUI* ui);

  // Bars (detail/viewer_frame_shell.h)

  ViewerDisplay* CommandDisplay() override { return m_pImageWnd == nullptr ? nullptr : &m_display; }
  viewer_bars::ViewerBars CommandBars() override {
    return {&m_wndStatusBar, &m_wndComboPage, &m_wndComboScale};
  }
  void FollowPage() override;
  void InitPageComboBox(int pages);

 private:
  using Traits = ViewerFrameTraits<Base>;
  using Commands = CViewerCommands<Base>;

  ImageDisplay m_display{m_pImageWnd};
  HMENU m_hOwnMenu = nullptr;  ///< what it shows in another window's menu bar

  /// A text of the table in the message pane, on the screen at once.
  void ShowMessage(UINT text);
  void EnablePane(UINT pane, bool enable);

  /// Whether another handler has taken the command.
  bool ExitElsewhere();
  /// Closed or destroyed, as it may be after each dialog, box and call of the host.
  bool IsGone() const { return this->m_hWnd == nullptr || m_pImageWnd == nullptr; }
  void EndPanes();
  bool AskForFile(CString* path);
  void FillThumbs();
  bool ShowsPicture() const;
  bool FailedOpen();
  bool ShowOpened();

  /// Page combo and pane.
  void ShowPageInBars();

  DECLARE_MESSAGE_MAP()
};

extern template class TESSAREL_API CViewerFrame<CFrameWnd>;
extern template class TESSAREL_API CViewerFrame<CMDIChildWnd>;
