#pragma once

#include <string>

/// Writes a file again with all its pages turned by quarters, clockwise, and nothing lost: TIFF and JPEG by
/// their orientation tag, PNG and BMP by their pixels. Throws a FileError that tells the user why it can't.
void SaveTurnedCopy(const std::string& source, const std::string& target, int quarters);
