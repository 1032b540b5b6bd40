#pragma once

#include "library/export.h"
#include "platform/framework/standard_controls.h"

/// The scale combo of a toolbar: takes digits and "%"; Enter gives a typed scale to the frame like a pick
/// from the list.
class TESSAREL_API CComboScale : public CComboBox {
 public:
  CComboScale() = default;
  ~CComboScale() override = default;
  /// Fills the list with the usual scales.
  void Initialize();
  BOOL PreTranslateMessage(MSG* message) override;

 private:
  BOOL PreTranslateKey(MSG* message);

  DECLARE_MESSAGE_MAP()
};
