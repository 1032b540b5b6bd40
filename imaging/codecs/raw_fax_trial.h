#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "imaging/codecs/fax_page.h"

namespace imaging {

/// The pixels in a row of group 3 coding from that bit on: what the runs of most of the first rows add up to.
/// 0 if these don't agree.
int FindGroup3Width(std::span<const std::uint8_t> coded, std::int64_t firstBit, FaxCoding coding);

/// Whether the first rows of a group 4 page have no bad code with that width.
bool FitsGroup4(std::span<const std::uint8_t> coded, std::int64_t firstBit, int width);

/// The pixels in a row of a group 4 page: a wrong width nearly always meets a bad code within some rows.
/// Where no width fits, the one that gets farthest.
int FindGroup4Width(std::span<const std::uint8_t> coded, std::int64_t firstBit);

struct RawFaxForm {
  FaxCoding coding = FaxCoding::kGroup4;
  bool reversed = false;  ///< least significant bit first
  int width = 0;          ///< of the first page
};

/// Tries both codings of group 3, then group 4, in both orders of bits. Nothing if this is no fax data.
std::optional<RawFaxForm> FindRawFaxForm(const Source& source);

/// Whether a file of any name is fax data, as far as its beginning tells: many rows without a fault.
bool IsCleanRawFax(const Source& source);

}  // namespace imaging
