#pragma once

#include <memory>

#include "platform/base/export.h"
#include "platform/base/geometry.h"
#include "platform/base/string.h"
#include "platform/base/types.h"

// What screen readers and other assistive programs are told about windows that draw themselves. Standard
// controls, menus and boxes tell about themselves; a host calls these for windows of its own.
namespace platform {

enum class AccessibleRole { None, Dialog, Document, List, ListItem, ToolBar, Button, StatusBar, Text };

/// One part of a window that draws itself, as it is now.
struct AccessibleItem {
  AccessibleRole role = AccessibleRole::Text;
  CString name;
  RECT place = {};  ///< client coordinates; empty while it doesn't show
  bool enabled = true;
  bool checkable = false;
  bool checked = false;
  bool selected = false;
  bool current = false;  ///< where the keys start from
};

/// The parts of a window, in the order in which they are read. Asked whenever somebody wants to know, on the
/// thread of the windows; the window exists then.
class AccessibleItems {
 public:
  AccessibleItems() = default;
  AccessibleItems(const AccessibleItems&) = delete;
  AccessibleItems& operator=(const AccessibleItems&) = delete;
  virtual ~AccessibleItems() = default;
  virtual int Count() const = 0;
  /// index: from 0, below Count().
  virtual AccessibleItem Item(int index) const = 0;
  /// Does what a click on the part does.
  virtual void Press(int index) = 0;
};

/// Role of a window, and its parts; null for none. A dead handle is left alone, here and below.
PLATFORM_API void SetAccessible(HWND window, AccessibleRole role,
                                std::shared_ptr<AccessibleItems> items = nullptr);
/// What a window is called, and what else there is to tell of it, both UTF-8. A change is announced.
PLATFORM_API void SetAccessibleName(HWND window, LPCSTR name, LPCSTR description = nullptr);
/// What a window is called; empty if it has never been told.
PLATFORM_API CString GetAccessibleName(HWND window);
/// Announces that another part of a window has become the current one; nothing while the keyboard is
/// elsewhere.
PLATFORM_API void AnnounceAccessibleItem(HWND window, int index);
/// Names each field of a dialog after the text in front of it, or the dialog if there is none, and ties them
/// together. Dialogs of CDialog have it done once their
/// OnInitDialog is over.
PLATFORM_API void NameFieldsByLabels(HWND dialog);

}  // namespace platform
