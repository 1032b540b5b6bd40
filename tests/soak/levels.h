#pragma once

#include <memory>
#include <string>

#include "platform/base/types.h"
#include "platform/window/window.h"

namespace soak {

/// One way to use the library: its windows, from their making to their end.
class Level {
 public:
  virtual ~Level() = default;
  virtual const char* Name() const = 0;
  /// Where commands go; null if the window has ended.
  virtual HWND Main() const = 0;
  /// Where keys, mouse and wheel go; null if there is none.
  virtual HWND Page() const = 0;
  virtual void Open(const std::string& path) = 0;
  /// Ends what the user can end: a document, a viewer.
  virtual void Close() = 0;
  /// What doesn't hold of bars, panes and states; empty if all does.
  virtual std::string Broken() const = 0;
};

inline constexpr int kLevels = 4;
/// 0: the page window, 1: the viewer's frame, 2 and 3: the document shells for one and for several files.
std::unique_ptr<Level> MakeLevel(int number);

}  // namespace soak
