#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "platform/spooler/detail/fax_encoder.h"
#include "platform/spooler/detail/image_rows.h"
#include "platform/spooler/detail/pdf_writer.h"

// How images lie in the PDF: bilevel ones as group 4 fax, all others deflated, with the row filters of PNG
// where neighbouring values are alike. Nothing is lossy, unless the image comes coded already.

namespace platform {
namespace {

constexpr std::size_t kStep = std::size_t{1} << 16;
constexpr int kLevel = 4;  // of zlib: most of the gain for a fraction of the time

/// A stream of zlib's that hands its bytes on as they come.
template <typename Sink>
class Deflater {
 public:
  explicit Deflater(Sink sink) : m_sink(sink), m_out(kStep) {
    if (::deflateInit(&m_stream, kLevel) != Z_OK) throw std::bad_alloc();
  }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;
  ~Deflater() { ::deflateEnd(&m_stream); }

  void Add(std::span<std::uint8_t> data) {
    m_stream.next_in = data.data();
    m_stream.avail_in = static_cast<uInt>(data.size());
    while (m_stream.avail_in > 0) Run(Z_NO_FLUSH);
  }
  void Finish() {
    while (Run(Z_FINISH) != Z_STREAM_END) {
    }
  }

 private:
  int Run(int flush) {
    m_stream.next_out = m_out.data();
    m_stream.avail_out = static_cast<uInt>(m_out.size());
    const int result = ::deflate(&m_stream, flush);
    m_sink(std::span<const std::uint8_t>(m_out.data(), m_out.size() - m_stream.avail_out));
    return result;
  }

  Sink m_sink;
  z_stream m_stream{};
  std::vector<std::uint8_t> m_out;
};

std::string Size(const RECT& part) {
  return "/Width " + std::to_string(part.right - part.left) + " /Height " +
         std::to_string(part.bottom - part.top);
}

std::string Hexadecimal(std::uint8_t byte) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  return {kDigits[byte >> 4], kDigits[byte & 0xf]};
}

bool IsGrey(const RGBQUAD& color, int level) {
  return color.rgbRed == level && color.rgbGreen == level && color.rgbBlue == level;
}

/// True if each number stands for its share of white.
bool IsLinearGrey(const PrinterImage& image) {
  const int most = (1 << image.bits) - 1;
  if (static_cast<int>(image.colors.size()) != most + 1) return false;
  for (int i = 0; i <= most; ++i)
    if (!IsGrey(image.colors[static_cast<std::size_t>(i)], i * 255 / most)) return false;
  return true;
}

std::string ColorSpace(const PrinterImage& image) {
  if (image.bits > 8) return "/DeviceRGB";
  if (IsLinearGrey(image)) return "/DeviceGray";
  std::string space = "[/Indexed /DeviceRGB " + std::to_string(image.colors.size() - 1) + " <";
  for (const RGBQUAD& color : image.colors)
    space += Hexadecimal(color.rgbRed) + Hexadecimal(color.rgbGreen) + Hexadecimal(color.rgbBlue);
  return space + ">]";
}

// PNG's filters (ISO/IEC 15948, 9): 1 takes the pixel to the left off, 2 the row above.
enum : std::uint8_t { kFilterSub = 1, kFilterUp = 2 };

/// The filtered row behind its filter's number; that of the smaller differences wins. Returns their sum.
unsigned long Filter(std::uint8_t kind, std::span<const std::uint8_t> row,
                     std::span<const std::uint8_t> above, std::size_t pixelBytes,
                     std::vector<std::uint8_t>& out) {
  out.resize(row.size() + 1);
  out[0] = kind;
  unsigned long sum = 0;
  for (std::size_t i = 0; i < row.size(); ++i) {
    const std::uint8_t left = i < pixelBytes ? 0 : row[i - pixelBytes];
    const auto difference = static_cast<std::uint8_t>(row[i] - (kind == kFilterSub ? left : above[i]));
    out[i + 1] = difference;
    sum += static_cast<unsigned long>(std::abs(static_cast<std::int8_t>(difference)));
  }
  return sum;
}

/// True if the rows deflate to fewer bytes than the limit. The bytes themselves aren't kept.
bool DeflatesBelow(ImageRows& rows, int height, std::size_t limit) {
  std::size_t bytes = 0;
  Deflater deflater([&bytes](std::span<const std::uint8_t> out) { bytes += out.size(); });
  for (int y = 0; y < height && bytes < limit; ++y) deflater.Add(rows.Read(y));
  if (bytes < limit) deflater.Finish();
  return bytes < limit;
}

}  // namespace

bool PdfWriter::PassesOn(const PrinterImage& image, const RECT& part) {
  return image.coded != nullptr && part.left == 0 && part.top == 0 && part.right == image.width &&
         part.bottom == image.height;
}

int PdfWriter::WriteImage(const PrinterImage& image, const RECT& part) {
  if (PassesOn(image, part)) {
    constexpr int kFirstOnItsSide = 5;  // orientations 5 to 8
    const bool lies = image.coded->orientation >= kFirstOnItsSide;
    return WriteCoded(*image.coded, lies ? RECT{0, 0, part.bottom, part.right} : part);
  }
  return image.bits == 1 ? WriteBilevel(image, part) : WriteDeflated(image, part);
}

int PdfWriter::WriteCoded(const CodedImage& coded, const RECT& part) {
  std::string head = "/Type /XObject /Subtype /Image " + Size(part);
  if (coded.coding == CodedImage::Coding::kGroup4) {
    head +=
        " /BitsPerComponent 1 /ColorSpace /DeviceGray /Filter /CCITTFaxDecode /DecodeParms << /K -1 "
        "/Columns " +
        std::to_string(part.right - part.left) + " /Rows " + std::to_string(part.bottom - part.top) +
        (coded.blackIsOne ? " /BlackIs1 true" : "") + " >> ";
  } else {
    head += " /BitsPerComponent 8 /ColorSpace ";
    head += coded.components == 1 ? "/DeviceGray" : "/DeviceRGB";
    head += " /Filter /DCTDecode ";
    if (coded.components != 1)
      head += std::string("/DecodeParms << /ColorTransform ") + (coded.ycc ? "1" : "0") + " >> ";
  }
  const int object = NewObject();
  WriteStream(object, head, coded.bytes);
  return object;
}

int PdfWriter::WriteBilevel(const PrinterImage& image, const RECT& part) {
  const bool grey = image.colors.size() == 2 && IsGrey(image.colors[0], 255) && IsGrey(image.colors[1], 0);
  const std::string head = "/Type /XObject /Subtype /Image " + Size(part) +
                           " /BitsPerComponent 1 /ColorSpace " + (grey ? "/DeviceGray" : ColorSpace(image)) +
                           " ";
  ImageRows rows(image, part);
  const int height = part.bottom - part.top;
  const std::size_t before = m_file.Size();
  const std::size_t objects = m_offsets.size();
  std::size_t coded = 0;
  const int fax = WriteFax(image, part, head, grey, coded);
  // Fine screens of dots are what fax coding is bad at. Nothing is kept of either form, so the better one may
  // be coded twice.
  const std::size_t raw = rows.Bytes() * static_cast<std::size_t>(height);
  if (coded <= raw / 2 || m_file.Error() != 0 || !DeflatesBelow(rows, height, coded)) return fax;
  m_file.Cut(before);
  m_offsets.resize(objects);
  const Stream stream = BeginStream(head + (grey ? "/Decode [1 0] " : "") + "/Filter /FlateDecode ");
  Deflater deflater([this](std::span<const std::uint8_t> out) { m_file.Write(out); });
  for (int y = 0; y < height && m_file.Error() == 0; ++y) deflater.Add(rows.Read(y));
  deflater.Finish();
  EndStream(stream);
  return stream.object;
}

int PdfWriter::WriteFax(const PrinterImage& image, const RECT& part, std::string_view head, bool grey,
                        std::size_t& bytes) {
  const int width = part.right - part.left;
  const int height = part.bottom - part.top;
  const Stream stream =
      BeginStream(std::string(head) + "/Filter /CCITTFaxDecode /DecodeParms << /K -1 /Columns " +
                  std::to_string(width) + " /Rows " + std::to_string(height) + " >> ");
  // The coder's black comes out of the filter as 0 (7.4.6), so white and black need no colour table.
  FaxEncoder encoder(width, grey ? 1 : 0);
  ImageRows rows(image, part);
  for (int y = 0; y < height && m_file.Error() == 0; ++y) {
    encoder.AddRow(rows.Read(y).data());
    m_file.Write(encoder.Drain());
  }
  m_file.Write(encoder.Finish());
  bytes = EndStream(stream);
  return stream.object;
}

int PdfWriter::WriteDeflated(const PrinterImage& image, const RECT& part) {
  const int width = part.right - part.left;
  const int height = part.bottom - part.top;
  const int channels = image.bits > 8 ? 3 : 1;
  const int depth = image.bits > 8 ? 8 : image.bits;
  const bool filtered = depth == 8 && (channels == 3 || IsLinearGrey(image));
  std::string head = "/Type /XObject /Subtype /Image " + Size(part) + " /BitsPerComponent " +
                     std::to_string(depth) + " /ColorSpace " + ColorSpace(image) + " /Filter /FlateDecode ";
  if (filtered)
    head += "/DecodeParms << /Predictor 15 /Colors " + std::to_string(channels) + " /Columns " +
            std::to_string(width) + " >> ";
  const Stream stream = BeginStream(head);
  Deflater deflater([this](std::span<const std::uint8_t> out) { m_file.Write(out); });
  ImageRows rows(image, part);
  std::vector<std::uint8_t> above(rows.Bytes());
  std::vector<std::uint8_t> sub;
  std::vector<std::uint8_t> up;
  const auto pixelBytes = static_cast<std::size_t>(channels);
  for (int y = 0; y < height && m_file.Error() == 0; ++y) {
    const std::span<std::uint8_t> row = rows.Read(y);
    if (!filtered) {
      deflater.Add(row);
      continue;
    }
    const bool useSub =
        Filter(kFilterSub, row, above, pixelBytes, sub) < Filter(kFilterUp, row, above, pixelBytes, up);
    deflater.Add(useSub ? sub : up);
    above.assign(row.begin(), row.end());
  }
  deflater.Finish();
  EndStream(stream);
  return stream.object;
}

}  // namespace platform
