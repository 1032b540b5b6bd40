#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "imaging/pixels/reduce.h"
#include "imaging/pixels/storage.h"

namespace imaging {

/// The rows of a reduced image that nobody has asked for yet, and what they are made of.
struct PixelStorage::MissingRows {
  static constexpr int kBand = 64;  ///< rows that are made together

  const PixelStorage* source;  ///< null once it has ended
  TwoLevelBlocks blocks;       ///< of the whole image; its source is up to date once the source has ended
  bool invert;                 ///< whether bytes of 0 are counted
  std::vector<bool> made;      ///< the bands
  std::size_t left;            ///< bands to be made

  /// The source's pixels as they are held now.
  void Look() {
    const bool packed = source->m_heldBits == 1;
    blocks.source = source->m_pixels;
    blocks.sourcePitch = source->m_pitch;
    blocks.bits = packed ? 1 : 8;
    // Of bits the set ones are counted, whichever byte they stand for.
    blocks.invert = invert != (packed && source->IndexOf(1) == 0);
  }
  void Make(int band) {
    TwoLevelBlocks part = blocks;
    const std::ptrdiff_t first = std::ptrdiff_t{band} * kBand;
    part.source += first * blocks.divisor * blocks.sourcePitch;
    part.target += first * blocks.targetPitch;
    part.height = std::min(kBand, blocks.height - static_cast<int>(first));
    ReduceBlocks(part);
    made[static_cast<std::size_t>(band)] = true;
    --left;
  }

  std::uint8_t* keptPixels = nullptr;  ///< the ended source's block
  std::size_t keptCapacity = 0;
};

}  // namespace imaging
