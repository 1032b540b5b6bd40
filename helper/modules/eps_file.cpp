#include "helper/modules/eps_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <string>
#include <string_view>

namespace helper {
namespace {

constexpr std::size_t kSearched = 1 << 16;  // the comments stand at the start, or at the end

std::uint32_t LittleU32(const std::uint8_t* at) {
  return at[0] | static_cast<std::uint32_t>(at[1]) << 8 | static_cast<std::uint32_t>(at[2]) << 16 |
         static_cast<std::uint32_t>(at[3]) << 24;
}

/// What stands behind a comment's name in a line of its own; nothing if it isn't there or comes at the end.
std::string ValueOf(std::string_view text, std::string_view name) {
  for (std::size_t at = text.find(name); at != std::string_view::npos; at = text.find(name, at + 1)) {
    if (at != 0 && text[at - 1] != '\n' && text[at - 1] != '\r') continue;
    const std::string_view rest = text.substr(at + name.size());
    const std::string_view value = rest.substr(0, rest.find_first_of("\r\n"));
    if (value.find("(atend)") == std::string_view::npos) return std::string(value);
  }
  return {};
}

}  // namespace

EpsFile::EpsFile(const Input& input) : m_input(input), m_size(input.Size()) {
  constexpr std::array<std::uint8_t, 4> kDosMark = {0xc5, 0xd0, 0xd3, 0xc6};
  std::array<std::uint8_t, 12> header{};
  input.ReadAt(0, header);
  if (std::equal(kDosMark.begin(), kDosMark.end(), header.begin())) {
    m_start = LittleU32(&header[4]);
    m_size = std::min<std::int64_t>(LittleU32(&header[8]), input.Size() - m_start);
  }
  if (m_size <= 0) throw Failure(Status::kCorrupt, "the PostScript is missing");
  if (!FindBox(0) && !FindBox(std::max<std::int64_t>(0, m_size - static_cast<std::int64_t>(kSearched))))
    throw Failure(Status::kCorrupt, "the PostScript has no bounding box");
}

std::size_t EpsFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const {
  const auto left = static_cast<std::size_t>(std::max<std::int64_t>(0, m_size - offset));
  return m_input.ReadAt(m_start + offset, target.first(std::min(left, target.size())));
}

/// The exact one, if there is one; the other is rounded to whole points.
bool EpsFile::FindBox(std::int64_t offset) {
  std::string text(kSearched, '\0');
  text.resize(ReadAt(offset, {reinterpret_cast<std::uint8_t*>(text.data()), text.size()}));
  for (const char* name : {"%%HiResBoundingBox:", "%%BoundingBox:"}) {
    const std::string value = ValueOf(text, name);
    if (std::sscanf(value.c_str(), "%lf %lf %lf %lf", &m_left, &m_bottom, &m_right, &m_top) != 4) continue;
    constexpr double kMost = 1e6;
    if (std::fabs(m_left) < kMost && std::fabs(m_bottom) < kMost && Width() > 0 && Height() > 0 &&
        Width() < kMost && Height() < kMost)
      return true;
  }
  return false;
}

}  // namespace helper
