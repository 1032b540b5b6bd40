#pragma once

// Message map entries for the window messages, each with the handler's fixed name and shape. For use in
// BEGIN_MESSAGE_MAP of a class derived from CWnd.

#define PLATFORM_ON_WM(message, sig, type, handler) {message, 0, 0, 0, sig, PLATFORM_HANDLER(type, handler)},

#define ON_WM_CREATE() PLATFORM_ON_WM(WM_CREATE, AfxSig_is, int (ThisClass::*)(LPCREATESTRUCT), OnCreate)
#define ON_WM_DESTROY() PLATFORM_ON_WM(WM_DESTROY, AfxSig_vv, void (ThisClass::*)(), OnDestroy)
#define ON_WM_NCDESTROY() PLATFORM_ON_WM(WM_NCDESTROY, AfxSig_vv, void (ThisClass::*)(), OnNcDestroy)
#define ON_WM_MOVE() PLATFORM_ON_WM(WM_MOVE, AfxSig_vii, void (ThisClass::*)(int, int), OnMove)
#define ON_WM_SIZE() PLATFORM_ON_WM(WM_SIZE, AfxSig_vwii, void (ThisClass::*)(UINT, int, int), OnSize)
#define ON_WM_ACTIVATE() \
  PLATFORM_ON_WM(WM_ACTIVATE, AfxSig_vactivate, void (ThisClass::*)(UINT, CWnd*, BOOL), OnActivate)
#define ON_WM_SETFOCUS() PLATFORM_ON_WM(WM_SETFOCUS, AfxSig_vW, void (ThisClass::*)(CWnd*), OnSetFocus)
#define ON_WM_KILLFOCUS() PLATFORM_ON_WM(WM_KILLFOCUS, AfxSig_vW, void (ThisClass::*)(CWnd*), OnKillFocus)
#define ON_WM_ENABLE() PLATFORM_ON_WM(WM_ENABLE, AfxSig_vb, void (ThisClass::*)(BOOL), OnEnable)
#define ON_WM_SHOWWINDOW() \
  PLATFORM_ON_WM(WM_SHOWWINDOW, AfxSig_vbw, void (ThisClass::*)(BOOL, UINT), OnShowWindow)
#define ON_WM_PAINT() PLATFORM_ON_WM(WM_PAINT, AfxSig_vv, void (ThisClass::*)(), OnPaint)
#define ON_WM_ERASEBKGND() PLATFORM_ON_WM(WM_ERASEBKGND, AfxSig_bD, BOOL (ThisClass::*)(CDC*), OnEraseBkgnd)
#define ON_WM_CLOSE() PLATFORM_ON_WM(WM_CLOSE, AfxSig_vv, void (ThisClass::*)(), OnClose)
#define ON_WM_SETCURSOR() \
  PLATFORM_ON_WM(WM_SETCURSOR, AfxSig_bWww, BOOL (ThisClass::*)(CWnd*, UINT, UINT), OnSetCursor)
#define ON_WM_CONTEXTMENU() \
  PLATFORM_ON_WM(WM_CONTEXTMENU, AfxSig_vWp, void (ThisClass::*)(CWnd*, CPoint), OnContextMenu)
#define ON_WM_KEYDOWN() \
  PLATFORM_ON_WM(WM_KEYDOWN, AfxSig_vwww, void (ThisClass::*)(UINT, UINT, UINT), OnKeyDown)
#define ON_WM_KEYUP() PLATFORM_ON_WM(WM_KEYUP, AfxSig_vwww, void (ThisClass::*)(UINT, UINT, UINT), OnKeyUp)
#define ON_WM_CHAR() PLATFORM_ON_WM(WM_CHAR, AfxSig_vwww, void (ThisClass::*)(UINT, UINT, UINT), OnChar)
#define ON_WM_TIMER() PLATFORM_ON_WM(WM_TIMER, AfxSig_vtimer, void (ThisClass::*)(std::uintptr_t), OnTimer)
#define ON_WM_HSCROLL() \
  PLATFORM_ON_WM(WM_HSCROLL, AfxSig_vscroll, void (ThisClass::*)(UINT, UINT, CScrollBar*), OnHScroll)
#define ON_WM_VSCROLL() \
  PLATFORM_ON_WM(WM_VSCROLL, AfxSig_vscroll, void (ThisClass::*)(UINT, UINT, CScrollBar*), OnVScroll)
#define ON_WM_MOUSEMOVE() \
  PLATFORM_ON_WM(WM_MOUSEMOVE, AfxSig_vwp, void (ThisClass::*)(UINT, CPoint), OnMouseMove)
#define ON_WM_LBUTTONDOWN() \
  PLATFORM_ON_WM(WM_LBUTTONDOWN, AfxSig_vwp, void (ThisClass::*)(UINT, CPoint), OnLButtonDown)
#define ON_WM_LBUTTONUP() \
  PLATFORM_ON_WM(WM_LBUTTONUP, AfxSig_vwp, void (ThisClass::*)(UINT, CPoint), OnLButtonUp)
#define ON_WM_LBUTTONDBLCLK() \
  PLATFORM_ON_WM(WM_LBUTTONDBLCLK, AfxSig_vwp, void (ThisClass::*)(UINT, CPoint), OnLButtonDblClk)
#define ON_WM_RBUTTONDOWN() \
  PLATFORM_ON_WM(WM_RBUTTONDOWN, AfxSig_vwp, void (ThisClass::*)(UINT, CPoint), OnRButtonDown)
#define ON_WM_RBUTTONUP() \
  PLATFORM_ON_WM(WM_RBUTTONUP, AfxSig_vwp, void (ThisClass::*)(UINT, CPoint), OnRButtonUp)
#define ON_WM_MOUSEWHEEL() \
  PLATFORM_ON_WM(WM_MOUSEWHEEL, AfxSig_bwheel, BOOL (ThisClass::*)(UINT, short, CPoint), OnMouseWheel)
#define ON_WM_MOUSEHWHEEL() \
  PLATFORM_ON_WM(WM_MOUSEHWHEEL, AfxSig_bwheel, BOOL (ThisClass::*)(UINT, short, CPoint), OnMouseHWheel)
#define ON_WM_CAPTURECHANGED() \
  PLATFORM_ON_WM(WM_CAPTURECHANGED, AfxSig_vWl, void (ThisClass::*)(CWnd*), OnCaptureChanged)
#define ON_WM_INITMENUPOPUP() \
  PLATFORM_ON_WM(WM_INITMENUPOPUP, AfxSig_vmenu, void (ThisClass::*)(CMenu*, UINT, BOOL), OnInitMenuPopup)
#define ON_WM_MENUSELECT() \
  PLATFORM_ON_WM(WM_MENUSELECT, AfxSig_vselect, void (ThisClass::*)(UINT, UINT, HMENU), OnMenuSelect)
#define ON_WM_DROPFILES() PLATFORM_ON_WM(WM_DROPFILES, AfxSig_vdrop, void (ThisClass::*)(HDROP), OnDropFiles)
#define ON_WM_MDIACTIVATE() \
  PLATFORM_ON_WM(WM_MDIACTIVATE, AfxSig_vmdi, void (ThisClass::*)(BOOL, CWnd*, CWnd*), OnMDIActivate)
