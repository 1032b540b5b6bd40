#include "viewing/accessible_page.h"

#include "library/resource_ids.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/accessible.h"

void DescribePage(HWND window, const CString& file, int page, int pages, int percent) {
  platform::SetAccessible(window, platform::AccessibleRole::Document);
  CString name = file;
  CString scale;
  if (page >= 1) {
    CString place;
    place.FormatMessage(ID_ZP_INDICATOR_PAGE, page, pages);
    name += (name.IsEmpty() != 0 ? "" : ", ") + place;
    scale.FormatMessage(ID_ZP_INDICATOR_ZOOM, percent);
  }
  platform::SetAccessibleName(window, name, scale);
}
