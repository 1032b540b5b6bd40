#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax_page.h"
#include "imaging/codecs/ioca_segment.h"
#include "imaging/codecs/rows.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

// Pictures of the Image Object Content Architecture, alone or inside a Mixed Object Document: each image
// object of it is a page.
namespace imaging {
namespace {

constexpr std::uint8_t kIntroducer = 0x5a;  // of a structured field
constexpr std::uint8_t kClass = 0xd3;       // first byte of every field's code
constexpr std::size_t kFieldHeader = 9;     // introducer, length, code, flags, number

enum Field : unsigned { kBeginImage = 0xd3a8fb, kEndImage = 0xd3a9fb, kImageData = 0xd3eefb };

/// A structured field: where its data lies.
struct StructuredField {
  unsigned code = 0;
  IocaStretch data;
  std::int64_t next = 0;
};

/// False at the end, or at what is no field.
bool ReadField(ByteReader& reader, StructuredField& field) {
  constexpr int kHasExtension = 0x80;
  const std::int64_t start = reader.Position();
  if (reader.U8() != kIntroducer) return false;
  const int length = reader.BigU16();
  field.code = static_cast<unsigned>(reader.U8()) << 16;
  field.code |= reader.BigU16();
  const int flags = reader.U8();
  reader.BigU16();
  if (reader.AtEnd() || length < static_cast<int>(kFieldHeader) - 1 || field.code >> 16 != kClass)
    return false;
  field.next = start + 1 + length;
  const int extension = (flags & kHasExtension) != 0 ? reader.U8() : 0;
  field.data.offset = start + static_cast<std::int64_t>(kFieldHeader) + extension;
  field.data.size = std::max<std::int64_t>(field.next - field.data.offset, 0);
  return true;
}

/// The image objects of a document, each as the stretches of its data.
std::vector<std::vector<IocaStretch>> FindImages(const Source& source) {
  std::vector<std::vector<IocaStretch>> images;
  ByteReader reader(source);
  StructuredField field;
  bool inside = false;
  while (ReadField(reader, field) && images.size() < static_cast<std::size_t>(Limit().pages)) {
    if (field.code == kBeginImage) images.emplace_back();
    if (field.code == kBeginImage || field.code == kEndImage) inside = field.code == kBeginImage;
    if (field.code == kImageData && inside) images.back().push_back(field.data);
    reader.Seek(field.next);
  }
  std::erase_if(images, [](const auto& stretches) { return stretches.empty(); });
  return images;
}

class IocaReader final : public Reader {
 public:
  explicit IocaReader(const Source& source) : m_source(source) {
    std::array<std::uint8_t, 1> first{};
    source.ReadAt(0, first);
    m_wrapped = first[0] == kIntroducer;
    if (m_wrapped)
      m_images = FindImages(source);
    else
      m_images = {{IocaStretch{0, source.Size()}}};
    if (m_images.empty()) Fail(kErrorUnsupported, "%s: the document has no image", source.Name().c_str());
  }

  int CountPages() override { return static_cast<int>(m_images.size()); }

  PageInfo Describe(int page) override { return Information(Segment(page)); }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    IocaSegment segment = Segment(page);
    DecodedPage decoded;
    decoded.info = Information(segment);
    if (const auto coding = FaxCodingOf(segment)) {
      FaxData data(std::move(segment.data));
      if (segment.reversed) data.Reverse();
      decoded.pixels = DecodeFaxPage(m_source, data, *coding, wish, decoded.info);
    } else if (segment.coding == IocaCoding::kJpeg) {
      DecodedPage inner = OpenJpeg(segment).reader->Decode(1, wish);
      decoded.pixels = std::move(inner.pixels);
      decoded.order = inner.order;
    } else {
      decoded.pixels = ReadRows(segment);
    }
    return decoded;
  }

 private:
  static std::optional<FaxCoding> FaxCodingOf(const IocaSegment& segment) {
    switch (segment.coding) {
      case IocaCoding::kGroup3OneDimensional:
        return FaxCoding::kOneDimensional;
      case IocaCoding::kGroup3TwoDimensional:
        return FaxCoding::kTwoDimensional;
      case IocaCoding::kGroup4:
        return FaxCoding::kGroup4;
      default:
        return std::nullopt;
    }
  }

  IocaSegment Segment(int page) const {
    RequirePage(m_source, page, static_cast<int>(m_images.size()));
    return ReadIocaSegment(m_source, m_images[static_cast<std::size_t>(page) - 1]);
  }

  /// There are codes for the fax codings alone.
  int FormatCode(FaxCoding coding) const {
    const int first = m_wrapped ? kFormatIocaG3OneDimensional : kFormatBareIocaG3OneDimensional;
    return first + static_cast<int>(coding);
  }

  PageInfo Information(const IocaSegment& segment) const {
    RequireReadable(segment);
    PageInfo info;
    const auto coding = FaxCodingOf(segment);
    if (segment.coding == IocaCoding::kJpeg) {
      info = OpenJpeg(segment).reader->Describe(1);
      info.compression = "JPEG";
      info.viewPerspective = 0;
    } else {
      info.width = segment.width;
      info.height = segment.height;
      info.bits = segment.bits;
      info.compression = coding ? FaxCodingName(*coding) : "None";
    }
    info.format = coding ? FormatCode(*coding) : kFormatNone;
    info.xResolution = segment.xResolution;
    info.yResolution = segment.yResolution;
    return info;
  }

  void RequireReadable(const IocaSegment& segment) const {
    const bool fax = FaxCodingOf(segment).has_value();
    const bool plain = segment.coding == IocaCoding::kNone;
    const bool known = fax ? segment.bits == 1 : plain || segment.coding == IocaCoding::kJpeg;
    const bool depth = segment.bits == 1 || segment.bits == 8 || segment.bits == 24;
    if (segment.inParts || !known || !depth)
      Fail(kErrorUnsupported, "%s: an IOCA image with %s can't be decoded", m_source.Name().c_str(),
           segment.inParts ? "tiles or bands" : "this coding");
    CheckPageSize(m_source, segment.width, segment.height);
    if (segment.data.empty()) Fail(kErrorCorrupt, "%s: the image has no data", m_source.Name().c_str());
  }

  struct InnerPicture {
    std::unique_ptr<Source> source;
    std::unique_ptr<Reader> reader;
  };
  InnerPicture OpenJpeg(const IocaSegment& segment) const {
    InnerPicture inner;
    inner.source = OpenBlockSource(segment.data, m_source.Name());
    inner.reader = OpenReaderOf(kJpegCodec, *inner.source);
    if (inner.reader == nullptr)
      Fail(kErrorCorrupt, "%s: the image data is no JPEG", m_source.Name().c_str());
    return inner;
  }

  /// Rows of whole bytes. Those that a file that is cut off doesn't have are white.
  std::unique_ptr<PixelStorage> ReadRows(const IocaSegment& segment) const {
    const std::size_t stride = (static_cast<std::size_t>(segment.width) * segment.bits + 7) / 8;
    CheckPlausible(m_source, static_cast<std::int64_t>(stride) * segment.height, 64);
    const std::size_t whole =
        std::min(segment.data.size() / stride, static_cast<std::size_t>(segment.height));
    if (whole == 0) Fail(kErrorCorrupt, "%s: the image ends before its pixels", m_source.Name().c_str());
    // A bit that is set is ink; levels count light unless the colours subtract.
    const std::uint8_t flip = (segment.bits == 1) != segment.subtractive ? 0xff : 0;
    auto pixels = PixelStorage::Create(segment.width, segment.height, segment.bits);
    for (int y = 0; y < segment.height; ++y) {
      if (static_cast<std::size_t>(y) < whole)
        CopyBits(&segment.data[static_cast<std::size_t>(y) * stride], pixels->Row(y), stride, flip);
      else
        std::memset(pixels->Row(y), 0xff, stride);
    }
    return pixels;
  }

  const Source& m_source;
  bool m_wrapped = false;
  std::vector<std::vector<IocaStretch>> m_images;
};

/// The second structured field, or the second field of a segment, must follow the first.
bool Recognise(const Candidate& candidate) {
  constexpr std::uint8_t kBeginSegment = 0x70;
  constexpr std::uint8_t kBeginContent = 0x91;
  const auto head = candidate.head;
  if (head.size() < kFieldHeader) return false;
  if (head[0] == kBeginSegment) {
    const std::size_t second = 2 + std::size_t{head[1]};
    return second + 1 < head.size() && head[second] == kBeginContent && head[second + 1] == 1;
  }
  return head[0] == kIntroducer && head[1] == 0 && head[2] >= kFieldHeader - 1 && head[3] == kClass &&
         std::size_t{head[2]} + 4 < head.size() && head[std::size_t{head[2]} + 1] == kIntroducer &&
         head[std::size_t{head[2]} + 4] == kClass;
}

}  // namespace

extern const Codec kIocaCodec = {Recognise, OpenAs<IocaReader>};

}  // namespace imaging
