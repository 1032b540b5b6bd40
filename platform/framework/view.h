#pragma once

#include "platform/framework/wnd.h"

class CDocTemplate;
class CDocument;
class CFrameWnd;
class CView;

/// Sent to all windows below a frame once its document is there: views answer with OnInitialUpdate.
enum : UINT { WM_INITIALUPDATE = 0x0364 };

/// What a frame and its views are made for. It lives as long as their creation; nothing in it is owned, and
/// each member may be null.
struct CCreateContext {
  CRuntimeClass* m_pNewViewClass = nullptr;  ///< of the view that fills the frame
  CDocument* m_pCurrentDoc = nullptr;        ///< the views belong to it
  CDocTemplate* m_pNewDocTemplate = nullptr;
  CView* m_pLastView = nullptr;          ///< the view that the new one stands beside
  CFrameWnd* m_pCurrentFrame = nullptr;  ///< the frame that the new one is a second of
};

/// A window that shows a document. It gets its document from the CCreateContext that it is made with, and
/// deletes itself after its window is destroyed.
class PLATFORM_API CView : public CWnd {
  DECLARE_DYNAMIC(CView)
 public:
  CView(const CView&) = delete;
  CView& operator=(const CView&) = delete;

  /// Null for a view that was made without one.
  CDocument* GetDocument() const { return m_pDocument; }
  /// Called once when the frame is ready; the base calls OnUpdate.
  virtual void OnInitialUpdate();
  /// Before OnDraw: the place for a mapping mode or an origin.
  virtual void OnPrepareDC(CDC*) {}
  /// The view, then its document.
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;

 protected:
  CView() = default;
  ~CView() override;

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  void PostNcDestroy() override;
  virtual void OnDraw(CDC* dc) = 0;
  /// The document has changed: what sender, hint and hintObject mean is between document and views. The base
  /// has all painted anew.
  virtual void OnUpdate(CView* sender, LPARAM hint, CObject* hintObject);
  /// The frame's active view changes. The base takes the keyboard if it is this one.
  virtual void OnActivateView(BOOL activate, CView* activated, CView* deactivated);

  int OnCreate(LPCREATESTRUCT cs);
  void OnDestroy();
  void OnPaint();
  void OnSetFocus(CWnd* former);
  LRESULT OnInitialUpdateMessage(WPARAM wParam, LPARAM lParam);

  CDocument* m_pDocument = nullptr;

  friend class CDocument;
  friend class CFrameWnd;
  friend class CMDIChildWnd;

  DECLARE_MESSAGE_MAP()
};
