#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "helper/module.h"

namespace helper {

inline std::uint32_t LittleU16(const std::uint8_t* bytes) {
  return bytes[0] | static_cast<std::uint32_t>(bytes[1]) << 8;
}
inline std::uint32_t LittleU32(const std::uint8_t* bytes) {
  return LittleU16(bytes) | LittleU16(bytes + 2) << 16;
}

/// A file that is a small file system: folders (storages) and files (streams) in chains of sectors. All that
/// a chain says is bounded by the size of the file, so that one that runs in a circle ends.
class CompoundFile {
 public:
  static constexpr std::size_t kNone = static_cast<std::size_t>(-1);
  static constexpr std::size_t kRoot = 0;

  /// The input outlives the file.
  explicit CompoundFile(const Input& input);

  struct Entry {
    std::string name;  ///< its characters of ASCII, others as question marks
    bool folder = false;
    std::uint32_t left = 0;
    std::uint32_t right = 0;
    std::uint32_t child = 0;
    std::uint32_t start = 0;
    std::uint64_t size = 0;
  };
  const Entry& At(std::size_t entry) const { return m_entries[entry]; }
  std::vector<std::size_t> Children(std::size_t folder) const;
  /// kNone if there is none.
  std::size_t Find(std::size_t folder, std::string_view name) const;

  struct Stream {
    std::vector<std::uint32_t> sectors;
    bool small = false;      ///< in the sectors of the stream of small ones
    std::uint64_t size = 0;  ///< as far as its chain goes
  };
  Stream Open(std::size_t entry) const;
  /// False if the stream or the file ends before.
  bool Read(const Stream& stream, std::uint64_t offset, std::span<std::uint8_t> target) const;
  /// What there is of a stream, at most so many bytes.
  std::vector<std::uint8_t> ReadAll(std::size_t entry, std::size_t most) const;

 private:
  std::vector<std::uint32_t> ListTableSectors(std::span<const std::uint8_t> header) const;
  void ReadTable(std::span<const std::uint8_t> header);
  void ReadDirectory(std::uint32_t start);
  std::vector<std::uint32_t> Chain(const std::vector<std::uint32_t>& table, std::uint32_t start,
                                   std::size_t most) const;
  bool ReadSector(std::uint32_t sector, std::size_t offset, std::span<std::uint8_t> target) const;
  /// The numbers in a sector; free ones if it isn't there.
  std::vector<std::uint32_t> NumbersOf(std::uint32_t sector) const;
  Stream StreamOf(std::vector<std::uint32_t> sectors, bool small, std::uint64_t size) const;

  const Input& m_input;
  unsigned m_shift = 0;
  unsigned m_smallShift = 0;
  std::uint32_t m_smallBelow = 0;
  std::size_t m_sectors = 0;  ///< that the file has room for
  std::vector<std::uint32_t> m_table;
  std::vector<std::uint32_t> m_smallTable;
  std::vector<Entry> m_entries;
  Stream m_small;
};

}  // namespace helper
