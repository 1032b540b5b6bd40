#pragma once

#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "tests/imagewindow/tiff_writer.h"

// Files that tell their pages but don't hold all of them.
namespace test_pages {

/// Lets the only strip of a page, counted from 1, begin far behind the file's end. Of a file in this
/// machine's byte order (TIFF 6.0, section 2).
inline void BreakPage(const std::string& path, int page) {
  std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
  const auto number = [&file](std::streamoff at, auto kind) {
    file.seekg(at);
    file.read(reinterpret_cast<char*>(&kind), sizeof kind);
    return kind;
  };
  std::streamoff directory = number(4, std::uint32_t{});
  for (int i = 1;; ++i) {
    const int entries = number(directory, std::uint16_t{});
    if (i < page) {
      directory = number(directory + 2 + 12 * entries, std::uint32_t{});
      continue;
    }
    for (int entry = 0; entry < entries; ++entry) {
      const std::streamoff at = directory + 2 + 12 * entry;
      if (number(at, std::uint16_t{}) != TIFFTAG_STRIPOFFSETS) continue;
      const std::uint32_t nowhere = 0x7fff0000;
      file.seekp(at + 8);
      file.write(reinterpret_cast<const char*>(&nowhere), sizeof nowhere);
    }
    return;
  }
}

}  // namespace test_pages
