#include "helper/modules/pdf_image.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <qpdf/Buffer.hh>

#include "helper/modules/fax_tiff.h"

namespace helper {
namespace {

constexpr int kFormatRaster = 146;
constexpr int kFormatG3OneDimensional = 147;
constexpr int kFormatG3TwoDimensional = 148;
constexpr int kFormatG4 = 149;
constexpr int kFormatJpeg444 = 150;
constexpr int kFormatJpeg422 = 151;
constexpr int kFormatJpeg411 = 152;

std::vector<QPDFObjectHandle> AsList(QPDFObjectHandle item) {
  if (item.isArray()) return item.getArrayAsVector();
  return item.isNull() ? std::vector<QPDFObjectHandle>() : std::vector{item};
}

int IntegerOr(QPDFObjectHandle item, int other) {
  return item.isInteger() ? item.getIntValueAsInt() : other;
}
bool Truth(QPDFObjectHandle item) {
  return item.isBool() && item.getBoolValue();
}
QPDFObjectHandle Entry(QPDFObjectHandle dictionary, const char* key) {
  return dictionary.isDictionary() ? dictionary.getKey(key) : QPDFObjectHandle::newNull();
}

std::vector<std::uint8_t> BytesOf(const std::shared_ptr<Buffer>& buffer) {
  return {buffer->getBuffer(), buffer->getBuffer() + buffer->getSize()};
}

/// What the last filter is given: the stream through all others.
std::vector<std::uint8_t> BeforeLastFilter(QPDF& pdf, QPDFObjectHandle image, std::size_t filters) {
  if (filters <= 1) return BytesOf(image.getRawStreamData());
  const auto names = AsList(image.getDict().getKey("/Filter"));
  const auto parameters = AsList(image.getDict().getKey("/DecodeParms"));
  QPDFObjectHandle stream = QPDFObjectHandle::newStream(&pdf);
  QPDFObjectHandle outer = QPDFObjectHandle::newArray({names.begin(), names.end() - 1});
  QPDFObjectHandle outerParameters = QPDFObjectHandle::newArray();
  for (std::size_t i = 0; i + 1 < filters; ++i)
    outerParameters.appendItem(i < parameters.size() ? parameters[i] : QPDFObjectHandle::newNull());
  stream.replaceStreamData(image.getRawStreamData(), outer, outerParameters);
  return BytesOf(stream.getStreamData(qpdf_dl_generalized));
}

std::uint32_t Rgb(int red, int green, int blue) {
  return static_cast<std::uint32_t>(red << 16 | green << 8 | blue);
}
std::uint32_t InkToRgb(const std::uint8_t* ink) {
  const auto light = [&](int i) { return (255 - ink[i]) * (255 - ink[3]) / 255; };
  return Rgb(light(0), light(1), light(2));
}

/// The frame header of a JPEG file.
struct JpegFrame {
  int width = 0, height = 0, components = 0, horizontal = 1, vertical = 1;
};
JpegFrame ReadJpegFrame(std::span<const std::uint8_t> bytes) {
  JpegFrame frame;
  std::size_t at = 2;
  while (at + 18 < bytes.size() && bytes[at] == 0xff) {
    const int marker = bytes[at + 1];
    const bool start = marker >= 0xc0 && marker <= 0xcf && marker != 0xc4 && marker != 0xc8 && marker != 0xcc;
    const auto word = [&](std::size_t place) { return bytes[place] << 8 | bytes[place + 1]; };
    if (start) {
      frame = {word(at + 7), word(at + 5), bytes[at + 9], bytes[at + 11] >> 4, bytes[at + 11] & 15};
      break;
    }
    at += marker == 0xff ? 1 : static_cast<std::size_t>(2 + word(at + 2));
  }
  return frame;
}

}  // namespace

std::optional<PdfImage> PdfImage::Of(QPDF& pdf, const PagePicture& picture) {
  PdfImage image;
  image.m_image = picture.image;
  image.m_dictionary = image.m_image.getDict();
  image.Describe(picture);
  if (!image.Prepare(pdf) && !image.LeaveToBeDrawn()) return std::nullopt;
  return image;
}

/// Only if one resolution fits both sides.
bool PdfImage::LeaveToBeDrawn() {
  if (m_page.width < 1 || m_page.height < 1 || m_page.xResolution < 1 ||
      m_page.xResolution != m_page.yResolution)
    return false;
  const std::string last = LastFilter();
  m_page.format = 0;
  m_page.delivery = Delivery::kDrawn;
  m_page.bits = m_depth * std::max(Samples(), 1);
  m_page.memoryBits = m_depth == 1 && m_colors == Colors::kGray ? 1 : 24;
  m_page.deliveredBytes = 0;
  SetCompression(m_page, last == "/JBIG2Decode" ? "JBIG2" : last == "/JPXDecode" ? "JPEG 2000" : "PDF");
  return true;
}

std::string PdfImage::LastFilter() {
  auto filters = AsList(m_dictionary.getKey("/Filter"));
  return filters.empty() || !filters.back().isName() ? "" : filters.back().getName();
}

void PdfImage::Describe(const PagePicture& picture) {
  constexpr double kPointsPerInch = 72;
  m_page.format = kFormatRaster;
  m_page.width = IntegerOr(m_dictionary.getKey("/Width"), 0);
  m_page.height = IntegerOr(m_dictionary.getKey("/Height"), 0);
  m_page.perspective = picture.perspective;
  m_page.xResolution = static_cast<int>(std::lround(m_page.width * kPointsPerInch / picture.widthPoints));
  m_page.yResolution = static_cast<int>(std::lround(m_page.height * kPointsPerInch / picture.heightPoints));
}

bool PdfImage::Prepare(QPDF& pdf) {
  if (m_page.width < 1 || m_page.height < 1) return false;
  auto filters = AsList(m_dictionary.getKey("/Filter"));
  const auto parameters = AsList(m_dictionary.getKey("/DecodeParms"));
  m_parameters = parameters.size() == filters.size() && !parameters.empty() ? parameters.back()
                                                                            : QPDFObjectHandle::newNull();
  const bool stencil = Truth(m_dictionary.getKey("/ImageMask"));
  m_depth = stencil ? 1 : IntegerOr(m_dictionary.getKey("/BitsPerComponent"), 8);
  const std::string last = LastFilter();
  const bool colors = stencil || ReadColors(m_dictionary.getKey("/ColorSpace"));
  if (last == "/JPXDecode") {
    m_bytes = BeforeLastFilter(pdf, m_image, filters.size());
    // Indices into a palette outside it are more than the reader of the codestream gives.
    return m_colors != Colors::kIndexed && PrepareJpeg2000();
  }
  if (!colors || !ReadDecodeArray()) return false;
  if (last == "/JBIG2Decode") return false;
  if (last == "/CCITTFaxDecode" || last == "/DCTDecode") {
    m_bytes = BeforeLastFilter(pdf, m_image, filters.size());
    return last == "/DCTDecode" ? PrepareJpeg() : PrepareFax();
  }
  return PrepareSamples(last);
}

bool PdfImage::ReadColors(QPDFObjectHandle space) {
  const std::string name = space.isName() ? space.getName()
                           : space.isArray() && space.getArrayNItems() > 0 && space.getArrayItem(0).isName()
                               ? space.getArrayItem(0).getName()
                               : "";
  m_colors = Colors::kOther;
  if (name == "/DeviceGray" || name == "/CalGray") m_colors = Colors::kGray;
  if (name == "/DeviceRGB" || name == "/CalRGB") m_colors = Colors::kRgb;
  if (name == "/DeviceCMYK") m_colors = Colors::kCmyk;
  if (name == "/ICCBased" && space.getArrayNItems() > 1 && space.getArrayItem(1).isStream()) {
    const int count = IntegerOr(space.getArrayItem(1).getDict().getKey("/N"), 0);
    m_colors = count == 1   ? Colors::kGray
               : count == 3 ? Colors::kRgb
               : count == 4 ? Colors::kCmyk
                            : Colors::kOther;
  }
  if (name == "/Indexed") return ReadPalette(space);
  return m_colors != Colors::kOther;
}

bool PdfImage::ReadPalette(QPDFObjectHandle space) {
  if (space.getArrayNItems() != 4 || !ReadColors(space.getArrayItem(1)) || m_colors == Colors::kIndexed)
    return false;
  QPDFObjectHandle table = space.getArrayItem(3);
  std::vector<std::uint8_t> bytes;
  if (table.isStream()) bytes = BytesOf(table.getStreamData(qpdf_dl_generalized));
  if (table.isString()) {
    const std::string text = table.getStringValue();
    bytes.assign(text.begin(), text.end());
  }
  const auto step = static_cast<std::size_t>(Samples());
  const auto count = static_cast<std::size_t>(std::clamp(IntegerOr(space.getArrayItem(2), 0), 0, 255)) + 1;
  for (std::size_t at = 0; at + step <= bytes.size() && m_palette.size() < count; at += step)
    m_palette.push_back(step == 4   ? InkToRgb(&bytes[at])
                        : step == 3 ? Rgb(bytes[at], bytes[at + 1], bytes[at + 2])
                                    : Rgb(bytes[at], bytes[at], bytes[at]));
  m_colors = Colors::kIndexed;
  return !m_palette.empty();
}

/// As usual, or all samples turned over.
bool PdfImage::ReadDecodeArray() {
  QPDFObjectHandle decode = m_dictionary.getKey("/Decode");
  if (decode.isNull()) return true;
  if (!decode.isArray() || decode.getArrayNItems() != 2 * Samples()) return false;
  const double most = m_colors == Colors::kIndexed ? (1 << std::clamp(m_depth, 1, 16)) - 1 : 1;
  int usual = 0;
  int inverted = 0;
  for (int i = 0; i < decode.getArrayNItems(); ++i) {
    if (!decode.getArrayItem(i).isNumber()) return false;
    const double value = decode.getArrayItem(i).getNumericValue();
    usual += value == (i % 2 == 0 ? 0 : most) ? 1 : 0;
    inverted += value == (i % 2 == 0 ? most : 0) ? 1 : 0;
  }
  m_inverted = inverted == decode.getArrayNItems();
  return m_inverted || usual == decode.getArrayNItems();
}

int PdfImage::Samples() const {
  return m_colors == Colors::kRgb ? 3 : m_colors == Colors::kCmyk ? 4 : 1;
}

void PdfImage::Deliver(Delivery delivery, std::vector<std::uint8_t> bytes) {
  m_bytes = std::move(bytes);
  m_page.delivery = delivery;
  m_page.deliveredBytes = static_cast<std::int64_t>(m_bytes.size());
}

bool PdfImage::PrepareFax() {
  const int coding = IntegerOr(Entry(m_parameters, "/K"), 0);
  const bool aligned = Truth(Entry(m_parameters, "/EncodedByteAlign"));
  const bool endOfLine = Truth(Entry(m_parameters, "/EndOfLine"));
  constexpr int kUsualColumns = 1728;
  if (IntegerOr(Entry(m_parameters, "/Columns"), kUsualColumns) != m_page.width || m_depth != 1) return false;
  // Rows that begin at bytes have a coding of their own in one dimension only.
  if (aligned && coding != 0) return false;
  // Zeros are black, unless the filter, the range of values or the colours say otherwise.
  bool onesAreBlack = Truth(Entry(m_parameters, "/BlackIs1"));
  bool inverted = m_inverted;
  if (m_colors == Colors::kIndexed) {
    const bool straight = m_palette.size() == 2 && m_palette[0] == 0 && m_palette[1] == 0xffffff;
    const bool turned = m_palette.size() == 2 && m_palette[1] == 0 && m_palette[0] == 0xffffff;
    if (!straight && !turned) return false;
    inverted = inverted != turned;
  } else if (m_colors != Colors::kGray) {
    return false;
  }
  m_page.format = coding < 0 ? kFormatG4 : coding == 0 ? kFormatG3OneDimensional : kFormatG3TwoDimensional;
  SetCompression(m_page, coding < 0 ? "CCITT G4" : coding == 0 ? "CCITT G3 1D" : "CCITT G3 2D");
  m_page.bits = m_page.memoryBits = 1;
  Deliver(Delivery::kTiff,
          WrapFax({m_page.width, m_page.height, coding, aligned && !endOfLine, onesAreBlack != inverted},
                  m_bytes));
  return true;
}

bool PdfImage::PrepareJpeg() {
  const JpegFrame frame = ReadJpegFrame(m_bytes);
  if (frame.components == 0 || frame.components != Samples() || m_inverted) return false;
  if (m_colors == Colors::kIndexed) return false;
  m_page.width = frame.width;
  m_page.height = frame.height;
  m_page.bits = 8 * frame.components;
  m_page.memoryBits = frame.components == 1 ? 8 : 24;
  m_page.format = frame.components != 3   ? kFormatJpeg444
                  : frame.horizontal == 1 ? kFormatJpeg444
                  : frame.vertical == 1   ? kFormatJpeg422
                                          : kFormatJpeg411;
  SetCompression(m_page, "JPEG");
  Deliver(Delivery::kJpeg, std::move(m_bytes));
  return true;
}

/// Size and depth stand behind the marks of the codestream's start.
bool PdfImage::PrepareJpeg2000() {
  constexpr std::array<std::uint8_t, 4> kStart = {0xff, 0x4f, 0xff, 0x51};
  const auto start = std::search(m_bytes.begin(), m_bytes.end(), kStart.begin(), kStart.end());
  constexpr std::ptrdiff_t kHeader = 42;
  if (m_bytes.end() - start < kHeader + 3) return false;
  const auto field = [&](int at) {
    return start[at] << 24 | start[at + 1] << 16 | start[at + 2] << 8 | start[at + 3];
  };
  const int components = start[40] << 8 | start[41];
  if (components < 1 || m_bytes.end() - start < kHeader + 3 * components) return false;
  m_page.width = field(8) - field(16);
  m_page.height = field(12) - field(20);
  for (int i = 0; i < components; ++i) m_page.bits += (start[kHeader + 3 * i] & 0x7f) + 1;
  m_page.memoryBits = components >= 3 ? 24 : 8;
  m_page.format = 0;
  SetCompression(m_page, "JPEG 2000");
  Deliver(Delivery::kJpeg2000, std::move(m_bytes));
  return true;
}

bool PdfImage::PrepareSamples(const std::string& filter) {
  const bool known = m_depth == 1 || m_depth == 2 || m_depth == 4 || m_depth == 8 || m_depth == 16;
  const bool palette = m_colors == Colors::kIndexed;
  if (!known || (Samples() > 1 && m_depth < 8) || (palette && m_depth > 8) || (palette && m_inverted) ||
      (Samples() > 1 && m_inverted))
    return false;
  m_page.bits = m_depth * Samples();
  m_page.memoryBits = Samples() > 1 ? 24 : m_depth == 1 || m_depth == 4 ? m_depth : 8;
  if (palette) {
    std::copy(m_palette.begin(), m_palette.end(), m_page.palette.begin());
    m_page.colors = static_cast<std::uint32_t>(m_palette.size());
  } else if (m_inverted) {
    const int entries = 1 << m_page.memoryBits;
    m_page.colors = static_cast<std::uint32_t>(entries);
    for (int i = 0; i < entries; ++i) {
      const int level = 255 - i * 255 / (entries - 1);
      m_page.palette[static_cast<std::size_t>(i)] = Rgb(level, level, level);
    }
  }
  SetCompression(m_page, filter == "/FlateDecode"       ? "Deflate"
                         : filter == "/LZWDecode"       ? "LZW"
                         : filter == "/RunLengthDecode" ? "RLE"
                                                        : "None");
  m_bytes = BytesOf(m_image.getStreamData(qpdf_dl_generalized));
  return true;
}

Decoded PdfImage::Decode(const Canvas& canvas) const {
  if (m_page.delivery != Delivery::kPixels) {
    std::copy(m_bytes.begin(), m_bytes.end(), canvas.bytes);
    return {m_page.height, 0};
  }
  const std::size_t rowBytes =
      (static_cast<std::size_t>(m_page.width) * static_cast<std::size_t>(m_page.bits) + 7) / 8;
  const int rows = static_cast<int>(
      std::min<std::size_t>(m_bytes.size() / rowBytes, static_cast<std::size_t>(m_page.height)));
  for (int y = 0; y < rows; ++y) WriteRow(&m_bytes[static_cast<std::size_t>(y) * rowBytes], canvas.Row(y));
  return {rows, 0};
}

/// Samples as the file has them to pixels in memory; of 16 bits the upper half.
void PdfImage::WriteRow(const std::uint8_t* samples, std::uint8_t* row) const {
  const auto width = static_cast<std::size_t>(m_page.width);
  if (m_depth == m_page.memoryBits) {
    std::copy_n(samples, (width * static_cast<std::size_t>(m_depth) + 7) / 8, row);
    return;
  }
  if (m_depth == 2) {
    const int scale = m_colors == Colors::kIndexed ? 1 : 85;
    for (std::size_t x = 0; x < width; ++x)
      row[x] = static_cast<std::uint8_t>((samples[x / 4] >> (6 - x % 4 * 2) & 3) * scale);
    return;
  }
  const std::size_t step = m_depth == 16 ? 2 : 1;
  if (m_colors != Colors::kCmyk) {
    for (std::size_t i = 0; i < width * static_cast<std::size_t>(Samples()); ++i) row[i] = samples[i * step];
    return;
  }
  for (std::size_t x = 0; x < width; ++x) {
    std::array<std::uint8_t, 4> ink;
    for (std::size_t i = 0; i < 4; ++i) ink[i] = samples[(x * 4 + i) * step];
    const std::uint32_t color = InkToRgb(ink.data());
    for (std::size_t i = 0; i < 3; ++i) row[x * 3 + i] = static_cast<std::uint8_t>(color >> (16 - 8 * i));
  }
}

}  // namespace helper
