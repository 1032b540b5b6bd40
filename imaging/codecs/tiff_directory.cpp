#include "imaging/codecs/tiff_directory.h"

#include <algorithm>
#include <array>
#include <utility>

#include "imaging/codecs/remembered_files.h"
#include "imaging/core/limits.h"

namespace imaging {
bool HasTiffSignature(std::span<const std::uint8_t> head) {
  if (head.size() < 8) return false;
  const bool little = head[0] == 'I' && head[1] == 'I' && head[3] == 0;
  const bool big = head[0] == 'M' && head[1] == 'M' && head[2] == 0;
  const int version = little ? head[2] : big ? head[3] : 0;
  return version == 42 || version == 43;
}

TiffDirectories::TiffDirectories(const Source& source) : m_source(source) {
  std::uint64_t first = 0;
  const bool valid = ReadHeader(first);
  m_chain = RememberedFiles<Chain>::Of(source, [&] { return Chain{{}, valid ? first : 0}; });
}

std::uint64_t TiffDirectories::Offset(int page) {
  if (page < 1) return 0;
  const auto index = static_cast<std::size_t>(page) - 1;
  while (m_chain->offsets.size() <= index && m_chain->next != 0) Advance();
  return index < m_chain->offsets.size() ? m_chain->offsets[index] : 0;
}

int TiffDirectories::Count() {
  while (m_chain->next != 0) Advance();
  return static_cast<int>(m_chain->offsets.size());
}

void TiffDirectories::Advance() {
  auto& offsets = m_chain->offsets;
  const std::uint64_t directory = std::exchange(m_chain->next, 0);
  std::uint64_t next = 0;
  if (!ReadNext(directory, next)) return;
  offsets.push_back(directory);
  if (offsets.size() >= static_cast<std::size_t>(Limit().pages)) return;
  // Writers append, so offsets nearly always rise and a loop must step back; only then the list is searched.
  const bool rises = next > directory;
  const bool known = !rises && std::find(offsets.begin(), offsets.end(), next) != offsets.end();
  m_chain->next = known ? 0 : next;
}

bool TiffDirectories::ReadHeader(std::uint64_t& first) {
  std::array<std::uint8_t, 16> header{};
  const std::size_t size = m_source.ReadAt(0, header);
  if (!HasTiffSignature(std::span(header).first(size))) return false;
  m_bigEndian = header[0] == 'M';
  m_bigTiff = header[m_bigEndian ? 3 : 2] == 43;
  first = m_bigTiff ? Number(header.data() + 8, 8) : Number(header.data() + 4, 4);
  return true;
}

bool TiffDirectories::FindNextField(std::uint64_t directory, std::uint64_t& field) {
  constexpr std::uint64_t kMostEntries = 65535;
  const int countSize = m_bigTiff ? 8 : 2;
  const unsigned entrySize = m_bigTiff ? 20 : 12;
  std::uint64_t count = 0;
  if (!ReadNumber(directory, countSize, count) || count == 0 || count > kMostEntries) return false;
  field = directory + static_cast<unsigned>(countSize) + count * entrySize;
  return true;
}

bool TiffDirectories::ReadNext(std::uint64_t directory, std::uint64_t& next) {
  std::uint64_t field = 0;
  if (!FindNextField(directory, field)) return false;
  if (!ReadNumber(field, m_bigTiff ? 8 : 4, next)) next = 0;  // a file cut off here still has this page
  return true;
}

std::uint64_t TiffDirectories::NextField(int page) {
  const std::uint64_t directory = Offset(page);
  std::uint64_t field = 0;
  std::uint64_t next = 0;
  const bool there = directory != 0 && FindNextField(directory, field);
  return there && ReadNumber(field, m_bigTiff ? 8 : 4, next) ? field : 0;
}

bool TiffDirectories::ReadNumber(std::uint64_t offset, int size, std::uint64_t& value) {
  const auto bytes = static_cast<std::size_t>(size);
  const auto inWindow = [&] {
    return offset >= m_windowStart && offset - m_windowStart + bytes <= m_windowSize;
  };
  if (!inWindow()) {
    if (offset >= static_cast<std::uint64_t>(m_source.Size())) return false;
    m_windowStart = offset;
    m_windowSize = m_source.ReadAt(static_cast<std::int64_t>(offset), m_window);
    if (!inWindow()) return false;
  }
  value = Number(m_window.data() + (offset - m_windowStart), size);
  return true;
}

std::uint64_t TiffDirectories::Number(const std::uint8_t* bytes, int size) const {
  std::uint64_t value = 0;
  for (int i = 0; i < size; ++i) value = value << 8 | bytes[m_bigEndian ? i : size - 1 - i];
  return value;
}

}  // namespace imaging
