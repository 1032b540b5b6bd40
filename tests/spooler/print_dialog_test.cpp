#include "platform/print_dialogs/print_dialog.h"

#include <functional>

#include "platform/base/global_memory.h"
#include "platform/framework/app.h"
#include "platform/resources/extension.h"
#include "platform/resources/resource_tables.h"
#include "print_fixture.h"

namespace {

using platform::PrintDialogRequest;
using Kind = platform::DialogItem::Kind;
using Range = PrintDialogRequest::Range;

/// The controls that the dialog works with; the product's template has more.
constexpr platform::DialogItem kItems[] = {
    {Kind::ComboBox, "", 1139, 60, 18, 146, 100, WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST | CBS_SORT},
    {Kind::PushButton, "&Proprietà", 1025, 212, 17, 60, 14, WS_TABSTOP},
    {Kind::Static, "", 1099, 60, 36, 212, 8},
    {Kind::Static, "", 1098, 60, 48, 212, 8},
    {Kind::Static, "", 1101, 60, 60, 212, 8},
    {Kind::Static, "", 1100, 60, 72, 134, 8},
    {Kind::CheckBox, "Stampa su fi&le", 1040, 200, 71, 72, 10, WS_TABSTOP},
    {Kind::RadioButton, "&Tutto", 1056, 16, 108, 60, 10, WS_GROUP | WS_TABSTOP},
    {Kind::RadioButton, "Pagin&e", 1058, 16, 123, 46, 10, WS_TABSTOP},
    {Kind::RadioButton, "&Selezione", 1057, 16, 138, 60, 10, WS_TABSTOP},
    {Kind::Edit, "", 1152, 81, 121, 27, 14, WS_GROUP | WS_TABSTOP | ES_NUMBER},
    {Kind::Edit, "", 1153, 123, 121, 26, 14, WS_GROUP | WS_TABSTOP | ES_NUMBER},
    {Kind::Edit, "", 1154, 236, 107, 36, 14, WS_GROUP | WS_TABSTOP | ES_NUMBER},
    {Kind::CheckBox, "&Fascicola", 1041, 214, 134, 58, 10, WS_TABSTOP},
    {Kind::DefaultPushButton, "OK", IDOK, 176, 164, 50, 14, WS_TABSTOP},
    {Kind::PushButton, "Annulla", IDCANCEL, 230, 164, 50, 14, WS_TABSTOP},
    {Kind::PushButton, "&Formato...", 1000, 8, 164, 90, 14, WS_TABSTOP},
};
constexpr platform::DialogResource kDialogs[] = {
    {0, "PRINT_DLG", "Stampa", 288, 186, WS_POPUP | WS_CAPTION | WS_SYSMENU, kItems}};

int g_hookCommands = 0;
int g_hookStarts = 0;
std::vector<std::string> g_complaints;

UINT Hook(HWND, UINT message, WPARAM wParam, LPARAM) {
  if (message == WM_INITDIALOG) ++g_hookStarts;
  if (message != WM_COMMAND || wParam != 1000) return 0;
  ++g_hookCommands;
  return 1;
}

class PrintDialogs : public PrintTest {
 protected:
  void SetUp() override {
    PrintTest::SetUp();
    static int argc = 0;
    AfxWinInit(argc, nullptr);
    AfxInitExtensionModule(s_module, reinterpret_cast<HMODULE>(&s_module));
    static auto* linked = new CDynLinkLibrary(s_module);
    (void)linked;
    platform::ResourceTables tables{};
    tables.dialogs = kDialogs;
    platform::RegisterResources(s_module.hModule, tables);
    g_complaints.clear();
    g_hookCommands = g_hookStarts = 0;
    platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
      g_complaints.emplace_back(text);
      return int{IDOK};
    });
    platform::testing::SetPrintDialogAnswer(nullptr);
  }

  /// As a job of ten pages sets it up.
  static void Prepare(CPrintDialog& dialog) {
    dialog.m_pd.Flags |= PD_ENABLEPRINTTEMPLATE | PD_ENABLEPRINTHOOK;
    dialog.m_pd.hInstance = s_module.hModule;
    dialog.m_pd.lpPrintTemplateName = "PRINT_DLG";
    dialog.m_pd.lpfnPrintHook = Hook;
    dialog.m_pd.nCopies = 1;
    dialog.m_pd.nFromPage = dialog.m_pd.nMinPage = 1;
    dialog.m_pd.nToPage = dialog.m_pd.nMaxPage = 10;
  }
  static void Finish(CPrintDialog& dialog) {
    DeleteDC(dialog.m_pd.hDC);
    GlobalFree(dialog.m_pd.hDevMode);
    GlobalFree(dialog.m_pd.hDevNames);
  }
  static void Press(HWND window, int id) { SendMessage(window, WM_COMMAND, static_cast<WPARAM>(id), 0); }
  static void Type(HWND window, int id, const char* text) { SetWindowText(GetDlgItem(window, id), text); }
  static std::string Text(HWND window, int id) { return std::string(GetWindowText(GetDlgItem(window, id))); }
  static void Click(HWND window, int id) { SendMessage(GetDlgItem(window, id), BM_CLICK, 0, 0); }
  static bool Checked(HWND window, int id) {
    return SendMessage(GetDlgItem(window, id), BM_GETCHECK, 0, 0) == BST_CHECKED;
  }

  inline static AFX_EXTENSION_MODULE s_module{};
};

}  // namespace

TEST_F(PrintDialogs, DefaultsNeedNoDialog) {
  CPrintDialog dialog(FALSE, PD_NOPAGENUMS | PD_NOSELECTION);
  ASSERT_TRUE(dialog.GetDefaults());
  EXPECT_EQ(dialog.GetDeviceName(), "Uno");
  EXPECT_EQ(GetDeviceCaps(dialog.m_pd.hDC, LOGPIXELSX), 300);
  EXPECT_FALSE(dialog.GetDefaults()) << "the handles have to be null";
  EXPECT_EQ(CommDlgExtendedError(), PDERR_RETDEFFAILURE);
  Finish(dialog);
  platform::testing::SetTestPrinters({});
  CPrintDialog none(FALSE);
  EXPECT_FALSE(none.GetDefaults());
  EXPECT_EQ(CommDlgExtendedError(), PDERR_NODEFAULTPRN);
}

TEST_F(PrintDialogs, FaultyRecordsAreRefused) {
  struct Case {
    DWORD error;
    std::function<void(PRINTDLGA&)> spoil;
  };
  const Case cases[] = {
      {CDERR_STRUCTSIZE, [](PRINTDLGA& record) { record.lStructSize = 1; }},
      {CDERR_NOHOOK, [](PRINTDLGA& record) { record.lpfnPrintHook = nullptr; }},
      {CDERR_NOTEMPLATE, [](PRINTDLGA& record) { record.lpPrintTemplateName = nullptr; }},
      {CDERR_NOHINSTANCE, [](PRINTDLGA& record) { record.hInstance = nullptr; }},
      {CDERR_FINDRESFAILURE, [](PRINTDLGA& record) { record.lpPrintTemplateName = "NONE"; }},
  };
  for (const Case& row : cases) {
    CPrintDialog dialog(FALSE);
    Prepare(dialog);
    row.spoil(dialog.m_pd);
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(CommDlgExtendedError(), row.error);
  }
}

TEST_F(PrintDialogs, TheDialogIsFilledAndAnswers) {
  CPrintDialog dialog(FALSE, PD_NOSELECTION);
  Prepare(dialog);
  platform::testing::OnNextDialog([](HWND window) {
    EXPECT_EQ(g_hookStarts, 1);
    EXPECT_EQ(Text(window, 1099), "Pronta");
    EXPECT_EQ(Text(window, 1098), "PDF");
    EXPECT_EQ(Text(window, 1101), "Primo piano");
    EXPECT_EQ(Text(window, 1100), "Stampante dell'ufficio");
    EXPECT_TRUE(Checked(window, 1056));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, 1057)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, 1041)));
    Press(window, 1000);
    EXPECT_EQ(g_hookCommands, 1);
    // Sorted: "Due" is the first.
    SendMessage(GetDlgItem(window, 1139), CB_SETCURSEL, 0, 0);
    SendMessage(window, WM_COMMAND, MAKEWPARAM(1139, CBN_SELCHANGE),
                reinterpret_cast<LPARAM>(GetDlgItem(window, 1139)));
    Type(window, 1152, "3");
    EXPECT_TRUE(Checked(window, 1058)) << "a number typed is a range";
    Type(window, 1153, "5");
    Type(window, 1154, "2");
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(window, 1041)));
    if (const char* picture = std::getenv("TESSAREL_PICTURES"))
      platform::testing::SaveWindowPicture(window, (std::string(picture) + "/print_dialog.png").c_str());
    Press(window, IDOK);
  });
  ASSERT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(dialog.GetDeviceName(), "Due");
  EXPECT_EQ(GetDeviceCaps(dialog.m_pd.hDC, PHYSICALWIDTH), 5100);
  EXPECT_TRUE(dialog.PrintRange());
  EXPECT_EQ(dialog.GetFromPage(), 3);
  EXPECT_EQ(dialog.GetToPage(), 5);
  EXPECT_EQ(dialog.GetCopies(), 2);
  EXPECT_TRUE(g_complaints.empty());
  Finish(dialog);
}

// Each row is typed, refused with a text that names the fault, then given up.
TEST_F(PrintDialogs, WrongNumbersAreRefused) {
  struct Case {
    const char* from;
    const char* to;
    const char* copies;
    const char* complaint;
    int focus;
  };
  constexpr Case kCases[] = {
      {"0", "5", "1", "intervallo", 1152},          {"", "5", "1", "intervallo", 1152},
      {"2", "11", "1", "intervallo", 1153},         {"6", "5", "1", "non può seguire", 1152},
      {"1", "2", "0", "numero di copie", 1154},     {"1", "2", "", "numero di copie", 1154},
      {"1", "2", "10000", "numero di copie", 1154},
  };
  for (const Case& row : kCases) {
    SCOPED_TRACE(std::string(row.from) + " to " + row.to + ", " + row.copies + " copies");
    g_complaints.clear();
    CPrintDialog dialog(FALSE, PD_NOSELECTION);
    Prepare(dialog);
    platform::testing::OnNextDialog([&row](HWND window) {
      Type(window, 1152, row.from);
      Type(window, 1153, row.to);
      Type(window, 1154, row.copies);
      Press(window, IDOK);
      EXPECT_EQ(GetDlgCtrlID(GetFocus()), row.focus);
      Press(window, IDCANCEL);
    });
    EXPECT_EQ(dialog.DoModal(), IDCANCEL);
    EXPECT_EQ(CommDlgExtendedError(), 0U);
    EXPECT_EQ(dialog.m_pd.hDC, nullptr);
    ASSERT_EQ(g_complaints.size(), 1U);
    EXPECT_NE(g_complaints[0].find(row.complaint), std::string::npos) << g_complaints[0];
  }
}

TEST_F(PrintDialogs, WithoutAQueueAFileIsPrinted) {
  platform::testing::SetTestPrinters({});
  static std::string target;
  target = Target();
  platform::testing::SetFileDialogAnswer([](platform::FileDialogRequest& request) {
    request.path = target.substr(0, target.size() - 4);  // the extension is added
    return true;
  });
  CPrintDialog dialog(FALSE, PD_NOSELECTION);
  Prepare(dialog);
  platform::testing::OnNextDialog([](HWND window) {
    EXPECT_TRUE(Checked(window, 1040));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, 1040)));
    Press(window, IDOK);
  });
  ASSERT_EQ(dialog.DoModal(), IDOK);
  const DOCINFOA info{sizeof info, "Prova", nullptr, nullptr, 0};
  EXPECT_GT(StartDocA(dialog.m_pd.hDC, &info), 0);
  EXPECT_GT(StartPage(dialog.m_pd.hDC), 0);
  EXPECT_GT(EndPage(dialog.m_pd.hDC), 0);
  EXPECT_GT(EndDoc(dialog.m_pd.hDC), 0);
  EXPECT_TRUE(std::filesystem::exists(target));
  Finish(dialog);
  platform::testing::SetFileDialogAnswer(nullptr);
}

TEST_F(PrintDialogs, PropertiesTurnThePaper) {
  CPrintDialog dialog(FALSE, PD_NOSELECTION);
  Prepare(dialog);
  platform::testing::OnNextDialog([](HWND window) {
    platform::testing::OnNextDialog([](HWND properties) {
      Click(properties, 1059);
      if (const char* picture = std::getenv("TESSAREL_PICTURES"))
        platform::testing::SaveWindowPicture(properties,
                                             (std::string(picture) + "/print_properties.png").c_str());
      Press(properties, IDOK);
    });
    Press(window, 1025);
    Press(window, IDOK);
  });
  ASSERT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(GetDeviceCaps(dialog.m_pd.hDC, PHYSICALWIDTH), 3508);
  Finish(dialog);
}

// The seam goes the dialog's way, refusals included.
TEST_F(PrintDialogs, TheAnswerOfATest) {
  static std::function<bool(PrintDialogRequest&)> answer;
  platform::testing::SetPrintDialogAnswer([](PrintDialogRequest& request) { return answer(request); });
  struct Case {
    const char* name;
    std::function<bool(PrintDialogRequest&)> answer;
    int result;
    int from, to;
    DWORD flags;
  };
  const Case cases[] = {
      {"as proposed", [](auto& request) { return request.printer == "Uno" && request.range == Range::Pages; },
       IDOK, 3, 5, PD_PAGENUMS},
      {"given up", [](auto&) { return false; }, IDCANCEL, 3, 5, PD_PAGENUMS},
      {"everything",
       [](auto& request) {
         request.range = Range::All;
         request.collate = true;
         return true;
       },
       IDOK, 1, 10, PD_COLLATE},
      {"no such selection",
       [](auto& request) {
         request.range = Range::Selection;
         return true;
       },
       IDCANCEL, 3, 5, PD_PAGENUMS},
      {"no such printer",
       [](auto& request) {
         request.printer = "Tre";
         return true;
       },
       IDCANCEL, 3, 5, PD_PAGENUMS},
      {"no such page",
       [](auto& request) {
         request.toPage = 11;
         return true;
       },
       IDCANCEL, 3, 5, PD_PAGENUMS},
  };
  for (const Case& row : cases) {
    SCOPED_TRACE(row.name);
    answer = row.answer;
    CPrintDialog dialog(FALSE, PD_NOSELECTION | PD_PAGENUMS);
    Prepare(dialog);
    dialog.m_pd.nFromPage = 3;
    dialog.m_pd.nToPage = 5;
    EXPECT_EQ(dialog.DoModal(), row.result);
    EXPECT_EQ(dialog.m_pd.nFromPage, row.from);
    EXPECT_EQ(dialog.m_pd.nToPage, row.to);
    EXPECT_EQ(dialog.m_pd.Flags & (PD_PAGENUMS | PD_COLLATE | PD_SELECTION), row.flags);
    EXPECT_EQ(dialog.m_pd.hDC != nullptr, row.result == IDOK);
    Finish(dialog);
  }
}

TEST_F(PrintDialogs, GivenHandlesStayTheSame) {
  platform::testing::SetPrintDialogAnswer([](PrintDialogRequest& request) { return request.landscape; });
  CWinApp app("Prova");
  PRINTDLGA defaults{};
  ASSERT_TRUE(app.GetPrinterDeviceDefaults(&defaults));
  auto* mode = static_cast<DEVMODEA*>(GlobalLock(defaults.hDevMode));
  mode->dmOrientation = DMORIENT_LANDSCAPE;
  GlobalUnlock(defaults.hDevMode);
  CPrintDialog dialog(FALSE, PD_NOSELECTION);
  Prepare(dialog);
  dialog.m_pd.hDevMode = defaults.hDevMode;
  dialog.m_pd.hDevNames = defaults.hDevNames;
  ASSERT_EQ(dialog.DoModal(), IDOK);
  EXPECT_EQ(dialog.m_pd.hDevMode, defaults.hDevMode);
  EXPECT_EQ(dialog.m_pd.hDevNames, defaults.hDevNames);
  EXPECT_EQ(GetDeviceCaps(dialog.m_pd.hDC, PHYSICALWIDTH), 3508);
  DeleteDC(dialog.m_pd.hDC);
}
