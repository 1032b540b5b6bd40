#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <span>

#include "imaging/codecs/codec.h"

namespace imaging {

/// A part of a file; empty if it isn't there.
struct EpsPart {
  std::uint32_t offset = 0;
  std::uint32_t size = 0;
  bool In(std::int64_t fileBytes) const { return size != 0 && offset >= kHeaderBytes && offset < fileBytes; }
  static constexpr std::size_t kHeaderBytes = 30;
};

/// The binary header that DOS puts before encapsulated PostScript: where the previews lie.
struct EpsHeader {
  EpsPart metafile;
  EpsPart tiff;
};

/// None if there is no such header.
inline std::optional<EpsHeader> ReadEpsHeader(std::span<const std::uint8_t> head) {
  constexpr std::array<std::uint8_t, 4> kSignature = {0xc5, 0xd0, 0xd3, 0xc6};
  if (head.size() < EpsPart::kHeaderBytes || !std::equal(kSignature.begin(), kSignature.end(), head.begin()))
    return std::nullopt;
  const auto part = [&head](std::size_t at) {
    return EpsPart{LittleU32(&head[at]), LittleU32(&head[at + 4])};
  };
  return EpsHeader{part(12), part(20)};
}

}  // namespace imaging
