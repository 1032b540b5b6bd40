#include <algorithm>

#include "imaging/codecs/raster.h"

// Bitmaps as memory holds them, in a file of their own or in one that keeps a clipboard.
namespace imaging {
namespace {

class DibReader final : public Reader {
 public:
  /// The file's header that is missing says nothing but its two letters.
  explicit DibReader(const Source& dib)
      : m_file(OpenPrefixedSource({'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}, dib, 0)),
        m_reader(kBmpCodec.open(*m_file)) {}

  int CountPages() override { return m_reader->CountPages(); }
  PageInfo Describe(int page) override { return m_reader->Describe(page); }
  DecodedPage Decode(int page, const DecodeWish& wish) override { return m_reader->Decode(page, wish); }

 private:
  std::unique_ptr<Source> m_file;
  std::unique_ptr<Reader> m_reader;
};

std::unique_ptr<Reader> OpenFile(const Source& source) {
  return OpenAlbum(source, {{0, source.Size()}}, kFormatClipboard, OpenAs<DibReader>);
}

/// One of the header's sizes, one plane, a depth and a coding that there are.
bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  if (head.size() < 40) return false;
  static constexpr std::array<std::uint32_t, 5> kSizes = {40, 52, 56, 108, 124};
  static constexpr std::array<std::uint32_t, 6> kDepths = {1, 4, 8, 16, 24, 32};
  const auto among = [](const auto& values, std::uint32_t value) {
    return std::find(values.begin(), values.end(), value) != values.end();
  };
  return among(kSizes, LittleU32(head.data())) && LittleU32(&head[4]) != 0 && LittleU32(&head[8]) != 0 &&
         LittleU16(&head[12]) == 1 && among(kDepths, LittleU16(&head[14])) && LittleU32(&head[16]) <= 6;
}

/// The clipboard in a file: a list of formats with places and names, of which a bitmap is shown. Programs of
/// the later system write wider entries; where the first data begins tells how wide.
std::unique_ptr<Reader> OpenClipboard(const Source& source) {
  constexpr std::int64_t kHeader = 4;
  constexpr std::int64_t kNarrowEntry = 89;
  enum : std::uint32_t { kBitmap = 8, kBitmapV5 = 17 };
  const auto header = ReadHeader<kHeader>(source);
  const bool wide = header[0] == 0x51;
  const int count = static_cast<int>(LittleU16(&header[2]));
  const auto first = ReadHeader<12>(source, kHeader);
  const std::int64_t entry = wide && count > 0 ? (LittleU32(&first[8]) - kHeader) / count : kNarrowEntry;
  for (int i = 0; i < count; ++i) {
    const auto fields = ReadHeader<12>(source, kHeader + i * entry);
    const std::uint32_t format = wide ? LittleU32(fields.data()) : LittleU16(fields.data());
    const std::uint8_t* place = &fields[wide ? 4 : 2];
    if (format == kBitmap || format == kBitmapV5)
      return OpenAlbum(source, {{LittleU32(place + 4), LittleU32(place)}}, kFormatClipboard,
                       OpenAs<DibReader>);
  }
  Fail(kErrorUnsupported, "%s: the clipboard holds no bitmap", source.Name().c_str());
}

bool RecogniseClipboard(const Candidate& candidate) {
  const auto head = candidate.head;
  return head.size() >= 16 && (head[0] == 0x50 || head[0] == 0x51) && head[1] == 0xc3 &&
         LittleU16(&head[2]) > 0 && LittleU16(&head[2]) < 200;
}

}  // namespace

const Codec kDibCodec = {Recognise, OpenFile, Evidence::kLikeness};
const Codec kClipboardCodec = {RecogniseClipboard, OpenClipboard};

}  // namespace imaging
