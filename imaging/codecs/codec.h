#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "imaging/core/source.h"
#include "imaging/core/waiting.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// Codes under which a kind of file is known, by real compression and colour space.
enum FileFormat : int {
  kFormatNone = 0,  ///< a kind without a code of its own
  kFormatPcx = 1,
  kFormatGif = 2,
  kFormatTiff = 3,
  kFormatTarga = 4,
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
  kFormatCals = 50,
  kFormatMacPaint = 51,
  kFormatGem = 52,
  kFormatMsPaint = 53,
  kFormatSunRaster = 55,
  kFormatFli = 61,
  kFormatEpsTiff = 63,
  kFormatEpsWmf = 64,
  kFormatRawFaxG3OneDimensional = 66,
  kFormatRawFaxG3TwoDimensional = 67,
  kFormatRawFaxG4 = 68,
  kFormatIocaG3OneDimensional = 71,
  kFormatIocaG3TwoDimensional = 72,
  kFormatIocaG4 = 73,
  kFormatBmpOs2V2 = 74,
  kFormatPng = 75,
  kFormatBareIocaG3OneDimensional = 77,
  kFormatBareIocaG3TwoDimensional = 78,
  kFormatBareIocaG4 = 79,
  kFormatBmpRle = 84,
  kFormatTiffCmyk = 85,
  kFormatTiffLzwCmyk = 86,
  kFormatTiffPackBits = 87,
  kFormatTiffPackBitsCmyk = 88,
  kFormatIcon = 91,
  kFormatCursor = 92,
  kFormatTiffYcc = 93,
  kFormatTiffLzwYcc = 94,
  kFormatTiffPackBitsYcc = 95,
  kFormatExifTiff = 96,
  kFormatExifTiffYcc = 97,
  kFormatExifJpeg422 = 98,
  kFormatExifJpeg411 = 101,
  kFormatPbmPlain = 102,
  kFormatPbm = 103,
  kFormatPgmPlain = 104,
  kFormatPgm = 105,
  kFormatPpmPlain = 106,
  kFormatPpm = 107,
  kFormatDrHalo = 108,
  kFormatXpm = 109,
  kFormatXbm = 110,
  kFormatClipboard = 114,
  kFormatAnimatedCursor = 119,
  kFormatIntergraph = 122,
  kFormatCalsTiled = 129,
  kFormatXwd10 = 132,
  kFormatXwd11 = 133,
  kFormatFlc = 134,
  kFormatTiffJbig = 139,
  kFormatJp2 = 163,
  kFormatJ2k = 164,
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
  int damagedRows = 0;  ///< as far as known: some codecs learn it from decoding the page
};

/// Told how far a page has been decoded, from the top on. It may throw, which ends the decoding, and so isn't
/// told from within a library written in C.
class DecodeListener {
 public:
  /// The rows before endRow are there, in this order of colours.
  virtual void Reached(PixelStorage& pixels, int order, int endRow) = 0;

 protected:
  ~DecodeListener() = default;
};

/// How the caller would like a page; a codec follows where it costs nothing.
struct DecodeWish {
  int order = 0;  ///< of 24 and 32 bits
  /// Where not 0, the page is wanted for a picture with sides of at most so many pixels, and may be smaller
  /// than it says, if its longer side is twice that.
  int side = 0;
  DecodeListener* listener = nullptr;  ///< codecs that can't tell on their way leave it untold

  void Reached(PixelStorage& pixels, int pixelOrder, int endRow) const {
    FailIfEndWanted();
    if (listener != nullptr) listener->Reached(pixels, pixelOrder, endRow);
  }
};

struct DecodedPage {
  PageInfo info;
  std::unique_ptr<PixelStorage> pixels;
  int order = 0;
  std::shared_ptr<const CodedPage> coded;  ///< if the file's own bytes show the very page
  bool lossy = false;
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

/// What a family is recognised by. Its first bytes are read once for all families.
struct Candidate {
  std::span<const std::uint8_t> head;
  const Source& source;  ///< for marks at the end, and for kinds that only a closer look tells
  std::string ending;    ///< of the file's name, in small letters, without the dot; empty for memory
};

/// In small letters, without the dot; empty without one.
std::string EndingOf(std::string_view name);

/// How sure a family is of a file that it recognises. The surer ones are all asked first, so that no name and
/// no likely look takes a file away from a family that knows it by its signature.
enum class Evidence {
  kSignature,  ///< bytes that stand there by definition
  kLikeness,   ///< no signature: the name's ending together with a clean start
};

/// One family of files. Each is a line in families.def and a source of its own.
struct Codec {
  bool (*recognise)(const Candidate& candidate);
  /// The reader may refer to the source, which outlives it.
  std::unique_ptr<Reader> (*open)(const Source& source);
  Evidence evidence = Evidence::kSignature;
};

#define FAMILY(codec, name) extern const Codec codec;
#include "imaging/codecs/families.def"
#undef FAMILY

template <typename FamilyReader>
std::unique_ptr<Reader> OpenAs(const Source& source) {
  return std::make_unique<FamilyReader>(source);
}

/// Finds the family of a source and opens it; of equally sure ones the first in families.def. Throws
/// kErrorFileFormat if no family knows it.
std::unique_ptr<Reader> OpenReader(const Source& source);

/// A picture inside another file, which must be of one family: source is a window into the file or a block
/// that was made of parts of it. Null if it is no such picture.
std::unique_ptr<Reader> OpenReaderOf(const Codec& codec, const Source& source);

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
