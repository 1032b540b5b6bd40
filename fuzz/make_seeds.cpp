// make_seeds FOLDER: writes a small file of each family, for the fuzzers to begin with.

#include <cstdio>
#include <filesystem>

#include "tests/hostile/samples.h"

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::filesystem::path folder = argv[1];
  std::filesystem::create_directories(folder);
  for (const hostile::Sample& sample : hostile::MakeSamples())
    codec_test::WriteAll(folder / sample.name, sample.bytes);
  return 0;
}
