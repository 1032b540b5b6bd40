#pragma once

#include <cstdint>

class CObject;

// What a document tells its views by the hints of an update.
namespace view {

enum : int { kHintAllPages = 0, kHintPageChanged = 1, kHintOtherPage = 2 };
inline constexpr int kActivePage = -1;  ///< in the place of a page number

/// A page's number, counted from 0, in the place of the object that a hint carries. Nobody may look into
/// such an object.
inline CObject* HintOfPage(int page) {
  return reinterpret_cast<CObject*>(static_cast<std::intptr_t>(page));
}
/// The page of a hint; -1 for the active one.
inline int PageOfHint(const CObject* hint) {
  return static_cast<int>(reinterpret_cast<std::intptr_t>(hint));
}

/// Whether an update concerns a view that shows the active page.
inline bool ConcernsActivePage(int hint, int page, int activePage) {
  return hint != kHintPageChanged || page == kActivePage || page == activePage;
}

}  // namespace view
