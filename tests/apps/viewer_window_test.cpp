// The application's windows, worked as a user does.

#include "tests/apps/viewer_window_fixture.h"

namespace {

/// Lines of a menu: "x" checked, "-" grey, "|" a line, sub-menus in brackets. command: of the line wanted.
std::string LinesOf(HMENU menu, const std::string& wanted, int& command) {
  std::string lines;
  for (int i = 0; i < GetMenuItemCount(menu); ++i) {
    const auto at = static_cast<UINT>(i);
    const UINT state = GetMenuState(menu, at, MF_BYPOSITION);
    char text[80] = "|";
    if ((state & MF_SEPARATOR) == 0) GetMenuStringA(menu, at, text, sizeof text, MF_BYPOSITION);
    if (text == wanted) command = static_cast<int>(GetMenuItemID(menu, i));
    lines += (lines.empty() ? "" : " ") + std::string((state & MF_CHECKED) != 0 ? "x" : "") +
             ((state & MF_GRAYED) != 0 ? "-" : "") + text;
    if (const HMENU entries = GetSubMenu(menu, i)) lines += "(" + LinesOf(entries, wanted, command) + ")";
  }
  return lines;
}

TEST_F(ViewerWindow, WhatTheToolbarHasNoRoomForStandsBehindAChevron) {
  Start({Fax("a.tif")});
  static std::string lines;
  static std::string wanted;
  ui::SetMenuAnswer([](HMENU menu, HWND) {
    int command = 0;
    lines = LinesOf(menu, wanted, command);
    return command;
  });
  CToolBar& bar = window->m_wndToolBar;
  Choose(ID_ZP_ZOOM_OUT_MODE);
  const struct {
    int width;
    const char* wanted;
    int combos;  // that are seen
    int percent;
    const char* lines;
  } rows[] = {
      {800, "", 2, 100, ""},
      {460, "", 2, 100, "Ruota a sinistra Ruota a destra Capovolge | Page thumbnails"},
      {330, "50%", 1, 50,
       "Scala(25% 50% 75% x100% 200% 400%) Zoom su selezione | Adatta al meglio Adatta in larghezza Adatta "
       "in altezza | "
       "Ruota a sinistra Ruota a destra Capovolge | Page thumbnails"},
      {120, "3", 0, 50,
       "xModo Zoom Out | -Pagina precedente Pagina(x1 2 3) Prossima pagina | Zoom Out Zoom In "
       "Scala(25% x50% 75% 100% 200% 400%) Zoom su selezione | Adatta al meglio Adatta in larghezza Adatta "
       "in altezza | "
       "Ruota a sinistra Ruota a destra Capovolge | Page thumbnails"},
      {800, "", 2, 50, ""},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.width);
    window->SetWindowPos(nullptr, 0, 0, row.width, 400, SWP_NOZORDER | SWP_NOMOVE);
    Settle();
    lines.clear();
    wanted = row.wanted;
    CRect client;
    bar.GetClientRect(client);
    const CPoint end(client.right - 8, client.Height() / 2);
    ui::PressMouse(bar, end);
    ui::ReleaseMouse(bar, end);
    Settle();
    EXPECT_EQ(lines, row.lines);
    EXPECT_EQ((window->m_wndComboPage.IsWindowVisible() != FALSE) +
                  (window->m_wndComboScale.IsWindowVisible() != FALSE),
              row.combos);
    EXPECT_EQ(Page().GetScalePercent(), row.percent);
  }
  EXPECT_EQ(Pane(ID_ZP_INDICATOR_PAGE), "Pagina 3 of 3");
  // By keys too: End goes to the chevron, which opens like a button.
  window->SetWindowPos(nullptr, 0, 0, 330, 400, SWP_NOZORDER | SWP_NOMOVE);
  bar.SetFocus();
  wanted = "200%";
  Key(VK_END);
  Key(VK_SPACE);
  EXPECT_EQ(Page().GetScalePercent(), 200);
  ui::SetMenuAnswer(nullptr);
}

TEST_F(ViewerWindow, FilesAndPlaceAreRememberedForTheNextStart) {
  Start({Fax("a.tif"), Fax("b.tif")});
  window->SetWindowPos(nullptr, 60, 50, 640, 480, SWP_NOZORDER);
  Settle();
  const auto before = Place();
  app->Windows().back()->DestroyWindow();
  Quit();
  Start({Fax("c&d.tif")});
  EXPECT_EQ(Place(), before);
  const std::string inFaxes = (folder / "faxes/").string();
  EXPECT_EQ(RecentFiles(), (std::vector{inFaxes + "c&d.tif", inFaxes + "b.tif", inFaxes + "a.tif"}));
  window->SendMessage(WM_COMMAND, kFirstRecent + 2);
  EXPECT_EQ(Title(*window), "a.tif - Tessarel");
  fs::remove(inFaxes + "b.tif");
  window->SendMessage(WM_COMMAND, kFirstRecent + 2);
  EXPECT_EQ(told.size(), 1U) << "a file that is gone is told";
  EXPECT_EQ(RecentFiles(), (std::vector{inFaxes + "a.tif", inFaxes + "c&d.tif"})) << "and forgotten";
}

TEST_F(ViewerWindow, OfSeveralDroppedFilesEachGetsAWindow) {
  Start({Fax("a.tif")});
  const std::string b = Fax("b.tif");
  const std::string c = Fax("c.tif");
  const char* const two[] = {b.c_str(), c.c_str()};
  EXPECT_TRUE(ui::DropFiles(Page().m_hWnd, {20, 20}, two));
  Settle();
  ASSERT_EQ(app->Windows().size(), 3U);
  EXPECT_EQ(Title(*window), "a.tif - Tessarel");
  EXPECT_EQ(Title(*app->Windows()[1]), "b.tif - Tessarel");
  EXPECT_EQ(Title(*app->Windows()[2]), "c.tif - Tessarel");
  EXPECT_TRUE(ui::DropFiles(window->m_hWnd, {20, 20}, std::span(two).first(1)));
  Settle();
  EXPECT_EQ(Title(*window), "b.tif - Tessarel") << "one alone comes in the place of what is shown";
  EXPECT_TRUE(told.empty());
}

TEST_F(ViewerWindow, ManyFilesGetTheirWindowsOnceTheUserAgrees) {
  Start({Fax("a.tif")});
  const std::string b = Fax("b.tif");
  const std::vector<const char*> many(21, b.c_str());
  EXPECT_TRUE(app->MayOpen(20));
  EXPECT_TRUE(told.empty());
  for (const int given : {IDNO, IDYES}) {
    answer = given;
    told.clear();
    ui::DropFiles(window->m_hWnd, {20, 20}, many);
    Settle();
    ASSERT_EQ(told.size(), 1U);
    EXPECT_NE(told[0].find("21"), std::string::npos) << told[0];
    EXPECT_EQ(app->Windows().size(), given == IDYES ? 22U : 1U);
  }
}

TEST_F(ViewerWindow, KeysTurnThePageAtItsEnd) {
  Start({Fax("a.tif")});
  window->SetWindowPos(nullptr, 0, 0, 700, 600, SWP_NOZORDER);
  Page().BestFit();
  Settle();
  const struct {
    int key;
    int page;
    bool atFoot;
  } whole[] = {{VK_NEXT, 2, false}, {VK_NEXT, 3, false},  {VK_NEXT, 3, false}, {VK_PRIOR, 2, false},
               {VK_HOME, 1, false}, {VK_PRIOR, 1, false}, {VK_END, 3, false}},
    large[] = {{VK_NEXT, 3, false}, {VK_HOME, 1, false}, {VK_NEXT, 1, false}, {VK_NEXT, 1, false},
               {VK_NEXT, 1, true},  {VK_NEXT, 2, false}, {VK_PRIOR, 1, true}};
  const auto press = [this](const auto& rows, const char* how) {
    for (const auto& row : rows) {
      Key(row.key);
      EXPECT_EQ(Page().GetCurrPage(), row.page) << how << ", row " << &row - rows;
      EXPECT_EQ(Page().m_ptScroll.y > 0 && Page().m_ptScroll.y == Page().m_ptScrollMax.y, row.atFoot)
          << how << ", row " << &row - rows;
    }
  };
  press(whole, "the whole page in view");
  Page().ZoomToScaleFactor(0.7);
  Settle();
  press(large, "three screens a page");
  Choose(kTurnAtEnd);
  Key(VK_NEXT);
  Key(VK_HOME);
  for (int i = 0; i < 6; ++i) Key(VK_NEXT);
  EXPECT_EQ(Page().GetCurrPage(), 1) << "switched off";
  Quit();
  Start({Fax("a.tif")});
  EXPECT_FALSE(Page().TurnsAtEnd());
}

TEST_F(ViewerWindow, AFitStaysOverPagesSizesAndStarts) {
  Start({Fax("a.tif")});
  window->SetWindowPos(nullptr, 0, 0, 600, 600, SWP_NOZORDER);
  Choose(kKeepWidth);
  const int narrow = Page().GetScalePercent();
  EXPECT_LE(Page().m_szScaled.cx, Page().m_szClient.cx);
  EXPECT_GT(Page().m_szScaled.cx, Page().m_szClient.cx - 30);
  window->SetWindowPos(nullptr, 0, 0, 790, 600, SWP_NOZORDER);
  Settle();
  const int wide = Page().GetScalePercent();
  EXPECT_GT(wide, narrow + 10);
  Choose(ID_ZP_ZOOM_IN);
  EXPECT_EQ(Page().GetScalePercent(), 100) << "till the next page, though scroll bars come";
  Choose(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Page().GetScalePercent(), wide) << "the next page is fitted again";
  EXPECT_EQ(static_cast<const char*>(::GetWindowText(window->m_wndComboScale.m_hWnd)),
            std::to_string(wide) + "%");
  Quit();
  Start({Fax("b.tif")});
  EXPECT_EQ(Page().GetScalePercent(), wide);
  Choose(kKeepNoFit);
  Page().ZoomToScaleFactor(1);
  Choose(ID_ZP_NEXT_PAGE);
  EXPECT_EQ(Page().GetScalePercent(), 100);
}

/// What is on the clipboard as a bitmap; freed by the caller.
struct_LEAD_Bitmap Clipboard() {
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::InitBitmap(&bitmap, 0, 0, 1);
  EXPECT_TRUE(OpenClipboard(nullptr));
  const HGLOBAL block = GetClipboardData(CF_DIB);
  if (block != nullptr) {
    const HGLOBAL copy = GlobalAlloc(GMEM_MOVEABLE, GlobalSize(block));
    std::copy_n(static_cast<const char*>(GlobalLock(block)), GlobalSize(block),
                static_cast<char*>(GlobalLock(copy)));
    GlobalUnlock(block);
    GlobalUnlock(copy);
    LEADTOOLS::ChangeFromDIB(&bitmap, copy);
  }
  CloseClipboard();
  return bitmap;
}

TEST_F(ViewerWindow, ThePageOrTheSelectionIsCopiedWithItsResolution) {
  Start({Fax("a.tif")});
  Page().ZoomToScaleFactor(0.5);
  Settle();
  const auto drag = [this](POINT from, POINT to, bool shift) {
    ui::PressMouse(Page().m_hWnd, from, ui::Button::Left, shift);
    ui::MoveMouse(Page().m_hWnd, to, true);
    ui::ReleaseMouse(Page().m_hWnd, to);
    Settle();
  };
  const auto expect = [this](int width, int height, const char* when) {
    Key('C', false, true);
    struct_LEAD_Bitmap copied = Clipboard();
    EXPECT_EQ(std::pair(copied.Width, copied.Height), std::pair(width, height)) << when;
    EXPECT_EQ(std::pair(copied.XResolution, copied.YResolution), std::pair(204, 196)) << when;
    LEADTOOLS::FreeBitmap(&copied);
  };
  expect(1728, 2156, "the whole page, its rows doubled");
  drag({10, 20}, {110, 70}, true);
  EXPECT_EQ(Page().SelectedPart(), CRect(20, 40, 220, 140));
  expect(200, 100, "a selection");
  Choose(ID_ZP_NEXT_PAGE);
  expect(1728, 2156, "of another page nothing is selected");
  Choose(kSelectArea);
  drag({10, 20}, {60, 45}, false);
  expect(100, 50, "by the menu");
  Key(VK_ESCAPE);
  expect(1728, 2156, "taken back");
  EXPECT_TRUE(told.empty());
}

TEST_F(ViewerWindow, TheKeyboardGoesRoundBarCombosStripAndPage) {
  Start({Fax("a.tif")});
  constexpr int kF6 = VK_F1 + 5;
  Choose(ID_ZP_VIEW_THUMBNAILS);
  Page().SetFocus();
  const HWND stops[] = {Page().m_hWnd, window->m_wndToolBar.m_hWnd, window->m_wndComboPage.m_hWnd,
                        window->m_wndComboScale.m_hWnd, window->m_pThumbsWnd->m_hWnd};
  const auto at = [&] {
    const HWND focus = ::GetFocus();
    for (const int i : {0, 2, 3, 4, 1})  // the bar last, as it holds the combos
      if (stops[i] == focus || ::IsChild(stops[i], focus)) return i;
    return -1;
  };
  for (const int key : {kF6, int{VK_TAB}})
    for (const bool back : {false, true})
      for (int step = 1; step <= 5; ++step) {
        Key(key, back);
        EXPECT_EQ(at(), back ? 5 - step : step % 5) << key << ' ' << back;
      }
  Key(VK_TAB);
  Key(VK_END);
  EXPECT_EQ(Page().GetCurrPage(), 1) << "in the bar the key leads to its last button";
  EXPECT_TRUE(window->m_bThumbsVisible);
  Key(VK_SPACE);
  EXPECT_FALSE(window->m_bThumbsVisible);
  Key(VK_ESCAPE);
  EXPECT_EQ(at(), 0) << "back where the keyboard came from";
}

TEST_F(ViewerWindow, TheStatusBarTellsNameResolutionAndDamage) {
  const std::string damaged = Fax("damaged.tif");
  std::fstream file(damaged, std::ios::in | std::ios::out | std::ios::binary);
  file.seekp(8000);
  file << std::string(8000, '\0');  // of 16462 bytes of the first page, with 1078 rows
  file.close();
  Start({Fax("a.tif")});
  EXPECT_EQ(Pane(kNamePane), "a.tif");
  EXPECT_EQ(Pane(kDpiPane), "204 x 98 dpi");
  EXPECT_EQ(Pane(kDamagePane), "");
  ASSERT_TRUE(window->OpenPath(damaged));
  Settle();
  const int rows = Page().GetPageInfo().DamagedRows;
  EXPECT_NEAR(rows, 540, 60);
  EXPECT_EQ(Pane(kDamagePane), std::to_string(rows) + " righe non leggibili");
  EXPECT_EQ(Pane(kNamePane), "damaged.tif");
  ASSERT_TRUE(window->OpenPath(Fax("Una comunicazione dell'università di Forlì, è più lunga.tif")));
  for (const int width : {700, 560, 300}) {
    window->SetWindowPos(nullptr, 0, 0, width, 400, SWP_NOZORDER);
    Settle();
    Settle();
    CRect last;
    window->m_wndStatusBar.GetItemRect(5, last);
    EXPECT_LE(last.right, width) << "the page is told in any width";
    const std::string name = Pane(kNamePane);
    EXPECT_EQ(name.empty(), width == 300) << name;
    EXPECT_TRUE(name.empty() || (name.starts_with("Una") && name.ends_with(".tif"))) << name;
  }
}

// Files that change and come

TEST_F(ViewerWindow, AFileThatChangesIsReadAgainWhereOneIs) {
  const std::string path = Fax("a.tif");
  const std::string shorter = Export(path, "shorter.tif", {{2, 3}});
  Start({path});
  Page().ZoomToScaleFactor(1);
  Choose(ID_ZP_LAST_PAGE);
  Choose(ID_ZP_ROTATE_180);
  Page().GoTo({100, 300});
  const auto look = [this](int times) {
    for (; times > 0; --times) {
      ui::AdvanceTimers(1000);
      Settle();
    }
  };
  look(2);
  EXPECT_NE(Message(), "Il file è cambiato ed è stato riletto");
  fs::copy_file(shorter, path, fs::copy_options::overwrite_existing);
  look(1);
  EXPECT_EQ(Page().GetMaxPage(), 3) << "it may be half written yet";
  look(1);
  EXPECT_EQ(Message(), "Il file è cambiato ed è stato riletto");
  EXPECT_EQ(Page().GetMaxPage(), 2);
  EXPECT_EQ(Page().GetCurrPage(), 2);
  EXPECT_EQ(Page().m_nRotation, 180);
  EXPECT_EQ(Page().GetScalePercent(), 100);
  EXPECT_EQ(std::pair(Page().m_ptScroll.x, Page().m_ptScroll.y), std::pair(LONG{100}, LONG{300}));
  std::ofstream(path) << "no picture any more";
  look(2);
  EXPECT_EQ(Message(), "Il file è cambiato e non è leggibile");
  fs::remove(path);
  look(2);
  EXPECT_EQ(Message(), "Il file non c'è più");
  EXPECT_EQ(Page().GetMaxPage(), 2) << "what was read stays";
  EXPECT_TRUE(told.empty());
}

TEST_F(ViewerWindow, NewFilesOfAFolderAreToldAndOfferedOrOpened) {
  Start({Fax("a.tif")});
  Choose(kWatchFolder);
  const auto look = [this] {
    for (int i = 0; i < 2; ++i) {
      ui::AdvanceTimers(1000);
      Settle();
    }
  };
  std::ofstream(folder / "faxes/notes.txt") << "no image";
  look();
  EXPECT_EQ(app->Windows().size(), 1U);
  answer = IDNO;
  Fax("b.tif");
  look();
  EXPECT_EQ(Message(), "Nuovo file: b.tif");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_EQ(told[0], "Nella cartella è arrivato il file b.tif.\nAprirlo?");
  EXPECT_EQ(app->Windows().size(), 1U);
  answer = IDYES;
  Fax("d.tif");
  Fax("c.tif");
  look();
  ASSERT_EQ(told.size(), 2U);
  EXPECT_EQ(told[1], "Nella cartella sono arrivati 2 nuovi file:\nc.tif\nd.tif\n\nAprirli?");
  ASSERT_EQ(app->Windows().size(), 3U);
  EXPECT_EQ(Title(*app->Windows()[2]), "d.tif - Tessarel");
  Choose(kOpenNewFiles);
  Fax("e.tif");
  look();
  EXPECT_EQ(app->Windows().size(), 4U);
  Choose(kWatchFolder);
  Fax("f.tif");
  look();
  EXPECT_EQ(app->Windows().size(), 4U) << "no longer";
  EXPECT_EQ(told.size(), 2U);
}

// Pages that are written and printed

/// Chooses and types in the dialog of pages, and ends it.
void AnswerPages(int button, const char* pages, int end = IDOK) {
  ui::OnNextDialog([=](HWND dialog) {
    SendMessage(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
    if (pages != nullptr) SetWindowText(GetDlgItem(dialog, IDC_PAGES_EDIT), pages);
    PostMessage(dialog, WM_COMMAND, static_cast<WPARAM>(end));
  });
}

TEST_F(ViewerWindow, ThePagesThatTheDialogNamesAreExported) {
  Start({Fax("a.tif")});
  Choose(ID_ZP_NEXT_PAGE);
  static std::string target;
  ui::SetFileDialogAnswer([](platform::FileDialogRequest& request) {
    request.path = target;
    request.filterIndex = 2;
    return true;
  });
  const struct {
    int button;
    const char* pages;
    const char* target;
    const char* written;
    int count;
  } rows[] = {
      {IDC_PAGES_ALL, nullptr, "all.tif", "all.tif", 3},
      {IDC_PAGES_CURRENT, nullptr, "one.png", "one.png", 1},
      {IDC_PAGES_SOME, "3,1-2,1", "four.tif", "four.tif", 4},
      {IDC_PAGES_SOME, "2-", "two.jpg", "two-3.jpg", 1},
  };
  for (const auto& row : rows) {
    target = (folder / row.target).string();
    AnswerPages(row.button, row.pages);
    Choose(ID_ZP_FILE_EXPORT);
    EXPECT_EQ(PagesOf(folder / row.written), row.count) << row.target << ' ' << Message();
  }
  target = (folder / "kind").string();
  AnswerPages(IDC_PAGES_ALL, nullptr);
  Choose(ID_ZP_FILE_EXPORT);
  EXPECT_TRUE(fs::exists(folder / "kind.pdf")) << "the kind that was chosen completes the name";
  EXPECT_TRUE(told.empty());
  answer = IDNO;
  const std::vector<char> whole = ReadAll((folder / "kind.pdf").string());
  for (const char* name : {"kind", "two.jpg"}) {
    target = (folder / name).string();
    AnswerPages(IDC_PAGES_SOME, "2-");
    Choose(ID_ZP_FILE_EXPORT);
  }
  EXPECT_EQ(told.size(), 2U) << "names that the file dialog hasn't seen are asked about";
  EXPECT_EQ(ReadAll((folder / "kind.pdf").string()), whole);
  told.clear();
  target = (folder / "none/a.tif").string();
  AnswerPages(IDC_PAGES_ALL, nullptr);
  Choose(ID_ZP_FILE_EXPORT);
  EXPECT_EQ(told.size(), 1U) << "a failure is told once";
  told.clear();
  for (const char* wrong : {"", "0", "4", "2-9", "x"}) {
    AnswerPages(IDC_PAGES_SOME, wrong);
    ui::SetMessageBoxAnswer([](const CString& text, UINT) {
      told.push_back(static_cast<const char*>(text));
      PostMessage(GetParent(::GetFocus()), WM_COMMAND, IDCANCEL, 0);
      return static_cast<int>(IDOK);
    });
    target = (folder / "wrong.tif").string();
    Choose(ID_ZP_FILE_EXPORT);
    EXPECT_FALSE(fs::exists(target)) << wrong;
  }
  EXPECT_EQ(told,
            std::vector<std::string>(5, "Indicare le pagine come in 1-3,7. Il file ha le pagine da 1 a 3."));
  ui::SetFileDialogAnswer(nullptr);
}

TEST_F(ViewerWindow, EachRangeOfTheDialogIsAJobOnThePrinterThatIsChosen) {
  fs::create_directories(folder / "jobs");
  platform::TestPrinter printers[2];
  printers[0].name = "Archivio";
  printers[0].folder = (folder / "other").string();
  printers[1].name = "Ufficio";
  printers[1].folder = (folder / "jobs").string();
  printers[1].isDefault = true;
  ui::SetTestPrinters(printers);
  Start({Fax("a.tif")});
  AnswerPages(IDC_PAGES_SOME, "3,1-2");
  Choose(kPrintPages);
  EXPECT_EQ(Message(), "Stampa inviata a Ufficio") << "the default printer is offered first";
  EXPECT_TRUE(fs::exists(folder / "jobs/job-1.pdf"));
  EXPECT_TRUE(fs::exists(folder / "jobs/job-2.pdf"));
  EXPECT_GT(fs::file_size(folder / "jobs/job-2.pdf"), fs::file_size(folder / "jobs/job-1.pdf"));
  EXPECT_FALSE(fs::exists(folder / "jobs/job-3.pdf"));
  ui::SetTestPrinters({});
  Choose(kPrintPages);
  EXPECT_EQ(told.size(), 1U) << "without a printer";
}

// Orientation

TEST_F(ViewerWindow, ATurnedCopyHasTheSameDataAndAnotherOrientation) {
  const std::string tif = Fax("a.tif");
  const std::string jpg = Export(tif, "a.jpg", {{1, 1}});
  const std::string png = Export(tif, "a.png", {{2, 2}});
  std::vector<char> plain = ReadAll(jpg);
  // Without its Exif data, which stand behind the start.
  ASSERT_EQ(static_cast<unsigned char>(plain[3]), 0xe1);
  plain.erase(plain.begin() + 2, plain.begin() + 4 + static_cast<unsigned char>(plain[4]) * 256 +
                                     static_cast<unsigned char>(plain[5]));
  const std::string bare = (folder / "bare.jpg").string();
  std::ofstream(bare, std::ios::binary).write(plain.data(), static_cast<std::streamsize>(plain.size()));
  static std::string target;
  target = (folder / "turned").string();
  ui::SetFileDialogAnswer([](platform::FileDialogRequest& request) {
    request.path = target;
    return true;
  });
  for (const std::string& path : {tif, jpg, bare, png}) {
    target = (folder / "turned-").string() + fs::path(path).filename().string();
    Start({path});
    Choose(ID_ZP_ROTATE_RIGHT);
    const std::pair turned(Page().m_Bitmap.Width, Page().m_Bitmap.Height);
    Key('S', true, true);
    EXPECT_EQ(told, std::vector<std::string>()) << path;
    ASSERT_TRUE(window->OpenPath(target)) << path;
    window->SendMessage(WM_COMMAND, ID_ZP_LAST_PAGE);
    EXPECT_EQ(std::pair(Page().m_Bitmap.Width, Page().m_Bitmap.Height), turned) << path;
    if (path == png) {
      Quit();
      continue;
    }
    EXPECT_EQ(Page().GetPageInfo().ViewPerspective, 6) << path;
    const std::vector<char> before = ReadAll(path);
    const std::vector<char> after = ReadAll(target);
    const auto scan = before.begin() + static_cast<std::ptrdiff_t>(before.size()) / 4;
    EXPECT_NE(std::search(after.begin(), after.end(), scan, scan + 8000), after.end())
        << path << ": the coded pixels are the same";
    Choose(ID_ZP_ROTATE_LEFT);
    answer = IDYES;  // it is there already
    Key('S', true, true);
    told.clear();
    ASSERT_TRUE(window->OpenPath(target)) << path;
    EXPECT_LE(Page().GetPageInfo().ViewPerspective, 1) << path << ": turned round";
    Quit();
  }
  ui::SetFileDialogAnswer(nullptr);
}

}  // namespace
