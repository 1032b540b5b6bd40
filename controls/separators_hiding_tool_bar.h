#pragma once

#include "controls/tool_bar_256.h"

/// A toolbar without lines in the gaps in which a child window stands, such as a combo box: what the control
/// drew there is painted over. Free gaps keep their line.
class TESSAREL_API CSeparatorsHidingToolBar : public CToolBar256 {
 public:
  CSeparatorsHidingToolBar() = default;
  ~CSeparatorsHidingToolBar() override = default;

 protected:
  void OnPaint();

  /// Fills those gaps, as far as they lie in the clip box of dc, with the background brush.
  virtual void HideSeparators(CDC* dc);
  /// What the gaps are filled with: the background of the window's class. A temporary wrapper; null, which
  /// leaves the lines, without a window or for a class without a background.
  virtual CBrush* GetBackgroundBrush();

  DECLARE_MESSAGE_MAP()
};
