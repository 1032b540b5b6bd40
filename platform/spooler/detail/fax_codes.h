#pragma once

#include <cstdint>

namespace platform {

/// A code word, its last bit in the lowest place.
struct FaxCode {
  std::uint16_t bits;
  std::uint8_t length;
};

enum : int { kMakeUpStep = 64, kLongestMakeUp = 2560 };

/// Code of a run of 0 to 63 pixels (ITU-T T.4, table 2).
FaxCode TerminatingCode(int run, bool black);
/// Code of a multiple of 64 pixels up to kLongestMakeUp (ITU-T T.4, tables 3a and 3b).
FaxCode MakeUpCode(int run, bool black);

}  // namespace platform
