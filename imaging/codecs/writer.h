#pragma once

#include <cstdint>

#include "imaging/codecs/output_file.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// One page as it is to be written: the pixels in their own depth and what the record says of them.
struct SavedPage {
  const PixelStorage& pixels;
  int order = 0;            ///< of 24 and 32 bits: 0 red first, 1 blue first
  int viewPerspective = 0;  ///< 0 or an orientation number of 2 to 8
  int xResolution = 0;      ///< dots per inch, 0 unknown
  int yResolution = 0;
  int quality = 0;  ///< of lossy coding, 1 to 100; others: the writer's choice

  /// The number of the orientation tag of TIFF and Exif; 1 is the normal one.
  int Orientation() const { return viewPerspective >= 2 && viewPerspective <= 8 ? viewPerspective : 1; }
};

/// Writes the page under a format number; page 1 makes a new file, which replaces one that is there, another
/// is added to the file. Throws with a text that names the file; what was there before is then still there.
void SavePage(const char* path, const SavedPage& page, int format, int number);

/// The colours are the linear grey table of their depth.
bool HasLinearGrays(const PixelStorage& pixels);

// The writers of new files; the caller completes the file.

void WriteBmp(TargetFile& file, const SavedPage& page);
void WriteExifJpeg(TargetFile& file, const SavedPage& page);
void WritePng(TargetFile& file, const SavedPage& page);
void WriteTiffG3(TargetFile& file, const SavedPage& page);
void WriteTiffPackBits(TargetFile& file, const SavedPage& page);

// The writers of further pages, to a file that has number - 1 of them.

void AppendTiffG3(const char* path, const SavedPage& page, int number);
void AppendTiffPackBits(const char* path, const SavedPage& page, int number);

}  // namespace imaging
