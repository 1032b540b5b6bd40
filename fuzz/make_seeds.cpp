// make_seeds FOLDER [CONVERSATIONS]: writes a small file of each family, for the fuzzers to begin with; to
// the second folder pages that a module delivers, as fuzz_helper takes them.

#include <array>
#include <cstdio>
#include <filesystem>

#include "tests/hostile/samples.h"

namespace {

namespace fs = std::filesystem;
using codec_test::Bytes;

/// The page and, as all that follows is zero, the likely answers; then what is delivered.
Bytes Conversation(int width, int height, int depth, int delivery, const Bytes& contents) {
  const auto low = [](int value) { return static_cast<std::uint8_t>(value); };
  Bytes bytes = {
      low(width - 1), low((width - 1) >> 8), low(height - 1), low((height - 1) >> 8), low(depth), 7};
  bytes.resize(12);
  bytes.push_back(low(delivery));
  bytes.resize(64);
  bytes.insert(bytes.end(), contents.begin(), contents.end());
  return bytes;
}

void WriteConversations(const fs::path& folder, const std::vector<hostile::Sample>& samples) {
  fs::create_directories(folder);
  for (int depth = 0; depth < 5; ++depth)
    codec_test::WriteAll(folder / ("depth " + std::to_string(depth)),
                         Conversation(40, 30, depth, 0, Bytes(5000, 0x5a)));
  for (const hostile::Sample& sample : samples) {
    const bool tiff = sample.name.find("tiff") != std::string::npos;
    if (!tiff && sample.name.find("jpeg") == std::string::npos) continue;
    const auto info = codec_test::InformMemory(sample.bytes).record;
    codec_test::WriteAll(folder / sample.name,
                         Conversation(info.Width, info.Height, 3, tiff ? 1 : 2, sample.bytes));
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const fs::path folder = argv[1];
  fs::create_directories(folder);
  const auto samples = hostile::MakeSamples();
  for (const hostile::Sample& sample : samples) codec_test::WriteAll(folder / sample.name, sample.bytes);
  if (argc > 2) WriteConversations(argv[2], samples);
  return 0;
}
