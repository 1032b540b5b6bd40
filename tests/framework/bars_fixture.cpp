#include "tests/framework/bars_fixture.h"

#include "tests/framework/own_resources.h"

#include <vector>

#include "platform/framework/cmd_ui.h"
#include "platform/framework/thread.h"
#include "tessarel12_testing.h"

namespace bars_test {

IMPLEMENT_DYNCREATE(Pane, CWnd)
BEGIN_MESSAGE_MAP(Pane, CWnd)
ON_WM_PAINT()
END_MESSAGE_MAP()

void Pane::OnPaint() {
  CPaintDC dc(this);
  CRect client;
  GetClientRect(client);
  dc.FillSolidRect(client, RGB(255, 255, 255));
}

BEGIN_MESSAGE_MAP(Frame, CFrameWnd)
ON_WM_CREATE()
ON_COMMAND(kPrint, OnPrint)
ON_COMMAND(kNext, OnNext)
ON_CONTROL(9, kPageControl, OnPageChosen)
ON_UPDATE_COMMAND_UI(kNext, OnUpdateNext)
ON_UPDATE_COMMAND_UI(kDrag, OnUpdateDrag)
END_MESSAGE_MAP()

namespace {

constexpr platform::StringResource kStrings[] = {
    {57345, "Pronto"},
    {kPrint, "Stampa il documento\nStampa"},
    {kNext, "Passa alla pagina seguente\nPagina seguente"},
    {kPageControl, "Sceglie la pagina\nPagina"},
    {kZoomPane, "Zoom 1:%1!d!"},
    {kPagePane, "Pagina %1!d! di %2!d!"},
    {30038, "Scale: 1000%"},
    {30039, "Pagina 99 di 100"},
};

void RegisterStrings() {
  struct Own {};
  platform::ResourceTables tables;
  tables.strings = kStrings;
  JoinResources<Own>(tables);
}

/// A strip of five pictures: a coloured square on magenta.
HBITMAP MakeStrip() {
  constexpr int kSide = 16;
  const COLORREF colors[] = {RGB(40, 40, 160), RGB(0, 130, 60), RGB(0, 130, 60), RGB(170, 90, 0),
                             RGB(150, 0, 60)};
  const HDC memory = CreateCompatibleDC(nullptr);
  const HBITMAP strip = CreateBitmap(kSide * 5, kSide, 1, 32, nullptr);
  const HGDIOBJ former = SelectObject(memory, strip);
  for (int i = 0; i < 5; ++i) {
    const RECT cell = {i * kSide, 0, (i + 1) * kSide, kSide};
    const RECT square = {cell.left + 3, 3, cell.right - 3, kSide - 3};
    for (const auto& [rect, color] : {std::pair(cell, RGB(255, 0, 255)), std::pair(square, colors[i])}) {
      const HBRUSH brush = CreateSolidBrush(color);
      FillRect(memory, &rect, brush);
      DeleteObject(brush);
    }
  }
  SelectObject(memory, former);
  DeleteDC(memory);
  return strip;
}

}  // namespace

Frame* Frame::Show(int width, int height) {
  RegisterStrings();
  auto* frame = new Frame;  // NOLINT: ends with its window
  frame->Create(nullptr, "Visore", WS_OVERLAPPEDWINDOW, CRect(50, 50, 50 + width, 50 + height));
  frame->ShowWindow(SW_SHOW);
  platform::testing::PumpUntilIdle();
  for (LONG count = 0; AfxGetThread()->OnIdle(count) != 0;) ++count;
  platform::testing::PumpUntilIdle();
  return frame;
}

int Frame::OnCreate(LPCREATESTRUCT cs) {
  if (CFrameWnd::OnCreate(cs) == -1) return -1;
  MakeToolbar();
  MakeStatusBar();
  toolbar.EnableDocking(CBRS_ALIGN_ANY);
  EnableDocking(CBRS_ALIGN_ANY);
  DockControlBar(&toolbar);
  return 0;
}

void Frame::MakeToolbar() {
  toolbar.CreateEx(this, TBSTYLE_FLAT, kToolbarStyle, CRect(0, 0, 0, 0), AFX_IDW_TOOLBAR);
  toolbar.SetSizes(CSize(23, 23), CSize(16, 16));
  const UINT ids[] = {kPrint, 0, kDrag, kPrevious, 0, kNext, 0, 0, kThumbnails};
  toolbar.SetButtons(ids, 9);
  images.Create(16, 16, ILC_COLOR24 | ILC_MASK, 9, 1);
  const HBITMAP strip = MakeStrip();
  ImageList_AddMasked(images, strip, RGB(255, 0, 255));
  DeleteObject(strip);
  toolbar.SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.m_hImageList));
  const struct {
    int index;
    UINT id;
    int width;
    CWnd& window;
  } controls[] = {{kPageGap, kPageControl, 40, page}, {kScaleGap, kScaleControl, 50, scale}};
  for (const auto& [index, id, controlWidth, window] : controls) {
    toolbar.SetButtonInfo(index, id, TBBS_SEPARATOR, controlWidth);
    CRect place;
    toolbar.GetItemRect(index, place);
    place.top = 2;
    place.bottom = 25;
    window.Create(AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW)), nullptr,
                  WS_CHILD | WS_VISIBLE | WS_BORDER, place, &toolbar, id);
  }
}

void Frame::MakeStatusBar() {
  status.Create(this, kStatusBarStyle, AFX_IDW_STATUS_BAR);
  const UINT panes[] = {ID_SEPARATOR, kZoomPane, kPagePane};
  status.SetIndicators(panes, 3);
  const HDC dc = ::GetDC(status.m_hWnd);
  for (int i = 1; i < 3; ++i) {
    CString ruler;
    ruler.LoadString(i == 1 ? 30038 : 30039);
    SIZE size = {};
    GetTextExtentPoint32A(dc, ruler, ruler.GetLength(), &size);
    status.SetPaneInfo(i, panes[i], SBPS_DISABLED, size.cx);
  }
  ::ReleaseDC(status.m_hWnd, dc);
}

BOOL Frame::OnCreateClient(LPCREATESTRUCT, CCreateContext* context) {
  return splitter.CreateStatic(this, 1, 2) != 0 &&
         splitter.CreateView(0, 0, RUNTIME_CLASS(Pane), CSize(140, 0), context) != 0 &&
         splitter.CreateView(0, 1, RUNTIME_CLASS(Pane), CSize(140, 0), context) != 0;
}

void Frame::OnUpdateNext(CCmdUI* item) {
  item->Enable(hasPage);
}

void Frame::OnUpdateDrag(CCmdUI* item) {
  item->Enable();
  item->SetRadio(mode == 1);
}

}  // namespace bars_test
