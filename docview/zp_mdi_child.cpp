#include "docview/zp_mdi_child.h"

#include "docview/detail/zp_frame_map.h"
#include "docview/zp_mdi_frame.h"

template class CZPFrame<CMDIChildWnd>;

IMPLEMENT_DYNCREATE(CZPmdiChild, CMDIChildWnd)

BEGIN_MESSAGE_MAP(CZPmdiChild, CZPFrame<CMDIChildWnd>)
ON_WM_CREATE()
ON_WM_MDIACTIVATE()
END_MESSAGE_MAP()

int CZPmdiChild::OnCreate(LPCREATESTRUCT cs) {
  if (CZPFrame<CMDIChildWnd>::OnCreate(cs) == -1) return -1;
  auto* const frame = dynamic_cast<CZPmdiFrame*>(GetMDIFrame());
  if (frame == nullptr) return -1;
  m_pStatusBar = &frame->m_wndStatusBar;
  m_pToolBar = &frame->m_wndToolBar;
  m_pComboPage = &frame->m_wndComboPage;
  m_pComboScale = &frame->m_wndComboScale;
  return 0;
}

bool CZPmdiChild::OwnsBars() {
  // A window behind another one can change too: tiled with a running fit, or by the host. And an open that
  // fails must not leave the bars of the window that stays in front empty.
  const CMDIChildWnd* const active = GetMDIFrame()->MDIGetActive();
  return active == nullptr || active == this;
}

void CZPmdiChild::OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated) {
  if (activate != FALSE) UpdateFrame();
  CZPFrame<CMDIChildWnd>::OnMDIActivate(activate, activated, deactivated);
}
