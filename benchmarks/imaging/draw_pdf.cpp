// draw_pdf FILE OUT [HEIGHT]: the renderer of PDF alone. Page 1 at 200 dots per inch on white, as PPM; with a
// height all pages so high, one behind another.

#include <QImage>
#include <QPainter>
#include <QPdfDocument>
#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  QPdfDocument pdf;
  if (argc < 3 || pdf.load(QString::fromLocal8Bit(argv[1])) != QPdfDocument::Error::None) return 1;
  std::FILE* out = std::fopen(argv[2], "wb");
  if (out == nullptr) return 1;
  const int pages = argc > 3 ? pdf.pageCount() : 1;
  for (int page = 0; page < pages; ++page) {
    const QSizeF points = pdf.pagePointSize(page);
    const double factor = argc > 3 ? std::atoi(argv[3]) / points.height() : 200.0 / 72;
    const QSize size = (points * factor).toSize();
    QImage sheet(size, QImage::Format_RGB32);
    sheet.fill(Qt::white);
    QPainter(&sheet).drawImage(0, 0, pdf.render(page, size));
    const QImage colors = sheet.convertToFormat(QImage::Format_RGB888);
    std::fprintf(out, "P6\n%d %d\n255\n", size.width(), size.height());
    for (int y = 0; y < size.height(); ++y)
      std::fwrite(colors.constScanLine(y), 3, static_cast<std::size_t>(size.width()), out);
  }
  return std::fclose(out) == 0 ? 0 : 1;
}
