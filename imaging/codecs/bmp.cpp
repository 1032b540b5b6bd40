#include "imaging/codecs/codec.h"
namespace imaging {
const Codec kBmpCodec = {[](std::span<const std::uint8_t>) { return false; }, nullptr};
}
