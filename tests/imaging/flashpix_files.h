#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "tests/imaging/raster_picture.h"

// Pictures in compound files, as a FlashPix writer would make them.
namespace codec_test {

struct FlashpixTile {
  int coding = 0;
  Bytes bytes = {};
  std::array<std::uint8_t, 4> detail = {};
};

struct FlashpixForm {
  int width = 70;
  int height = 46;
  int channels = 3;
  int space = 3;
  std::vector<FlashpixTile> tiles = {};
  Bytes tables = {};  ///< of JPEG, under the number 1
  int kind = 0x67;    ///< in the root's class: a file of views, or 0x60: the bare picture
};

/// Streams below 4096 bytes lie in the stream of small ones, the others in sectors of 512.
class CompoundWriter {
 public:
  static constexpr std::uint32_t kNone = 0xffffffff;

  explicit CompoundWriter(int kind) : m_kind(static_cast<std::uint8_t>(kind)) { AddFolder("Root Entry", 0); }

  std::uint32_t AddFolder(const std::string& name, std::uint32_t parent) {
    const auto number = static_cast<std::uint32_t>(m_entries.size());
    m_entries.push_back({name, true});
    if (number != 0) Hang(number, parent);
    return number;
  }

  void AddStream(const std::string& name, std::uint32_t parent, const Bytes& bytes) {
    const auto number = static_cast<std::uint32_t>(m_entries.size());
    const bool small = bytes.size() < 4096;
    m_entries.push_back({name, false, kNone, kNone,
                         small ? Lay(m_small, m_smallTable, bytes, 64) : Lay(m_sectors, m_table, bytes, 512),
                         static_cast<std::uint32_t>(bytes.size())});
    Hang(number, parent);
  }

  Bytes Finish() {
    m_entries[0].size = static_cast<std::uint32_t>(m_small.size());
    m_entries[0].start = Lay(m_sectors, m_table, m_small, 512);
    const std::uint32_t smallTable = Lay(m_sectors, m_table, Numbers(m_smallTable), 512);
    const std::uint32_t directory = Lay(m_sectors, m_table, Directory(), 512);
    const auto tableStart = static_cast<std::uint32_t>(m_table.size());
    std::uint32_t tableSectors = 1;
    while (tableSectors * 128 < tableStart + tableSectors) ++tableSectors;
    m_table.insert(m_table.end(), tableSectors, 0xfffffffd);
    raster::Append(m_sectors, Numbers(m_table));

    Bytes file = {0xd0, 0xcf, 0x11, 0xe0, 0xa1, 0xb1, 0x1a, 0xe1};
    file.resize(24);
    raster::Words(file, {62, 3, 0xfffe, 9, 6});
    file.resize(44);
    for (const std::uint32_t value : {tableSectors, directory, 0U, 4096U, smallTable, 1U, kNone, 0U})
      raster::Little(file, value, 4);
    for (std::uint32_t i = 0; i < 109; ++i)
      raster::Little(file, i < tableSectors ? tableStart + i : kNone, 4);
    raster::Append(file, m_sectors);
    return file;
  }

 private:
  struct Entry {
    std::string name;
    bool folder = false;
    std::uint32_t next = kNone;
    std::uint32_t child = kNone;
    std::uint32_t start = 0;
    std::uint32_t size = 0;
  };

  void Hang(std::uint32_t number, std::uint32_t parent) {
    m_entries[number].next = m_entries[parent].child;
    m_entries[parent].child = number;
  }

  static std::uint32_t Lay(Bytes& sectors, std::vector<std::uint32_t>& table, const Bytes& bytes,
                           std::size_t size) {
    const auto start = static_cast<std::uint32_t>(table.size());
    raster::Append(sectors, bytes);
    sectors.resize((sectors.size() + size - 1) / size * size);
    while (table.size() < sectors.size() / size)
      table.push_back(static_cast<std::uint32_t>(table.size()) + 1);
    table.back() = 0xfffffffe;
    return start;
  }

  static Bytes Numbers(const std::vector<std::uint32_t>& numbers) {
    Bytes bytes;
    for (const std::uint32_t number : numbers) raster::Little(bytes, number, 4);
    bytes.resize((bytes.size() + 511) / 512 * 512, 0xff);
    return bytes;
  }

  Bytes Directory() const {
    Bytes bytes;
    for (const Entry& entry : m_entries) {
      Bytes own;
      for (const char letter : entry.name) raster::Little(own, static_cast<std::uint8_t>(letter), 2);
      own.resize(64);
      raster::Little(own, static_cast<std::uint32_t>(2 * entry.name.size() + 2), 2);
      const bool root = &entry == m_entries.data();
      raster::Little(own, root ? 5 : entry.folder ? 1 : 2, 2);
      for (const std::uint32_t value : {kNone, entry.next, entry.child}) raster::Little(own, value, 4);
      if (root)
        raster::Append(own,
                       {0, m_kind, 'a', 'V', 'T', 0xc1, 0xce, 0x11, 0x85, 0x53, 0, 0xaa, 0, 0xa1, 0xf9, '['});
      own.resize(116);
      raster::Little(own, entry.start, 4);
      raster::Little(own, entry.size, 4);
      own.resize(128);
      raster::Append(bytes, own);
    }
    return bytes;
  }

  std::uint8_t m_kind;
  std::vector<Entry> m_entries;
  Bytes m_sectors;
  Bytes m_small;
  std::vector<std::uint32_t> m_table;
  std::vector<std::uint32_t> m_smallTable;
};

/// The colour of the channels, and the tables.
inline Bytes FlashpixContents(const FlashpixForm& form, std::uint32_t resolution) {
  Bytes color;
  raster::Little(color, 1, 4);
  raster::Little(color, static_cast<std::uint32_t>(form.channels), 4);
  for (int channel = 0; channel < form.channels; ++channel)
    raster::Words(color, {channel, 0x8000 | form.space});
  Bytes set(44);
  raster::Little(set, 48, 4);
  const auto firstAt = std::uint32_t{8 + 2 * 8};
  const auto secondAt = firstAt + 8 + static_cast<std::uint32_t>(color.size());
  for (const std::uint32_t value : {secondAt + 8 + static_cast<std::uint32_t>(form.tables.size()), 2U,
                                    0x02000002U | resolution << 16, firstAt, 0x03010001U, secondAt})
    raster::Little(set, value, 4);
  for (const Bytes& block : {color, form.tables}) {
    raster::Little(set, 0x41, 4);
    raster::Little(set, static_cast<std::uint32_t>(block.size()), 4);
    raster::Append(set, block);
  }
  return set;
}

inline void AddResolution(CompoundWriter& writer, std::uint32_t store, int number, const FlashpixForm& form) {
  Bytes header(28);
  Bytes data(28);
  for (const int value :
       {36, form.width, form.height, static_cast<int>(form.tiles.size()), 64, 64, form.channels, 36, 16})
    raster::Little(header, static_cast<std::uint32_t>(value), 4);
  for (const FlashpixTile& tile : form.tiles) {
    raster::Little(header, static_cast<std::uint32_t>(data.size() - 28), 4);
    raster::Little(header, static_cast<std::uint32_t>(tile.bytes.size()), 4);
    raster::Little(header, static_cast<std::uint32_t>(tile.coding), 4);
    raster::Append(header, Bytes(tile.detail.begin(), tile.detail.end()));
    raster::Append(data, tile.bytes);
  }
  const std::uint32_t folder = writer.AddFolder("Resolution 000" + std::to_string(number), store);
  writer.AddStream("Subimage 0000 Header", folder, header);
  writer.AddStream("Subimage 0000 Data", folder, data);
}

/// The picture, and one of a black pixel as the lower resolution, on both sides of it.
inline Bytes MakeFlashpix(const FlashpixForm& form) {
  const FlashpixForm lower = {1, 1, form.channels, form.space, {{1, {}, {}}}, {}};
  CompoundWriter writer(form.kind);
  const std::uint32_t store = form.kind == 0x67 ? writer.AddFolder("Data Object Store 000001", 0) : 0;
  AddResolution(writer, store, 0, lower);
  AddResolution(writer, store, 2, form);
  AddResolution(writer, store, 1, lower);
  writer.AddStream("\5Image Contents", store, FlashpixContents(form, 2));
  return writer.Finish();
}

}  // namespace codec_test
