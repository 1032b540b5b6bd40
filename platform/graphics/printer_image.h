#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

#include "platform/base/types.h"

namespace platform {

/// An image as JPEG or group 4 fax data.
struct CodedImage {
  enum class Coding { kJpeg, kGroup4 };
  Coding coding = Coding::kJpeg;
  std::span<const std::uint8_t> bytes;
  int components = 1;       ///< of JPEG: 1 grey, 3 colour
  bool ycc = false;         ///< of JPEG: the three are luma and chroma
  bool blackIsOne = false;  ///< of fax: what it codes as black is to be seen as white
  /// How the coded image lies, by the numbers of TIFF and Exif; the pixels that go with it are upright.
  int orientation = 1;
};

/// Pixels of an image, borrowed for the length of a call.
struct PrinterImage {
  const std::uint8_t* top = nullptr;  ///< first byte of the topmost row
  std::ptrdiff_t stride = 0;          ///< bytes from a row to the one below it; below 0 in bottom-up blocks
  int width = 0;
  int height = 0;
  /// 1, 4, 8: colour numbers, first pixel in the high bits; 24 and 32: a byte for each channel.
  int bits = 0;
  std::span<const RGBQUAD> colors;  ///< for 1, 4 and 8 bits: one for each number that occurs
  bool blueFirst = true;            ///< order of 24 and 32 bits; the fourth byte isn't looked at
  /// The same image, which is passed on unchanged where the whole of it is drawn; null: none.
  const CodedImage* coded = nullptr;
  std::function<bool()> mayGoOn{};  ///< asked before each row is read, if set; false: no further one is
};

}  // namespace platform
