#pragma once

#include <cstdlib>
#include <string>
#include <vector>

#include "docview/zp_mdi_child.h"
#include "docview/zp_mdi_frame.h"
#include "docview/zp_sdi_frame.h"
#include "docview/zp_thumbs_view.h"
#include "library/report_error.h"
#include "library/resource_ids.h"
#include "library/tessarel_ext.h"
#include "platform/framework/app.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/doc_template.h"
#include "tessarel12_testing.h"
#include "tests/docview/page_fixture.h"
#include "tests/frames/broken_pages.h"

/// A fresh user who may open files, and the two kinds of shell, as a host makes them.
class ShellTest : public PageTest {
 protected:
  void SetUp() override {
    PageTest::SetUp();
    ::setenv("XDG_CONFIG_HOME", Folder().c_str(), 1);
    EnableFilesOpening(TRUE);
  }
  void TearDown() override {
    m_app.m_pMainWnd = nullptr;  // or its end would end the program's loop
    for (CFrameWnd* main : m_mains) main->DestroyWindow();
    platform::testing::SetFileDialogAnswer(nullptr);
    g_pfnReportError = nullptr;
    PageTest::TearDown();
  }

  template <class Main>
  Main* MakeMain() {
    auto* main = new Main;
    m_mains.push_back(main);
    m_app.m_pMainWnd = main;
    EXPECT_TRUE(main->LoadFrame(IDR_ZP_HOST));
    Place(main);
    return main;
  }
  /// A single-document shell with an empty document.
  CZPsdiFrame* MakeSdi() {
    Offer(m_single, RUNTIME_CLASS(CZPsdiFrame));
    m_template->OpenDocumentFile(nullptr);
    auto* frame = dynamic_cast<CZPsdiFrame*>(m_app.m_pMainWnd);
    m_mains.push_back(frame);
    Place(frame);
    return frame;
  }
  CZPmdiFrame* MakeMdi() {
    Offer(m_multi, RUNTIME_CLASS(CZPmdiChild));
    return MakeMain<CZPmdiFrame>();
  }
  CZPDoc* Open(const std::string& path) {
    auto* document = static_cast<CZPDoc*>(m_template->OpenDocumentFile(path.c_str()));
    Settle();
    return document;
  }
  CZPDoc* OpenPages(int pages, int broken = 0) { return Open(PagesFile(pages, broken)); }
  /// Grey pages of 120 by 80; the one numbered broken, from 1, can't be decoded.
  std::string PagesFile(int pages, int broken = 0) {
    const std::string path = File(std::vector<Page>(static_cast<std::size_t>(pages), Page{120, 80, 8}));
    if (broken > 0) test_pages::BreakPage(path, broken);
    return path;
  }
  std::string TextFile() {
    const std::string path = (Folder() / "text.tif").string();
    std::ofstream(path) << "no picture at all";
    return path;
  }

  /// Lets the queue run empty, and the idle work be done.
  void Settle() {
    platform::testing::PumpUntilIdle();
    CFrameWnd* const main = m_mains.back();
    main->SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0);
    main->OnIdleUpdateCmdUI();
    platform::testing::PumpUntilIdle();
  }
  void Command(UINT id) {
    m_mains.back()->SendMessage(WM_COMMAND, id);
    Settle();
  }
  /// "+" enabled, "-" grey, then "x" if checked.
  std::string State(UINT id) {
    CCmdUI state;
    state.m_nID = id;
    state.DoUpdate(m_mains.back(), TRUE);
    return std::string(state.m_bEnabled != FALSE ? "+" : "-") + (state.m_nCheck != 0 ? "x" : "");
  }
  static std::string Text(const CWnd& window) {
    return static_cast<const char*>(::GetWindowText(window.m_hWnd));
  }
  /// What the bars show: page combo | scale combo | zoom pane | page pane. A disabled combo is in brackets, a
  /// blank pane is empty.
  template <class Main>
  std::string Bars(Main* main) {
    const auto combo = [](CComboBox& box) {
      return box.IsWindowEnabled() != FALSE ? Text(box) : "(" + Text(box) + ")";
    };
    const auto pane = [main](UINT id) {
      const int index = main->m_wndStatusBar.CommandToIndex(id);
      const bool blank = (main->m_wndStatusBar.GetPaneStyle(index) & SBPS_DISABLED) != 0;
      return std::string(blank ? "" : static_cast<const char*>(main->m_wndStatusBar.GetPaneText(index)));
    };
    return combo(main->m_wndComboPage) + "|" + combo(main->m_wndComboScale) + "|" +
           pane(ID_ZP_INDICATOR_ZOOM) + "|" + pane(ID_ZP_INDICATOR_PAGE);
  }
  void Type(CComboBox& combo, const char* text, int lastKey) {
    combo.SetFocus();
    combo.SetEditSel(0, -1);
    platform::testing::TypeText(combo.m_hWnd, text);
    Settle();
    if (lastKey != 0) platform::testing::PressKey(combo.m_hWnd, lastKey);
    Settle();
  }

  CWinApp m_app{"Prova"};  ///< with the templates of one test only
  CDocTemplate* m_template = nullptr;
  CComboBox* m_combo = nullptr;  ///< of pages
  std::vector<CFrameWnd*> m_mains;

 private:
  template <class Template>
  void Offer(Template*& kind, CRuntimeClass* frame) {
    if (kind == nullptr) {
      kind = new Template(IDR_ZP_HOST, RUNTIME_CLASS(CZPDoc), frame, RUNTIME_CLASS(CZPView));
      m_app.AddDocTemplate(kind);
    }
    m_template = kind;
  }
  static void Place(CFrameWnd* frame) {
    frame->SetWindowPos(nullptr, 0, 0, 900, 700, SWP_NOZORDER);
    frame->ShowWindow(SW_SHOW);
  }

  CSingleDocTemplate* m_single = nullptr;
  CMultiDocTemplate* m_multi = nullptr;
};
