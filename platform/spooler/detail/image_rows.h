#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/spooler/page_images.h"

namespace platform {

/// Thrown where the image was told that it may not go on.
struct ImageEnded {};

/// The rows of a part of an image as PDF stores them: packed from the first pixel on, red first, nothing but
/// zeros behind the last pixel.
class ImageRows {
 public:
  /// The part lies inside the image; both outlive this.
  ImageRows(const PrinterImage& image, const RECT& part);
  std::size_t Bytes() const { return m_row.size(); }
  /// The row y of the part, valid until the next call. Changing it changes nothing else.
  std::span<std::uint8_t> Read(int y);

 private:
  void ReadNumbers(const std::uint8_t* row);
  void ReadColors(const std::uint8_t* row);

  const PrinterImage& m_image;
  const RECT& m_part;
  std::vector<std::uint8_t> m_row;
};

/// True for an image whose fields make sense.
bool IsImage(const PrinterImage& image);

}  // namespace platform
