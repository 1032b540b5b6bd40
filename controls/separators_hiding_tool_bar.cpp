#include "controls/separators_hiding_tool_bar.h"

#include <array>
#include <vector>

BEGIN_MESSAGE_MAP(CSeparatorsHidingToolBar, CToolBar256)
ON_WM_PAINT()
END_MESSAGE_MAP()

namespace {

constexpr std::size_t kClassNameRoom = 1024;

/// Of each gap of a toolbar. One with any state set isn't a plain gap and stays as it is drawn.
std::vector<CRect> PlainGaps(const CToolBar& bar) {
  std::vector<CRect> gaps;
  const int count = bar.GetCount();
  for (int i = 0; i < count; ++i) {
    UINT id = 0;
    UINT style = 0;
    int width = 0;
    bar.GetButtonInfo(i, id, style, width);
    if (style != TBBS_SEPARATOR) continue;
    bar.GetItemRect(i, gaps.emplace_back());
  }
  return gaps;
}

}  // namespace

void CSeparatorsHidingToolBar::OnPaint() {
  if (m_bDelayedButtonLayout != 0) Layout();
  CPaintDC dc(this);
  // The control draws into the same paint cycle, so that its lines are never seen.
  DefWindowProc(WM_PAINT, reinterpret_cast<WPARAM>(dc.m_hDC), 0);
  HideSeparators(&dc);
}

CBrush* CSeparatorsHidingToolBar::GetBackgroundBrush() {
  if (::IsWindow(m_hWnd) == 0) return nullptr;
  std::array<char, kClassNameRoom> name{};
  if (::GetClassNameA(m_hWnd, name.data(), static_cast<int>(name.size())) == 0) return nullptr;
  WNDCLASSEX windowClass{};
  windowClass.cbSize = sizeof windowClass;
  if (::GetClassInfoEx(nullptr, name.data(), &windowClass) == 0) return nullptr;
  return CBrush::FromHandle(windowClass.hbrBackground);
}

void CSeparatorsHidingToolBar::HideSeparators(CDC* dc) {
  if (::IsWindow(m_hWnd) == 0) return;
  CBrush* background = GetBackgroundBrush();
  if (background == nullptr) return;
  CRect clip;
  dc->GetClipBox(clip);
  if (clip.IsRectEmpty() != 0) return;

  const std::vector<CRect> gaps = PlainGaps(*this);
  for (HWND child = ::GetWindow(m_hWnd, GW_CHILD); child != nullptr;
       child = ::GetWindow(child, GW_HWNDNEXT)) {
    if ((::GetWindowLong(child, GWL_STYLE) & WS_VISIBLE) == 0) continue;  // stowed behind a chevron
    CRect place;
    ::GetWindowRect(child, place);
    ScreenToClient(place);
    for (const CRect& gap : gaps) {
      CRect shared;
      if (shared.IntersectRect(place, gap) == 0 || shared.IntersectRect(gap, clip) == 0) continue;
      dc->FillRect(shared, background);
    }
  }
}
