#pragma once

#include <string>
#include <vector>

#include "tests/imaging/save_support.h"

namespace hostile {

/// A small file of each family.
struct Sample {
  std::string name;
  codec_test::Bytes bytes;
};
std::vector<Sample> MakeSamples();

/// Size, depth, rows lost and a sum of all pixels; throws the error's text.
std::string ResultOf(const codec_test::Loaded& page);

/// ResultOf page 1 from memory, whose allocations are watched.
std::string LoadWatched(const codec_test::Bytes& bytes);
/// What is told of it without its pixels.
std::string InformWatched(const codec_test::Bytes& bytes);

void SaveTo(const std::string& path, const codec_test::Loaded& page, int format, int number);
/// Three pages, all or none of which take the path's place.
void ExportTo(const std::string& path);

}  // namespace hostile
