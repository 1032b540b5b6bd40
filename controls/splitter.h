#pragma once

#include "library/export.h"
#include "platform/framework/splitter_wnd.h"

/// A splitter of fixed panes of which one column can be taken out and put back; its pane lives on meanwhile.
/// Commands of the pane at (0, 0) go to the enclosing frame, unless that column is the one that is out.
class TESSAREL_API CSplitter : public CSplitterWnd {
 public:
  CSplitter() = default;
  ~CSplitter() override = default;

  /// Nothing while a column is out already, or for a column that isn't there.
  void HideColumn(int column);
  /// Puts the column back, as wide as it was. Nothing if none is out.
  void ShowColumn();
  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  int m_nHiddenCol = -1;
};
