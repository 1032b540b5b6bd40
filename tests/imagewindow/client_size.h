#pragma once

#include <gtest/gtest.h>

#include "platform/framework/wnd.h"

/// Moves the outer window so that the inner one, itself or a pane that fills it, gets a client area of this
/// size, whatever borders and bars take.
inline void GiveClientSize(CWnd& outer, CWnd& inner, int width, int height) {
  CRect client;
  for (int i = 0; i < 4; ++i) {
    CRect place;
    outer.GetWindowRect(place);
    inner.GetClientRect(client);
    outer.MoveWindow(0, 0, place.Width() + width - client.right, place.Height() + height - client.bottom,
                     FALSE);
  }
  inner.GetClientRect(client);
  ASSERT_EQ(client, CRect(0, 0, width, height));
}
