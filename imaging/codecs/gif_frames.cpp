#include "imaging/codecs/gif_frames.h"

#include "imaging/core/limits.h"

namespace imaging {
namespace {

// Blocks, GIF89a, appendix A, and disposal methods, section 23.
enum : unsigned { kExtension = 0x21, kImage = 0x2c, kGraphicControl = 0xf9 };
enum : int { kDisposeBackground = 2, kDisposePrevious = 3 };

void SkipSubBlocks(ByteReader& reader) {
  while (const unsigned length = reader.U8()) reader.Skip(length);
}

void ReadExtension(ByteReader& reader, GifFrame& frame) {
  const unsigned label = reader.U8();
  while (const unsigned length = reader.U8()) {
    if (label != kGraphicControl || length != 4) {
      reader.Skip(length);
      continue;
    }
    const unsigned flags = reader.U8();
    reader.Skip(3);
    frame.disposal = static_cast<int>(flags >> 2 & 7);
    frame.hasTransparent = (flags & 1) != 0;
  }
}

int ReadU16(ByteReader& reader) {
  const int low = reader.U8();
  return reader.U8() << 8 | low;
}

/// False for a descriptor that is cut off or damaged.
bool ReadDescriptor(ByteReader& reader, GifFrame& frame) {
  constexpr unsigned kMostCodeSize = 8;
  frame.left = ReadU16(reader);
  frame.top = ReadU16(reader);
  frame.width = ReadU16(reader);
  frame.height = ReadU16(reader);
  const unsigned flags = reader.U8();
  if ((flags & 0x80) != 0) reader.Skip(std::int64_t{3} << ((flags & 7) + 1));
  return reader.U8() <= kMostCodeSize && !reader.AtEnd();
}

}  // namespace

bool GifFrames::ReadFrame(ByteReader& reader) {
  GifFrame frame;
  frame.start = reader.Position();
  unsigned kind = reader.U8();
  for (; kind == kExtension && !reader.AtEnd(); kind = reader.U8()) ReadExtension(reader, frame);
  if (kind != kImage || reader.AtEnd() || !ReadDescriptor(reader, frame)) return false;

  const int number = static_cast<int>(m_frames.size()) + 1;
  frame.composedFrom = Covers(frame) && !frame.hasTransparent ? number : m_composedFrom;
  if (frame.disposal == kDisposeBackground && Covers(frame))
    m_composedFrom = number + 1;
  else if (frame.disposal != kDisposePrevious)  // then the screen before it comes back
    m_composedFrom = frame.composedFrom;
  m_frames.push_back(frame);
  SkipSubBlocks(reader);
  return !reader.AtEnd();
}

void GifFrames::ReadUpTo(const Source& source, std::size_t count) {
  if (m_complete || m_frames.size() >= count) return;
  ByteReader reader(source, m_next);
  while (!m_complete && m_frames.size() < count)
    m_complete = !ReadFrame(reader) || m_frames.size() >= static_cast<std::size_t>(Limit().pages);
  m_next = reader.Position();
}

const GifFrame* GifFrames::Find(const Source& source, int number) {
  if (number < 1) return nullptr;
  const auto count = static_cast<std::size_t>(number);
  ReadUpTo(source, count);
  return count <= m_frames.size() ? &m_frames[count - 1] : nullptr;
}

int GifFrames::Count(const Source& source) {
  ReadUpTo(source, static_cast<std::size_t>(Limit().pages));
  return static_cast<int>(m_frames.size());
}

}  // namespace imaging
