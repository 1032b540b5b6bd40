#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "imaging/core/source.h"

namespace imaging {

/// A page as a file holds it, in a coding that documents for printing know too.
struct CodedForm {
  enum class Coding { kJpeg, kGroup4 };
  Coding coding = Coding::kJpeg;
  int components = 1;
  bool ycc = false;         ///< three components of JPEG are luma and chroma, not red, green and blue
  bool blackIsOne = false;  ///< what group 4 codes as black is a picture's 1, which is white
  std::vector<std::uint8_t> bytes;
};

/// The way back from a page's pixels to its coded form. A file is read again when that is asked for, since
/// hardly any page is printed; of other sources, which may be gone by then, the bytes are kept.
class CodedPage {
 public:
  /// Empty if the bytes can't be passed on after all.
  using Compose = std::function<std::optional<CodedForm>(const Source&)>;

  CodedPage(const Source& source, Compose compose);
  /// Empty if the file isn't what it was, too.
  std::optional<CodedForm> Read() const;

 private:
  Compose m_compose;
  std::string m_path;
  SourceIdentity m_stamp;
  std::optional<CodedForm> m_kept;
};

}  // namespace imaging
