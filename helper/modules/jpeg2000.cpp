#include <array>

#include "helper/module.h"
#include "helper/modules/jp2_boxes.h"
#include "helper/modules/jpeg2000_decoder.h"
#include "helper/modules/jpeg2000_samples.h"

// JPEG 2000, in its container and as a bare codestream.
namespace helper {
namespace {

constexpr int kContainer = 163;
constexpr int kCodestream = 164;

class Jpeg2000 final : public Document {
 public:
  explicit Jpeg2000(const Input& input) : m_input(input) {
    std::array<std::uint8_t, 4> start{};
    input.ReadAt(0, start);
    m_container = start[0] != 0xff;
    if (m_container) m_header = ReadJp2Header(input);
  }

  int CountPages() override { return 1; }

  PageRecord Describe(int, int) override {
    if (m_page.width != 0) return m_page;
    Jpeg2000Decoder decoder = OpenDecoder();
    const opj_image_t& image = decoder.Image();
    m_page.format = m_container ? kContainer : kCodestream;
    m_page.width = static_cast<int>(image.x1 - image.x0);
    m_page.height = static_cast<int>(image.y1 - image.y0);
    for (const auto& component : std::span(image.comps, image.numcomps))
      m_page.bits += static_cast<int>(component.prec);
    m_page.xResolution = m_header.xResolution;
    m_page.yResolution = m_header.yResolution;
    SetCompression(m_page, "JPEG 2000");
    const int components =
        m_header.paletteColumns != 0 ? m_header.paletteColumns : static_cast<int>(image.numcomps);
    m_page.memoryBits = MemoryBitsOf(ChannelsOf(components, m_header.alpha, image), image);
    return m_page;
  }

  Decoded Decode(int, int, const Canvas& canvas) override {
    Jpeg2000Decoder decoder = OpenDecoder();
    decoder.Decode();
    const opj_image_t& image = decoder.Image();
    WriteRows(image, ChannelsOf(image), m_page.memoryBits, canvas);
    return {m_page.height, 0};
  }

 private:
  Jpeg2000Decoder OpenDecoder() const {
    const auto readAt = [this](std::int64_t offset, std::span<std::uint8_t> target) {
      return m_input.ReadAt(offset, target);
    };
    return {{readAt, m_input.Size()}, m_container, m_header.space};
  }

  const Input& m_input;
  bool m_container;
  Jp2Header m_header;
  PageRecord m_page;
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Jpeg2000>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
