// Mutations of a PNG file get the checksums of their chunks, or the library would look no further.

#include <zlib.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t most);

namespace {

std::uint32_t BigU32(const std::uint8_t* bytes) {
  return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
         static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

void Repair(std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kSignature = 8;
  constexpr std::size_t kFrame = 12;  // length, type and checksum
  for (std::size_t at = kSignature; at + kFrame <= size;) {
    const std::size_t length = BigU32(data + at);
    if (length > size - at - kFrame) return;
    const auto sum = static_cast<std::uint32_t>(crc32(0, data + at + 4, static_cast<uInt>(length + 4)));
    for (int byte = 0; byte < 4; ++byte)
      data[at + 8 + length + static_cast<std::size_t>(byte)] =
          static_cast<std::uint8_t>(sum >> (24 - 8 * byte));
    at += kFrame + length;
  }
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
  const std::size_t mutated = LLVMFuzzerMutate(data, size, most);
  if (mutated > 8 && seed % 8 != 0 && std::memcmp(data, "\x89PNG", 4) == 0) Repair(data, mutated);
  return mutated;
}
