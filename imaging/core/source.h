#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace imaging {

/// Tells one state of one file from every other: a file that was rewritten or replaced under its name
/// differs.
struct SourceIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t modifiedNs = 0;
  std::int64_t changedNs = 0;
  bool operator==(const SourceIdentity&) const = default;
};

/// Where the bytes of an image come from. Reading never throws: a short read is the end or a fault, and the
/// codec says what is missing.
class Source {
 public:
  virtual ~Source() = default;
  /// Reads at an absolute offset and returns how many bytes there were.
  virtual std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const = 0;
  virtual std::int64_t Size() const = 0;
  /// For messages: the path as given, or "memory".
  virtual const std::string& Name() const = 0;
  /// Absent if what was learnt of the source must not outlive it (memory, a file that is being written).
  virtual std::optional<SourceIdentity> Identity() const { return std::nullopt; }
  /// The identity even of a file so young that it may still change under the same one; empty for memory.
  virtual SourceIdentity Stamp() const { return {}; }
  /// One that can only read, if the source is a whole file; it stays the source's. Otherwise -1.
  virtual int Descriptor() const { return -1; }

  bool ReadExactly(std::int64_t offset, std::span<std::uint8_t> target) const {
    return ReadAt(offset, target) == target.size();
  }
};

/// Opens a regular file for positioned reads. It isn't mapped, since a file that shrinks while it is open
/// must not fault. Throws with a text that names the file.
std::unique_ptr<Source> OpenFileSource(const char* path);

/// A block that stays the caller's and must outlive the source. Throws for a null or empty block.
std::unique_ptr<Source> OpenMemorySource(const char* data, long size);

/// A block of the source's own, for a picture that is put together from parts of the file of that name.
std::unique_ptr<Source> OpenBlockSource(std::vector<std::uint8_t> bytes, std::string name);

/// A stretch of another source, for pictures inside other files; the whole must outlive it.
std::unique_ptr<Source> OpenWindowSource(const Source& whole, std::int64_t offset, std::int64_t size);

/// Bytes that stand in front of what another source has from skip on, for pictures whose file's header is
/// missing or means something else; the other must outlive it.
std::unique_ptr<Source> OpenPrefixedSource(std::vector<std::uint8_t> prefix, const Source& rest,
                                           std::int64_t skip);

/// Reads a source from front to back through a buffer. Past the end every byte is 0 and AtEnd is true.
class ByteReader {
 public:
  explicit ByteReader(const Source& source, std::int64_t offset = 0) : m_source(source), m_offset(offset) {}

  std::uint8_t U8() {
    if (m_next == m_filled && !Refill()) return 0;
    return m_buffer[m_next++];
  }
  std::uint16_t BigU16() {
    const unsigned high = U8();
    return static_cast<std::uint16_t>(high << 8 | U8());
  }
  std::uint32_t BigU32() {
    const std::uint32_t high = BigU16();
    return high << 16 | BigU16();
  }
  std::uint16_t LittleU16() {
    const unsigned low = U8();
    return static_cast<std::uint16_t>(low | static_cast<unsigned>(U8()) << 8);
  }
  std::uint32_t LittleU32() {
    const std::uint32_t low = LittleU16();
    return low | static_cast<std::uint32_t>(LittleU16()) << 16;
  }
  void Read(std::span<std::uint8_t> target);
  void Skip(std::int64_t count) { Seek(Position() + count); }
  void Seek(std::int64_t offset);
  std::int64_t Position() const { return m_offset + static_cast<std::int64_t>(m_next); }
  /// True once a read asked for more than there was.
  bool AtEnd() const { return m_atEnd; }

 private:
  bool Refill();

  const Source& m_source;
  std::int64_t m_offset;  ///< of the buffer's first byte
  std::size_t m_next = 0;
  std::size_t m_filled = 0;
  bool m_atEnd = false;
  std::array<std::uint8_t, 16384> m_buffer;
};

/// Little-endian fields of a header in memory.
inline unsigned LittleU16(const std::uint8_t* bytes) {
  return bytes[0] | static_cast<unsigned>(bytes[1]) << 8;
}
inline std::uint32_t LittleU32(const std::uint8_t* bytes) {
  return LittleU16(bytes) | static_cast<std::uint32_t>(LittleU16(bytes + 2)) << 16;
}
/// And big-endian ones.
inline unsigned BigU16(const std::uint8_t* bytes) {
  return static_cast<unsigned>(bytes[0]) << 8 | bytes[1];
}
inline std::uint32_t BigU32(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(BigU16(bytes)) << 16 | BigU16(bytes + 2);
}

}  // namespace imaging
