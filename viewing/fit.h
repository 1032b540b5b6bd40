#pragma once

#include "platform/base/geometry.h"

/// Fit modes. Any other value is kept and does nothing.
enum : int { FitModeNone = 0, FitModeWidth = 1, FitModeHeight = 2, FitModeBest = 3 };

// The scale factors that fit a page into a window. A page too long for the window needs a scroll bar, which
// takes room from the side that is fitted.
namespace fit {

/// What a window shows and of which size, in pixels.
struct Situation {
  SIZE client;  ///< client area, without the scroll bars that are up
  SIZE scaled;  ///< page at the scale before the fit
  SIZE page;    ///< page at full size; 0 by 0 without a page, which gives factors that no zoom takes
};

/// Room along the fitted side and across it.
struct Axis {
  int client;
  int clientAcross;
  int scaledAcross;
  int page;
  int pageAcross;
  int bar;  ///< thickness of the scroll bar that stands at the fitted side's end
};

/// The scale at which the page fills that side, less a pixel, and less the scroll bar that it needs then.
inline double Factor(const Axis& axis) {
  int room = axis.client - 1;
  if (axis.scaledAcross >= axis.clientAcross)
    room += axis.bar;  // the bar is up and has taken its room already
  const double factor = static_cast<double>(room) / axis.page;
  if (axis.clientAcross > axis.pageAcross * factor) return factor;
  return static_cast<double>(room - axis.bar) / axis.page;  // the fitted page will need the bar
}

/// verticalBar: width of the vertical scroll bar.
inline double ToWidth(const Situation& at, int verticalBar) {
  return Factor({at.client.cx, at.client.cy, at.scaled.cy, at.page.cx, at.page.cy, verticalBar});
}

/// horizontalBar: height of the horizontal scroll bar.
inline double ToHeight(const Situation& at, int horizontalBar) {
  return Factor({at.client.cy, at.client.cx, at.scaled.cx, at.page.cy, at.page.cx, horizontalBar});
}

enum class Side { Width, Height };

/// The side whose fit shows the whole page. Of a page with the window's ratio the width.
inline Side Best(const Situation& at) {
  const double byWidth = static_cast<double>(at.client.cx) / at.page.cx;
  const double byHeight = static_cast<double>(at.client.cy) / at.page.cy;
  return byHeight < byWidth ? Side::Height : Side::Width;
}

}  // namespace fit
