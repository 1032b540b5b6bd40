#pragma once

#include <tiffio.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "tests/imaging/codec_support.h"

// Files made with the codec libraries themselves.
namespace codec_test {

/// A folder that goes with its scope.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;
  std::string Path(const std::string& name) const { return (m_path / name).string(); }

 private:
  std::filesystem::path m_path;
};

Bytes ReadAll(const std::string& path);
void WriteAll(const std::string& path, const Bytes& bytes);

struct TiffForm {
  const char* name = "";
  int bits = 1;
  int samples = 1;
  int photometric = PHOTOMETRIC_MINISBLACK;
  int compression = COMPRESSION_NONE;
  bool planar = false;
  bool tiled = false;
  const char* mode = "w";  ///< of TIFFOpen: byte order, BigTIFF
  int width = 37;
  int height = 29;
  int extra = -1;  ///< kind of the extra sample
  int format = SAMPLEFORMAT_UINT;
  int fillOrder = FILLORDER_MSB2LSB;
  int g3Options = 0;
  int rowsPerStrip = 8;
};

/// The value of a sample of the test pictures; whole numbers of that many bits.
std::uint32_t SampleAt(const TiffForm& form, int x, int y, int sample);

/// Writes one page, and leaves the directory to the caller.
void WriteTiffPage(TIFF* tiff, const TiffForm& form);
Bytes MakeTiff(const std::vector<TiffForm>& pages);

/// lumaRows: of luma to one of chroma.
Bytes MakeJpeg(int width, int height, int components, bool progressive,
               const std::function<std::uint8_t(int x, int y, int component)>& sample, int densityUnit = 0,
               int density = 0, const Bytes& exif = {}, int lumaRows = 2, int quality = 98);

Bytes MakePng(int width, int height, int depth, int colorType, bool interlaced,
              const std::function<unsigned(int x, int y, int channel)>& sample);

/// An uncompressed or run-length coded bitmap from its fields; the size field of the file isn't used by
/// readers.
Bytes MakeBmp(int width, int height, int bits, unsigned compression, const Bytes& tables,
              const Bytes& pixels);

struct GifFrame {
  int left;
  int top;
  int width;
  int height;
  int index;  ///< the whole frame's colour
  int disposal = 0;
  int transparent = -1;
};
/// Four colours: black, red, green, white.
Bytes MakeGif(int width, int height, const std::vector<GifFrame>& frames);

}  // namespace codec_test
