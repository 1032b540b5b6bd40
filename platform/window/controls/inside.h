#pragma once

#include "platform/base/export.h"
#include "platform/base/types.h"

class QAbstractSlider;
class QKeyEvent;
class QWidget;
struct tagMSG;

namespace platform {

/// What input sent by tests (tessarel12_testing.h) has to know about windows. Nothing else asks for it.
struct Inside {
  QWidget* (*client)(HWND window);   ///< what the desktop gives the mouse to
  QWidget* (*control)(HWND window);  ///< the standard control that the window is
  QAbstractSlider* (*scrollBar)(HWND window, int bar);
  bool (*isDocumentWindow)(HWND window);
  int (*virtualKey)(const QKeyEvent& event);
  bool (*preTranslate)(tagMSG* message);
  void (*advanceTimers)(UINT milliseconds);
  void (*holdQueue)(bool hold);
  UINT (*cursorNumber)(HCURSOR cursor);
  bool (*chooseMenuItem)(HWND topLevel, UINT id);
};
PLATFORM_API const Inside& TheInside();

}  // namespace platform
