#pragma once

#include <gtest/gtest.h>

#include <cstring>
#include <span>
#include <string>

#include "library/tessarel_ext.h"
#include "platform/base/translation.h"
#include "platform/graphics/gdi.h"
#include "platform/resources/resource_tables.h"
#include "platform/window/dialog_units.h"
#include "platform/window/pump.h"

/// Measures texts in the font of a dialog.
class Measure {
 public:
  explicit Measure(const platform::DialogResource& dialog) {
    LOGFONTA log{};
    log.lfHeight = -(dialog.fontPoints * 96 + 36) / 72;
    log.lfWeight = 400;
    std::strncpy(log.lfFaceName, dialog.font, LF_FACESIZE - 1);
    m_font = CreateFontIndirectA(&log);
    m_dc = CreateCompatibleDC(nullptr);
    SelectObject(m_dc, m_font);
    m_units = platform::BaseUnitsOf(m_font);
  }
  ~Measure() {
    DeleteDC(m_dc);
    DeleteObject(m_font);
  }
  Measure(const Measure&) = delete;
  Measure& operator=(const Measure&) = delete;

  int Width(const platform::DialogItem& item) const { return item.cx * m_units.x / 4; }
  int Height(const platform::DialogItem& item) const { return item.cy * m_units.y / 8; }
  /// Broken into lines of that width; 0: one line.
  SIZE Of(const char* text, int width) const {
    RECT rect = {0, 0, width, 0};
    DrawText(m_dc, text, -1, &rect, DT_CALCRECT | (width == 0 ? DT_SINGLELINE : DT_WORDBREAK));
    return {rect.right, rect.bottom};
  }

 private:
  HFONT m_font;
  HDC m_dc;
  platform::DialogBaseUnits m_units{};
};

/// What a control needs beside its text: the frame of a button, a mark and its gap, a box' corners.
inline int Beside(platform::DialogItem::Kind kind) {
  using enum platform::DialogItem::Kind;
  if (kind == PushButton || kind == DefaultPushButton) return 8;
  if (kind == RadioButton || kind == CheckBox) return 19;
  return kind == GroupBox ? 16 : 0;
}

/// Each text of the dialogs has room in its control, in each language.
inline void ExpectRoomForTexts(std::span<const platform::DialogResource> dialogs) {
  platform::EnsureApplication();
  for (const char* language : {"it", "en", "de"}) {
    SelectTessarelLanguage(language);
    for (const auto& dialog : dialogs) {
      const Measure measure(dialog);
      for (const auto& item : dialog.items) {
        const std::string text = platform::Localized(item.text);
        if (text.empty() || text == "Static") continue;
        SCOPED_TRACE(std::string(language) + ": " + dialog.caption + ": " + text);
        const bool wraps = item.kind == platform::DialogItem::Kind::Static && item.cy > 10;
        const int room = measure.Width(item) - Beside(item.kind);
        const SIZE needed = measure.Of(text.c_str(), wraps ? room : 0);
        EXPECT_LE(needed.cx, room);
        EXPECT_LE(needed.cy, wraps ? measure.Height(item) + 1 : 1000);
      }
    }
  }
  SelectTessarelLanguage("it");
}
