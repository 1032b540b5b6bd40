#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "imaging/pixels/coded_page.h"
#include "platform/base/types.h"

namespace imaging {

/// The pixels of one bitmap: rows top down, each row aligned to 64 bytes for vector code.
/// Depths in memory: 1 (most significant bit first), 4 (high half first), 8, 24 and 32 bits. Depths of 1 to 8
/// are indices into the colour table, which always holds 2^bits valid entries; a grey bitmap has the linear
/// grey table. 24 and 32 bits stand in the order of the bitmap's Order field; the fourth byte is straight
/// alpha. Large blocks are recycled, since fresh memory for a page costs more than decoding it.
///
/// A page of two bytes only may be held with a bit for each pixel (ShowAsBytes): what works on whatever is
/// held goes by the Held members and needs an eighth of the memory; who asks for a Row gets the bytes, and
/// from then on they are what is held.
///
/// An image that is another's reduction (ReduceFrom) has its rows made when they are asked for, so that a
/// look at a part of a large page costs that part.
class PixelStorage {
 public:
  /// Throws CLeadtoolsException* if the size is out of the limits or there isn't enough memory.
  /// The pixels are not initialised; the colour table is linear grey (1 bit: black, white).
  static std::unique_ptr<PixelStorage> Create(int width, int height, int bits);
  /// Another image of this one's depth, held alike, with its colours; throws as Create does.
  std::unique_ptr<PixelStorage> CreateAlike(int width, int height) const;
  ~PixelStorage();
  PixelStorage(const PixelStorage&) = delete;
  PixelStorage& operator=(const PixelStorage&) = delete;

  int Width() const { return m_width; }
  int Height() const { return m_height; }
  int Bits() const { return m_bits; }
  std::ptrdiff_t Pitch() const {
    HoldBytes();
    return m_pitch;
  }
  /// Asking for a row to write tells that the pixels change; don't keep the pointer past the next paint.
  /// Throws if there isn't enough memory for a page that is held in bits.
  std::uint8_t* Row(int y) {
    Change();
    HoldBytes();
    return m_pixels + y * m_pitch;
  }
  const std::uint8_t* Row(int y) const {
    HoldBytes();
    return m_pixels + y * m_pitch;
  }
  /// Writes the RowBytes() of a row, whatever is held.
  void CopyRow(int y, std::uint8_t* out) const;

  /// Makes an image of 1 bit one of 8 bits: clear bits become the byte zero, set ones the byte one. What is
  /// held stays; the colours are the caller's to set.
  void ShowAsBytes(std::uint8_t zero, std::uint8_t one);
  /// From now on a row is held as its bytes.
  void HoldBytes() const {
    if (m_heldBits != m_bits) Expand();
    Complete();
  }
  /// The depth that is held: Bits(), or 1.
  int HeldBits() const { return m_heldBits; }
  std::ptrdiff_t HeldPitch() const { return m_pitch; }
  std::size_t HeldRowBytes() const { return (static_cast<std::size_t>(m_width) * m_heldBits + 7) / 8; }
  std::uint8_t* HeldRow(int y) {
    Change();
    Complete();
    return m_pixels + y * m_pitch;
  }
  const std::uint8_t* HeldRow(int y) const {
    Complete();
    return m_pixels + y * m_pitch;
  }
  /// Makes this image, of 8 bits, the reduction of one of two levels by a whole number: each byte the share
  /// of the source's pixels that aren't 0 (with invert: that are). The source may change or end afterwards: a
  /// change makes the rows that are missing still, an end leaves its pixels here until they aren't needed.
  void ReduceFrom(const PixelStorage& source, int divisor, bool invert);
  /// Makes those of the rows that are missing; they may lie outside the image. ReadyRow reads them as HeldRow
  /// does, without making all others.
  void MakeRows(int first, int count) const;
  const std::uint8_t* ReadyRow(int y) const { return m_pixels + y * m_pitch; }
  /// The index into the colour table that a held value of up to 8 bits stands for.
  std::uint8_t IndexOf(unsigned held) const {
    return m_heldBits == m_bits ? static_cast<std::uint8_t>(held) : m_twoBytes[held];
  }
  /// Bytes of a row that hold pixels; the rest up to Pitch is padding of any content.
  std::size_t RowBytes() const { return (static_cast<std::size_t>(m_width) * m_bits + 7) / 8; }
  std::array<RGBQUAD, 256>& Palette() {
    ++m_revision;
    return m_palette;
  }
  const std::array<RGBQUAD, 256>& Palette() const { return m_palette; }
  bool IsLinearGray() const;  ///< 8 bits with the linear grey table
  void SetLinearGray();       ///< gives 8 bits that table
  /// No two storages of a process share a serial number, so it still tells them apart when one takes the
  /// other's address.
  std::uint64_t Serial() const { return m_serial; }
  std::uint64_t Revision() const { return m_revision; }
  /// The form that the pixels were decoded from; null if there is none, or once they changed.
  std::shared_ptr<const CodedPage> Coded() const { return m_revision == m_codedRevision ? m_coded : nullptr; }
  void SetCoded(std::shared_ptr<const CodedPage> coded) {
    m_coded = std::move(coded);
    m_codedRevision = m_revision;
  }
  /// Whether they come from a lossy coding, however they were turned or resized since.
  bool IsLossy() const { return m_lossy; }
  void SetLossy(bool lossy) { m_lossy = lossy; }
  /// The selected part; it lies within the image.
  const std::optional<RECT>& Region() const { return m_region; }
  void SetRegion(const std::optional<RECT>& region) { m_region = region; }
  /// Drops the rows from first on, which isn't 0; the memory stays. For pages whose height shows late.
  void DropRows(int first) {
    m_height = first;
    ++m_revision;
  }
  /// Exchanges size, depth, colours and pixels; each storage stays itself, so that every record which refers
  /// to it sees what the other held. Both count as changed and lose their regions.
  void Exchange(PixelStorage& other) noexcept;
  /// False for the address of a storage that is gone: a copied record can't know that its owner has freed it.
  static bool IsLive(const PixelStorage* storage);

 private:
  struct MissingRows;

  PixelStorage();
  void Expand() const;
  void Change() {
    ++m_revision;
    if (m_beforeChange != nullptr) m_beforeChange(*this);
  }
  void Complete() const {
    if (m_complete != nullptr) m_complete(*this);
  }
  void CompleteReduced() const;
  void LeaveToReduced() noexcept;
  void ForgetMissing() const noexcept;
  void ExchangeTies(PixelStorage& other) noexcept;
  static void GiveBlock(std::uint8_t* pixels, std::size_t capacity) noexcept;

  int m_width = 0;
  int m_height = 0;
  int m_bits = 0;
  // What is held changes its form without the image changing.
  mutable int m_heldBits = 0;
  mutable std::ptrdiff_t m_pitch = 0;
  mutable std::uint8_t* m_pixels = nullptr;
  mutable std::size_t m_capacity = 0;
  std::array<std::uint8_t, 2> m_twoBytes{};
  std::uint64_t m_serial = 0;
  std::uint64_t m_revision = 0;
  std::shared_ptr<const CodedPage> m_coded;
  std::uint64_t m_codedRevision = 0;
  bool m_lossy = false;
  std::array<RGBQUAD, 256> m_palette{};
  std::optional<RECT> m_region;
  // Both at the two ends of one tie. They are called through pointers, so that programs that only read rows
  // need nothing of the library's inside.
  mutable std::unique_ptr<MissingRows> m_missing;
  mutable const PixelStorage* m_reduced = nullptr;  ///< whose missing rows are made of this
  mutable void (*m_complete)(const PixelStorage&) = nullptr;
  mutable void (*m_beforeChange)(const PixelStorage&) = nullptr;
};

}  // namespace imaging
