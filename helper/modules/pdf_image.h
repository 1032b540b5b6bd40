#pragma once

#include <optional>
#include <qpdf/QPDF.hh>
#include <vector>

#include "helper/module.h"
#include "helper/modules/pdf_picture.h"

namespace helper {

/// A page that is one picture: its description, and its own coded data or its samples.
class PdfImage {
 public:
  /// Codings, colour spaces and variants that aren't known are left to be drawn; nothing if they have no
  /// resolution of their own.
  static std::optional<PdfImage> Of(QPDF& pdf, const PagePicture& picture);

  const PageRecord& Page() const { return m_page; }
  Decoded Decode(const Canvas& canvas) const;

 private:
  enum class Colors { kGray, kRgb, kCmyk, kIndexed, kOther };

  void Describe(const PagePicture& picture);
  bool ReadColors(QPDFObjectHandle space);
  bool ReadPalette(QPDFObjectHandle space);
  bool ReadDecodeArray();
  bool Prepare(QPDF& pdf);
  bool LeaveToBeDrawn();
  std::string LastFilter();
  bool PrepareFax();
  bool PrepareJpeg();
  bool PrepareJpeg2000();
  bool PrepareSamples(const std::string& filter);
  void Deliver(Delivery delivery, std::vector<std::uint8_t> bytes);
  int Samples() const;
  void WriteRow(const std::uint8_t* samples, std::uint8_t* row) const;

  QPDFObjectHandle m_image;
  QPDFObjectHandle m_dictionary;
  QPDFObjectHandle m_parameters;  ///< of the last filter
  PageRecord m_page;
  Colors m_colors = Colors::kGray;
  std::vector<std::uint32_t> m_palette;
  int m_depth = 8;  ///< bits of a sample
  bool m_inverted = false;
  std::vector<std::uint8_t> m_bytes;  ///< coded data to be delivered, or the samples
};

}  // namespace helper
