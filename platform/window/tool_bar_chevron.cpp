// What doesn't fit into a toolbar: which buttons stand behind the chevron, and the menu that shows them.

#include <QPainter>
#include <QPalette>
#include <algorithm>
#include <memory>
#include <string>

#include "platform/window/accessible.h"
#include "platform/window/control_messages.h"
#include "platform/window/detail/theme.h"
#include "platform/window/detail/tool_bar_record.h"
#include "platform/window/detail/window_record.h"
#include "platform/window/menu_handles.h"
#include "platform/window/window.h"

namespace platform {
namespace {

constexpr int kExtent = 16;         // of the chevron along the bar
constexpr int kEntriesAtOnce = 40;  // of a combo; a menu of a thousand pages would be no help

bool IsPlainGap(const TBBUTTON& button) {
  return (button.fsStyle & TBSTYLE_SEP) != 0 && button.idCommand == 0;
}

bool IsGap(const TBBUTTON& button) {
  return (button.fsStyle & TBSTYLE_SEP) != 0;
}

bool IsHidden(const TBBUTTON& button) {
  return (button.fsState & TBSTATE_HIDDEN) != 0;
}

// What fits

/// The first button that ends behind the room; -1 if only gaps do.
int FirstBehind(const ToolbarRecord& toolbar, const std::vector<RECT>& places, LONG room) {
  for (std::size_t i = 0; i < places.size(); ++i) {
    const TBBUTTON& button = toolbar.buttons[i];
    const LONG end = toolbar.vertical ? places[i].bottom : places[i].right;
    if (!IsPlainGap(button) && !IsHidden(button) && end > room) return static_cast<int>(i);
  }
  return -1;
}

void Fit(ToolbarRecord& toolbar, const RECT& client) {
  const std::vector<RECT> places = toolbar.Places();
  LONG room =
      toolbar.vertical ? client.bottom - toolbar.margins.bottom : client.right - toolbar.margins.right;
  toolbar.behind = FirstBehind(toolbar, places, room);
  if (toolbar.behind < 0) return;
  room = std::max<LONG>(room - kExtent, toolbar.vertical ? toolbar.margins.top : toolbar.margins.left);
  toolbar.behind = FirstBehind(toolbar, places, room);
  // No line in front of the chevron, which parts nothing.
  while (toolbar.behind > 0 && IsPlainGap(toolbar.buttons[static_cast<std::size_t>(toolbar.behind) - 1]))
    --toolbar.behind;
  const RECT& margins = toolbar.margins;
  toolbar.chevron = toolbar.vertical
                        ? RECT{margins.left, room, margins.left + toolbar.buttonSize.cx, room + kExtent}
                        : RECT{room, margins.top, room + kExtent, margins.top + toolbar.buttonSize.cy};
}

/// Child windows go and come with the gaps that they stand in. Upright bars show none.
void StowChildren(HWND window, ToolbarRecord& toolbar) {
  if (toolbar.vertical) return;
  for (int i = 0; i < static_cast<int>(toolbar.buttons.size()); ++i) {
    const TBBUTTON& button = toolbar.buttons[static_cast<std::size_t>(i)];
    const HWND child = IsGap(button) && !IsPlainGap(button) ? GetDlgItem(window, button.idCommand) : nullptr;
    if (child == nullptr) continue;
    const auto stowed = std::find(toolbar.stowed.begin(), toolbar.stowed.end(), child);
    if (!toolbar.IsBehindChevron(i)) {
      if (stowed == toolbar.stowed.end()) continue;  // a host may have hidden it
      toolbar.stowed.erase(stowed);
      ShowWindow(child, SW_SHOWNA);
    } else if ((GetWindowLong(child, GWL_STYLE) & WS_VISIBLE) != 0) {
      if (stowed == toolbar.stowed.end()) toolbar.stowed.push_back(child);
      if (GetFocus() == child) SetFocus(GetParent(window));
      ShowWindow(child, SW_HIDE);
    }
  }
}

// The menu

/// A button, or an entry of a combo.
struct Choice {
  int button;
  HWND combo;
  int entry;
};

std::string MenuText(const CString& text) {
  std::string quoted;
  for (const char* c = text; *c != '\0'; ++c) quoted += *c == '&' ? "&&" : std::string(1, *c);
  return quoted;
}

/// What a button is called: its name among those that are read, which are told without gaps and hidden ones.
CString NameOf(HWND window, const ToolbarRecord& toolbar, int index) {
  const WindowRecord* record = FindWindowRecord(window);
  if (record->accessibleItems == nullptr) return {};
  const auto read = [](const TBBUTTON& button) { return !IsGap(button) && !IsHidden(button); };
  const auto begin = toolbar.buttons.begin();
  return record->accessibleItems->Item(static_cast<int>(std::count_if(begin, begin + index, read))).name;
}

class ChevronMenu {
 public:
  ChevronMenu(HWND window, const ToolbarRecord& toolbar) {
    bool gap = false;
    for (int i = toolbar.behind; i < static_cast<int>(toolbar.buttons.size()); ++i) {
      const TBBUTTON& button = toolbar.buttons[static_cast<std::size_t>(i)];
      if (IsHidden(button)) continue;
      if (!IsPlainGap(button)) {
        if (gap && !m_choices.empty()) AppendMenuA(m_menu.get(), MF_SEPARATOR, 0, nullptr);
        gap = false;
        if (IsGap(button))
          AddCombo(GetDlgItem(window, button.idCommand));
        else
          AddButton(button, NameOf(window, toolbar, i), i);
      } else {
        gap = true;
      }
    }
  }
  HMENU Handle() const { return m_menu.get(); }
  const Choice* Chosen(int command) const {
    const auto at = static_cast<std::size_t>(command) - 1;
    return at < m_choices.size() ? &m_choices[at] : nullptr;
  }

 private:
  std::uintptr_t Add(Choice choice) {
    m_choices.push_back(choice);
    return m_choices.size();
  }
  void AddButton(const TBBUTTON& button, const CString& name, int index) {
    const bool checked = (button.fsState & (TBSTATE_CHECKED | TBSTATE_INDETERMINATE)) != 0;
    const UINT flags =
        ((button.fsState & TBSTATE_ENABLED) == 0 ? UINT{MF_GRAYED} : 0) | (checked ? UINT{MF_CHECKED} : 0);
    AppendMenuA(m_menu.get(), flags, Add({index, nullptr, 0}), MenuText(name).c_str());
  }
  void AddCombo(HWND combo) {
    if (combo == nullptr) return;
    const auto count = static_cast<int>(SendMessage(combo, CB_GETCOUNT));
    const CString shown = GetWindowText(combo);
    const HMENU entries = CreatePopupMenu();
    const auto current = static_cast<int>(SendMessage(combo, CB_GETCURSEL));
    const int first = std::clamp(current - kEntriesAtOnce / 2, 0, std::max(count - kEntriesAtOnce, 0));
    for (int entry = first; entry < std::min(count, first + kEntriesAtOnce); ++entry) {
      std::string text(
          static_cast<std::size_t>(SendMessage(combo, CB_GETLBTEXTLEN, static_cast<WPARAM>(entry))) + 1,
          '\0');
      SendMessage(combo, CB_GETLBTEXT, static_cast<WPARAM>(entry), reinterpret_cast<LPARAM>(text.data()));
      const CString plain(text.c_str());
      AppendMenuA(entries, plain == shown ? UINT{MF_CHECKED} : 0, Add({0, combo, entry}),
                  MenuText(plain).c_str());
    }
    const bool works = IsWindowEnabled(combo) != 0 && count > 0;
    AppendMenuA(m_menu.get(), MF_POPUP | (works ? 0 : UINT{MF_GRAYED}),
                reinterpret_cast<std::uintptr_t>(entries), MenuText(GetAccessibleName(combo)).c_str());
  }

  struct Destroy {
    void operator()(HMENU menu) const { DestroyMenu(menu); }
  };
  std::unique_ptr<std::remove_pointer_t<HMENU>, Destroy> m_menu{CreatePopupMenu()};
  std::vector<Choice> m_choices;  ///< by command, which counts from 1
};

/// As if the user had picked the entry in the combo.
void PickEntry(HWND window, const Choice& choice) {
  SendMessage(choice.combo, CB_SETCURSEL, static_cast<WPARAM>(choice.entry));
  for (const int code : {CBN_SELENDOK, CBN_SELCHANGE})
    PostMessage(window, WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(choice.combo), code),
                reinterpret_cast<LPARAM>(choice.combo));
}

}  // namespace

void FitToolbar(HWND window) {
  ToolbarRecord* toolbar = FindToolbar(window);
  if (toolbar == nullptr) return;
  const int former = toolbar->behind;
  RECT client = {};
  GetClientRect(window, &client);
  toolbar->behind = -1;
  if (toolbar->hasChevron) Fit(*toolbar, client);
  StowChildren(window, *toolbar);
  if (former >= 0 || toolbar->behind >= 0) InvalidateRect(window, nullptr, TRUE);
}

void OpenChevron(HWND window) {
  ToolbarRecord* toolbar = FindToolbar(window);
  if (toolbar == nullptr || toolbar->behind < 0) return;
  const ChevronMenu menu(window, *toolbar);
  POINT corner = {toolbar->chevron.left, toolbar->chevron.bottom};
  ClientToScreen(window, &corner);
  const int command = TrackPopupMenu(menu.Handle(), TPM_RETURNCMD, corner.x, corner.y, 0, window, nullptr);
  const Choice* chosen = command == 0 ? nullptr : menu.Chosen(command);
  if (chosen == nullptr) return;
  if (chosen->combo == nullptr)
    PressToolButton(window, chosen->button);
  else if (IsWindow(chosen->combo) != 0)
    PickEntry(window, *chosen);
}

void DrawChevron(HDC dc, const ToolbarRecord& toolbar, bool focused) {
  ToolButtonLook look;
  look.hot = toolbar.IsChevron(toolbar.hot);
  DrawToolButtonFace(dc, toolbar.chevron, look);
  PaintTheme(dc, toolbar.chevron, [&](QPainter& painter, const QRect& rect) {
    constexpr double kArm = 3;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(QPalette().color(QPalette::ButtonText), 1.5));
    painter.translate(QRectF(rect).center());
    if (toolbar.vertical) painter.rotate(90);
    for (const double x : {-4.0, 0.5})
      painter.drawPolyline(QPolygonF({{x, -kArm}, {x + kArm, 0}, {x, kArm}}));
  });
  if (focused) DrawFocusFrame(dc, toolbar.chevron);
}

}  // namespace platform
