#include "imaging/codecs/codec.h"
namespace imaging {
const Codec kGifCodec = {[](std::span<const std::uint8_t>) { return false; }, nullptr};
}
