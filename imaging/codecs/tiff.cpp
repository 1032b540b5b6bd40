#include <utility>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/tiff_coded.h"
#include "imaging/codecs/tiff_decode.h"
#include "imaging/codecs/tiff_directory.h"
#include "imaging/codecs/tiff_jpeg2000.h"
#include "imaging/codecs/tiff_layout.h"
#include "imaging/codecs/tiff_lossless.h"
#include "imaging/core/exception.h"

namespace imaging {
namespace {

// Medical files may carry a TIFF signature in a preamble that readers have to ignore (DICOM PS3.10, 7.1).
constexpr std::size_t kDicomMark = 128;

bool HasDicomMark(std::span<const std::uint8_t> head) {
  return head.size() >= kDicomMark + 4 && head[kDicomMark] == 'D' && head[kDicomMark + 1] == 'I' &&
         head[kDicomMark + 2] == 'C' && head[kDicomMark + 3] == 'M';
}

bool Recognise(const Candidate& candidate) {
  return HasTiffSignature(candidate.head) && !HasDicomMark(candidate.head);
}

class TiffReader final : public Reader {
 public:
  explicit TiffReader(const Source& source) : m_source(source), m_directories(source) {}

  int CountPages() override { return m_directories.Count(); }

  PageInfo Describe(int page) override {
    const TiffHandle tiff(m_source, Directory(page), page);
    return Describe(tiff, ReadTiffLayout(tiff));
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    const TiffHandle tiff(m_source, Directory(page), page);
    const TiffLayout layout = ReadTiffLayout(tiff);
    DecodedPage decoded;
    decoded.info = Describe(tiff, layout);
    // Fax coding has no bound: a white row is a bit. The others stay below LZMA's.
    constexpr int kMostExpansion = 10000;
    const std::int64_t bytes = std::int64_t{layout.width} * layout.height * decoded.info.bits / 8;
    if (!layout.FaxCoded())
      CheckPlausible(m_source, bytes, layout.compression == COMPRESSION_NONE ? 64 : kMostExpansion);
    if (decoded.info.compression == kLosslessName) {
      decoded.pixels = DecodeLosslessTiff(tiff, layout);
      return decoded;
    }
    if (layout.compression == COMPRESSION_JP2000) {
      decoded.pixels = DecodeJpeg2000Tiff(tiff, layout, wish);
      decoded.lossy = true;
      return decoded;
    }
    if (NeedsTiffColorConversion(layout)) {
      decoded.pixels = ConvertTiffPage(tiff, layout);
      decoded.lossy = layout.compression == COMPRESSION_JPEG || layout.compression == COMPRESSION_OJPEG;
      return decoded;
    }
    if (layout.compression == COMPRESSION_JPEG && layout.photometric == PHOTOMETRIC_YCBCR)
      TIFFSetField(tiff.Get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
    const int warnings = tiff.WarningCount();
    FaxOutcome fax;
    decoded.pixels = DecodeTiffPage(tiff, layout, wish, fax);
    decoded.info.damagedRows = fax.damagedRows;
    decoded.lossy = layout.compression == COMPRESSION_JPEG;
    if (fax.sound && tiff.ErrorCount() == 0 && tiff.WarningCount() == warnings)
      decoded.coded = CodedTiffPage(tiff, layout, Directory(page));
    return decoded;
  }

 private:
  static constexpr const char* kLosslessName = "JPEG lossless";

  static PageInfo Describe(const TiffHandle& tiff, const TiffLayout& layout) {
    PageInfo info = DescribeTiffPage(tiff, layout);
    if (IsLosslessTiff(tiff, layout)) info.compression = kLosslessName;
    return info;
  }

  std::uint64_t Directory(int page) {
    const std::uint64_t offset = m_directories.Offset(page);
    if (offset != 0) return offset;
    if (m_directories.Offset(1) == 0) Fail(kErrorCorrupt, "%s has no readable page", m_source.Name().c_str());
    Fail(kErrorPageNotFound, "%s has no page %d", m_source.Name().c_str(), page);
  }

  const Source& m_source;
  TiffDirectories m_directories;
};

}  // namespace

const Codec kTiffCodec = {Recognise, OpenAs<TiffReader>};

}  // namespace imaging
