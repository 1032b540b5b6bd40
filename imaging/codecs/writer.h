#pragma once

#include <cstdint>
#include <vector>

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

/// While it lives, pages saved to its path go into one new file, which takes the path's place with Complete.
class SaveSession {
 public:
  explicit SaveSession(const char* path);
  ~SaveSession();
  SaveSession(const SaveSession&) = delete;
  SaveSession& operator=(const SaveSession&) = delete;
  void Complete() { m_file.Complete(); }

 private:
  friend void SavePage(const char* path, const SavedPage& page, int format, int number);
  static SaveSession* Of(const char* path);
  void Save(const struct Writer& writer, const SavedPage& page, int number);

  TargetFile m_file;
  SaveSession* m_outer;
  int m_pages = 0;
  std::int64_t m_chainEnd = 0;
};

/// The colours are the linear grey table of their depth.
bool HasLinearGrays(const PixelStorage& pixels);

// The writers of new files; the caller completes the file.

void WriteBmp(TargetFile& file, const SavedPage& page);
void WriteExifJpeg(TargetFile& file, const SavedPage& page);
void WritePng(TargetFile& file, const SavedPage& page);
void WriteTiffG3(TargetFile& file, const SavedPage& page);
void WriteTiffPackBits(TargetFile& file, const SavedPage& page);

/// A JPEG stream of three components, luma and chroma; empty if it can't be made.
std::vector<std::uint8_t> CodeAsJpeg(const SavedPage& page);

// The writers of further pages, to a file that has number - 1 of them.

void AppendTiffG3(const char* path, const SavedPage& page, int number);
void AppendTiffPackBits(const char* path, const SavedPage& page, int number);

// The same to a new file that isn't complete yet. chainEnd is where the writer left off; 0 with the second
// page.

void AppendTiffG3ToNew(TargetFile& file, std::int64_t& chainEnd, const SavedPage& page, int number);
void AppendTiffPackBitsToNew(TargetFile& file, std::int64_t& chainEnd, const SavedPage& page, int number);

}  // namespace imaging
