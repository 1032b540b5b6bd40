#include "tests/soak/levels.h"

#include "docview/zp_mdi_child.h"
#include "docview/zp_mdi_frame.h"
#include "docview/zp_sdi_frame.h"
#include "docview/zp_view.h"
#include "frames/image_frame.h"
#include "imagewindow/image_window.h"
#include "library/resource_ids.h"
#include "library/tessarel_ext.h"
#include "platform/framework/app.h"
#include "platform/framework/doc_template.h"

CWinApp g_app("Soak");

namespace soak {
namespace {

std::string TextOf(HWND window) {
  return static_cast<const char*>(::GetWindowText(window));
}

std::string PaneOf(CStatusBar& bar, UINT id) {
  const int index = bar.CommandToIndex(id);
  if ((bar.GetPaneStyle(index) & SBPS_DISABLED) != 0) return "";
  return static_cast<const char*>(bar.GetPaneText(index));
}

/// Of a window with a page: scale within its limits, scroll positions within theirs.
template <typename Window>
std::string BrokenPage(const Window& window) {
  const int percent = window.GetScalePercent();
  if (percent < 1 || percent > 1000) return "scale of " + std::to_string(percent) + " %";
  for (const int bar : {SB_HORZ, SB_VERT}) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_ALL;
    if (::GetScrollInfo(window.m_hWnd, bar, &info) == FALSE) continue;
    const int last = std::max(info.nMax - std::max(static_cast<int>(info.nPage) - 1, 0), info.nMin);
    if (info.nPos < info.nMin || info.nPos > last)
      return "scroll position " + std::to_string(info.nPos) + " of " + std::to_string(info.nMin) + " to " +
             std::to_string(last);
  }
  return "";
}

/// What the combos and panes of a viewer say of the page that it shows.
std::string BrokenBars(int page, int pages, int percent, CComboBox& pageCombo, CComboBox& scaleCombo,
                       CStatusBar& status) {
  const std::string zoom = PaneOf(status, ID_ZP_INDICATOR_ZOOM);
  const std::string place = PaneOf(status, ID_ZP_INDICATOR_PAGE);
  // A first page that can't be decoded leaves nothing open, though the window has its number.
  if (page < 1 || place.empty())
    return place.empty() && zoom.empty() && pageCombo.GetCount() == 0
               ? ""
               : "bars of nothing: '" + place + "', '" + zoom + "'";
  if (page > pages) return "page " + std::to_string(page) + " of " + std::to_string(pages);
  if (pageCombo.GetCount() != (pages > 1 ? pages : 0))
    return std::to_string(pageCombo.GetCount()) + " pages in the combo";
  if (place.find(std::to_string(page)) == std::string::npos ||
      place.find(std::to_string(pages)) == std::string::npos)
    return "page pane '" + place + "' at page " + std::to_string(page) + " of " + std::to_string(pages);
  const std::string scale = std::to_string(percent);
  if (zoom.find(scale) == std::string::npos) return "zoom pane '" + zoom + "' at " + scale + " %";
  const bool typing = ::GetFocus() != nullptr && ::GetParent(::GetFocus()) == scaleCombo.m_hWnd;
  if (!typing && ::GetFocus() != scaleCombo.m_hWnd &&
      TextOf(scaleCombo.m_hWnd).find(scale) == std::string::npos)
    return "scale combo '" + TextOf(scaleCombo.m_hWnd) + "' at " + scale + " %";
  return "";
}

class PageWindow final : public Level {
 public:
  PageWindow() {
    m_frame = new CFrameWnd;  // ends with its window
    m_frame->Create(nullptr, "soak", WS_OVERLAPPEDWINDOW, CRect(0, 0, 700, 500));
    m_frame->ShowWindow(SW_SHOW);
    m_handle = m_frame->m_hWnd;
    Make();
  }
  ~PageWindow() override {
    m_window.reset();
    if (::IsWindow(m_handle) != FALSE) m_frame->DestroyWindow();
  }
  const char* Name() const override { return "page window"; }
  HWND Main() const override { return ::IsWindow(m_handle) != FALSE ? m_handle : nullptr; }
  HWND Page() const override { return m_window->m_hWnd; }
  void Open(const std::string& path) override {
    if (m_window->OpenImageFile(path.c_str()) != FALSE) m_window->LoadPage(1);
  }
  void Close() override { Make(); }
  std::string Broken() const override { return m_window->m_hWnd == nullptr ? "" : BrokenPage(*m_window); }

 private:
  void Make() {
    m_window = std::make_unique<CImageWindow>();
    m_window->Create(nullptr, "", WS_CHILD | WS_VISIBLE | WS_BORDER, CRect(0, 0, 600, 400), m_frame, 1);
  }
  CFrameWnd* m_frame;
  HWND m_handle;
  std::unique_ptr<CImageWindow> m_window;
};

class Frame final : public CImageFrame {
 public:
  CStatusBar& Status() { return m_wndStatusBar; }
};

class Viewer final : public Level {
 public:
  Viewer() { Make(); }
  ~Viewer() override {
    if (Main() != nullptr) ::DestroyWindow(m_handle);
  }
  const char* Name() const override { return "viewer"; }
  HWND Main() const override { return ::IsWindow(m_handle) != FALSE ? m_handle : nullptr; }
  HWND Page() const override { return Main() != nullptr ? m_frame->m_pImageWnd->m_hWnd : nullptr; }
  void Open(const std::string& path) override { m_frame->OpenImageFile(path.c_str()); }
  void Close() override {
    ::SendMessage(m_handle, WM_CLOSE, 0, 0);
    if (Main() == nullptr) Make();
  }
  std::string Broken() const override {
    const CImageWindow& window = *m_frame->m_pImageWnd;
    const std::string page = BrokenPage(window);
    if (!page.empty()) return page;
    // At a page that can't be decoded the bars tell of the one before.
    if (window.GetCurrPage() > 0 && (window.GetShownBitmap().Flags & leadtools12::kAllocated) == 0) return "";
    m_frame->OnIdleUpdateCmdUI();
    return BrokenBars(window.GetCurrPage(), window.GetMaxPage(), window.GetScalePercent(),
                      m_frame->m_wndComboPage, m_frame->m_wndComboScale, m_frame->Status());
  }

 private:
  void Make() {
    m_frame = new Frame;  // ends with its window
    m_frame->LoadFrame(IDR_ZP_VIEWER, DWORD{WS_OVERLAPPEDWINDOW} | FWS_ADDTOTITLE, nullptr, nullptr);
    m_frame->ShowWindow(SW_SHOW);
    m_handle = m_frame->m_hWnd;
  }
  Frame* m_frame = nullptr;
  HWND m_handle = nullptr;
};

template <typename Template>
class Shell : public Level {
 public:
  ~Shell() override {
    g_app.m_pMainWnd = nullptr;  // or its end would end the program's loop
    if (Shell::Main() != nullptr) ::DestroyWindow(m_handle);
  }
  HWND Main() const override { return ::IsWindow(m_handle) != FALSE ? m_handle : nullptr; }
  HWND Page() const override {
    const CZPView* const view = View();
    return view != nullptr ? view->m_hWnd : nullptr;
  }
  void Open(const std::string& path) override { Kind().OpenDocumentFile(path.c_str()); }
  std::string Broken() const override {
    const CZPView* const view = View();
    return view != nullptr ? BrokenPage(*view) : "";
  }

 protected:
  static Template& Add(CRuntimeClass* child) {
    auto* made = new Template(IDR_ZP_HOST, RUNTIME_CLASS(CZPDoc), child, RUNTIME_CLASS(CZPView));
    g_app.AddDocTemplate(made);
    return *made;
  }
  virtual Template& Kind() = 0;
  void Take(CFrameWnd* main) {
    m_main = main;
    m_handle = main->m_hWnd;
    main->SetWindowPos(nullptr, 0, 0, 800, 600, SWP_NOZORDER);
    main->ShowWindow(SW_SHOW);
  }
  virtual CFrameWnd* Active() const = 0;
  CZPView* View() const {
    CFrameWnd* const frame = Shell::Main() != nullptr ? Active() : nullptr;
    return frame != nullptr ? dynamic_cast<CZPView*>(frame->GetActiveView()) : nullptr;
  }
  CFrameWnd* m_main = nullptr;

 private:
  HWND m_handle = nullptr;
};

class SingleShell final : public Shell<CSingleDocTemplate> {
 public:
  SingleShell() {
    SingleShell::Kind().OpenDocumentFile(nullptr);
    Take(dynamic_cast<CFrameWnd*>(g_app.m_pMainWnd));
  }
  const char* Name() const override { return "document shell"; }
  void Close() override { Kind().OpenDocumentFile(nullptr); }

 private:
  CSingleDocTemplate& Kind() override {
    static CSingleDocTemplate& kind = Add(RUNTIME_CLASS(CZPsdiFrame));
    return kind;
  }
  CFrameWnd* Active() const override { return m_main; }
};

class MultiShell final : public Shell<CMultiDocTemplate> {
 public:
  MultiShell() {
    auto* main = new CZPmdiFrame;  // ends with its window
    g_app.m_pMainWnd = main;
    main->LoadFrame(IDR_ZP_HOST);
    Take(main);
  }
  const char* Name() const override { return "document shell for several"; }
  void Close() override {
    if (CFrameWnd* const child = Active(); child != nullptr && child != m_main) child->SendMessage(WM_CLOSE);
  }

 private:
  CMultiDocTemplate& Kind() override {
    static CMultiDocTemplate& kind = Add(RUNTIME_CLASS(CZPmdiChild));
    return kind;
  }
  CFrameWnd* Active() const override { return m_main->GetActiveFrame(); }
};

}  // namespace

std::unique_ptr<Level> MakeLevel(int number) {
  EnableFilesOpening(TRUE);
  if (number == 0) return std::make_unique<PageWindow>();
  if (number == 1) return std::make_unique<Viewer>();
  if (number == 2) return std::make_unique<SingleShell>();
  return std::make_unique<MultiShell>();
}

}  // namespace soak
