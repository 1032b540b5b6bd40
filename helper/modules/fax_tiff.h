#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace helper {

/// Fax coding as a file format keeps it.
struct FaxForm {
  int width;
  int height;
  int coding;         ///< below 0 group 4, 0 one-dimensional, above two-dimensional
  bool aligned;       ///< rows of one-dimensional coding begin at bytes and have no end-of-line codes
  bool blackIsWhite;  ///< what the coding has as black is shown white
};

/// A TIFF file of one page around coded data, which stays as it is.
std::vector<std::uint8_t> WrapFax(const FaxForm& form, std::span<const std::uint8_t> coded);

}  // namespace helper
