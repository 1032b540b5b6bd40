#include <QFontMetrics>

#include "platform/base/kernel.h"
#include "platform/graphics/detail/device_context.h"
#include "platform/graphics/gdi.h"
#include "platform/window/dialog_units.h"
#include "platform/window/window.h"

platform::DialogBaseUnits platform::BaseUnitsOf(HFONT font) {
  const QFontMetrics metrics(FontOf(font));
  const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
  // The mean width of the letters, rounded to the nearest.
  return {(metrics.horizontalAdvance(letters) / 26 + 1) / 2, metrics.height()};
}

BOOL MapDialogRect(HWND dialog, RECT* rect) {
  if (rect == nullptr || IsWindow(dialog) == 0) return FALSE;
  const auto font = reinterpret_cast<HFONT>(SendMessage(dialog, WM_GETFONT));
  const platform::DialogBaseUnits units = platform::BaseUnitsOf(font);
  const auto x = [&units](LONG value) { return MulDiv(value, units.x, 4); };
  const auto y = [&units](LONG value) { return MulDiv(value, units.y, 8); };
  *rect = {x(rect->left), y(rect->top), x(rect->right), y(rect->bottom)};
  return TRUE;
}
