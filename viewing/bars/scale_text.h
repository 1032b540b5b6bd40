#pragma once

#include <cstdlib>

#include "platform/base/string.h"

// How a scale is written in fields, and read from them.

/// A scale as it stands in combo and pane: "50%".
inline CString ScaleText(int percent) {
  CString text;
  text.Format("%d%%", percent);
  return text;
}

/// The number in front; 0 if there is none. Only the last "%" is left out of account.
inline int PercentOfText(CString text) {
  const int sign = text.ReverseFind('%');
  if (sign >= 0) text.Delete(sign);
  return std::atoi(text);
}
