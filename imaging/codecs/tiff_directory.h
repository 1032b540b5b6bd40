#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "imaging/core/source.h"

namespace imaging {

/// True for the marks of classic TIFF and BigTIFF in both byte orders (TIFF 6.0, section 2).
bool HasTiffSignature(std::span<const std::uint8_t> head);

/// The chain of page directories of a TIFF file, read only as far as it is asked for: one read a page, entry
/// count and next offset alone. The chains of the last few files are kept, so that page n of a file that was
/// counted before costs as page 1. A chain that comes back to itself, or leaves the file, ends there.
class TiffDirectories {
 public:
  explicit TiffDirectories(const Source& source);
  /// Offset of the directory of a page, from 1; 0 if there is no such page.
  std::uint64_t Offset(int page);
  int Count();
  /// Offset of the field of a page's directory that leads to the next; 0 if it isn't there.
  std::uint64_t NextField(int page);

  struct Chain {
    std::vector<std::uint64_t> offsets;
    std::uint64_t next = 0;  ///< offset of the first directory not yet in the list, 0 at the end
  };

 private:
  void Advance();
  bool ReadNext(std::uint64_t directory, std::uint64_t& next);
  bool FindNextField(std::uint64_t directory, std::uint64_t& field);
  /// A field of the file, by way of the window; false if the file ends before it.
  bool ReadNumber(std::uint64_t offset, int size, std::uint64_t& value);
  bool ReadHeader(std::uint64_t& first);
  std::uint64_t Number(const std::uint8_t* bytes, int size) const;

  const Source& m_source;
  bool m_bigEndian = false;
  bool m_bigTiff = false;
  std::shared_ptr<Chain> m_chain;
  // A stretch of the file from a directory on. One read brings a page's count and next offset, and those of
  // the pages after it if they are small.
  std::array<std::uint8_t, 2048> m_window{};
  std::uint64_t m_windowStart = 0;
  std::size_t m_windowSize = 0;
};

}  // namespace imaging
