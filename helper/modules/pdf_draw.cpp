#include <QIODevice>
#include <QImage>
#include <QPdfDocument>
#include <algorithm>
#include <cstring>

#include "helper/module.h"
#include "helper/modules/drawn_size.h"

// PDF pages of any contents, drawn on white.
namespace helper {
namespace {

constexpr int kFormat = 150;  // the nearest of the codes of raster pages

/// The file as the toolkit reads it.
class InputDevice final : public QIODevice {
 public:
  explicit InputDevice(const Input& input) : m_input(input) { open(ReadOnly | Unbuffered); }
  bool isSequential() const override { return false; }
  qint64 size() const override { return m_input.Size(); }

 protected:
  qint64 readData(char* target, qint64 most) override {
    return static_cast<qint64>(m_input.ReadAt(pos(), {reinterpret_cast<std::uint8_t*>(target),
                                                      static_cast<std::size_t>(std::max<qint64>(most, 0))}));
  }
  qint64 writeData(const char*, qint64) override { return -1; }

 private:
  const Input& m_input;
};

std::uint8_t OnWhite(int level, int alpha) {
  return static_cast<std::uint8_t>((level * alpha + 255 * (255 - alpha) + 127) / 255);
}

/// By hand, as the toolkit converts pictures on threads, which the sandbox doesn't have.
void PutOnWhite(const QImage& drawn, const Canvas& canvas) {
  for (int y = 0; y < drawn.height(); ++y) {
    const auto* pixel = reinterpret_cast<const QRgb*>(drawn.constScanLine(y));
    std::uint8_t* row = canvas.Row(y);
    for (int x = 0; x < drawn.width(); ++x, ++pixel, row += 3) {
      const int alpha = qAlpha(*pixel);
      row[0] = OnWhite(qRed(*pixel), alpha);
      row[1] = OnWhite(qGreen(*pixel), alpha);
      row[2] = OnWhite(qBlue(*pixel), alpha);
    }
  }
}

class DrawnPdf final : public Document {
 public:
  explicit DrawnPdf(const Input& input) : m_device(input) {
    m_pdf.load(&m_device);
    if (m_pdf.error() == QPdfDocument::Error::IncorrectPassword)
      throw Failure(Status::kUnsupported, "the document is protected by a password");
    if (m_pdf.error() == QPdfDocument::Error::UnsupportedSecurityScheme)
      throw Failure(Status::kUnsupported, "the document is protected in a way that isn't known");
    if (m_pdf.status() != QPdfDocument::Status::Ready || m_pdf.pageCount() < 1)
      throw Failure(Status::kCorrupt, "the document can't be read");
  }

  int CountPages() override { return m_pdf.pageCount(); }

  void WantSize(int width, int height) override { m_wanted = QSize(width, height); }

  PageRecord Describe(int page, int resolution) override {
    return DrawnPage(SizeOf(page, resolution), kFormat, "PDF");
  }

  Decoded Decode(int page, int resolution, const Canvas& canvas) override {
    const DrawnSize size = SizeOf(page, resolution);
    const QImage drawn = m_pdf.render(page - 1, QSize(size.width, size.height));
    if (drawn.format() != QImage::Format_ARGB32 || drawn.width() != size.width ||
        drawn.height() != size.height)
      throw Failure(Status::kCorrupt, "the page can't be drawn");
    PutOnWhite(drawn, canvas);
    return {size.height, 0};
  }

 private:
  DrawnSize SizeOf(int page, int resolution) const {
    const QSizeF points = m_pdf.pagePointSize(page - 1);
    if (!(points.width() > 0 && points.height() > 0)) throw Failure(Status::kCorrupt, "the page has no size");
    DrawnSize size = SizeOfDrawing(points.width(), points.height(), resolution);
    if (m_wanted.width() > 0 && m_wanted.height() > 0 &&
        static_cast<double>(m_wanted.width()) * m_wanted.height() <= kMostDrawnPixels) {
      size.width = m_wanted.width();
      size.height = m_wanted.height();
    }
    return size;
  }

  InputDevice m_device;
  QPdfDocument m_pdf;
  QSize m_wanted;
};

/// The renderer sets itself up, with what it reads for that.
void Prepare() {
  QPdfDocument().pageCount();
}

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<DrawnPdf>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, helper::Prepare, helper::Open)
