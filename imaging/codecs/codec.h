#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "imaging/pixels/storage.h"
#include "imaging/source.h"

namespace imaging {

/// Codes under which a kind of file is known, by real compression and colour space.
enum FileFormat : int {
  kFormatNone = 0,  ///< a kind without a code of its own
  kFormatGif = 2,
  kFormatTiff = 3,
  kFormatBmp = 6,
  kFormatJpeg444 = 10,
  kFormatTiffJpeg444 = 11,
  kFormatBmpOs2V1 = 14,
  kFormatTiffLzw = 17,
  kFormatJpeg411 = 21,
  kFormatTiffJpeg411 = 22,
  kFormatJpeg422 = 23,
  kFormatTiffJpeg422 = 24,
  kFormatTiffCcitt = 25,
  kFormatTiffG3OneDimensional = 27,
  kFormatTiffG3TwoDimensional = 28,
  kFormatTiffG4 = 29,
  kFormatBmpOs2V2 = 74,
  kFormatPng = 75,
  kFormatBmpRle = 84,
  kFormatTiffCmyk = 85,
  kFormatTiffLzwCmyk = 86,
  kFormatTiffPackBits = 87,
  kFormatTiffPackBitsCmyk = 88,
  kFormatTiffYcc = 93,
  kFormatTiffLzwYcc = 94,
  kFormatTiffPackBitsYcc = 95,
  kFormatExifJpeg422 = 98,
  kFormatExifJpeg411 = 101,
  kFormatTiffJbig = 139,
  kFormatTiffJpeg2000 = 166,
};

/// What the file says of one page.
struct PageInfo {
  int format = kFormatNone;
  int width = 0;  ///< pixels, as stored, before any orientation
  int height = 0;
  int bits = 0;  ///< per pixel as stored, all samples together
  std::string compression;
  int viewPerspective = 0;  ///< 0 normal, else 2 to 8
  int order = 0;            ///< in which 24 and 32 bits come naturally: 0 red first, 1 blue first
  int xResolution = 0;      ///< dots per inch, 0 unknown
  int yResolution = 0;
};

/// How the caller would like a page; a codec follows where it costs nothing.
struct DecodeWish {
  int bits = 0;   ///< 8: expand a bilevel page; 0 and others: the page's own depth
  int order = 0;  ///< of 24 and 32 bits
};

struct DecodedPage {
  PageInfo info;
  std::unique_ptr<PixelStorage> pixels;
  int order = 0;
};

/// One open image. Pages count from 1; a page that isn't there throws kErrorPageNotFound. The source outlives
/// the reader.
class Reader {
 public:
  virtual ~Reader() = default;
  virtual int CountPages() = 0;
  /// Throws if the page can't be shown as far as its header tells.
  virtual PageInfo Describe(int page) = 0;
  /// A damaged page gives what was decoded; one of which nothing can be decoded throws.
  virtual DecodedPage Decode(int page, const DecodeWish& wish) = 0;
};

/// One family of files.
struct Codec {
  /// Decides by the first bytes of the file alone, never by its name.
  bool (*recognise)(std::span<const std::uint8_t> head);
  std::unique_ptr<Reader> (*open)(const Source& source);
};

extern const Codec kTiffCodec;
extern const Codec kJpegCodec;
extern const Codec kBmpCodec;
extern const Codec kPngCodec;
extern const Codec kGifCodec;

/// Finds the family of a source by its signature and opens it. Throws kErrorFileFormat if there is none.
std::unique_ptr<Reader> OpenReader(const Source& source);

/// Throws unless the size is above zero and within the limits. Called before anything is allocated by it.
void CheckPageSize(const Source& source, std::int64_t width, std::int64_t height);

/// Throws if a large page can't come out of a file of that size: bytes is what it unpacks to, expansion how
/// many bytes the coding makes of one at most. Keeps a file of a few bytes from taking gigabytes.
void CheckPlausible(const Source& source, std::int64_t bytes, int expansion);

/// For families with one page.
void RequirePage(const Source& source, int page, int pages);

/// Rounds to whole dots per inch; nonsense becomes 0, unknown.
int DotsPerInch(double dots);
inline constexpr double kCentimetresPerInch = 2.54;
inline constexpr double kMetresPerInch = 0.0254;

}  // namespace imaging
