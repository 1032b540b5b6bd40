#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "platform/graphics/gdi.h"

/// A memory device context with a top-down 32-bit bitmap whose pixels can be looked at.
class Canvas {
 public:
  Canvas(int width, int height, COLORREF color = 0) : m_width(width), m_height(height) {
    BITMAPINFO info = {};
    info.bmiHeader = {sizeof info.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* bits = nullptr;
    m_bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    m_pixels = static_cast<std::uint32_t*>(bits);
    m_dc = CreateCompatibleDC(nullptr);
    m_old = SelectObject(m_dc, m_bitmap);
    for (int i = 0; i < width * height; ++i) m_pixels[i] = Pixel(color);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas() {
    DeleteDC(m_dc);
    DeleteObject(m_bitmap);
  }
  operator HDC() const { return m_dc; }  // NOLINT: stands for its device context
  std::uint32_t& At(int x, int y) { return m_pixels[y * m_width + x]; }
  COLORREF Color(int x, int y) const {
    const std::uint32_t p = m_pixels[y * m_width + x];
    return RGB(static_cast<int>(p >> 16), static_cast<int>(p >> 8), static_cast<int>(p));
  }
  static std::uint32_t Pixel(COLORREF c) {
    return 0xff000000U | static_cast<std::uint32_t>(GetRValue(c)) << 16 |
           static_cast<std::uint32_t>(GetGValue(c)) << 8 | GetBValue(c);
  }
  /// Compares all pixels and names the first that differs.
  testing::AssertionResult Is(const std::function<COLORREF(int x, int y)>& expected) const {
    for (int y = 0; y < m_height; ++y)
      for (int x = 0; x < m_width; ++x)
        if (Color(x, y) != expected(x, y))
          return testing::AssertionFailure()
                 << "(" << x << ", " << y << ") is " << std::hex << Color(x, y) << ", not " << expected(x, y);
    return testing::AssertionSuccess();
  }

 private:
  int m_width, m_height;
  HBITMAP m_bitmap;
  std::uint32_t* m_pixels;
  HDC m_dc;
  HGDIOBJ m_old;
};

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 255, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);

/// A brush or another object that is selected for as long as this lives, then deleted.
class Selected {
 public:
  Selected(HDC dc, HGDIOBJ object) : m_dc(dc), m_object(object), m_old(SelectObject(dc, object)) {}
  Selected(const Selected&) = delete;
  Selected& operator=(const Selected&) = delete;
  ~Selected() {
    SelectObject(m_dc, m_old);
    DeleteObject(m_object);
  }

 private:
  HDC m_dc;
  HGDIOBJ m_object, m_old;
};
