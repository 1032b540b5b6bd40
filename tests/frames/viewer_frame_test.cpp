// The viewer frame as it opens and loses images: panes, combos, the way of the keyboard.

#include "tests/frames/viewer_fixture.h"

namespace {

constexpr UINT kButtons[] = {ID_FILE_PRINT,
                             0,
                             ID_ZP_DRAG_MODE,
                             ID_ZP_ZOOM_IN_MODE,
                             ID_ZP_ZOOM_OUT_MODE,
                             0,
                             ID_ZP_PREV_PAGE,
                             ID_ZP_COMBO_PAGE,
                             ID_ZP_NEXT_PAGE,
                             0,
                             ID_ZP_ZOOM_OUT,
                             ID_ZP_ZOOM_IN,
                             ID_ZP_COMBO_SCALE,
                             ID_ZP_ZOOM_SELECTED,
                             0,
                             ID_ZP_ZOOM_BEST_FIT,
                             ID_ZP_ZOOM_FIT_TO_WIDTH,
                             ID_ZP_ZOOM_FIT_TO_HEIGHT,
                             0,
                             ID_ZP_ROTATE_LEFT,
                             ID_ZP_ROTATE_RIGHT,
                             ID_ZP_ROTATE_180,
                             0,
                             ID_ZP_VIEW_THUMBNAILS};

TEST_F(ViewerTest, StandsEmptyWithAllItsParts) {
  ExpectNothingOpen("new");
  EXPECT_STREQ(frame->GetRuntimeClass()->m_lpszClassName, "CImageFrame");
  EXPECT_EQ(frame->GetExStyle() & WS_EX_CLIENTEDGE, 0U);
  ASSERT_EQ(frame->m_wndToolBar.GetCount(), static_cast<int>(std::size(kButtons)));
  for (int i = 0; i < frame->m_wndToolBar.GetCount(); ++i)
    EXPECT_EQ(frame->m_wndToolBar.GetItemID(i), kButtons[i]) << i;
  EXPECT_EQ(frame->m_wndToolBar.GetDlgCtrlID(), 59392);
  EXPECT_EQ(frame->m_wndStatusBar.GetDlgCtrlID(), 59393);
  EXPECT_EQ(frame->m_wndSplitter.GetDlgCtrlID(), 59648);
  EXPECT_FALSE(frame->m_pThumbsWnd->IsWindowVisible());
  EXPECT_TRUE(frame->m_pImageWnd->IsWindowVisible());
}

TEST_F(ViewerTest, CombosStandInTheirGaps) {
  for (CComboBox* combo :
       {static_cast<CComboBox*>(&frame->m_wndComboPage), static_cast<CComboBox*>(&frame->m_wndComboScale)}) {
    const bool page = combo == &frame->m_wndComboPage;
    CRect gap;
    frame->m_wndToolBar.GetItemRect(page ? 7 : 12, &gap);
    CRect place;
    combo->GetWindowRect(place);
    frame->m_wndToolBar.ScreenToClient(place);
    EXPECT_EQ(place.left, gap.left);
    EXPECT_EQ(place.Width(), page ? 40 : 50);
    EXPECT_GE(place.top, 2);
    EXPECT_EQ(combo->GetParent(), &frame->m_wndToolBar);
    EXPECT_EQ(reinterpret_cast<HGDIOBJ>(combo->SendMessage(WM_GETFONT)), frame->m_fontCombos.m_hObject);
  }
  std::string scales;
  for (int i = 0; i < frame->m_wndComboScale.GetCount(); ++i) {
    CString text;
    frame->m_wndComboScale.GetLBText(i, text);
    scales += std::string(text) + " ";
  }
  EXPECT_EQ(scales, "25% 50% 75% 100% 200% 400% ");
}

TEST_F(ViewerTest, OpensOnePage) {
  Open(1);
  EXPECT_EQ(PagePane(), "Pagina 1 of 1");
  EXPECT_EQ(ZoomPane(), "Zoom 1:100");
  EXPECT_EQ(MessagePane(), "Pronto");
  EXPECT_EQ(frame->m_wndComboPage.GetCount(), 0);
  EXPECT_EQ(PageText(), "");
  EXPECT_FALSE(frame->m_wndComboPage.IsWindowEnabled());
  EXPECT_TRUE(frame->m_wndComboScale.IsWindowEnabled());
  EXPECT_EQ(ScaleText(), "100%");
  EXPECT_EQ(frame->m_pImageWnd->GetMouseMode(), MouseModeDrag);
  EXPECT_EQ(::GetFocus(), frame->m_pImageWnd->m_hWnd);
}

TEST_F(ViewerTest, OpensManyPagesFromFileAndMemory) {
  const std::string path = WriteFile(12);
  std::vector<char> block = ReadAll(path);
  for (const bool memory : {false, true}) {
    ASSERT_TRUE(memory ? frame->OpenImageMemory(block.data(), block.size())
                       : frame->OpenImageFile(path.c_str()));
    Settle();
    EXPECT_EQ(PagePane(), "Pagina 1 of 12") << memory;
    EXPECT_EQ(frame->m_wndComboPage.GetCount(), 12) << memory;
    EXPECT_EQ(PageText(), "1") << memory;
    CString last;
    frame->m_wndComboPage.GetLBText(11, last);
    EXPECT_STREQ(last, "12") << memory;
    EXPECT_TRUE(frame->m_wndComboPage.IsWindowEnabled()) << memory;
    EXPECT_EQ(frame->m_pThumbsWnd->m_pBitmapList, nullptr) << "hidden: not made yet";
  }
}

TEST_F(ViewerTest, ASecondOpenReplacesEverything) {
  Open(3);
  Command(ID_ZP_LAST_PAGE);
  Command(ID_ZP_ZOOM_IN);
  frame->m_wndComboPage.SetFocus();
  Open(1);
  EXPECT_EQ(PagePane(), "Pagina 1 of 1");
  EXPECT_EQ(PageText(), "");
  EXPECT_EQ(frame->m_wndComboPage.GetCount(), 0);
  EXPECT_EQ(ZoomPane(), "Zoom 1:200") << "the scale stays";
  EXPECT_EQ(ScaleText(), "200%");
  EXPECT_EQ(::GetFocus(), frame->m_pImageWnd->m_hWnd) << "the disabled combo can't have the keyboard";
}

TEST_F(ViewerTest, AFailedOpenLeavesNothing) {
  const std::string text = WriteText("broken.tif");
  const std::string missing = (m_folder / "missing.tif").string();
  for (const auto& path : {text, missing}) {
    for (CWnd* focus :
         {static_cast<CWnd*>(&frame->m_wndComboPage), static_cast<CWnd*>(&frame->m_wndComboScale)}) {
      Open(3);
      focus->SetFocus();
      Boxes::shown.clear();
      EXPECT_FALSE(frame->OpenImageFile(path.c_str()));
      Settle();
      ExpectNothingOpen(path.c_str());
      EXPECT_EQ(Boxes::shown.size(), 1U) << path;
    }
  }
}

TEST_F(ViewerTest, AFirstPageThatCannotBeDecodedLeavesNothing) {
  Open(3);
  Boxes::shown.clear();
  EXPECT_FALSE(frame->OpenImageFile(WriteFile(3, 1).c_str()));
  Settle();
  ExpectNothingOpen("first page");
  EXPECT_EQ(Boxes::shown.size(), 1U);
}

TEST_F(ViewerTest, AReportMayOpenAnotherFile) {
  static std::string other;
  static OpenedUp<CImageFrame>* reporting;
  other = WriteFile(3, 0, "other.tif");
  for (const std::string& path : {WriteText("broken.tif"), WriteFile(2, 1, "first.tif")}) {
    reporting = frame;
    frame->m_pImageWnd->SetReportErrorCallBack([](int, CString) { reporting->OpenImageFile(other.c_str()); });
    EXPECT_FALSE(frame->OpenImageFile(path.c_str())) << path;
    Settle();
    EXPECT_EQ(PagePane(), "Pagina 1 of 3") << path;
    EXPECT_EQ(PageText(), "1") << path;
    EXPECT_TRUE(frame->m_wndComboScale.IsWindowEnabled()) << path;
  }
}

TEST_F(ViewerTest, ADialogGivenUpChangesNothing) {
  Open(2);
  platform::testing::SetFileDialogAnswer([](platform::FileDialogRequest& request) {
    EXPECT_TRUE(request.open);
    EXPECT_EQ(request.filters.size(), 5U);
    if (request.filters.size() == 5) {
      EXPECT_EQ(request.filters[0].text, "All Supported Image Files");
      EXPECT_EQ(request.filters[0].patterns, "*.tif;*.tiff;*.cgm;*.bmp;*.jpg;*.jpeg");
      EXPECT_EQ(request.filters[4].text, "All Files");
    }
    return false;
  });
  EXPECT_TRUE(frame->OpenImageFile(nullptr));
  EXPECT_EQ(PagePane(), "Pagina 1 of 2");
  static std::string chosen;
  chosen = WriteFile(5, 0, "chosen.tif");
  platform::testing::SetFileDialogAnswer([](platform::FileDialogRequest& request) {
    request.path = chosen;
    return true;
  });
  EXPECT_TRUE(frame->OpenImageFile(nullptr));
  platform::testing::SetFileDialogAnswer(nullptr);
  EXPECT_EQ(PagePane(), "Pagina 1 of 5");
}

TEST_F(ViewerTest, TakesDroppedFiles) {
  const std::string path = WriteFile(4);
  const char* dropped = path.c_str();
  ASSERT_TRUE(platform::testing::DropFiles(frame->m_pImageWnd->m_hWnd, {10, 10}, {&dropped, 1}));
  Settle();
  EXPECT_EQ(PagePane(), "Pagina 1 of 4");
  EXPECT_EQ(frame->m_wndComboPage.GetCount(), 4);
  const std::string text = WriteText("broken.tif");
  dropped = text.c_str();
  ASSERT_TRUE(platform::testing::DropFiles(frame->m_pImageWnd->m_hWnd, {10, 10}, {&dropped, 1}));
  Settle();
  ExpectNothingOpen("dropped");
}

TEST_F(ViewerTest, TheKeyboardGoesToTheImage) {
  frame->m_wndToolBar.SetFocus();
  frame->SetFocus();
  EXPECT_EQ(::GetFocus(), frame->m_pImageWnd->m_hWnd);
}

TEST_F(ViewerTest, BearsMessagesAfterItsPanesAreGone) {
  Open(3);
  Command(ID_ZP_VIEW_THUMBNAILS);
  Command(ID_ZP_ZOOM_IN);
  frame->m_bModal = true;  // stays alive, as between the end of the loop and that of the frame
  frame->SendMessage(WM_CLOSE);
  EXPECT_EQ(frame->m_pImageWnd, nullptr);
  EXPECT_EQ(frame->m_pThumbsWnd, nullptr);
  for (UINT id = ID_ZP_ROTATE_LEFT; id <= ID_ZP_VIEW_THUMBNAILS; ++id) {
    if (id == ID_ZP_GOTO_PAGE) platform::testing::OnNextDialog([](HWND dialog) { EndDialog(dialog, 0); });
    frame->SendMessage(WM_COMMAND, id);
  }
  for (const CWnd* combo :
       {static_cast<CWnd*>(&frame->m_wndComboPage), static_cast<CWnd*>(&frame->m_wndComboScale)})
    for (const int code : {CBN_SELENDOK, CBN_KILLFOCUS})
      frame->SendMessage(WM_COMMAND, MAKEWPARAM(combo->GetDlgCtrlID(), code),
                         reinterpret_cast<LPARAM>(combo->m_hWnd));
  leadtools12::_LILPICKED picked{};
  picked.nIndex = 1;
  frame->SendMessage(WM_COMMAND, MAKEWPARAM(59648, 1024), reinterpret_cast<LPARAM>(&picked));
  frame->SendMessage(WM_SETFOCUS);
  frame->SendMessage(WM_CLOSE);
  frame->UpdateZoomStatus();
  EXPECT_FALSE(frame->OpenImageFile("x.tif"));
  platform::testing::AdvanceTimers(1000);
  frame->SetWindowPos(nullptr, 0, 0, 500, 400, SWP_NOZORDER);
  Click(frame->m_wndSplitter, {144, 50});
  Settle();
  frame->m_bModal = false;
}

TEST_F(ViewerTest, ClosesAndEndsItsObject) {
  Open(2);
  const HWND window = frame->m_hWnd;
  ::SendMessage(window, WM_CLOSE);
  frame = nullptr;
  EXPECT_FALSE(::IsWindow(window));
}

}  // namespace
