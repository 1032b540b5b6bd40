#pragma once

#include <cstdint>

#include "platform/base/export.h"

namespace platform {

// The run lengths of fax coding; the printer's encoder and the decoders of the imaging layer both stand on
// them.

/// A code word, its last bit in the lowest place.
struct FaxCode {
  std::uint16_t bits;
  std::uint8_t length;
};

inline constexpr int kMakeUpStep = 64;
inline constexpr int kLongestMakeUp = 2560;

/// Code of a run of 0 to 63 pixels (ITU-T T.4, table 2).
PLATFORM_API FaxCode TerminatingCode(int run, bool black);
/// Code of a multiple of 64 pixels up to kLongestMakeUp (ITU-T T.4, tables 3a and 3b).
PLATFORM_API FaxCode MakeUpCode(int run, bool black);

}  // namespace platform
