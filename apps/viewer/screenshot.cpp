#include "screenshot.h"

#include "input_file.h"

namespace {

/// Lets the window paint, and its bars follow its state.
void Settle(CWnd& window) {
  constexpr int kMostMessages = 10000;
  for (int round = 0; round < 2; ++round) {
    MSG message{};
    for (int i = 0; i < kMostMessages && PeekMessage(&message, nullptr, 0, 0, PM_REMOVE) != FALSE; ++i) {
      TranslateMessage(&message);
      DispatchMessage(&message);
    }
    window.SendMessageToDescendants(WM_IDLEUPDATECMDUI, TRUE, 0);
    window.UpdateWindow();
  }
}

}  // namespace

void WriteScreenshot(CWnd& window, const std::string& target) {
  constexpr int kPng = 75;
  Settle(window);
  RECT place{};
  window.GetWindowRect(&place);
  const InputFile output(target);  // for its name
  Imaging(output, [&] {
    struct_LEAD_Bitmap picture{};
    LEADTOOLS::CreateBitmap(&picture, 1, static_cast<unsigned>(place.right - place.left),
                            static_cast<unsigned>(place.bottom - place.top), 24, 1, nullptr, 1, nullptr, 0);
    const HDC dc = LEADTOOLS::CreateLeadDC(&picture);
    PrintWindow(window.m_hWnd, dc, 0);
    LEADTOOLS::DeleteLeadDC(dc);
    try {
      LEADTOOLS::SaveBitmap(target.c_str(), &picture, kPng, 0, 0, nullptr);
    } catch (...) {
      LEADTOOLS::FreeBitmap(&picture);
      throw;
    }
    LEADTOOLS::FreeBitmap(&picture);
  });
}
