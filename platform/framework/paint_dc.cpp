#include "platform/framework/wnd.h"

IMPLEMENT_DYNAMIC(CPaintDC, CDC)
IMPLEMENT_DYNAMIC(CClientDC, CDC)

CPaintDC::CPaintDC(CWnd* window) : m_hWnd(window->m_hWnd) {
  Attach(::BeginPaint(m_hWnd, &m_ps));
}

CPaintDC::~CPaintDC() {
  ::EndPaint(m_hWnd, &m_ps);
  Detach();
}

CClientDC::CClientDC(CWnd* window) : m_hWnd(window == nullptr ? nullptr : window->m_hWnd) {
  Attach(::GetDC(m_hWnd));
}

CClientDC::~CClientDC() {
  ::ReleaseDC(m_hWnd, Detach());
}
