#pragma once

#include <array>
#include <cstdint>

namespace imaging {

/// Codes of run lengths (ITU-T T.4, tables 2, 3a and 3b), found by the next bits of the stream.
struct FaxRunCode {
  std::int16_t run = -1;    ///< pixels; from 64 on a make-up code, which another code follows; -1: no code
  std::uint8_t length = 0;  ///< bits
};

inline constexpr int kFaxRunBits = 13;  ///< of the longest code
using FaxRunTable = std::array<FaxRunCode, 1U << kFaxRunBits>;

const FaxRunTable& WhiteRuns();
const FaxRunTable& BlackRuns();

}  // namespace imaging
