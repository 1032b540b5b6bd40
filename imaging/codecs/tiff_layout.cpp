#include "imaging/codecs/tiff_layout.h"

#include <algorithm>

#include "imaging/codecs/helper.h"
#include "imaging/core/exception.h"

namespace imaging {
namespace {

int GuessPhotometric(const TiffLayout& layout) {
  if (layout.samples >= 3) return PHOTOMETRIC_RGB;
  return layout.FaxCoded() ? PHOTOMETRIC_MINISWHITE : PHOTOMETRIC_MINISBLACK;
}

/// Samples that make the colour; the others are extra.
int ColorSamples(const TiffHandle& tiff, const TiffLayout& layout) {
  switch (layout.photometric) {
    case PHOTOMETRIC_RGB:
    case PHOTOMETRIC_YCBCR:
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_LOGLUV:
      return 3;
    case PHOTOMETRIC_SEPARATED: {
      // Other ink sets than CMYK carry no rule for their colours; the usual order is the best guess.
      const int inks = tiff.Short(TIFFTAG_NUMBEROFINKS, 4);
      return std::clamp(inks, 1, 4);
    }
    default:
      return 1;
  }
}

TiffAlpha ReadAlpha(const TiffHandle& tiff) {
  std::uint16_t count = 0;
  const std::uint16_t* kinds = nullptr;
  if (TIFFGetField(tiff.Get(), TIFFTAG_EXTRASAMPLES, &count, &kinds) == 0 || count == 0)
    return TiffAlpha::kNone;
  if (kinds[0] == EXTRASAMPLE_ASSOCALPHA) return TiffAlpha::kAssociated;
  if (kinds[0] == EXTRASAMPLE_UNASSALPHA) return TiffAlpha::kStraight;
  return TiffAlpha::kNone;
}

int ReadSubsampling(const TiffHandle& tiff, const TiffLayout& layout) {
  if (layout.photometric != PHOTOMETRIC_YCBCR) return 1;
  std::uint16_t horizontal = 2;
  std::uint16_t vertical = 2;
  TIFFGetFieldDefaulted(tiff.Get(), TIFFTAG_YCBCRSUBSAMPLING, &horizontal, &vertical);
  return horizontal * vertical;
}

void ReadBands(const TiffHandle& tiff, TiffLayout& layout) {
  layout.tiled = TIFFIsTiled(tiff.Get()) != 0;
  const std::uint32_t rows =
      layout.tiled ? tiff.Long(TIFFTAG_TILELENGTH, 0) : tiff.Long(TIFFTAG_ROWSPERSTRIP, UINT32_MAX);
  const std::uint32_t columns = layout.tiled ? tiff.Long(TIFFTAG_TILEWIDTH, 0) : 1;
  if (rows == 0 || columns == 0)
    Fail(kErrorCorrupt, "%s, page %d: strips or tiles without a size", tiff.File().Name().c_str(),
         tiff.Page());
  const auto most = static_cast<std::uint32_t>(INT32_MAX);
  layout.bandHeight = static_cast<int>(std::min(rows, most));
  if (!layout.tiled) layout.bandHeight = std::min(layout.bandHeight, layout.height);
  layout.tileWidth = static_cast<int>(std::min(columns, most));
}

void RequireDecoder(const TiffHandle& tiff, int compression) {
  if (TIFFIsCODECConfigured(static_cast<std::uint16_t>(compression)) != 0) return;
  if (compression == COMPRESSION_JP2000) return RequireJpeg2000(tiff.File());
  Fail(kErrorUnsupported, "%s, page %d: TIFF compression %d can't be decoded", tiff.File().Name().c_str(),
       tiff.Page(), compression);
}

const char* CompressionName(const TiffHandle& tiff, int compression) {
  switch (compression) {
    case COMPRESSION_NONE:
      return "None";
    case COMPRESSION_CCITTRLE:
      return "CCITT RLE";
    case COMPRESSION_CCITTRLEW:
      return "CCITT RLE/W";
    case COMPRESSION_CCITTFAX3:
      return (tiff.Long(TIFFTAG_GROUP3OPTIONS, 0) & GROUP3OPT_2DENCODING) != 0 ? "CCITT G3 2D"
                                                                               : "CCITT G3 1D";
    case COMPRESSION_CCITTFAX4:
      return "CCITT G4";
    case COMPRESSION_LZW:
      return "LZW";
    case COMPRESSION_OJPEG:
      return "Old JPEG";
    case COMPRESSION_JPEG:
      return "JPEG";
    case COMPRESSION_ADOBE_DEFLATE:
      return "Deflate";
    case COMPRESSION_DEFLATE:
      return "Deflate (old code)";
    case COMPRESSION_PACKBITS:
      return "PackBits";
    case COMPRESSION_THUNDERSCAN:
      return "ThunderScan";
    case COMPRESSION_NEXT:
      return "NeXT";
    case COMPRESSION_SGILOG:
      return "SGILog";
    case COMPRESSION_SGILOG24:
      return "SGILog 24";
    case COMPRESSION_PIXARLOG:
      return "PixarLog";
    case COMPRESSION_JBIG:
      return "JBIG";
    case COMPRESSION_JP2000:
      return "JPEG 2000";
    case COMPRESSION_LERC:
      return "LERC";
    case COMPRESSION_LZMA:
      return "LZMA";
    case COMPRESSION_ZSTD:
      return "ZSTD";
    case COMPRESSION_WEBP:
      return "WebP";
    default:
      return "";
  }
}

/// The code of a compression that exists for three colour spaces.
int ByColorSpace(const TiffLayout& layout, int rgb, int cmyk, int ycc) {
  switch (layout.photometric) {
    case PHOTOMETRIC_SEPARATED:
      return cmyk;
    case PHOTOMETRIC_YCBCR:
      return ycc;
    case PHOTOMETRIC_CIELAB:
    case PHOTOMETRIC_ICCLAB:
    case PHOTOMETRIC_ITULAB:
    case PHOTOMETRIC_LOGL:
    case PHOTOMETRIC_LOGLUV:
      return kFormatNone;
    default:
      return rgb;
  }
}

int JpegCode(const TiffLayout& layout) {
  if (layout.photometric == PHOTOMETRIC_SEPARATED) return kFormatNone;
  switch (layout.subsampling) {
    case 1:
      return kFormatTiffJpeg444;
    case 2:
      return kFormatTiffJpeg422;
    case 4:
      return kFormatTiffJpeg411;
    default:
      return kFormatNone;
  }
}

bool HasExif(const TiffHandle& tiff) {
  std::uint64_t directory = 0;
  return TIFFGetField(tiff.Get(), TIFFTAG_EXIFIFD, &directory) != 0;
}

int FormatCode(const TiffHandle& tiff, const TiffLayout& layout) {
  switch (layout.compression) {
    case COMPRESSION_NONE:
      if (!HasExif(tiff)) return ByColorSpace(layout, kFormatTiff, kFormatTiffCmyk, kFormatTiffYcc);
      return ByColorSpace(layout, layout.Rgb() ? kFormatExifTiff : kFormatTiff, kFormatTiffCmyk,
                          kFormatExifTiffYcc);
    case COMPRESSION_LZW:
      return ByColorSpace(layout, kFormatTiffLzw, kFormatTiffLzwCmyk, kFormatTiffLzwYcc);
    case COMPRESSION_PACKBITS:
      return ByColorSpace(layout, kFormatTiffPackBits, kFormatTiffPackBitsCmyk, kFormatTiffPackBitsYcc);
    case COMPRESSION_JPEG:
    case COMPRESSION_OJPEG:
      return JpegCode(layout);
    case COMPRESSION_CCITTRLE:
    case COMPRESSION_CCITTRLEW:
      return kFormatTiffCcitt;
    case COMPRESSION_CCITTFAX3:
      return (tiff.Long(TIFFTAG_GROUP3OPTIONS, 0) & GROUP3OPT_2DENCODING) != 0 ? kFormatTiffG3TwoDimensional
                                                                               : kFormatTiffG3OneDimensional;
    case COMPRESSION_CCITTFAX4:
      return kFormatTiffG4;
    case COMPRESSION_JBIG:
      return kFormatTiffJbig;
    case COMPRESSION_JP2000:
      return kFormatTiffJpeg2000;
    default:
      return kFormatNone;
  }
}

int Resolution(const TiffHandle& tiff, std::uint32_t tag) {
  switch (tiff.Short(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH)) {
    case RESUNIT_INCH:
      return DotsPerInch(tiff.Real(tag, 0));
    case RESUNIT_CENTIMETER:
      return DotsPerInch(tiff.Real(tag, 0) * kCentimetresPerInch);
    default:
      return 0;
  }
}

}  // namespace

TiffLayout ReadTiffLayout(const TiffHandle& tiff) {
  TiffLayout layout;
  const std::uint32_t width = tiff.Long(TIFFTAG_IMAGEWIDTH, 0);
  const std::uint32_t height = tiff.Long(TIFFTAG_IMAGELENGTH, 0);
  CheckPageSize(tiff.File(), width, height);
  layout.width = static_cast<int>(width);
  layout.height = static_cast<int>(height);
  layout.bitsPerSample = tiff.Short(TIFFTAG_BITSPERSAMPLE, 1);
  layout.samples = tiff.Short(TIFFTAG_SAMPLESPERPIXEL, 1);
  constexpr int kMostSamples = 64;
  if (layout.bitsPerSample < 1 || layout.bitsPerSample > 64 || layout.samples < 1 ||
      layout.samples > kMostSamples)
    Fail(kErrorUnsupported, "%s, page %d: %d samples of %d bits a pixel", tiff.File().Name().c_str(),
         tiff.Page(), layout.samples, layout.bitsPerSample);
  layout.sampleFormat = tiff.Short(TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
  layout.compression = tiff.Short(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
  RequireDecoder(tiff, layout.compression);
  std::uint16_t photometric = 0;
  const bool told = TIFFGetField(tiff.Get(), TIFFTAG_PHOTOMETRIC, &photometric) != 0;
  layout.photometric = told ? photometric : GuessPhotometric(layout);
  layout.separatePlanes =
      layout.samples > 1 && tiff.Short(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) == PLANARCONFIG_SEPARATE;
  layout.colorSamples = std::min(ColorSamples(tiff, layout), layout.samples);
  layout.alpha = layout.samples > layout.colorSamples ? ReadAlpha(tiff) : TiffAlpha::kNone;
  layout.subsampling = ReadSubsampling(tiff, layout);
  ReadBands(tiff, layout);
  return layout;
}

PageInfo DescribeTiffPage(const TiffHandle& tiff, const TiffLayout& layout) {
  PageInfo info;
  info.format = FormatCode(tiff, layout);
  info.width = layout.width;
  info.height = layout.height;
  info.bits = layout.bitsPerSample * layout.samples;
  info.compression = CompressionName(tiff, layout.compression);
  const int orientation = tiff.Short(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  info.viewPerspective = orientation >= 2 && orientation <= 8 ? orientation : 0;
  info.xResolution = Resolution(tiff, TIFFTAG_XRESOLUTION);
  info.yResolution = Resolution(tiff, TIFFTAG_YRESOLUTION);
  return info;
}

}  // namespace imaging
