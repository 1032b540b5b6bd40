#include <cstring>

#include "imaging/codecs/icon.h"
#include "imaging/codecs/raster.h"

// Animated cursors: a RIFF file whose frames are icons or cursors.
namespace imaging {
namespace {

bool Is(const std::uint8_t* mark, const char* name) {
  return std::memcmp(mark, name, 4) == 0;
}

/// Every frame in the order of the file, however often the sequence shows it. Chunks that aren't frames tell
/// of time and names.
std::vector<AlbumPart> ReadFrames(const Source& source) {
  constexpr std::int64_t kFileHeader = 12;
  constexpr std::int64_t kChunkHeader = 8;
  constexpr int kMostChunks = 20'000;
  std::vector<AlbumPart> frames;
  std::array<std::uint8_t, kChunkHeader + 4> head{};
  std::int64_t at = kFileHeader;
  for (int chunk = 0; chunk < kMostChunks && source.ReadExactly(at, head); ++chunk) {
    const std::int64_t size = LittleU32(&head[4]);
    if (Is(head.data(), "LIST") && Is(&head[kChunkHeader], "fram")) {
      at += kChunkHeader + 4;  // goes on inside
      continue;
    }
    if (Is(head.data(), "icon")) frames.push_back({at + kChunkHeader, size});
    at += kChunkHeader + size + size % 2;
  }
  return frames;
}

std::unique_ptr<Reader> OpenAnimatedCursor(const Source& source) {
  auto frames = ReadFrames(source);
  if (frames.empty()) Fail(kErrorCorrupt, "%s: the animated cursor has no frame", source.Name().c_str());
  return OpenAlbum(source, std::move(frames), kFormatAnimatedCursor, OpenIcons);
}

bool Recognise(const Candidate& candidate) {
  return candidate.head.size() >= 12 && Is(candidate.head.data(), "RIFF") && Is(&candidate.head[8], "ACON");
}

}  // namespace

const Codec kAnimatedCursorCodec = {Recognise, OpenAnimatedCursor};

}  // namespace imaging
