#include "helper/modules/compound_file.h"

#include <algorithm>

namespace helper {
namespace {

constexpr std::size_t kHeaderBytes = 512;
constexpr std::size_t kEntryBytes = 128;
constexpr std::uint32_t kFree = 0xffffffff;

CompoundFile::Entry EntryOf(const std::uint8_t* bytes, bool wideSizes) {
  constexpr std::size_t kMostLetters = 31;
  CompoundFile::Entry entry;
  const std::size_t letters = std::min<std::size_t>(LittleU16(bytes + 64) / 2, kMostLetters + 1);
  for (std::size_t i = 0; i + 1 < letters; ++i) {  // without the zero at the end
    const std::uint32_t letter = LittleU16(bytes + 2 * i);
    entry.name += letter < 128 ? static_cast<char>(letter) : '?';
  }
  entry.folder = bytes[66] == 1 || bytes[66] == 5;
  entry.left = LittleU32(bytes + 68);
  entry.right = LittleU32(bytes + 72);
  entry.child = LittleU32(bytes + 76);
  entry.start = LittleU32(bytes + 116);
  entry.size = LittleU32(bytes + 120);
  if (wideSizes) entry.size |= static_cast<std::uint64_t>(LittleU32(bytes + 124)) << 32;
  return entry;
}

}  // namespace

CompoundFile::CompoundFile(const Input& input) : m_input(input) {
  std::array<std::uint8_t, kHeaderBytes> header;
  if (input.ReadAt(0, header) != header.size()) throw Failure(Status::kCorrupt, "the header is cut off");
  m_shift = LittleU16(&header[30]);
  m_smallShift = LittleU16(&header[32]);
  m_smallBelow = LittleU32(&header[56]);
  // Sectors of 512 or 4096 bytes, small ones of 64.
  if ((m_shift != 9 && m_shift != 12) || m_smallShift < 4 || m_smallShift >= m_shift)
    throw Failure(Status::kCorrupt, "the compound file's header is damaged");
  m_sectors = static_cast<std::size_t>(input.Size()) >> m_shift;
  ReadTable(header);
  ReadDirectory(LittleU32(&header[48]));
  for (const std::uint32_t sector : Chain(m_table, LittleU32(&header[60]), m_sectors)) {
    const auto numbers = NumbersOf(sector);
    m_smallTable.insert(m_smallTable.end(), numbers.begin(), numbers.end());
  }
  m_small = StreamOf(Chain(m_table, At(kRoot).start, m_table.size()), false, At(kRoot).size);
}

/// The table of the chains has its own sectors listed in the header, and further ones in a chain of lists.
std::vector<std::uint32_t> CompoundFile::ListTableSectors(std::span<const std::uint8_t> header) const {
  const std::size_t perSector = (std::size_t{1} << m_shift) / 4;
  const std::size_t most = std::min<std::size_t>(LittleU32(&header[44]), (m_sectors + perSector) / perSector);
  std::vector<std::uint32_t> sectors;
  for (std::size_t at = 76; at < kHeaderBytes && sectors.size() < most; at += 4)
    sectors.push_back(LittleU32(&header[at]));
  std::uint32_t list = LittleU32(&header[68]);
  while (list < m_sectors && sectors.size() < most) {
    std::vector<std::uint32_t> numbers = NumbersOf(list);
    list = numbers.back();
    numbers.pop_back();
    numbers.resize(std::min(numbers.size(), most - sectors.size()));
    sectors.insert(sectors.end(), numbers.begin(), numbers.end());
  }
  return sectors;
}

void CompoundFile::ReadTable(std::span<const std::uint8_t> header) {
  for (const std::uint32_t sector : ListTableSectors(header)) {
    const auto numbers = NumbersOf(sector);
    m_table.insert(m_table.end(), numbers.begin(), numbers.end());
  }
}

void CompoundFile::ReadDirectory(std::uint32_t start) {
  constexpr std::size_t kMostEntries = 65536;
  const std::size_t bytes = std::size_t{1} << m_shift;
  std::vector<std::uint8_t> sector(bytes);
  for (const std::uint32_t number : Chain(m_table, start, kMostEntries * kEntryBytes / bytes)) {
    if (!ReadSector(number, 0, sector)) break;
    for (std::size_t at = 0; at < bytes; at += kEntryBytes)
      m_entries.push_back(EntryOf(&sector[at], m_shift > 9));
  }
  if (m_entries.empty()) throw Failure(Status::kCorrupt, "the compound file's directory is missing");
}

std::vector<std::uint32_t> CompoundFile::Chain(const std::vector<std::uint32_t>& table, std::uint32_t start,
                                               std::size_t most) const {
  std::vector<std::uint32_t> chain;
  for (std::uint32_t sector = start; sector < table.size() && chain.size() < most; sector = table[sector])
    chain.push_back(sector);
  return chain;
}

bool CompoundFile::ReadSector(std::uint32_t sector, std::size_t offset,
                              std::span<std::uint8_t> target) const {
  const std::int64_t start = (static_cast<std::int64_t>(sector) + 1) << m_shift;
  return m_input.ReadAt(start + static_cast<std::int64_t>(offset), target) == target.size();
}

std::vector<std::uint32_t> CompoundFile::NumbersOf(std::uint32_t sector) const {
  std::vector<std::uint8_t> bytes(std::size_t{1} << m_shift);
  std::vector<std::uint32_t> numbers(bytes.size() / 4, kFree);
  if (!ReadSector(sector, 0, bytes)) return numbers;
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = LittleU32(&bytes[4 * i]);
  return numbers;
}

CompoundFile::Stream CompoundFile::StreamOf(std::vector<std::uint32_t> sectors, bool small,
                                            std::uint64_t size) const {
  const std::uint64_t room = static_cast<std::uint64_t>(sectors.size()) << (small ? m_smallShift : m_shift);
  return {std::move(sectors), small, std::min(size, room)};
}

CompoundFile::Stream CompoundFile::Open(std::size_t entry) const {
  const Entry& known = At(entry);
  const bool small = known.size < m_smallBelow;
  const auto& table = small ? m_smallTable : m_table;
  const std::uint64_t sectors = (known.size >> (small ? m_smallShift : m_shift)) + 1;
  const auto most = static_cast<std::size_t>(std::min<std::uint64_t>(sectors, table.size()));
  return StreamOf(Chain(table, known.start, most), small, known.size);
}

bool CompoundFile::Read(const Stream& stream, std::uint64_t offset, std::span<std::uint8_t> target) const {
  if (offset > stream.size || target.size() > stream.size - offset) return false;
  const unsigned shift = stream.small ? m_smallShift : m_shift;
  const std::size_t bytes = std::size_t{1} << shift;
  while (!target.empty()) {
    const std::uint32_t sector = stream.sectors[static_cast<std::size_t>(offset >> shift)];
    const auto within = static_cast<std::size_t>(offset & (bytes - 1));
    const auto piece = target.first(std::min(target.size(), bytes - within));
    const bool read =
        stream.small ? Read(m_small, (static_cast<std::uint64_t>(sector) << m_smallShift) + within, piece)
                     : ReadSector(sector, within, piece);
    if (!read) return false;
    target = target.subspan(piece.size());
    offset += piece.size();
  }
  return true;
}

std::vector<std::uint8_t> CompoundFile::ReadAll(std::size_t entry, std::size_t most) const {
  const Stream stream = Open(entry);
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(std::min<std::uint64_t>(stream.size, most)));
  if (!Read(stream, 0, bytes)) bytes.clear();
  return bytes;
}

/// The entries of a folder are a tree, of which each may be visited once.
std::vector<std::size_t> CompoundFile::Children(std::size_t folder) const {
  std::vector<bool> seen(m_entries.size());
  std::vector<std::size_t> waiting = {At(folder).child};
  std::vector<std::size_t> children;
  while (!waiting.empty()) {
    const std::size_t entry = waiting.back();
    waiting.pop_back();
    if (entry >= m_entries.size() || seen[entry]) continue;
    seen[entry] = true;
    children.push_back(entry);
    waiting.push_back(At(entry).left);
    waiting.push_back(At(entry).right);
  }
  return children;
}

std::size_t CompoundFile::Find(std::size_t folder, std::string_view name) const {
  for (const std::size_t child : Children(folder))
    if (At(child).name == name) return child;
  return kNone;
}

}  // namespace helper
