#include <algorithm>
#include <array>

#include "imaging/codecs/codec.h"
#include "imaging/core/exception.h"

// The Microsoft fax format: a compound file whose streams are known by name, while the coding of its pages
// was never published. It is told apart so that the refusal says what the file is.
namespace imaging {
namespace {

constexpr std::array<std::uint8_t, 8> kCompoundFile = {0xd0, 0xcf, 0x11, 0xe0, 0xa1, 0xb1, 0x1a, 0xe1};

bool Recognise(const Candidate& candidate) {
  const auto head = candidate.head;
  return candidate.ending == "awd" && head.size() >= kCompoundFile.size() &&
         std::equal(kCompoundFile.begin(), kCompoundFile.end(), head.begin());
}

std::unique_ptr<Reader> Refuse(const Source& source) {
  Fail(kErrorUnsupported, "%s is a Microsoft fax, whose coding isn't public", source.Name().c_str());
}

}  // namespace

extern const Codec kAtWorkFaxCodec = {Recognise, Refuse, Evidence::kLikeness};

}  // namespace imaging
