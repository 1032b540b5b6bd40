#pragma once

#include "library/resource_ids.h"
#include "platform/base/string.h"

namespace thumbs {

/// The text under a page's picture, in the library's language. Pages are counted from 1.
inline CString CaptionOfPage(int page) {
  CString caption;
  caption.FormatMessage(IDS_ZP_PAGE_CAPTION, page);
  return caption;
}

}  // namespace thumbs
