#include <algorithm>
#include <array>

#include "imaging/codecs/raster.h"
#include "imaging/core/exception.h"

// Encapsulated PostScript with the binary header of DOS: the PostScript isn't drawn, the preview beside it is
// a TIFF file of its own.
namespace imaging {
namespace {

constexpr std::array<std::uint8_t, 4> kSignature = {0xc5, 0xd0, 0xd3, 0xc6};
constexpr std::size_t kHeader = 30;

class EpsPreviewReader final : public Reader {
 public:
  explicit EpsPreviewReader(const Source& source) : m_source(source) {
    const auto header = ReadHeader<kHeader>(source);
    const std::uint32_t metafileSize = LittleU32(&header[16]);
    const std::uint32_t offset = LittleU32(&header[20]);
    const std::uint32_t size = LittleU32(&header[24]);
    if (offset < kHeader || size == 0)
      Fail(kErrorUnsupported, "%s: encapsulated PostScript %s can't be drawn", source.Name().c_str(),
           metafileSize != 0 ? "with a metafile as preview" : "without a preview");
    m_window = OpenWindowSource(source, offset, size);
    m_preview = OpenReaderOf(kTiffCodec, *m_window);
    if (m_preview == nullptr)
      Fail(kErrorCorrupt, "%s: the preview of the PostScript is missing", source.Name().c_str());
  }

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, 1);
    PageInfo info = m_preview->Describe(1);
    info.format = kFormatEpsTiff;
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    RequirePage(m_source, page, 1);
    DecodedPage decoded = m_preview->Decode(1, wish);
    decoded.info.format = kFormatEpsTiff;
    return decoded;
  }

 private:
  const Source& m_source;
  std::unique_ptr<Source> m_window;
  std::unique_ptr<Reader> m_preview;
};

bool Recognise(const Candidate& candidate) {
  return candidate.head.size() >= kHeader &&
         std::equal(kSignature.begin(), kSignature.end(), candidate.head.begin());
}

}  // namespace

extern const Codec kEpsPreviewCodec = {Recognise, OpenAs<EpsPreviewReader>};

}  // namespace imaging
