#pragma once

#include <memory>

#include "imaging/pixels/storage.h"

namespace imaging {

/// Scales by repeating or dropping pixels; depth and colours stay.
std::unique_ptr<PixelStorage> SizedByRepeating(const PixelStorage& source, int width, int height);
/// Scales by averaging where an axis gets shorter. 24 and 32 bits stay as they are, in the source's order; a
/// smaller depth becomes 8-bit grey if its colours are grey, otherwise 24 bits, blue first.
std::unique_ptr<PixelStorage> SizedByAveraging(const PixelStorage& source, int width, int height);
/// Scales into pixels that exist, at their size and depth: averaged into grey, 24 and 32 bits, repeated
/// between equal depths with a colour table, which is copied. Throws for a target of fewer colours. The
/// orders are those of the records.
void ResizeInto(const PixelStorage& source, int sourceOrder, PixelStorage& target, int targetOrder);
/// 8-bit grey by the weights of ITU-R BT.601, clause 2.5.1: 0.299 red, 0.587 green, 0.114 blue.
std::unique_ptr<PixelStorage> Grayed(const PixelStorage& source, int order);
/// The same in place, of 1 bit: the bits stay what is held.
void ShowAsGrays(PixelStorage& bilevel);

}  // namespace imaging
