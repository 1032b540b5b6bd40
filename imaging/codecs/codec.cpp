#include "imaging/codecs/codec.h"

#include <array>
#include <cmath>
#include <string_view>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

// Long enough for the one mark that lies deep: a medical file may begin with the signature of another kind
// and shows what it is at byte 128.
using HeadBuffer = std::array<std::uint8_t, 512>;

constexpr const Codec* kCodecs[] = {
#define FAMILY(codec, name) &(codec),
#include "imaging/codecs/families.def"
#undef FAMILY
};

}  // namespace

std::string EndingOf(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  if (dot == std::string_view::npos || name.find('/', dot) != std::string_view::npos) return {};
  std::string ending(name.substr(dot + 1));
  for (char& letter : ending)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  return ending;
}

namespace {

Candidate CandidateOf(const Source& source, HeadBuffer& buffer) {
  return {std::span(buffer).first(source.ReadAt(0, buffer)), source, EndingOf(source.Name())};
}

}  // namespace

std::unique_ptr<Reader> OpenReader(const Source& source) {
  HeadBuffer buffer;
  const Candidate candidate = CandidateOf(source, buffer);
  for (const Evidence evidence : {Evidence::kSignature, Evidence::kLikeness})
    for (const Codec* codec : kCodecs)
      if (codec->evidence == evidence && codec->recognise(candidate)) return codec->open(source);
  Fail(kErrorFileFormat, "%s is not an image of a known kind", source.Name().c_str());
}

std::unique_ptr<Reader> OpenReaderOf(const Codec& codec, const Source& source) {
  HeadBuffer buffer;
  return codec.recognise(CandidateOf(source, buffer)) ? codec.open(source) : nullptr;
}

void CheckPageSize(const Source& source, std::int64_t width, std::int64_t height) {
  if (width < 1 || height < 1)
    Fail(kErrorCorrupt, "%s: an image of %lld by %lld pixels can't be shown", source.Name().c_str(),
         static_cast<long long>(width), static_cast<long long>(height));
  if (width > Limit().side || height > Limit().side || width * height > Limit().pagePixels)
    Fail(kErrorLimit, "%s: an image of %lld by %lld pixels is too large", source.Name().c_str(),
         static_cast<long long>(width), static_cast<long long>(height));
}

void CheckPlausible(const Source& source, std::int64_t bytes, int expansion) {
  if (bytes <= Limit().unprovenBytes || bytes / expansion <= source.Size()) return;
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
