#include "imaging/codecs/eps_header.h"
#include "imaging/codecs/helper.h"
#include "imaging/codecs/raster.h"
#include "imaging/core/exception.h"

// Encapsulated PostScript with the binary header of DOS: the preview beside the PostScript is a file of its
// own, TIFF or a metafile. Files without a preview belong to the helper.
namespace imaging {
namespace {

class EpsPreviewReader final : public Reader {
 public:
  explicit EpsPreviewReader(const Source& source) : m_source(source) {
    const EpsHeader header = *ReadEpsHeader(ReadHeader<EpsPart::kHeaderBytes>(source));
    const bool tiff = header.tiff.In(source.Size());
    const EpsPart& part = tiff ? header.tiff : header.metafile;
    if (!part.In(source.Size()))
      Fail(kErrorCorrupt, "%s: the preview of the PostScript is missing", source.Name().c_str());
    m_code = tiff ? kFormatEpsTiff : kFormatEpsWmf;
    m_window = OpenWindowSource(source, part.offset, part.size);
    m_preview = tiff ? OpenReaderOf(kTiffCodec, *m_window) : OpenMetafile(*m_window);
    if (m_preview == nullptr)
      Fail(kErrorCorrupt, "%s: the preview of the PostScript is no picture", source.Name().c_str());
  }

  int CountPages() override { return 1; }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, 1);
    PageInfo info = m_preview->Describe(1);
    info.format = m_code;
    return info;
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    RequirePage(m_source, page, 1);
    DecodedPage decoded = m_preview->Decode(1, wish);
    decoded.info.format = m_code;
    return decoded;
  }

 private:
  const Source& m_source;
  int m_code;
  std::unique_ptr<Source> m_window;
  std::unique_ptr<Reader> m_preview;
};

bool Recognise(const Candidate& candidate) {
  return ReadEpsHeader(candidate.head).has_value();
}

}  // namespace

extern const Codec kEpsPreviewCodec = {Recognise, OpenAs<EpsPreviewReader>};

}  // namespace imaging
