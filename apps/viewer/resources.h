#pragma once

#include <span>

#include "resource_ids.h"

std::span<const platform::StringResource> AppStrings();
std::span<const platform::DialogResource> AppDialogs();

/// Makes the application's texts and dialogs findable, beside the library's. Once is enough.
void RegisterAppResources();

CString Text(UINT id);
/// A message template of the resources with its places filled.
template <typename... Values>
CString TextWith(UINT id, Values... values) {
  CString text;
  text.FormatMessage(id, values...);
  return text;
}
