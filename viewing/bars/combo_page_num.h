#pragma once

#include "library/export.h"
#include "platform/framework/standard_controls.h"

/// The page combo of a toolbar: takes digits only; Enter gives a typed page number to the frame like a pick
/// from the list, or tells that there is no such page; Escape gives the keyboard back.
class TESSAREL_API CComboPageNum : public CComboBox {
 public:
  CComboPageNum() = default;
  ~CComboPageNum() override = default;
  BOOL PreTranslateMessage(MSG* message) override;

 private:
  void Enter();

  DECLARE_MESSAGE_MAP()
};
