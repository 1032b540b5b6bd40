#pragma once

#include "library/export.h"

/// A frame that shows a document's active page, as the document and its views know it.
class TESSAREL_API CZPDocumentFrame {
 public:
  /// Brings the bars in line with the document: pages, active page, scale.
  virtual void UpdateFrame() = 0;
  /// The same for the scale alone, which is written to the user's settings a second after its last change.
  virtual void UpdateZoomStatus() = 0;
  /// Called after each open, whether it worked or not: takes its text off the status bar and updates the
  /// frame.
  virtual void InitialFrameUpdate() = 0;

 protected:
  ~CZPDocumentFrame() = default;
};
