// Frames and their menus: state of the items, pop-ups, prompts, accelerators.

#include <gtest/gtest.h>

#include <string>

#include "platform/framework/app.h"
#include "platform/framework/cmd_ui.h"
#include "platform/framework/frame_wnd.h"
#include "platform/framework/menu.h"
#include "platform/window/accelerators.h"
#include "tessarel12_testing.h"
#include "tests/window/resource_module.h"

namespace {

using namespace platform::testing;
using Kind = platform::MenuLine::Kind;

enum : UINT {
  kFrame = 300,
  kPlain = 201,
  kGrey = 202,
  kHandled = 203,
  kNobody = 204,
  kRadio = 205,
  kFirst = 206,
  kSecond = 207
};

constexpr platform::MenuLine kBar[] = {
    {Kind::Popup, "&Pagina"},           {Kind::Item, "&Piano", kPlain},
    {Kind::Item, "&Grigio", kGrey},     {Kind::Separator},
    {Kind::Item, "&Gestito", kHandled}, {Kind::Item, "&Nessuno", kNobody},
    {Kind::Popup, "&Mouse Mode"},       {Kind::Item, "&Uno", kFirst},
    {Kind::Item, "&Due", kSecond},      {Kind::End},
    {Kind::Item, "&Radio", kRadio},     {Kind::End},
};
constexpr platform::MenuResource kMenus[] = {{kFrame, kBar}};
constexpr platform::StringResource kStrings[] = {{kFrame, "Titolo\nseconda riga"},
                                                 {kPlain, "Prompt del comando\nSuggerimento"},
                                                 {kGrey, "Senza suggerimento"},
                                                 {AFX_IDS_IDLEMESSAGE, "Pronto"}};

/// Position of the items in the pop-up.
enum : int { kAtPlain, kAtGrey, kAtLine, kAtHandled, kAtNobody, kAtPopup, kAtRadio };

std::string g_trace;
bool g_greyPopup = false;

class MenuFrame : public CFrameWnd {
 public:
  CWnd m_bar;
  CWnd* GetMessageBar() override { return m_bar.m_hWnd != nullptr ? &m_bar : nullptr; }
  using CFrameWnd::OnMenuSelect;

 protected:
  void OnPlain() { g_trace += "P"; }
  void OnHandled() { g_trace += "H"; }
  void OnUpdatePlain(CCmdUI* ui) {
    g_trace += "u" + std::to_string(ui->m_nIndex) + "/" + std::to_string(ui->m_nIndexMax) + " ";
    ui->SetCheck(1);
    ui->SetText("altro");
  }
  void OnUpdateGrey(CCmdUI* ui) { ui->Enable(FALSE); }
  void OnUpdateRadio(CCmdUI* ui) { ui->SetRadio(); }
  void OnUpdateFirst(CCmdUI* ui) {
    g_trace += ui->m_pSubMenu != nullptr ? "popup" + std::to_string(ui->m_nIndex) + " " : "item ";
    if (ui->m_pSubMenu != nullptr) {
      EXPECT_EQ(ui->m_pMenu->GetSubMenu(static_cast<int>(ui->m_nIndex)), ui->m_pSubMenu);
      if (g_greyPopup) ui->m_pMenu->EnableMenuItem(ui->m_nIndex, MF_BYPOSITION | MF_GRAYED);
    }
    ui->Enable(FALSE);  // of the pop-up itself this does nothing
    ui->SetCheck(1);
  }
  DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(MenuFrame, CFrameWnd)
ON_COMMAND(kPlain, OnPlain)
ON_COMMAND(kHandled, OnHandled)
ON_COMMAND(kRadio, OnHandled)
ON_UPDATE_COMMAND_UI(kPlain, OnUpdatePlain)
ON_UPDATE_COMMAND_UI(kGrey, OnUpdateGrey)
ON_UPDATE_COMMAND_UI(kRadio, OnUpdateRadio)
ON_UPDATE_COMMAND_UI(kFirst, OnUpdateFirst)
END_MESSAGE_MAP()

class FrameMenus : public ::testing::Test {
 protected:
  void SetUp() override {
    platform::ResourceTables tables;
    tables.menus = kMenus;
    tables.strings = kStrings;
    LinkResourceModule(tables);
    frame = new MenuFrame;
    ASSERT_TRUE(frame->LoadFrame(kFrame));
    g_greyPopup = false;
    g_trace.clear();
  }
  void TearDown() override {
    SetMenuAnswer(nullptr);
    frame->DestroyWindow();
  }
  CMenu* PagePopup() const { return frame->GetMenu()->GetSubMenu(0); }
  void Open() { frame->SendMessage(WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(PagePopup()->m_hMenu), 0); }

  MenuFrame* frame = nullptr;
};

TEST_F(FrameMenus, LoadFrameTakesMenuAndTitle) {
  EXPECT_EQ(GetWindowText(frame->m_hWnd), "Titolo");
  EXPECT_EQ(frame->GetMenu()->m_hMenu, frame->m_hMenuDefault);
  EXPECT_EQ(PagePopup()->GetMenuItemCount(), 7);
  auto* bare = new MenuFrame;
  EXPECT_TRUE(bare->LoadFrame(9999)) << "neither menu nor string";
  EXPECT_EQ(bare->GetMenu(), nullptr);
  bare->DestroyWindow();
  EXPECT_FALSE((new MenuFrame)->Create(nullptr, "x", WS_POPUP, CRect(), nullptr, MAKEINTRESOURCE(9999)));
}

TEST_F(FrameMenus, EachItemIsAskedForWhenItsMenuOpens) {
  Open();
  EXPECT_EQ(g_trace, "u0/7 popup5 ") << "not the pop-up's own items";
  struct Case {
    int position;
    UINT state;
  };
  constexpr Case kCases[] = {{kAtPlain, MF_CHECKED},
                             {kAtGrey, MF_GRAYED},
                             {kAtLine, MF_SEPARATOR},
                             {kAtHandled, MF_ENABLED},
                             {kAtNobody, MF_GRAYED},
                             {kAtPopup, MF_POPUP | 2U << 8},
                             {kAtRadio, MF_CHECKED | MFT_RADIOCHECK}};
  for (const Case& c : kCases)
    EXPECT_EQ(PagePopup()->GetMenuState(static_cast<UINT>(c.position), MF_BYPOSITION), c.state) << c.position;
  CString text;
  PagePopup()->GetMenuString(kAtPlain, text, MF_BYPOSITION);
  EXPECT_EQ(text, "altro");
  EXPECT_EQ(PagePopup()->GetMenuItemID(kAtPlain), kPlain);
}

TEST_F(FrameMenus, ItemsThatNobodyHandlesStayIfTheFrameSaysSo) {
  frame->m_bAutoMenuEnable = FALSE;
  Open();
  EXPECT_EQ(PagePopup()->GetMenuState(kAtNobody, MF_BYPOSITION), UINT{MF_ENABLED});
  EXPECT_EQ(PagePopup()->GetMenuState(kAtGrey, MF_BYPOSITION), UINT{MF_GRAYED});
}

TEST_F(FrameMenus, TheFirstItemsHandlerMayGreyThePopUp) {
  g_greyPopup = true;
  Open();
  EXPECT_EQ(PagePopup()->GetMenuState(kAtPopup, MF_BYPOSITION), MF_POPUP | MF_GRAYED | 2U << 8);
  EXPECT_FALSE(ChooseMenuItem(frame->m_hWnd, kSecond));
}

TEST_F(FrameMenus, AContextMenuGoesToTheFrameItNames) {
  CMenu menu;
  ASSERT_TRUE(menu.LoadMenu(kFrame));
  SetMenuAnswer([](HMENU tracked, HWND) {
    g_trace += GetMenuState(tracked, kAtGrey, MF_BYPOSITION) == MF_GRAYED ? "grey " : "live ";
    return static_cast<int>(UINT{kHandled});
  });
  EXPECT_TRUE(menu.GetSubMenu(0)->TrackPopupMenu(TPM_RIGHTBUTTON, 10, 10, frame));
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "u0/7 popup5 item grey H");
  const HMENU handle = menu.Detach();
  EXPECT_TRUE(IsMenu(handle));
  {
    CMenu owner;
    owner.Attach(handle);
  }
  EXPECT_FALSE(IsMenu(handle)) << "the object destroys its menu";
}

TEST_F(FrameMenus, AnItemOfTheBarBecomesACommand) {
  EXPECT_TRUE(ChooseMenuItem(frame->m_hWnd, kPlain));
  EXPECT_FALSE(ChooseMenuItem(frame->m_hWnd, kGrey));
  EXPECT_FALSE(ChooseMenuItem(frame->m_hWnd, kNobody));
  g_trace.clear();
  PumpUntilIdle();
  EXPECT_EQ(g_trace, "P");
}

TEST_F(FrameMenus, PromptsStandInTheMessageBar) {
  ASSERT_TRUE(frame->m_bar.Create(nullptr, "leer", WS_CHILD, CRect(0, 0, 9, 9), frame, 1));
  struct Case {
    UINT item;
    UINT flags;
    const char* text;
  };
  constexpr Case kCases[] = {{kPlain, MF_ENABLED, "Prompt del comando"},
                             {kGrey, MF_GRAYED, "Senza suggerimento"},
                             {kNobody, MF_ENABLED, ""},
                             {0, MF_POPUP, ""},
                             {0, MF_SEPARATOR, ""}};
  for (const Case& c : kCases) {
    frame->SendMessage(WM_MENUSELECT, MAKEWPARAM(static_cast<int>(c.item), static_cast<int>(c.flags)),
                       reinterpret_cast<LPARAM>(PagePopup()->m_hMenu));
    EXPECT_EQ(GetWindowText(frame->m_bar.m_hWnd), c.text) << c.item;
  }
  frame->SendMessage(WM_MENUSELECT, MAKEWPARAM(0, 0xffff), 0);
  EXPECT_EQ(GetWindowText(frame->m_bar.m_hWnd), "Pronto");
}

TEST_F(FrameMenus, AcceleratorsBecomeCommandsUnlessTheirItemIsGrey) {
  constexpr ACCEL kKeys[] = {{FVIRTKEY | FCONTROL, 'P', kPlain},
                             {FVIRTKEY | FCONTROL | FSHIFT, 'P', kHandled},
                             {FVIRTKEY | FALT, 'H', kHandled},
                             {FVIRTKEY, VK_F10 - 1, kGrey},
                             {0, 'x', kHandled}};
  frame->m_hAccelTable = CreateAcceleratorTableA(kKeys, 5);
  ASSERT_NE(frame->m_hAccelTable, nullptr);
  AfxGetThread();  // the pump asks it
  frame->ShowWindow(SW_SHOW);
  PumpUntilIdle();
  struct Case {
    const char* name;
    int key;
    bool shift;
    bool control;
    bool alt;
    const char* trace;
  };
  constexpr Case kCases[] = {
      {"control", 'P', false, true, false, "P"},          {"control and shift", 'P', true, true, false, "H"},
      {"without modifier", 'P', false, false, false, ""}, {"alt", 'H', false, false, true, "H"},
      {"grey", VK_F10 - 1, false, false, false, ""},      {"character", 'X', false, false, false, "H"}};
  for (const Case& c : kCases) {
    if (c.shift) PressKey(frame->m_hWnd, VK_SHIFT, true);
    if (c.control) PressKey(frame->m_hWnd, VK_CONTROL, c.shift, true);
    PressKey(frame->m_hWnd, c.key, c.shift, c.control, c.alt);
    if (c.control) ReleaseKey(frame->m_hWnd, VK_CONTROL, c.shift);
    if (c.shift) ReleaseKey(frame->m_hWnd, VK_SHIFT);
    PumpUntilIdle();
    std::string commands;
    for (const char letter : g_trace)
      if (letter == 'P' || letter == 'H') commands += letter;
    EXPECT_EQ(commands, c.trace) << c.name;
    g_trace.clear();
  }
  EXPECT_TRUE(DestroyAcceleratorTable(frame->m_hAccelTable));
  EXPECT_FALSE(DestroyAcceleratorTable(frame->m_hAccelTable));
  EXPECT_EQ(CreateAcceleratorTableA(kKeys, 0), nullptr);
}

}  // namespace
