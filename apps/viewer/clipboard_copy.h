#pragma once

#include "tessarel12.h"

/// Puts the page as it is shown, or a part of it in its own pixels, on the clipboard, with its resolution.
/// An empty part stands for the page. False if it can't.
bool CopyToClipboard(CImageWindow& window, const CRect& part);
