#include <QtGui/QFont>
#include <QtGui/QFontDatabase>
#include <QtGui/QFontMetrics>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <algorithm>
#include <cstring>

#include "platform/graphics/detail/dc_record.h"

using platform::DcRecord;
using platform::FindDc;

namespace {

constexpr int kDotsPerInch = 96;
constexpr int kPointsPerInch = 72;

// The theme's font in units. Its size may be in points, which surfaces of other resolutions would rescale.
QFont ThemeFont() {
  QFont font = QGuiApplication::font();
  if (font.pixelSize() < 0)
    font.setPixelSize(std::max(1, qRound(font.pointSizeF() * kDotsPerInch / kPointsPerInch)));
  return font;
}

// Below 0 the height is that of the characters, above 0 that of a line: the size whose line is no higher.
void SetHeight(QFont& font, int height) {
  if (height == 0) return;
  constexpr int kHighest = 4096;
  const int size = std::clamp(std::abs(height), 1, kHighest);
  font.setPixelSize(size);
  if (height < 0) return;
  const int line = QFontMetrics(font).height();
  font.setPixelSize(std::max(1, size * size / std::max(line, 1)));
  while (font.pixelSize() > 1 && QFontMetrics(font).height() > size) font.setPixelSize(font.pixelSize() - 1);
}

// The classic dialog font stands for one pinned family, so that dialogs measure the same on every machine.
QString FamilyOf(const char* face) {
  QString name = QString::fromUtf8(face);
  if (name.compare(u"MS Sans Serif", Qt::CaseInsensitive) != 0 &&
      name.compare(u"MS Shell Dlg", Qt::CaseInsensitive) != 0)
    return name;
  static const QString pinned = [] {
    const QString wanted = QStringLiteral("Liberation Sans");
    return QFontDatabase::hasFamily(wanted) ? wanted : ThemeFont().family();
  }();
  return pinned;
}

QFont ToQFont(const LOGFONTA& log) {
  QFont font = ThemeFont();
  if (log.lfFaceName[0] != '\0')
    font.setFamily(FamilyOf(log.lfFaceName));
  else if ((log.lfPitchAndFamily & 3) == FIXED_PITCH)
    font.setFamily(QStringLiteral("monospace"));
  if ((log.lfPitchAndFamily & 3) == FIXED_PITCH) font.setStyleHint(QFont::TypeWriter);
  if (log.lfWeight != FW_DONTCARE)
    font.setWeight(static_cast<QFont::Weight>(std::clamp<LONG>(log.lfWeight, 1, 1000)));
  font.setItalic(log.lfItalic != 0);
  font.setUnderline(log.lfUnderline != 0);
  font.setStrikeOut(log.lfStrikeOut != 0);
  SetHeight(font, std::clamp<LONG>(log.lfHeight, -100000, 100000));
  return font;
}

// Fonts need an application object: none without one.
std::optional<QFont> SelectedFont(const DcRecord* dc) {
  if (dc == nullptr || qGuiApp == nullptr) return std::nullopt;
  const auto* font = platform::ObjectAs<platform::FontRecord>(dc->state.font);
  return font == nullptr ? ThemeFont() : ToQFont(font->log);
}

QString ToText(LPCSTR text, int length) {
  if (text == nullptr) return {};
  return QString::fromUtf8(text, length < 0 ? static_cast<qsizetype>(std::strlen(text)) : length);
}

int QtFlags(UINT format) {
  int flags = 0;
  if ((format & DT_CENTER) != 0)
    flags |= Qt::AlignHCenter;
  else
    flags |= (format & DT_RIGHT) != 0 ? Qt::AlignRight : Qt::AlignLeft;
  const bool single = (format & DT_SINGLELINE) != 0;
  // Only a single line is centred or put at the bottom.
  if (single && (format & DT_VCENTER) != 0)
    flags |= Qt::AlignVCenter;
  else
    flags |= single && (format & DT_BOTTOM) != 0 ? Qt::AlignBottom : Qt::AlignTop;
  if (single)
    flags |= Qt::TextSingleLine;
  else if ((format & DT_WORDBREAK) != 0)
    flags |= Qt::TextWordWrap;
  if ((format & DT_EXPANDTABS) != 0) flags |= Qt::TextExpandTabs;
  if ((format & DT_NOPREFIX) == 0)
    flags |= (format & DT_HIDEPREFIX) != 0 ? Qt::TextHideMnemonic : Qt::TextShowMnemonic;
  if ((format & DT_NOCLIP) != 0) flags |= Qt::TextDontClip;
  return flags;
}

void DrawGlyphs(QPainter& painter, const DcRecord& dc, const QFont& font) {
  painter.setFont(font);
  painter.setPen(QColor::fromRgb(platform::ResolveColor(dc, dc.state.textColor)));
  if (dc.state.bkMode != OPAQUE) return;
  painter.setBackground(QColor::fromRgb(platform::ResolveColor(dc, dc.state.bkColor)));
  painter.setBackgroundMode(Qt::OpaqueMode);
}

}  // namespace

QFont platform::FontOf(HFONT handle) {
  if (qGuiApp == nullptr) return {};
  const auto* font = ObjectAs<FontRecord>(handle);
  return font == nullptr ? ThemeFont() : ToQFont(font->log);
}

BOOL TextOutA(HDC dc, int x, int y, LPCSTR text, int length) {
  DcRecord* record = FindDc(dc);
  const auto font = SelectedFont(record);
  if (!font || text == nullptr) return FALSE;
  const QString line = ToText(text, length);
  const QFontMetrics metrics(*font);
  const int width = metrics.horizontalAdvance(line);
  const QPoint at = platform::UnitsOf(*record, x, y);
  const QRect cell(at, QSize(width, metrics.height()));
  // Slanted letters reach beyond their advance.
  const QRect reach = cell.adjusted(-metrics.height(), 0, metrics.height(), 0);
  return platform::PaintWithQt(*record, reach, [&](QPainter& painter) {
    if (record->state.bkMode == OPAQUE)
      painter.fillRect(cell, QColor::fromRgb(platform::ResolveColor(*record, record->state.bkColor)));
    DrawGlyphs(painter, *record, *font);
    painter.setBackgroundMode(Qt::TransparentMode);
    painter.drawText(at + QPoint(0, metrics.ascent()), line);
  });
}

int DrawTextA(HDC dc, LPCSTR text, int length, LPRECT rect, UINT format) {
  DcRecord* record = FindDc(dc);
  const auto font = SelectedFont(record);
  if (!font || text == nullptr || rect == nullptr) return 0;
  const QFontMetrics metrics(*font);
  const QRect box = platform::UnitsOf(*record, rect->left, rect->top, std::int64_t{rect->right} - rect->left,
                                      std::int64_t{rect->bottom} - rect->top);
  QString content = ToText(text, length).replace(QLatin1String("\r\n"), QLatin1String("\n"));
  const int mnemonic = (format & DT_NOPREFIX) == 0 ? Qt::TextShowMnemonic : 0;
  if ((format & (DT_END_ELLIPSIS | DT_PATH_ELLIPSIS)) != 0 && (format & DT_CALCRECT) == 0)
    content = metrics.elidedText(content, (format & DT_END_ELLIPSIS) != 0 ? Qt::ElideRight : Qt::ElideMiddle,
                                 box.width(), mnemonic);
  const int flags = QtFlags(format);
  const QRect used = metrics.boundingRect(box, flags, content);
  if ((format & DT_CALCRECT) != 0) {
    // Width and height grow or shrink from the corner that the caller gave.
    rect->right = rect->left + used.width();
    rect->bottom = rect->top + used.height();
    return used.height();
  }
  const QRect reach =
      (format & DT_NOCLIP) != 0 ? used.united(box).adjusted(-metrics.height(), 0, metrics.height(), 0) : box;
  const bool drawn = platform::PaintWithQt(*record, reach, [&](QPainter& painter) {
    DrawGlyphs(painter, *record, *font);
    painter.drawText(box, flags, content);
  });
  return drawn ? used.height() : 0;
}

BOOL GetTextExtentPoint32A(HDC dc, LPCSTR text, int length, LPSIZE size) {
  const auto font = SelectedFont(FindDc(dc));
  if (!font || text == nullptr || size == nullptr) return FALSE;
  const QFontMetrics metrics(*font);
  *size = {metrics.horizontalAdvance(ToText(text, length)), metrics.height()};
  return TRUE;
}

BOOL GetTextMetricsA(HDC dc, TEXTMETRICA* result) {
  const auto font = SelectedFont(FindDc(dc));
  if (!font || result == nullptr) return FALSE;
  const QFontMetrics metrics(*font);
  *result = {.tmHeight = metrics.height(),
             .tmAscent = metrics.ascent(),
             .tmDescent = metrics.descent(),
             .tmInternalLeading = std::max(0, metrics.height() - font->pixelSize()),
             .tmExternalLeading = std::max(0, metrics.leading()),
             .tmAveCharWidth = metrics.averageCharWidth(),
             .tmMaxCharWidth = metrics.maxWidth(),
             .tmWeight = static_cast<LONG>(font->weight()),
             .tmItalic = static_cast<BYTE>(font->italic()),
             .tmUnderlined = static_cast<BYTE>(font->underline()),
             .tmStruckOut = static_cast<BYTE>(font->strikeOut()),
             .tmPitchAndFamily = 0};
  return TRUE;
}
