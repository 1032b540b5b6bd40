#include <strings.h>

#include <QIcon>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "platform/window/detail/cursors.h"
#include "platform/window/detail/widgets.h"
#include "platform/window/detail/window_record.h"

namespace {

using platform::WindowClass;

struct ClassTable {
  std::vector<std::unique_ptr<WindowClass>> classes;
};

ClassTable& Classes() {
  static ClassTable table;
  return table;
}

/// Gives the icon to the windows that the class has already.
void ShowClassIcon(const WindowClass& windowClass) {
  const QIcon icon = platform::IconOf(windowClass.icon);
  platform::Windows().ForEach([&](HWND, const platform::WindowRecord& window) {
    if (window.windowClass == &windowClass && window.frame) window.frame->setWindowIcon(icon);
  });
}

}  // namespace

WindowClass* platform::FindWindowClass(const char* name) {
  if (name == nullptr) return nullptr;
  for (const auto& windowClass : Classes().classes)
    if (strcasecmp(windowClass->name.c_str(), name) == 0) return windowClass.get();
  return nullptr;
}

ATOM RegisterClassA(const WNDCLASS* windowClass) {
  if (windowClass == nullptr || windowClass->lpszClassName == nullptr || windowClass->lpfnWndProc == nullptr)
    return 0;
  if (platform::FindWindowClass(windowClass->lpszClassName) != nullptr) return 0;
  auto& classes = Classes().classes;
  classes.push_back(std::make_unique<WindowClass>(WindowClass{
      windowClass->lpszClassName, windowClass->style, windowClass->lpfnWndProc, windowClass->hInstance,
      windowClass->hIcon, windowClass->hCursor, windowClass->hbrBackground}));
  return static_cast<ATOM>(0xC000 + classes.size());
}

BOOL GetClassInfoA(HINSTANCE, LPCSTR className, WNDCLASS* windowClass) {
  const WindowClass* found = platform::FindWindowClass(className);
  if (found == nullptr || windowClass == nullptr) return FALSE;
  *windowClass = {
      found->style, found->procedure,   0, 0, found->instance, found->icon, found->cursor, found->background,
      nullptr,      found->name.c_str()};
  return TRUE;
}

int GetClassNameA(HWND window, LPSTR buffer, int bufferSize) {
  const platform::WindowRecord* record = platform::FindWindowRecord(window);
  if (record == nullptr || buffer == nullptr || bufferSize < 1) return 0;
  const std::string& name = record->windowClass->name;
  const std::size_t length = std::min(name.size(), static_cast<std::size_t>(bufferSize) - 1);
  name.copy(buffer, length);
  buffer[length] = 0;
  return static_cast<int>(length);
}

std::intptr_t GetClassLong(HWND window, int index) {
  const platform::WindowRecord* record = platform::FindWindowRecord(window);
  if (record == nullptr) return 0;
  switch (index) {
    case GCL_HCURSOR:
      return reinterpret_cast<std::intptr_t>(record->windowClass->cursor);
    case GCL_HICON:
      return reinterpret_cast<std::intptr_t>(record->windowClass->icon);
    case GCL_HBRBACKGROUND:
      return reinterpret_cast<std::intptr_t>(record->windowClass->background);
    case GCL_STYLE:
      return static_cast<std::intptr_t>(record->windowClass->style);
    default:
      return 0;
  }
}

std::intptr_t SetClassLong(HWND window, int index, std::intptr_t value) {
  const platform::WindowRecord* record = platform::FindWindowRecord(window);
  if (record == nullptr) return 0;
  const std::intptr_t former = GetClassLong(window, index);
  switch (index) {
    case GCL_HCURSOR:
      record->windowClass->cursor = reinterpret_cast<HCURSOR>(value);
      break;
    case GCL_HICON:
      record->windowClass->icon = reinterpret_cast<HICON>(value);
      ShowClassIcon(*record->windowClass);
      break;
    case GCL_HBRBACKGROUND:
      record->windowClass->background = reinterpret_cast<HBRUSH>(value);
      break;
    case GCL_STYLE:
      record->windowClass->style = static_cast<UINT>(value);
      break;
    default:
      break;
  }
  return former;
}
