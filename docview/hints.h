#pragma once

// What a document tells its views by the hints of an update.
namespace view {

enum : int { kHintAllPages = 0, kHintPageChanged = 1, kHintOtherPage = 2 };
inline constexpr int kActivePage = -1;  ///< in the place of a page number

/// Whether an update concerns a view that shows the active page.
inline bool ConcernsActivePage(int hint, int page, int activePage) {
  return hint != kHintPageChanged || page == kActivePage || page == activePage;
}

}  // namespace view
