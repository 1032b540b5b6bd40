#pragma once

#include <vector>

#include "platform/framework/wnd.h"
#include "platform/window/bar_styles.h"

/// Id of the first pane of a frame: the child that fills what control bars leave of the client area.
enum : UINT { AFX_IDW_PANE_FIRST = 0xE900 };

/// Frame styles: the document's name is put behind the title, or before it.
// Plain numbers, so that they go together with the window styles.
inline constexpr DWORD FWS_PREFIXTITLE = 0x4000;
inline constexpr DWORD FWS_ADDTOTITLE = 0x8000;
/// Text of the status bar while nothing else is to be said.
enum : UINT { AFX_IDS_IDLEMESSAGE = 0xE001 };

struct CCreateContext;
class CCmdUI;
class CControlBar;
class CDocument;
class CView;

/// A main window. The object deletes itself after its window is destroyed.
class PLATFORM_API CFrameWnd : public CWnd {
  DECLARE_DYNCREATE(CFrameWnd)
 public:
  CFrameWnd();
  ~CFrameWnd() override;

  /// Any place and size.
  static const CRect rectDefault;

  HACCEL m_hAccelTable = nullptr;  ///< keys of the frame, not owned
  BOOL m_bAutoMenuEnable = TRUE;   ///< items whose command nobody handles are grey
  HMENU m_hMenuDefault = nullptr;  ///< the menu that Create loaded; the window destroys it
  CString m_strTitle;
  int m_nWindow = -1;  ///< number of this window among those of its document; -1: the only one

  using CWnd::Create;  // not hidden by the frame's own
  /// menuName: a menu of the resources. FALSE if it can't be found; the frame isn't made then.
  virtual BOOL Create(LPCTSTR className, LPCTSTR title, DWORD style = WS_OVERLAPPEDWINDOW,
                      const RECT& rect = rectDefault, CWnd* parent = nullptr, LPCTSTR menuName = nullptr,
                      DWORD exStyle = 0, CCreateContext* context = nullptr);
  /// Everything under one number: menu, icon (where there is one) and title (the string's first line).
  virtual BOOL LoadFrame(UINT id, DWORD style = DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE,
                         CWnd* parent = nullptr, CCreateContext* context = nullptr);
  /// A menu of the host's making (null: none) in the place of the one that was loaded, which is destroyed.
  /// The window owns it from now, and it is in the bar at once, or as soon as it is this window's turn.
  virtual void SetFrameMenu(HMENU menu);
  BOOL PreTranslateMessage(MSG* message) override;
  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;
  /// The frame that commands and prompts are for: with document windows inside the active one.
  virtual CFrameWnd* GetActiveFrame() { return this; }

  // Document and views (frame_documents.cpp)

  /// The view that commands go to first; null if there is none.
  CView* GetActiveView() const { return m_pViewActive; }
  /// Null: none is active. notify: the view that comes is told; the one that goes always is.
  void SetActiveView(CView* view, BOOL notify = TRUE);
  /// The active view's document, or null.
  virtual CDocument* GetActiveDocument();
  /// Makes the context's view as a child. Null on failure.
  CWnd* CreateView(CCreateContext* context, UINT id = AFX_IDW_PANE_FIRST);
  /// The first view becomes the active one; if the frame is to be seen, all views have their first update and
  /// it comes to the front. document may be null.
  void InitialUpdateFrame(CDocument* document, BOOL makeVisible);

  /// With the style FWS_ADDTOTITLE: title and, if asked, the document's name.
  virtual void OnUpdateFrameTitle(BOOL addToTitle);
  void UpdateFrameTitleForDocument(LPCTSTR document);
  /// Shows the frame and puts it in front.
  virtual void ActivateFrame(int command = -1);
  /// Places the bars at their edges and the pane in what they leave.
  virtual void RecalcLayout(BOOL notify = TRUE);

  // Bars (frame_bars.cpp)

  UINT m_nIDTracking = AFX_IDS_IDLEMESSAGE;  ///< the prompt wanted
  UINT m_nIDLastMessage = 0;                 ///< the prompt shown
  DWORD m_dwDockStyle = 0;

  /// Allows bars to be moved to these CBRS_ALIGN_... edges.
  void EnableDocking(DWORD dockStyle) { m_dwDockStyle = dockStyle & CBRS_ALIGN_ANY; }
  /// Puts a bar at an edge: AFX_IDW_DOCKBAR_..., or 0 for the edge of its style. Each bar has a row (or
  /// column) to itself.
  void DockControlBar(CControlBar* bar, UINT dockBar = 0, LPCRECT rect = nullptr);
  /// Shows or hides a bar; delay: the layout follows at idle time.
  void ShowControlBar(CControlBar* bar, BOOL show, BOOL delay);
  /// The bar with this number; null if there is none.
  CControlBar* GetControlBar(UINT id) const;
  void AddControlBar(CControlBar* bar);
  void RemoveControlBar(CControlBar* bar);
  /// Lets the next idle time or showing call RecalcLayout.
  void DelayRecalcLayout() { m_layoutDelayed = true; }

  /// The window that shows prompts: the status bar. Null if there is none.
  virtual CWnd* GetMessageBar();
  /// Shows a text, or the prompt of a string number.
  void SetMessageText(LPCTSTR text);
  void SetMessageText(UINT id);
  /// The prompt of a command: its string up to the line end.
  virtual void GetMessageString(UINT id, CString& message) const;
  /// What idle time does for a frame: a delayed layout, the prompt that is wanted, the look of the menu bar.
  void OnIdleUpdateCmdUI();
  /// Turns the bar with the command's number on or off. FALSE if there is none.
  BOOL OnBarCheck(UINT id);
  /// Checks the menu item of a visible bar.
  void OnUpdateControlBarMenu(CCmdUI* item);

 protected:
  /// Makes what the client area holds: the view that the context names, if any. FALSE: the frame isn't made.
  virtual BOOL OnCreateClient(LPCREATESTRUCT cs, CCreateContext* context);
  void PostNcDestroy() override;
  /// The name of the document that the frame shows. FALSE, with the text as it was, if there is none.
  virtual BOOL GetDocumentTitle(CString& title) const;

  int OnCreate(LPCREATESTRUCT cs);
  void OnSize(UINT type, int cx, int cy);
  void OnSetFocus(CWnd* former);
  /// Unless its document objects; with the last frame of a document the document closes.
  void OnClose();
  void OnInitMenuPopup(CMenu* menu, UINT index, BOOL systemMenu);
  void OnMenuSelect(UINT item, UINT flags, HMENU menu);
  BOOL OnEraseBkgnd(CDC* dc);
  void OnShowWindow(BOOL show, UINT status);
  LRESULT OnSetMessageString(WPARAM id, LPARAM text);
  LRESULT OnPopMessageString(WPARAM id, LPARAM text);
  LRESULT OnIdleUpdate(WPARAM wParam, LPARAM lParam);
  void OnBarCommand(UINT id) { OnBarCheck(id); }

  std::vector<CControlBar*> m_controlBars;

 private:
  /// Greys the sub-menus of the menu bar that have nothing to offer.
  void UpdateMenuBar();
  CView* FindFirstView() const;
  bool IsOnlyFrameOf(const CDocument& document) const;

  bool m_layoutDelayed = false;
  CView* m_pViewActive = nullptr;

  DECLARE_MESSAGE_MAP()
};
