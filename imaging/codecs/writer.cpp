#include "imaging/codecs/writer.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "imaging/codecs/codec.h"
#include "imaging/core/exception.h"

namespace imaging {

struct Writer {
  const char* name;
  void (*write)(TargetFile& file, const SavedPage& page);
  void (*append)(const char* path, const SavedPage& page, int number);  ///< null: files of one page
  void (*appendToNew)(TargetFile& file, std::int64_t& chainEnd, const SavedPage& page, int number);
  int format;
  int mostBits;  ///< per pixel
};

namespace {

constexpr Writer kWriters[] = {
    {"PNG", WritePng, nullptr, nullptr, kFormatPng, 32},
    {"Windows bitmap", WriteBmp, nullptr, nullptr, kFormatBmpRle, 32},
    {"JPEG", WriteExifJpeg, nullptr, nullptr, kFormatExifJpeg422, 32},
    {"TIFF with group 3 coding", WriteTiffG3, AppendTiffG3, AppendTiffG3ToNew, kFormatTiffG3OneDimensional,
     1},
    {"TIFF with PackBits coding", WriteTiffPackBits, AppendTiffPackBits, AppendTiffPackBitsToNew,
     kFormatTiffPackBits, 32},
};

/// Of all threads: a page may be written aside.
SaveSession*& Innermost() {
  static SaveSession* session = nullptr;
  return session;
}

}  // namespace

SaveSession::SaveSession(const char* path) : m_file(path), m_outer(Innermost()) {
  Innermost() = this;
}

SaveSession::~SaveSession() {
  Innermost() = m_outer;
}

SaveSession* SaveSession::Of(const char* path) {
  SaveSession* session = Innermost();
  while (session != nullptr && std::strcmp(session->m_file.Path(), path) != 0) session = session->m_outer;
  return session;
}

void SaveSession::Save(const Writer& writer, const SavedPage& page, int number) {
  if (number > 1) {
    if (number != m_pages + 1)
      Fail(kErrorFileWrite, "%s can't be written: page %d can't be added to %d pages", m_file.Path(), number,
           m_pages);
    writer.appendToNew(m_file, m_chainEnd, page, number);
  } else {
    m_pages = 0;
    m_chainEnd = 0;
    m_file.Restart();
    writer.write(m_file, page);
  }
  m_pages = number;
}

bool HasLinearGrays(const PixelStorage& pixels) {
  if (pixels.Bits() > 8) return false;
  const int most = (1 << pixels.Bits()) - 1;
  for (int i = 0; i <= most; ++i) {
    const RGBQUAD& color = pixels.Palette()[static_cast<std::size_t>(i)];
    const int level = i * 255 / most;
    if (color.rgbRed != level || color.rgbGreen != level || color.rgbBlue != level) return false;
  }
  return true;
}

void SavePage(const char* path, const SavedPage& page, int format, int number) {
  const auto* writer = std::find_if(std::begin(kWriters), std::end(kWriters),
                                    [format](const Writer& candidate) { return candidate.format == format; });
  if (writer == std::end(kWriters))
    Fail(kErrorUnsupported, "%s: files of format %d can't be written", path, format);
  if (page.pixels.Bits() > writer->mostBits)
    Fail(kErrorUnsupported, "%s: %s holds pages of %d bit, not of %d", path, writer->name, writer->mostBits,
         page.pixels.Bits());
  if (number < 1) Fail(kErrorInvalidParameter, "%s: there is no page %d", path, number);
  if (number > 1 && writer->append == nullptr)
    Fail(kErrorUnsupported, "%s: a %s file has one page", path, writer->name);
  if (SaveSession* const session = SaveSession::Of(path)) {
    session->Save(*writer, page, number);
    return;
  }
  if (number > 1) {
    writer->append(path, page, number);
    return;
  }
  TargetFile file(path);
  writer->write(file, page);
  file.Complete();
}

}  // namespace imaging
