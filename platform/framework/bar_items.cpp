#include "platform/framework/detail/bar_items.h"

#include <vector>

#include "platform/framework/detail/item_text.h"
#include "platform/framework/status_bar.h"
#include "platform/framework/tool_bar.h"
#include "platform/window/detail/tool_bar_record.h"

namespace platform {
namespace {

/// A bar behind its window, which may outlive it.
template <typename Bar>
class BarItems : public AccessibleItems {
 public:
  explicit BarItems(HWND window) : m_window(window) {}

 protected:
  Bar* Find() const { return dynamic_cast<Bar*>(CWnd::FromHandlePermanent(m_window)); }
  HWND Window() const { return m_window; }

 private:
  HWND m_window;
};

class ToolButtons : public BarItems<CToolBar> {
 public:
  using BarItems::BarItems;
  int Count() const override { return static_cast<int>(Shown().size()); }

  AccessibleItem Item(int index) const override {
    const int button = Shown()[static_cast<std::size_t>(index)];
    const UINT style = Find()->GetButtonStyle(button);
    const UINT command = Find()->GetItemID(button);
    AccessibleItem item;
    item.role = AccessibleRole::Button;
    const ToolbarRecord& toolbar = *FindToolbar(Window());
    item.current = toolbar.current == button;
    if (toolbar.IsChevron(button)) {
      item.name = ItemText(kChevronItem, true);
      item.place = toolbar.chevron;
      return item;
    }
    item.name = ItemText(command, true);
    if (item.name.IsEmpty() != 0) item.name = ItemText(command, false);
    if (!toolbar.IsBehindChevron(button)) Find()->GetItemRect(button, &item.place);
    item.enabled = (style & TBBS_DISABLED) == 0;
    item.checked = (style & TBBS_CHECKED) != 0;
    item.checkable = item.checked || (style & TBBS_CHECKBOX) != 0;
    return item;
  }

  void Press(int index) override { PressToolButton(Window(), Shown()[static_cast<std::size_t>(index)]); }

 private:
  /// The numbers of the buttons: without gaps and hidden ones. The chevron stands last.
  std::vector<int> Shown() const {
    std::vector<int> shown;
    const CToolBar* bar = Find();
    for (int i = 0; bar != nullptr && i < bar->GetCount(); ++i)
      if ((bar->GetButtonStyle(i) & (TBBS_SEPARATOR | TBBS_HIDDEN)) == 0) shown.push_back(i);
    if (bar != nullptr && FindToolbar(Window())->IsChevron(bar->GetCount())) shown.push_back(bar->GetCount());
    return shown;
  }
};

class Panes : public BarItems<CStatusBar> {
 public:
  using BarItems::BarItems;
  int Count() const override {
    const CStatusBar* bar = Find();
    return bar == nullptr ? 0 : bar->GetCount();
  }
  AccessibleItem Item(int index) const override {
    AccessibleItem item;
    item.enabled = (Find()->GetPaneStyle(index) & SBPS_DISABLED) == 0;
    if (item.enabled) item.name = Find()->GetPaneText(index);
    Find()->GetItemRect(index, &item.place);
    return item;
  }
  void Press(int) override {}
};

}  // namespace

std::shared_ptr<AccessibleItems> ButtonsOf(const CToolBar& bar) {
  return std::make_shared<ToolButtons>(bar.m_hWnd);
}

std::shared_ptr<AccessibleItems> PanesOf(const CStatusBar& bar) {
  return std::make_shared<Panes>(bar.m_hWnd);
}

}  // namespace platform
