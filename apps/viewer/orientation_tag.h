#pragma once

#include <cstdint>
#include <optional>
#include <vector>

// The orientation that a file tells of its pictures, changed in the file's own bytes: nothing is decoded, and
// nothing is lost.

using Bytes = std::vector<std::uint8_t>;

/// The orientation number of TIFF and Exif, 1 to 8, of a picture that is turned by quarters, clockwise.
int TurnedOrientation(int orientation, int quarters);

/// A TIFF file all of whose pages are turned; nothing if its bytes aren't those of one.
std::optional<Bytes> TurnedTiff(Bytes file, int quarters);
/// The same of a JPEG file, by its Exif data, which are added if it has none.
std::optional<Bytes> TurnedJpeg(Bytes file, int quarters);
