// The single-document shell: what its bars and commands do as the document changes.

#include "imagewindow/image_window.h"
#include "platform/framework/dialog.h"
#include "tests/docview/shell_fixture.h"

namespace {

class SdiShell : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    frame = MakeSdi();
    ASSERT_NE(frame, nullptr);
    Settle();
  }
  std::string Bars() { return ShellTest::Bars(frame); }
  CZPsdiFrame* frame = nullptr;
};

struct StateRow {
  UINT id;
  const char* states;  // nothing open, one page, first, middle and last of three, one that can't be decoded
};
constexpr StateRow kStates[] = {
    {ID_FILE_PRINT, "- + + + + +"},           {ID_ZP_PAGE_PRINT, "- + + + + -"},
    {ID_ZP_PAGE_PROPERTIES, "- + + + + -"},   {ID_ZP_ROTATE_LEFT, "- + + + + -"},
    {ID_ZP_ROTATE_RIGHT, "- + + + + -"},      {ID_ZP_ROTATE_180, "- + + + + -"},
    {ID_ZP_FILE_EXPORT, "- + + + + +"},       {ID_ZP_FIRST_PAGE, "- - - + + +"},
    {ID_ZP_PREV_PAGE, "- - - + + +"},         {ID_ZP_LAST_PAGE, "- - + + - +"},
    {ID_ZP_NEXT_PAGE, "- - + + - +"},         {ID_ZP_GOTO_PAGE, "- - + + + +"},
    {ID_ZP_VIEW_THUMBNAILS, "+ + + + + +"},   {ID_ZP_DRAG_MODE, "- +x +x +x +x +"},
    {ID_ZP_ZOOM_IN_MODE, "- + + + + -"},      {ID_ZP_ZOOM_OUT_MODE, "- + + + + -"},
    {ID_ZP_ZOOM_BEST_FIT, "- + + + + -"},     {ID_ZP_ZOOM_FIT_TO_HEIGHT, "- + + + + -"},
    {ID_ZP_ZOOM_FIT_TO_WIDTH, "- + + + + -"}, {ID_ZP_ZOOM_CUSTOM, "- + + + + -"},
    {ID_ZP_ZOOM_SELECTED, "- + + + + -"},     {ID_ZP_ZOOM_IN, "- + + + + -"},
    {ID_ZP_ZOOM_OUT, "- + + + + -"},          {ID_FILE_OPEN, "+ + + + + +"},
};

TEST_F(SdiShell, CommandsAreEnabledByWhatIsOpen) {
  std::vector<std::string> seen(std::size(kStates));
  const auto note = [&] {
    for (std::size_t i = 0; i < seen.size(); ++i)
      seen[i] += (seen[i].empty() ? "" : " ") + State(kStates[i].id);
  };
  note();
  OpenPages(1);
  note();
  CZPDoc* document = OpenPages(3);
  for (int page = 0; page < 3; ++page) {
    document->SetActivePage(page);
    frame->UpdateFrame();
    note();
  }
  OpenPages(3, 2)->SetActivePage(1);
  frame->UpdateFrame();
  note();
  for (std::size_t i = 0; i < seen.size(); ++i) EXPECT_EQ(seen[i], kStates[i].states) << kStates[i].id;

  EnableFilesOpening(FALSE);
  EXPECT_EQ(State(ID_ZP_FILE_EXPORT), "-");
  EXPECT_EQ(State(ID_FILE_OPEN), "-");
}

TEST_F(SdiShell, TheBarsFollowTheDocument) {
  EXPECT_EQ(Bars(), "()|()||");
  OpenPages(1);
  EXPECT_EQ(Bars(), "()|100%|Zoom 1:100|Pagina 1 of 1");
  EXPECT_EQ(Text(frame->m_wndStatusBar), "Pronto");
  OpenPages(3, 2);
  EXPECT_EQ(Bars(), "1|100%|Zoom 1:100|Pagina 1 of 3");
  Command(ID_ZP_ZOOM_IN_MODE);
  Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Bars(), "2|(100%)||Pagina 2 of 3");
  EXPECT_EQ(frame->m_pView->GetMouseMode(), ViewMouseNone);
  Command(ID_ZP_LAST_PAGE);
  EXPECT_EQ(Bars(), "3|100%|Zoom 1:100|Pagina 3 of 3");
  EXPECT_EQ(frame->m_pView->GetMouseMode(), ViewMouseDrag);
  // A mode that the user chose outlasts pages that can be shown.
  OpenPages(3);
  Command(ID_ZP_ZOOM_OUT_MODE);
  Command(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(frame->m_pView->GetMouseMode(), ViewMouseZoomOut);
  Command(ID_ZP_PREV_PAGE);
  Command(ID_ZP_PREV_PAGE);
  EXPECT_EQ(frame->m_pDoc->GetActivePageNum(), 0);
}

TEST_F(SdiShell, AFileThatCantBeOpenedIsToldOnceAndEmptiesTheFrame) {
  OpenPages(3);
  EXPECT_EQ(Open(TextFile()), nullptr);
  ASSERT_EQ(Boxes().size(), 1U);
  EXPECT_EQ(Boxes()[0].rfind("Error ZP", 0), 0U) << Boxes()[0];
  EXPECT_EQ(Bars(), "()|()||");
  EXPECT_EQ(Text(*frame).find(".tif"), std::string::npos) << Text(*frame);
  EXPECT_EQ(frame->m_pDoc->GetPagesNum(), 0);
  EXPECT_EQ(LEADTOOLS::ImgListGetItemCount(frame->m_pThumbsView->m_hWnd), 0U);
  OpenPages(2);
  EXPECT_EQ(Bars(), "1|100%|Zoom 1:100|Pagina 1 of 2");
}

/// A host's main window whose toolbar has no combos.
class PlainSdiFrame : public CZPsdiFrame {
  DECLARE_DYNCREATE(PlainSdiFrame)
 private:
  int CreateToolBar() override { return 1; }
};
IMPLEMENT_DYNCREATE(PlainSdiFrame, CZPsdiFrame)

TEST_F(SdiShell, WithoutCombosThePanesAndTheSavedScaleRemain) {
  static CSingleDocTemplate kind(IDR_ZP_HOST, RUNTIME_CLASS(CZPDoc), RUNTIME_CLASS(PlainSdiFrame),
                                 RUNTIME_CLASS(CZPView));
  auto* const document = static_cast<CZPDoc*>(kind.OpenDocumentFile(PagesFile(3).c_str()));
  POSITION first = document->GetFirstViewPosition();
  auto* const plain = static_cast<CZPsdiFrame*>(document->GetNextView(first)->GetParentFrame());
  m_mains.push_back(plain);
  const auto pane = [plain](UINT id) {
    return std::string(plain->m_wndStatusBar.GetPaneText(plain->m_wndStatusBar.CommandToIndex(id)));
  };
  Command(ID_ZP_LAST_PAGE);
  Command(ID_ZP_ZOOM_IN);
  EXPECT_EQ(pane(ID_ZP_INDICATOR_PAGE), "Pagina 3 of 3");
  EXPECT_EQ(pane(ID_ZP_INDICATOR_ZOOM), "Zoom 1:200");
  EXPECT_EQ(Text(plain->m_wndStatusBar), "Pronto");
  platform::testing::AdvanceTimers(1000);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(CImageWindow().GetScalePercent(), 200);
}

TEST_F(SdiShell, OpenAsksForAFileOnlyWhereThatIsAllowed) {
  static std::string path;
  static int asked;
  path = PagesFile(2);
  asked = 0;
  platform::testing::SetFileDialogAnswer([](platform::FileDialogRequest& request) {
    ++asked;
    EXPECT_EQ(request.filters.size(), 5U);
    if (path.empty()) return false;
    request.path = path;
    return true;
  });
  Command(ID_FILE_OPEN);
  EXPECT_EQ(frame->m_pDoc->GetPagesNum(), 2);
  EXPECT_EQ(static_cast<const char*>(frame->m_pDoc->GetPathName()), path);
  path.clear();  // given up
  Command(ID_FILE_OPEN);
  EXPECT_EQ(frame->m_pDoc->GetPagesNum(), 2);
  EnableFilesOpening(FALSE);
  Command(ID_FILE_OPEN);
  EXPECT_EQ(asked, 2);
}

TEST_F(SdiShell, ScalesComeFromTheComboTheDialogAndTheFitCommands) {
  OpenPages(3);
  frame->m_wndComboScale.SetCurSel(frame->m_wndComboScale.GetCount() - 2);
  frame->SendMessage(WM_COMMAND, MAKEWPARAM(ID_ZP_COMBO_SCALE, CBN_SELENDOK),
                     reinterpret_cast<LPARAM>(frame->m_wndComboScale.m_hWnd));
  EXPECT_EQ(frame->m_pView->GetScalePercent(), 800);
  struct {
    const char* typed;
    int percent;
  } const cases[] = {{"1000%", 1000}, {"50", 50}, {"0", 50}, {"1001%", 50}, {"%", 50}};
  for (const auto& row : cases) {
    Type(frame->m_wndComboScale, row.typed, VK_RETURN);
    EXPECT_EQ(frame->m_pView->GetScalePercent(), row.percent) << row.typed;
    EXPECT_EQ(Text(frame->m_wndComboScale), std::to_string(row.percent) + "%") << row.typed;
  }
  Type(frame->m_wndComboScale, "77", 0);
  frame->m_pView->SetFocus();
  EXPECT_EQ(Text(frame->m_wndComboScale), "50%");

  Command(ID_ZP_ZOOM_BEST_FIT);
  const int fitted = frame->m_pView->GetScalePercent();
  EXPECT_EQ(State(ID_ZP_ZOOM_BEST_FIT), "+x");
  Command(ID_ZP_ZOOM_BEST_FIT);
  EXPECT_EQ(State(ID_ZP_ZOOM_BEST_FIT), "+");
  EXPECT_EQ(frame->m_pView->GetScalePercent(), fitted);
  Command(ID_ZP_ZOOM_FIT_TO_WIDTH);
  EXPECT_EQ(State(ID_ZP_ZOOM_FIT_TO_WIDTH), "+x");
  frame->SetWindowPos(nullptr, 0, 0, 500, 400, SWP_NOZORDER);
  Settle();
  EXPECT_LT(frame->m_pView->GetScalePercent(), fitted);
  EXPECT_EQ(Text(frame->m_wndComboScale), std::to_string(frame->m_pView->GetScalePercent()) + "%");
  Command(ID_ZP_ZOOM_IN);
  EXPECT_EQ(State(ID_ZP_ZOOM_FIT_TO_WIDTH), "+");
}

TEST_F(SdiShell, PagesComeFromTheComboTheDialogAndTheStrip) {
  OpenPages(12);
  Type(frame->m_wndComboPage, "7", VK_RETURN);
  EXPECT_EQ(frame->m_pDoc->GetActivePageNum(), 6);
  Type(frame->m_wndComboPage, "13", VK_RETURN);
  EXPECT_EQ(Boxes().size(), 1U);
  frame->m_pView->SetFocus();
  EXPECT_EQ(Bars().substr(0, 2), "7|");
  platform::testing::OnNextDialog(
      [](HWND dialog) { static_cast<CDialog*>(CWnd::FromHandlePermanent(dialog))->EndDialog(12); });
  Command(ID_ZP_GOTO_PAGE);
  EXPECT_EQ(Bars(), "12|100%|Zoom 1:100|Pagina 12 of 12");

  // The strip follows, and is heard while it is shown.
  Command(ID_ZP_VIEW_THUMBNAILS);
  EXPECT_EQ(State(ID_ZP_VIEW_THUMBNAILS), "+x");
  _LILITEM item{};
  item.uStructSize = sizeof item;
  item.uMask = 8;
  LEADTOOLS::ImgListGetItem(frame->m_pThumbsView->m_hWnd, 11, &item);
  EXPECT_NE(item.bSelected, 0);
  frame->m_pThumbsView->SetFocus();
  platform::testing::PressKey(frame->m_pThumbsView->m_hWnd, VK_HOME);
  Settle();
  EXPECT_EQ(Bars(), "1|100%|Zoom 1:100|Pagina 1 of 12");
  const int word[] = {0, 0, 4};
  frame->SendMessage(WM_COMMAND, MAKEWPARAM(frame->m_pSplitter->IdFromRowCol(0, 0), 1024),
                     reinterpret_cast<LPARAM>(word));
  EXPECT_EQ(frame->m_pDoc->GetActivePageNum(), 4);
}

TEST_F(SdiShell, ARunOfZoomStepsIsSavedOnce) {
  OpenPages(1);
  platform::testing::AdvanceTimers(1000);
  platform::testing::PumpUntilIdle();
  for (int i = 0; i < 3; ++i) Command(ID_ZP_ZOOM_IN);
  EXPECT_EQ(CImageWindow().GetScalePercent(), 100);
  platform::testing::AdvanceTimers(1000);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(CImageWindow().GetScalePercent(), 400);
  frame->m_pView->ZoomIn();  // by the host, which doesn't tell the frame
  platform::testing::AdvanceTimers(5000);
  platform::testing::PumpUntilIdle();
  EXPECT_EQ(CImageWindow().GetScalePercent(), 400);
}

TEST_F(SdiShell, RotationTurnsPageAndThumbnail) {
  CZPDoc* document = OpenPages(2);
  Command(ID_ZP_VIEW_THUMBNAILS);
  const auto height = [this] {
    _LILITEM item{};
    item.uStructSize = sizeof item;
    item.uMask = 1;
    LEADTOOLS::ImgListGetItem(frame->m_pThumbsView->m_hWnd, 0, &item);
    return item.pBitmap == nullptr ? 0 : item.pBitmap->Height;
  };
  const int lying = height();
  Command(ID_ZP_ROTATE_RIGHT);
  EXPECT_EQ(document->GetHBitmap(0)->Width, 80);
  EXPECT_GT(height(), lying);
  Command(ID_ZP_ROTATE_LEFT);
  Command(ID_ZP_ROTATE_180);
  EXPECT_EQ(document->GetHBitmap(0)->Width, 120);
  EXPECT_EQ(height(), lying);
}

TEST_F(SdiShell, FailuresWithoutATextGetOne) {
  CZPsdiFrame::ReportErrorDefault(-84, "");
  EXPECT_TRUE(Boxes().empty());
  CZPsdiFrame::ReportErrorDefault(-5, "");
  CZPmdiFrame::ReportErrorDefault(7, "testo");
  EXPECT_EQ(Boxes(),
            (std::vector<std::string>{"Error ZP-005: Dettagli non disponibili", "Error ZP0007: testo"}));
}

}  // namespace
