#include "platform/spooler/detail/pdf_writer.h"

#include <QtCore/QString>
#include <charconv>

namespace platform {
namespace {

enum : int { kCatalog = 1, kPageTree = 2, kInfo = 3 };

std::string Reference(int object) {
  return std::to_string(object) + " 0 R";
}

/// Ten digits with leading zeros, as the cross-reference table wants them.
std::string TenDigits(std::size_t number) {
  const std::string digits = std::to_string(number);
  return digits.size() >= 10 ? digits : std::string(10 - digits.size(), '0') + digits;
}

std::string RectangleOperator(const PdfRect& rect) {
  return PdfNumber(rect.x) + " " + PdfNumber(rect.y) + " " + PdfNumber(rect.width) + " " +
         PdfNumber(rect.height) + " re ";
}

/// An image fills the unit square; its top row lies at y = 1 (8.9.5). For each orientation, what brings it
/// upright within the square: the first and second column of its sides, and its corner.
struct UnitMatrix {
  int a;
  int b;
  int c;
  int d;
  int e;
  int f;
};
constexpr UnitMatrix kUpright[] = {{1, 0, 0, 1, 0, 0},  {-1, 0, 0, 1, 1, 0},  {-1, 0, 0, -1, 1, 1},
                                   {1, 0, 0, -1, 0, 1}, {0, -1, -1, 0, 1, 1}, {0, -1, 1, 0, 0, 1},
                                   {0, 1, 1, 0, 0, 0},  {0, 1, -1, 0, 1, 0}};

std::string MatrixOperator(const PdfRect& place, int orientation) {
  const UnitMatrix& unit = kUpright[orientation >= 1 && orientation <= 8 ? orientation - 1 : 0];
  std::string text;
  for (const double number :
       {unit.a * place.width, unit.b * place.height, unit.c * place.width, unit.d * place.height,
        place.x + unit.e * place.width, place.y + unit.f * place.height})
    text += PdfNumber(number) + " ";
  return text + "cm ";
}

}  // namespace

std::string PdfNumber(double value) {
  char buffer[64];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::fixed, 4);
  std::string text(buffer, end.ptr);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text == "-0" ? "0" : text;
}

std::string PdfText(const std::string& utf8) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string text = "<FEFF";
  for (const QChar c : QString::fromStdString(utf8))
    for (int shift = 12; shift >= 0; shift -= 4) text.push_back(kDigits[c.unicode() >> shift & 0xf]);
  return text + ">";
}

PdfWriter::PdfWriter(SpoolFile& file, const std::string& title) : m_file(file) {
  m_offsets.resize(kInfo);
  // The comment of bytes above 127 tells transfer programs that the file is binary (7.5.2).
  m_file.Write("%PDF-1.5\n%\xE2\xE3\xCF\xD3\n");
  WriteObject(kInfo, "<< /Title " + PdfText(title) + " /Producer (Tessarel12) >>");
}

int PdfWriter::NewObject() {
  m_offsets.push_back(0);
  return static_cast<int>(m_offsets.size());
}

void PdfWriter::Begin(int object) {
  m_offsets[static_cast<std::size_t>(object) - 1] = m_file.Size();
  m_file.Write(std::to_string(object) + " 0 obj\n");
}

void PdfWriter::WriteObject(int object, std::string_view body) {
  Begin(object);
  m_file.Write(body);
  m_file.Write("\nendobj\n");
}

void PdfWriter::WriteStream(int object, std::string_view dictionary, std::span<const std::uint8_t> data) {
  Begin(object);
  m_file.Write("<< ");
  m_file.Write(dictionary);
  m_file.Write("/Length " + std::to_string(data.size()) + " >>\nstream\n");
  m_file.Write(data);
  m_file.Write("\nendstream\nendobj\n");
}

PdfWriter::Stream PdfWriter::BeginStream(std::string_view dictionary) {
  const int object = NewObject();
  const int length = NewObject();
  Begin(object);
  m_file.Write("<< ");
  m_file.Write(dictionary);
  m_file.Write("/Length " + Reference(length) + " >>\nstream\n");
  return {object, length, m_file.Size()};
}

std::size_t PdfWriter::EndStream(const Stream& stream) {
  const std::size_t bytes = m_file.Size() - stream.start;
  m_file.Write("\nendstream\nendobj\n");
  WriteObject(stream.length, std::to_string(bytes));
  return bytes;
}

void PdfWriter::BeginPage(double width, double height) {
  m_mediaBox = "[0 0 " + PdfNumber(width) + " " + PdfNumber(height) + "]";
  m_contents.clear();
  m_resources.clear();
  m_imagesOnPage = 0;
}

void PdfWriter::AddImage(const PrinterImage& image, const RECT& part, const PdfRect& place,
                         const PdfRect* clip) {
  const std::string name = "/Im" + std::to_string(m_imagesOnPage++);
  m_resources += name + " " + Reference(WriteImage(image, part)) + " ";
  m_contents += "q ";
  if (clip != nullptr) m_contents += RectangleOperator(*clip) + "W n ";
  m_contents +=
      MatrixOperator(place, PassesOn(image, part) ? image.coded->orientation : 1) + name + " Do Q\n";
}

void PdfWriter::EndPage() {
  const int contents = NewObject();
  WriteStream(contents, "", {reinterpret_cast<const std::uint8_t*>(m_contents.data()), m_contents.size()});
  const int page = NewObject();
  WriteObject(page, "<< /Type /Page /Parent " + Reference(kPageTree) + " /MediaBox " + m_mediaBox +
                        " /Resources << /XObject << " + m_resources + ">> >> /Contents " +
                        Reference(contents) + " >>");
  m_pages.push_back(page);
}

void PdfWriter::Finish() {
  std::string kids;
  for (const int page : m_pages) kids += Reference(page) + " ";
  WriteObject(kPageTree,
              "<< /Type /Pages /Count " + std::to_string(m_pages.size()) + " /Kids [" + kids + "] >>");
  WriteObject(kCatalog, "<< /Type /Catalog /Pages " + Reference(kPageTree) + " >>");
  const std::size_t table = m_file.Size();
  const std::string count = std::to_string(m_offsets.size() + 1);
  // Lines of twenty bytes each (7.5.4).
  m_file.Write("xref\n0 " + count + "\n0000000000 65535 f \n");
  for (const std::size_t offset : m_offsets) m_file.Write(TenDigits(offset) + " 00000 n \n");
  m_file.Write("trailer\n<< /Size " + count + " /Root " + Reference(kCatalog) + " /Info " + Reference(kInfo) +
               " >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n");
}

}  // namespace platform
