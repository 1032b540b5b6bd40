#include "platform/window/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#include "platform/base/global_memory.h"
#include "platform/graphics/detail/dib.h"

namespace {

/// A block of global memory, locked.
class Locked {
 public:
  explicit Locked(HGLOBAL block) : m_block(block), m_data(static_cast<BYTE*>(GlobalLock(block))) {}
  Locked(const Locked&) = delete;
  Locked& operator=(const Locked&) = delete;
  ~Locked() {
    if (m_data != nullptr) GlobalUnlock(m_block);
  }
  BYTE* Data() const { return m_data; }
  std::size_t Size() const { return GlobalSize(m_block); }

 private:
  HGLOBAL m_block;
  BYTE* m_data;
};

struct BlockEnd {
  void operator()(void* block) const { GlobalFree(block); }
};
using Block = std::unique_ptr<void, BlockEnd>;

/// The clipboard while it is open.
struct Session {
  bool open = false;
  std::unique_ptr<QMimeData> contents;  ///< to be shown at the close; null: nothing was emptied
  Block lent;                           ///< handed out by GetClipboardData
};

Session& TheSession() {
  static auto& session = *new Session;
  return session;
}

const QMimeData* Shown() {
  return qGuiApp == nullptr ? nullptr : QGuiApplication::clipboard()->mimeData();
}

// Blocks and images

std::size_t PitchOf(int width, int bits) {
  return (static_cast<std::size_t>(width) * static_cast<std::size_t>(bits) + 31) / 32 * 4;
}

QImage::Format FormatOf(int bits) {
  if (bits == 1) return QImage::Format_Mono;
  if (bits <= 8) return QImage::Format_Indexed8;
  return bits == 24 ? QImage::Format_BGR888 : QImage::Format_RGB32;
}

void CopyRow(uchar* to, const BYTE* from, const platform::DibFormat& format) {
  if (format.bits != 4) {
    std::memcpy(to, from,
                (static_cast<std::size_t>(format.width) * static_cast<std::size_t>(format.bits) + 7) / 8);
    return;
  }
  for (int x = 0; x < format.width; ++x) to[x] = x % 2 == 0 ? from[x / 2] >> 4 : from[x / 2] & 0xf;
}

/// Checked against the block's size; a null image for what isn't taken.
QImage ImageOf(const Locked& block) {
  BITMAPINFOHEADER head{};
  if (block.Data() == nullptr || block.Size() < sizeof head) return {};
  std::memcpy(&head, block.Data(), sizeof head);
  const std::size_t entries = head.biBitCount > 8 ? 0 : std::size_t{1} << head.biBitCount;
  const std::size_t colors = head.biClrUsed != 0 ? std::min<std::size_t>(head.biClrUsed, entries) : entries;
  const std::size_t rowsAt = head.biSize + colors * sizeof(RGBQUAD);
  if (head.biCompression != BI_RGB || head.biBitCount == 16 || head.biSize > block.Size() ||
      rowsAt > block.Size())
    return {};
  const auto format =
      platform::ReadDibFormat(reinterpret_cast<const BITMAPINFO*>(block.Data()), DIB_RGB_COLORS, nullptr);
  if (!format) return {};
  const std::size_t pitch = PitchOf(format->width, format->bits);
  if ((block.Size() - rowsAt) / pitch < static_cast<std::size_t>(format->height)) return {};
  QImage image(format->width, format->height, FormatOf(format->bits));
  if (image.isNull()) return {};
  if (format->bits <= 8) {
    QList<QRgb> table;
    for (const std::uint32_t color : format->colors) table.append(color | 0xff000000U);
    image.setColorTable(table);
  }
  const BYTE* const rows = block.Data() + rowsAt;
  for (int y = 0; y < format->height; ++y) {
    const int row = format->topDown ? y : format->height - 1 - y;
    CopyRow(image.scanLine(y), rows + pitch * static_cast<std::size_t>(row), *format);
  }
  if (head.biXPelsPerMeter > 0) image.setDotsPerMeterX(head.biXPelsPerMeter);
  if (head.biYPelsPerMeter > 0) image.setDotsPerMeterY(head.biYPelsPerMeter);
  return image;
}

/// The image in a depth that a block has, with the most significant bit at the left.
QImage InBlockDepth(const QImage& image) {
  if (image.format() == QImage::Format_Mono || image.format() == QImage::Format_Indexed8) return image;
  if (image.format() == QImage::Format_MonoLSB) return image.convertToFormat(QImage::Format_Mono);
  return image.convertToFormat(QImage::Format_RGB32);
}

Block BlockOf(const QImage& shown) {
  const QImage image = InBlockDepth(shown);
  const int bits = image.depth();
  const std::size_t colors = bits > 8 ? 0 : std::size_t{1} << bits;
  const std::size_t pitch = PitchOf(image.width(), bits);
  const std::size_t rows = pitch * static_cast<std::size_t>(image.height());
  const std::size_t rowsAt = sizeof(BITMAPINFOHEADER) + colors * sizeof(RGBQUAD);
  Block block(GlobalAlloc(GHND, rowsAt + rows));
  const Locked locked(block.get());
  if (locked.Data() == nullptr) return nullptr;
  const BITMAPINFOHEADER head{sizeof(BITMAPINFOHEADER),
                              image.width(),
                              image.height(),
                              1,
                              static_cast<WORD>(bits),
                              BI_RGB,
                              static_cast<DWORD>(rows),
                              image.dotsPerMeterX(),
                              image.dotsPerMeterY(),
                              static_cast<DWORD>(colors),
                              0};
  std::memcpy(locked.Data(), &head, sizeof head);
  for (qsizetype i = 0; i < std::min<qsizetype>(image.colorCount(), static_cast<qsizetype>(colors)); ++i) {
    const QRgb color = image.color(static_cast<int>(i));
    const RGBQUAD entry{static_cast<BYTE>(qBlue(color)), static_cast<BYTE>(qGreen(color)),
                        static_cast<BYTE>(qRed(color)), 0};
    std::memcpy(locked.Data() + sizeof head + static_cast<std::size_t>(i) * sizeof entry, &entry,
                sizeof entry);
  }
  for (int y = 0; y < image.height(); ++y)
    std::memcpy(locked.Data() + rowsAt + pitch * static_cast<std::size_t>(image.height() - 1 - y),
                image.constScanLine(y),
                std::min<std::size_t>(pitch, static_cast<std::size_t>(image.bytesPerLine())));
  return block;
}

Block BlockOf(const QByteArray& text) {
  Block block(GlobalAlloc(GHND, static_cast<std::size_t>(text.size()) + 1));
  const Locked locked(block.get());
  if (locked.Data() == nullptr) return nullptr;
  std::memcpy(locked.Data(), text.constData(), static_cast<std::size_t>(text.size()));
  return block;
}

bool Put(QMimeData& contents, UINT format, HANDLE handle) {
  const Locked block(handle);
  if (block.Data() == nullptr) return false;
  if (format == CF_TEXT) {
    const auto* text = reinterpret_cast<const char*>(block.Data());
    contents.setText(QString::fromUtf8(text, static_cast<qsizetype>(strnlen(text, block.Size()))));
    return true;
  }
  const QImage image = format == CF_DIB ? ImageOf(block) : QImage();
  if (!image.isNull()) contents.setImageData(image);
  return !image.isNull();
}

}  // namespace

BOOL OpenClipboard(HWND /*owner*/) {
  Session& session = TheSession();
  if (session.open || qGuiApp == nullptr) return FALSE;
  session.open = true;
  return TRUE;
}

BOOL EmptyClipboard() {
  Session& session = TheSession();
  if (!session.open) return FALSE;
  session.contents = std::make_unique<QMimeData>();
  return TRUE;
}

HANDLE SetClipboardData(UINT format, HANDLE block) {
  Session& session = TheSession();
  if (!session.open || session.contents == nullptr || !Put(*session.contents, format, block)) return nullptr;
  // The other programs get a copy in formats of their own.
  GlobalFree(block);
  return block;
}

BOOL IsClipboardFormatAvailable(UINT format) {
  const QMimeData* const shown = Shown();
  if (shown == nullptr) return FALSE;
  return (format == CF_DIB && shown->hasImage()) || (format == CF_TEXT && shown->hasText()) ? TRUE : FALSE;
}

HANDLE GetClipboardData(UINT format) {
  Session& session = TheSession();
  if (!session.open || IsClipboardFormatAvailable(format) == FALSE) return nullptr;
  if (format == CF_TEXT)
    session.lent = BlockOf(Shown()->text().toUtf8());
  else
    session.lent = BlockOf(qvariant_cast<QImage>(Shown()->imageData()));
  return session.lent.get();
}

BOOL CloseClipboard() {
  Session& session = TheSession();
  if (!session.open) return FALSE;
  if (session.contents != nullptr) QGuiApplication::clipboard()->setMimeData(session.contents.release());
  session.lent.reset();
  session.open = false;
  return TRUE;
}
