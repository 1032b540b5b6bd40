#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/spooler/detail/spool_file.h"
#include "platform/spooler/page_images.h"

namespace platform {

/// A place on a page, in points (72 to the inch) from its lower left corner.
struct PdfRect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;
};

/// Writes a PDF (ISO 32000-1) of pages with images on them. Every write goes to the file at once, so that a
/// document needs the memory of one page. Failed writes show in the file.
class PdfWriter {
 public:
  PdfWriter(SpoolFile& file, const std::string& title);
  PdfWriter(const PdfWriter&) = delete;
  PdfWriter& operator=(const PdfWriter&) = delete;

  void BeginPage(double width, double height);
  /// Maps the part of the image to the place, whose width or height may be below 0: mirrored then. clip cuts
  /// it off; null: not clipped. part lies inside the image.
  void AddImage(const PrinterImage& image, const RECT& part, const PdfRect& place, const PdfRect* clip);
  void EndPage();
  void Finish();
  std::size_t Pages() const { return m_pages.size(); }

 private:
  int NewObject();
  /// Begins an object: its number and "obj".
  void Begin(int object);
  void WriteObject(int object, std::string_view body);
  void WriteStream(int object, std::string_view dictionary, std::span<const std::uint8_t> data);
  /// A stream whose length isn't known before it is written.
  struct Stream {
    int object;
    int length;
    std::size_t start;
  };
  Stream BeginStream(std::string_view dictionary);
  /// The bytes of the stream.
  std::size_t EndStream(const Stream& stream);
  static bool PassesOn(const PrinterImage& image, const RECT& part);
  int WriteImage(const PrinterImage& image, const RECT& part);
  int WriteCoded(const CodedImage& coded, const RECT& part);
  int WriteBilevel(const PrinterImage& image, const RECT& part);
  /// bytes: of the coded image.
  int WriteFax(const PrinterImage& image, const RECT& part, std::string_view head, bool grey,
               std::size_t& bytes);
  int WriteDeflated(const PrinterImage& image, const RECT& part);

  SpoolFile& m_file;
  std::vector<std::size_t> m_offsets;  // of the objects, from number 1 on
  std::vector<int> m_pages;
  std::string m_contents;   // of the open page
  std::string m_resources;  // its images
  std::string m_mediaBox;
  int m_imagesOnPage = 0;
};

/// A number as PDF wants it, whatever the locale: at most four decimals, no exponent.
std::string PdfNumber(double value);
/// A text as a PDF string: UTF-16 in hexadecimal form.
std::string PdfText(const std::string& utf8);

}  // namespace platform
