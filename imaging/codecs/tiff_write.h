#pragma once

#include <tiffio.h>

#include <cstdint>
#include <span>
#include <string>

#include "imaging/codecs/writer.h"

namespace imaging {

/// Where libtiff writes to and reads back from.
class TiffTarget {
 public:
  virtual ~TiffTarget() = default;
  virtual std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) = 0;
  virtual bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> bytes) = 0;
  virtual std::int64_t Size() = 0;
};

enum class TiffCoding : std::uint16_t { kG3 = COMPRESSION_CCITTFAX3, kPackBits = COMPRESSION_PACKBITS };

/// Writes one page with its directory; mode is that of TIFFOpen. Returns false with the library's first error
/// as the text.
bool WriteTiffPage(TiffTarget& target, const char* mode, const SavedPage& page, TiffCoding coding, int number,
                   std::string& text);

}  // namespace imaging
