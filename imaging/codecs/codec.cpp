#include "imaging/codecs/codec.h"

#include <array>
#include <cmath>

#include "imaging/exception.h"
#include "imaging/limits.h"

namespace imaging {
namespace {

// Long enough for the one mark that lies deep: a medical file may begin with the signature of another kind
// and shows what it is at byte 128.
constexpr std::size_t kHeadBytes = 512;

const std::array kCodecs = {&kTiffCodec, &kJpegCodec, &kPngCodec, &kBmpCodec, &kGifCodec};

}  // namespace

std::unique_ptr<Reader> OpenReader(const Source& source) {
  std::array<std::uint8_t, kHeadBytes> buffer;
  const std::span<const std::uint8_t> head(buffer.data(), source.ReadAt(0, buffer));
  for (const Codec* codec : kCodecs)
    if (codec->recognise(head)) return codec->open(source);
  Fail(kErrorFileFormat, "%s is not an image of a known kind", source.Name().c_str());
}

void CheckPageSize(const Source& source, std::int64_t width, std::int64_t height) {
  if (width < 1 || height < 1)
    Fail(kErrorCorrupt, "%s: an image of %lld by %lld pixels can't be shown", source.Name().c_str(),
         static_cast<long long>(width), static_cast<long long>(height));
  if (width > limits::kMaxSide || height > limits::kMaxSide || width * height > limits::kMaxPixels)
    Fail(kErrorLimit, "%s: an image of %lld by %lld pixels is too large", source.Name().c_str(),
         static_cast<long long>(width), static_cast<long long>(height));
}

void CheckPlausible(const Source& source, std::int64_t bytes, int expansion) {
  constexpr std::int64_t kHarmless = 64'000'000;
  if (bytes <= kHarmless || bytes / expansion <= source.Size()) return;
  Fail(kErrorLimit, "%s claims a page of %lld bytes, which its %lld bytes can't hold", source.Name().c_str(),
       static_cast<long long>(bytes), static_cast<long long>(source.Size()));
}

void RequirePage(const Source& source, int page, int pages) {
  if (page < 1 || page > pages) Fail(kErrorPageNotFound, "%s has no page %d", source.Name().c_str(), page);
}

int DotsPerInch(double dots) {
  constexpr double kMost = 1e6;
  return std::isfinite(dots) && dots > 0 && dots < kMost ? static_cast<int>(std::lround(dots)) : 0;
}

}  // namespace imaging
