// Dialogs from templates, with input as the desktop sends it.

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "platform/framework/app.h"
#include "platform/framework/dialog.h"
#include "platform/framework/frame_wnd.h"
#include "platform/resources/extension.h"
#include "platform/resources/resource_tables.h"
#include "tessarel12_testing.h"

namespace {

using platform::DialogItem;
using platform::testing::OnNextDialog;
using platform::testing::PressKey;
using platform::testing::ReleaseKey;
using Kind = DialogItem::Kind;

constexpr DWORD kDialogStyle = WS_POPUP | WS_CAPTION | WS_SYSMENU;

constexpr DialogItem kPageItems[] = {
    {Kind::RadioButton, "&Prima pagina", 101, 7, 7, 60, 10, WS_GROUP},
    {Kind::RadioButton, "&Ultima pagina", 102, 7, 20, 60, 10},
    {Kind::RadioButton, "Pagina:", 103, 7, 33, 36, 10},
    {Kind::Edit, "", 104, 45, 32, 30, 12, ES_NUMBER | WS_GROUP},
    {Kind::DefaultPushButton, "OK", 1, 80, 7, 30, 14, WS_GROUP},
    {Kind::PushButton, "Annulla", 40017, 80, 24, 30, 14},
};
constexpr DialogItem kFormItems[] = {
    {Kind::DefaultPushButton, "OK", 1, 110, 100, 50, 14},
    {Kind::GroupBox, "Informazioni sul file", -1, 7, 7, 203, 60},
    {Kind::Static, "&Nome:", -1, 14, 20, 40, 8},
    {Kind::Edit, "", 201, 60, 18, 140, 12, ES_AUTOHSCROLL | ES_READONLY},
    {Kind::Static, "Dimensione:", -1, 14, 36, 40, 8},
    {Kind::Static, "Static", 202, 60, 36, 140, 8},
    {Kind::CheckBox, "&Fascicola", 203, 14, 50, 60, 10},
    {Kind::Static, "&Quantità:", -1, 14, 74, 40, 8},
    {Kind::Edit, "", 204, 60, 72, 40, 12},
    {Kind::ComboBox, "", 205, 110, 72, 60, 80, CBS_DROPDOWN},
};
constexpr DialogItem kBareItems[] = {
    {Kind::Edit, "", 301, 7, 7, 40, 12},
    {Kind::PushButton, "OK", 40014, 60, 7, 40, 14},
};
const platform::DialogResource kDialogs[] = {
    {500, nullptr, "Vai a...", 117, 74, kDialogStyle, kPageItems},
    {501, nullptr, "Proprietà", 217, 120, kDialogStyle, kFormItems},
    {0, "BARE", "Zoom", 110, 40, kDialogStyle, kBareItems},
};

class PageDialog : public CDialog {
 public:
  explicit PageDialog(CWnd* parent = nullptr) : CDialog(500, parent) {}
  int m_radio = 2;
  CSpinButtonCtrl m_spin;
  std::string m_trace;

  void DoDataExchange(CDataExchange* exchange) override { DDX_Radio(exchange, 101, m_radio); }
  BOOL OnInitDialog() override {
    CDialog::OnInitDialog();
    CRect field;
    GetDlgItem(104)->GetWindowRect(field);
    ScreenToClient(field);
    GetDlgItem(104)->SetWindowPos(&wndBottom, field.left, field.top, field.Width(), field.Height(),
                                  SWP_SHOWWINDOW);
    m_spin.Create(WS_VISIBLE | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_AUTOBUDDY | UDS_ARROWKEYS,
                  CRect(0, 0, 9, 9), this, 900);
    m_spin.SetRange(1, 12);
    m_spin.SetPos(5);
    return TRUE;
  }
  void OnFirst() { m_trace += "f"; }
  void OnOK() override {
    UpdateData(TRUE);
    const int page = m_spin.GetPos();
    if (HIWORD(static_cast<DWORD>(page)) != 0) {
      m_trace += "!";
      return;
    }
    EndDialog(m_radio * 100 + page);
  }
  void OnCancel() override { EndDialog(0); }
  DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(PageDialog, CDialog)
ON_COMMAND(101, OnFirst)
ON_COMMAND(40017, OnCancel)
END_MESSAGE_MAP()

class FormDialog : public CDialog {
 public:
  explicit FormDialog(CWnd* parent = nullptr) : CDialog(501, parent) {}
  CString m_name = "città & mare.tif";
  CString m_size = "12 bytes";
  int m_check = 1;
  CString m_count = "3";
  CEdit m_edit;
  CComboBox m_combo;

  void DoDataExchange(CDataExchange* exchange) override {
    DDX_Control(exchange, 201, m_edit);
    DDX_Control(exchange, 205, m_combo);
    DDX_Text(exchange, 201, m_name);
    DDX_Text(exchange, 202, m_size);
    DDX_Check(exchange, 203, m_check);
    DDX_Text(exchange, 204, m_count);
  }
};

class BareDialog : public CDialog {
 public:
  BareDialog() : CDialog("BARE") {}
  int m_enters = 0;
  BOOL PreTranslateMessage(MSG* message) override {
    if (message->message == WM_CHAR && message->wParam != 8 &&
        (message->wParam < '0' || message->wParam > '9') && message->wParam != '%')
      return TRUE;
    return CDialog::PreTranslateMessage(message);
  }
  void OnOK() override {
    ++m_enters;
    m_text = ::GetWindowText(GetDlgItem(301)->m_hWnd);
    EndDialog(7);
  }
  CString m_text;
};

class Dialogs : public ::testing::Test {
 protected:
  void SetUp() override {
    static AFX_EXTENSION_MODULE module;
    static int anything;
    AfxInitExtensionModule(module, reinterpret_cast<HMODULE>(&anything));
    new CDynLinkLibrary(module);  // NOLINT: the framework's list owns it
    platform::ResourceTables tables{};
    tables.dialogs = kDialogs;
    platform::RegisterResources(module.hModule, tables);
    platform::EnsureApplication();
    m_frame = new CFrameWnd;  // deletes itself
    m_frame->Create(nullptr, "host", WS_OVERLAPPEDWINDOW, CRect(0, 0, 500, 400));
    m_frame->ShowWindow(SW_SHOW);
    platform::testing::PumpUntilIdle();
  }
  void TearDown() override { m_frame->DestroyWindow(); }

  /// Runs a dialog in which these steps happen, each once all before has been dealt with.
  static int Run(CDialog& dialog, std::vector<std::function<void(HWND)>> steps) {
    OnNextDialog([steps = std::move(steps)](HWND window) {
      for (const auto& step : steps) {
        step(window);
        if (!IsWindow(window)) return;
        platform::testing::PumpUntilIdle();
      }
    });
    return dialog.DoModal();
  }

  CFrameWnd* m_frame = nullptr;
};

/// For a look at what a dialog has become: into the folder that TESSAREL_PICTURES names.
void KeepPicture(HWND window, const std::string& name) {
  const char* folder = std::getenv("TESSAREL_PICTURES");
  if (folder != nullptr)
    platform::testing::SaveWindowPicture(window, (folder + ("/" + name + ".png")).c_str());
}

void Key(int key) {
  PressKey(GetFocus(), key);
  ReleaseKey(GetFocus(), key);
}
std::function<void(HWND)> Keys(std::vector<int> keys) {
  return [keys](HWND) {
    for (const int key : keys) Key(key);
  };
}
std::function<void(HWND)> Type(const char* text) {
  return [text](HWND) { platform::testing::TypeText(GetFocus(), text); };
}
std::function<void(HWND)> Click(int id) {
  return [id](HWND dialog) {
    const HWND control = GetDlgItem(dialog, id);
    platform::testing::PressMouse(control, {5, 5});
    platform::testing::ReleaseMouse(control, {5, 5});
  };
}

TEST_F(Dialogs, EndAsTheUserSays) {
  struct Case {
    const char* what;
    std::vector<std::function<void(HWND)>> steps;
    int result;
  };
  const Case cases[] = {
      {"Enter takes the default button", {[](HWND d) { KeepPicture(d, "page"); }, Keys({VK_RETURN})}, 205},
      {"Escape", {Keys({VK_ESCAPE})}, 0},
      {"close box", {[](HWND d) { PostMessage(d, WM_CLOSE); }}, 0},
      {"the button clicked", {Click(40017)}, 0},
      {"a radio button by its letter",
       {[](HWND) { PressKey(GetFocus(), 'U', false, false, true); }, Keys({VK_RETURN})},
       105},
      {"arrow keys choose in the group, round its end", {Keys({VK_DOWN}), Keys({VK_RETURN})}, 5},
      {"Tab to the field, a number typed over the old",
       {Keys({VK_TAB, VK_TAB, VK_TAB}), Type("11"), Keys({VK_RETURN})},
       211},
      {"the field's arrow key",
       {[](HWND d) { SetFocus(GetDlgItem(d, 104)); }, Keys({VK_UP, VK_UP}), Keys({VK_RETURN})},
       207},
      {"beyond the range: asked again, then given up",
       {[](HWND d) {
          SetFocus(GetDlgItem(d, 104));
          SendMessage(GetFocus(), EM_SETSEL, 0, -1);
        },
        Type("13"), Keys({VK_RETURN}), Keys({VK_ESCAPE})},
       0},
      {"letters don't enter a field of digits",
       {[](HWND d) {
          SetFocus(GetDlgItem(d, 104));
          SendMessage(GetFocus(), EM_SETSEL, 0, -1);
        },
        Type("a9b"), Keys({VK_RETURN})},
       209},
  };
  for (const Case& c : cases) {
    PageDialog dialog(m_frame);
    EXPECT_EQ(Run(dialog, c.steps), c.result) << c.what;
    EXPECT_TRUE(m_frame->IsWindowEnabled()) << c.what;
    EXPECT_EQ(dialog.m_hWnd, nullptr) << c.what;
  }
}

/// What a button shows along two lines through it.
std::vector<std::uint32_t> LookOf(HWND control) {
  std::vector<std::uint32_t> look;
  for (int i = 0; i < 24; ++i) {
    look.push_back(platform::testing::WindowPixel(control, i, 5));
    look.push_back(platform::testing::WindowPixel(control, 8, i));
  }
  return look;
}

TEST_F(Dialogs, TheKeyboardsPlaceIsSeenAndTheDefaultMarkFollowsIt) {
  PageDialog dialog(m_frame);
  std::vector<std::uint32_t> ok;
  std::vector<std::uint32_t> cancel;
  std::vector<std::uint32_t> radio;
  const auto look = [&](HWND d) {
    ok = LookOf(GetDlgItem(d, 1));
    cancel = LookOf(GetDlgItem(d, 40017));
    radio = LookOf(GetDlgItem(d, 102));
  };
  Run(dialog, {[&](HWND d) {
                 SetFocus(GetDlgItem(d, 101));
                 platform::testing::PumpUntilIdle();
                 look(d);
               },
               Keys({VK_DOWN}),
               [&](HWND d) {
                 EXPECT_NE(LookOf(GetDlgItem(d, 102)), radio) << "chosen, and framed";
                 SendMessage(GetDlgItem(d, 102), BM_SETCHECK, BST_UNCHECKED);
                 EXPECT_NE(LookOf(GetDlgItem(d, 102)), radio) << "framed";
                 SetFocus(GetDlgItem(d, 40017));
                 platform::testing::PumpUntilIdle();
                 EXPECT_NE(LookOf(GetDlgItem(d, 1)), ok)
                     << "no default while another button has the keyboard";
                 EXPECT_NE(LookOf(GetDlgItem(d, 40017)), cancel);
                 SetFocus(GetDlgItem(d, 101));
                 platform::testing::PumpUntilIdle();
                 EXPECT_EQ(LookOf(GetDlgItem(d, 1)), ok);
                 EXPECT_EQ(LookOf(GetDlgItem(d, 40017)), cancel);
               },
               Keys({VK_ESCAPE})});
}

TEST_F(Dialogs, TheOwnerSleepsMeanwhile) {
  PageDialog dialog;
  BOOL enabled = TRUE;
  Run(dialog, {[&](HWND) { enabled = m_frame->IsWindowEnabled(); }, Keys({VK_ESCAPE})});
  EXPECT_FALSE(enabled) << "the active window, when no parent is given";
  EXPECT_TRUE(m_frame->IsWindowEnabled());
}

TEST_F(Dialogs, QuitGoesOnToTheLoopOutside) {
  PageDialog dialog(m_frame);
  EXPECT_EQ(Run(dialog, {[](HWND) { AfxPostQuitMessage(3); }}), -1);
  MSG message;
  ASSERT_TRUE(PeekMessage(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(message.wParam, 3U);
}

TEST_F(Dialogs, ExchangeData) {
  FormDialog dialog(m_frame);
  std::string name;
  const int result = Run(dialog, {[&](HWND d) {
                                    name = GetWindowText(GetDlgItem(d, 201));
                                    KeepPicture(d, "form");
                                  },
                                  Click(203), [](HWND d) { SetFocus(GetDlgItem(d, 204)); }, Keys({VK_END}),
                                  Type("7"), Keys({VK_RETURN})});
  EXPECT_EQ(result, IDOK);
  EXPECT_EQ(name, "città & mare.tif");
  EXPECT_EQ(dialog.m_check, 0);
  EXPECT_EQ(dialog.m_count, "37");
}

TEST_F(Dialogs, EscapeGivesUpTheListFirst) {
  FormDialog dialog(m_frame);
  bool dropped = true;
  bool running = false;
  const int result = Run(dialog, {[](HWND) {},  // the desktop brings the dialog to the front
                                  [](HWND d) {
                                    SetFocus(GetDlgItem(d, 205));
                                    SendMessage(GetFocus(), CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("1"));
                                    SendMessage(GetFocus(), CB_SHOWDROPDOWN, TRUE);
                                  },
                                  Keys({VK_ESCAPE}),
                                  [&](HWND d) {
                                    dropped = SendMessage(GetDlgItem(d, 205), CB_GETDROPPEDSTATE) != 0;
                                    running = dialog.ContinueModal() != 0;
                                  },
                                  Keys({VK_ESCAPE})});
  EXPECT_FALSE(dropped);
  EXPECT_TRUE(running);
  EXPECT_EQ(result, IDCANCEL);
}

TEST_F(Dialogs, PreTranslateKeepsCharactersOut) {
  BareDialog dialog;
  EXPECT_EQ(Run(dialog, {Type("1a5x%"), [](HWND) { platform::testing::ComposeText(GetFocus(), "7é"); },
                         Keys({VK_LEFT, VK_BACK}), Keys({VK_RETURN})}),
            7)
      << "without a default button Enter is OK";
  EXPECT_EQ(dialog.m_text, "157");
}

}  // namespace
