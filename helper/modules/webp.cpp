#include <webp/decode.h>

#include "helper/module.h"

// WebP, lossy and lossless; of an animation, whose frames are of a library beside, nothing.
namespace helper {
namespace {

class WebP final : public Document {
 public:
  explicit WebP(const Input& input) : m_bytes(input.ReadAll()) {
    if (WebPGetFeatures(m_bytes.data(), m_bytes.size(), &m_features) != VP8_STATUS_OK)
      throw Failure(Status::kCorrupt, "the header of the WebP picture is damaged");
    if (m_features.has_animation != 0)
      throw Failure(Status::kUnsupported, "animations of WebP can't be shown");
  }

  int CountPages() override { return 1; }

  PageRecord Describe(int, int) override {
    PageRecord page;
    page.width = m_features.width;
    page.height = m_features.height;
    page.bits = page.memoryBits = m_features.has_alpha != 0 ? 32 : 24;
    SetCompression(page, m_features.format == 2 ? "WebP lossless" : "WebP");
    return page;
  }

  /// A file that is cut off gives the rows that it has.
  Decoded Decode(int, int, const Canvas& canvas) override {
    const auto pitch = static_cast<int>(canvas.pitch);
    WebPIDecoder* decoder =
        WebPINewRGB(m_features.has_alpha != 0 ? MODE_RGBA : MODE_RGB, canvas.bytes, canvas.size, pitch);
    if (decoder == nullptr) throw Failure(Status::kNoMemory, "there is no memory for the page");
    const VP8StatusCode status = WebPIAppend(decoder, m_bytes.data(), m_bytes.size());
    int rows = 0;
    WebPIDecGetRGB(decoder, &rows, nullptr, nullptr, nullptr);
    WebPIDelete(decoder);
    if (status != VP8_STATUS_OK && status != VP8_STATUS_SUSPENDED && rows == 0)
      throw Failure(Status::kCorrupt, "the data of the WebP picture is damaged");
    return {rows, 0};
  }

 private:
  std::vector<std::uint8_t> m_bytes;
  WebPBitstreamFeatures m_features{};
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<WebP>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
