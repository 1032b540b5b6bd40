#include "helper/modules/pdf_input.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace helper {

qpdf_offset_t PdfInput::findAndSkipNextEOL() {
  std::array<std::uint8_t, 4096> block;
  const auto isEnd = [](std::uint8_t byte) { return byte == '\r' || byte == '\n'; };
  bool found = false;
  qpdf_offset_t line = m_input.Size();
  while (const std::size_t got = m_input.ReadAt(m_place, block)) {
    const auto end = block.begin() + static_cast<std::ptrdiff_t>(got);
    auto at = block.begin();
    if (!found) {
      at = std::find_if(at, end, isEnd);
      found = at != end;
      if (found) line = m_place + (at - block.begin());
    }
    if (found) at = std::find_if_not(at, end, isEnd);
    m_place += at - block.begin();
    if (at != end) break;
  }
  return line;
}

void PdfInput::seek(qpdf_offset_t offset, int whence) {
  const qpdf_offset_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? m_place : m_input.Size();
  m_place = std::max<qpdf_offset_t>(base + offset, 0);
}

std::size_t PdfInput::read(char* target, std::size_t size) {
  last_offset = m_place;
  const std::size_t got = m_input.ReadAt(m_place, {reinterpret_cast<std::uint8_t*>(target), size});
  m_place += static_cast<qpdf_offset_t>(got);
  return got;
}

}  // namespace helper
