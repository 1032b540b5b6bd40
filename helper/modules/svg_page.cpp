#include "helper/modules/svg_page.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QThreadPool>
#include <cstdlib>
#include <cstring>

#include "helper/modules/drawn_size.h"

// The painter fills large areas on the threads of this pool, unless there is none; the sandbox has no
// threads. The toolkit offers no switch, but finds the name here before its own, as a module comes before its
// libraries.
__attribute__((visibility("default"))) QThreadPool* QThreadPool::globalInstance() {
  return nullptr;
}

namespace helper {
namespace {

/// How many bytes the UTF-8 character at the start has; 0 if it is none.
std::size_t CharacterBytes(std::string_view text) {
  const auto byte = static_cast<unsigned char>(text[0]);
  const std::size_t count = byte < 0x80       ? 1
                            : byte >> 5 == 6  ? 2
                            : byte >> 4 == 14 ? 3
                            : byte >> 3 == 30 ? 4
                                              : 0;
  if (count > text.size()) return 0;
  for (std::size_t i = 1; i < count; ++i)
    if ((static_cast<unsigned char>(text[i]) & 0xc0) != 0x80) return 0;
  return count;
}

/// Texts of metafiles are in the writer's code page; what isn't UTF-8 is taken for Latin-1.
std::string ValidUtf8(std::string_view text) {
  std::string valid;
  while (!text.empty()) {
    const std::size_t count = CharacterBytes(text);
    if (count != 0) {
      valid.append(text.substr(0, count));
    } else {
      const auto byte = static_cast<unsigned char>(text[0]);
      valid += static_cast<char>(0xc0 | byte >> 6);
      valid += static_cast<char>(0x80 | (byte & 0x3f));
    }
    text.remove_prefix(std::max<std::size_t>(count, 1));
  }
  return valid;
}

class SvgDocument final : public Document {
 public:
  SvgDocument(const Drawing& drawing, int code, const char* name)
      : m_drawing(drawing), m_code(code), m_name(name) {
    const std::string svg = ValidUtf8(drawing.svg);
    if (!m_renderer.load(QByteArray::fromRawData(svg.data(), static_cast<qsizetype>(svg.size()))))
      throw Failure(Status::kCorrupt, "the drawing can't be read");
    if (!(drawing.widthPoints > 0 && drawing.heightPoints > 0))
      throw Failure(Status::kCorrupt, "the drawing has no size");
  }

  int CountPages() override { return 1; }

  PageRecord Describe(int, int resolution) override { return DrawnPage(SizeAt(resolution), m_code, m_name); }

  Decoded Decode(int, int resolution, const Canvas& canvas) override {
    const DrawnSize size = SizeAt(resolution);
    QImage image(size.width, size.height, QImage::Format_RGB32);
    if (image.isNull()) throw Failure(Status::kNoMemory, "there is no memory to draw in");
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    m_renderer.render(&painter, QRectF(0, 0, size.width, size.height));
    painter.end();
    for (int y = 0; y < size.height; ++y) {
      const auto* pixel = reinterpret_cast<const QRgb*>(image.constScanLine(y));
      std::uint8_t* row = canvas.Row(y);
      for (int x = 0; x < size.width; ++x, ++pixel, row += 3) {
        row[0] = static_cast<std::uint8_t>(qRed(*pixel));
        row[1] = static_cast<std::uint8_t>(qGreen(*pixel));
        row[2] = static_cast<std::uint8_t>(qBlue(*pixel));
      }
    }
    return {size.height, 0};
  }

 private:
  DrawnSize SizeAt(int resolution) const {
    return SizeOfDrawing(m_drawing.widthPoints, m_drawing.heightPoints, resolution);
  }

  Drawing m_drawing;
  int m_code;
  const char* m_name;
  QSvgRenderer m_renderer;
};

}  // namespace

void PrepareDrawing() {
  setenv("QT_QPA_PLATFORM", "offscreen", 1);
  setenv("QT_NO_GLIB", "1", 1);
  static int argc = 1;
  static char name[] = "drawing";
  static char* argv[] = {name, nullptr};
  static auto& application = *new QGuiApplication(argc, argv);  // never ended: the process leaves without
  static_cast<void>(application);
  // Text is drawn once, so that what its engine reads once is read.
  QImage image(8, 8, QImage::Format_RGB32);
  QPainter painter(&image);
  painter.drawText(0, 8, "x");
}

std::unique_ptr<Document> DrawnDocument(const Drawing& drawing, int code, const char* name) {
  return std::make_unique<SvgDocument>(drawing, code, name);
}

}  // namespace helper
