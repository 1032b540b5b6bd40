#include "tests/framework/mdi_fixture.h"

#include "tests/framework/own_resources.h"

#include "platform/framework/cmd_ui.h"
#include "platform/framework/thread.h"
#include "tessarel12_testing.h"

namespace mdi_test {

std::string g_trace;
int g_messages = 0;

namespace {

using Kind = platform::MenuLine::Kind;

constexpr platform::MenuLine kMainBar[] = {
    {Kind::Popup, "&File"},     {Kind::Item, "&Apri...\tCtrl+A", kMainOnly},    {Kind::End},
    {Kind::Popup, "Fi&nestra"}, {Kind::Item, "&Sovrapponi", ID_WINDOW_CASCADE}, {Kind::End},
};
constexpr platform::MenuLine kChildBar[] = {
    {Kind::Popup, "&File"},
    {Kind::Item, "&Apri...\tCtrl+A", kMainOnly},
    {Kind::Item, "&Chiudi", ID_FILE_CLOSE},
    {Kind::End},
    {Kind::Popup, "&Pagina"},
    {Kind::Item, "Pagina &seguente", kChildOnly},
    {Kind::Item, "&Entrambi", kBoth},
    {Kind::Item, "&Nessuno", kNobody},
    {Kind::Item, "&Termina", kEndChild},
    {Kind::End},
    {Kind::Popup, "Fi&nestra"},
    {Kind::Item, "&Sovrapponi", ID_WINDOW_CASCADE},
    {Kind::Item, "Affianca &orizzontalmente", ID_WINDOW_TILE_HORZ},
    {Kind::Item, "Affianca &verticalmente", ID_WINDOW_TILE_VERT},
    {Kind::End},
};
constexpr platform::MenuResource kMenus[] = {{kMainMenu, kMainBar}, {kChildMenu, kChildBar}};
constexpr platform::StringResource kStrings[] = {
    {kMainMenu, "Visore"}, {kChildMenu, "Documento"}, {AFX_IDS_IDLEMESSAGE, "Pronto"}};

void RegisterOnce() {
  struct Own {};
  platform::ResourceTables tables;
  tables.menus = kMenus;
  tables.strings = kStrings;
  JoinResources<Own>(tables);
}

}  // namespace

BEGIN_MESSAGE_MAP(Main, CMDIFrameWnd)
ON_WM_CREATE()
ON_COMMAND(kMainOnly, OnMainOnly)
ON_COMMAND(kBoth, OnMainOnly)
END_MESSAGE_MAP()

Main* Main::Show() {
  RegisterOnce();
  g_trace.clear();
  auto* main = new Main;  // NOLINT: ends with its window
  main->LoadFrame(kMainMenu);
  main->SetWindowPos(nullptr, 0, 0, 700, 500, SWP_NOZORDER);
  main->ShowWindow(SW_SHOW);
  Settle();
  return main;
}

int Main::OnCreate(LPCREATESTRUCT cs) {
  if (CMDIFrameWnd::OnCreate(cs) == -1) return -1;
  const UINT panes[] = {ID_SEPARATOR};
  return status.Create(this) != 0 && status.SetIndicators(panes, 1) != 0 ? 0 : -1;
}

IMPLEMENT_DYNCREATE(Child, CMDIChildWnd)
BEGIN_MESSAGE_MAP(Child, CMDIChildWnd)
ON_WM_MDIACTIVATE()
ON_WM_SIZE()
ON_WM_CLOSE()
ON_COMMAND(kChildOnly, OnChildOnly)
ON_COMMAND(kBoth, OnChildOnly)
ON_COMMAND(kEndChild, OnEndChild)
ON_UPDATE_COMMAND_UI(kChildOnly, OnUpdateChildOnly)
END_MESSAGE_MAP()

Child* Child::Show(CMDIFrameWnd* parent, const std::string& name, bool bars, bool menu) {
  auto* child = new Child;  // NOLINT: ends with its window
  child->name = name;
  if (menu)
    child->LoadFrame(kChildMenu, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, parent);
  else
    child->Create(nullptr, "", DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, rectDefault, parent);
  child->SetWindowText(name.c_str());
  if (bars) {
    child->toolbar.CreateEx(child, TBSTYLE_FLAT, DWORD{WS_CHILD} | WS_VISIBLE | CBRS_TOP, CRect(0, 0, 0, 0),
                            AFX_IDW_TOOLBAR);
    child->toolbar.SetSizes(CSize(23, 23), CSize(16, 16));
    const UINT buttons[] = {kChildOnly, kEndChild};
    child->toolbar.SetButtons(buttons, 2);
    child->status.Create(child);
    const UINT panes[] = {ID_SEPARATOR};
    child->status.SetIndicators(panes, 1);
  }
  child->ActivateFrame();
  return child;
}

BOOL Child::OnCreateClient(LPCREATESTRUCT, CCreateContext*) {
  return pane.Create(AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW)), nullptr, WS_VISIBLE,
                     CRect(0, 0, 0, 0), this, AFX_IDW_PANE_FIRST);
}

LRESULT Child::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  ++g_messages;
  return CMDIChildWnd::WindowProc(message, wParam, lParam);
}

void Child::OnMDIActivate(BOOL activate, CWnd* activated, CWnd* deactivated) {
  const auto nameOf = [](CWnd* window) {
    return window == nullptr ? std::string("-") : static_cast<Child*>(window)->name;
  };
  g_trace += name + (activate != 0 ? "+" : "-") + "(" + nameOf(activated) + "," + nameOf(deactivated) + ") ";
  CMDIChildWnd::OnMDIActivate(activate, activated, deactivated);
}

void Child::OnSize(UINT type, int cx, int cy) {
  lastSize = type;
  CMDIChildWnd::OnSize(type, cx, cy);
}

void Child::OnClose() {
  g_trace += name + "? ";
  if (!refuses) CMDIChildWnd::OnClose();
}

void Child::OnEndChild() {
  g_trace += name + "! ";
  DestroyWindow();
}

void Child::OnUpdateChildOnly(CCmdUI* item) {
  item->Enable(canNext);
}

void Settle() {
  platform::testing::PumpUntilIdle();
  for (LONG count = 0; AfxGetThread()->OnIdle(count) != 0;) ++count;
  platform::testing::PumpUntilIdle();
}

CString TitleOf(const CWnd& window) {
  return ::GetWindowText(window.m_hWnd);
}

CRect PlaceOf(const CWnd& child) {
  CRect rect;
  child.GetWindowRect(rect);
  CWnd::FromHandle(::GetParent(child.m_hWnd))->ScreenToClient(rect);
  return rect;
}

}  // namespace mdi_test
