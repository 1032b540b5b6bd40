#include <webp/decode.h>
#include <webp/demux.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "helper/module.h"

// WebP, lossy and lossless. Each frame of an animation is a page, as it shows upon those before it.
namespace helper {
namespace {

class Picture final : public Document {
 public:
  Picture(std::vector<std::uint8_t> bytes, const WebPBitstreamFeatures& features)
      : m_bytes(std::move(bytes)), m_features(features) {}

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
  WebPBitstreamFeatures m_features;
};

struct Deleter {
  void operator()(WebPDemuxer* demuxer) const { WebPDemuxDelete(demuxer); }
  void operator()(WebPAnimDecoder* decoder) const { WebPAnimDecoderDelete(decoder); }
};

class Animation final : public Document {
 public:
  explicit Animation(std::vector<std::uint8_t> bytes) : m_bytes(std::move(bytes)) {
    const std::unique_ptr<WebPDemuxer, Deleter> demuxer(WebPDemux(&m_data));
    if (demuxer == nullptr) throw Failure(Status::kCorrupt, "the animation is damaged or cut off");
    m_frames = static_cast<int>(WebPDemuxGetI(demuxer.get(), WEBP_FF_FRAME_COUNT));
    m_page.width = static_cast<int>(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_WIDTH));
    m_page.height = static_cast<int>(WebPDemuxGetI(demuxer.get(), WEBP_FF_CANVAS_HEIGHT));
    // What no frame covers is clear, whether the pictures have alpha or not.
    m_page.bits = m_page.memoryBits = 32;
    SetCompression(m_page, "WebP");
    if (m_frames < 1) throw Failure(Status::kCorrupt, "the animation has no frames");
  }

  int CountPages() override { return m_frames; }
  PageRecord Describe(int, int) override { return m_page; }

  /// Paging on costs the frame that is new.
  Decoded Decode(int page, int, const Canvas& canvas) override {
    if (m_decoder == nullptr) Start();
    if (page <= m_shown) {
      WebPAnimDecoderReset(m_decoder.get());
      m_shown = 0;
    }
    std::uint8_t* screen = nullptr;
    for (int time = 0; m_shown < page; ++m_shown)
      if (WebPAnimDecoderGetNext(m_decoder.get(), &screen, &time) == 0) {
        m_decoder.reset();
        throw Failure(Status::kCorrupt, "the data of a frame is damaged");
      }
    const std::size_t rowBytes = static_cast<std::size_t>(m_page.width) * 4;
    for (int y = 0; y < m_page.height; ++y)
      std::copy_n(screen + static_cast<std::size_t>(y) * rowBytes, rowBytes, canvas.Row(y));
    return {m_page.height, 0};
  }

 private:
  /// Takes the memory for the whole screen, whose size the library has agreed to by now.
  void Start() {
    WebPAnimDecoderOptions options;
    WebPAnimDecoderOptionsInit(&options);
    options.color_mode = MODE_RGBA;
    options.use_threads = 0;
    m_decoder.reset(WebPAnimDecoderNew(&m_data, &options));
    if (m_decoder == nullptr) throw Failure(Status::kNoMemory, "there is no memory for the animation");
    m_shown = 0;
  }

  std::vector<std::uint8_t> m_bytes;
  WebPData m_data{m_bytes.data(), m_bytes.size()};
  std::unique_ptr<WebPAnimDecoder, Deleter> m_decoder;
  PageRecord m_page;
  int m_frames = 0;
  int m_shown = 0;  ///< the page that the decoder's screen shows
};

std::unique_ptr<Document> Open(const Input& input) {
  auto bytes = input.ReadAll();
  WebPBitstreamFeatures features{};
  if (WebPGetFeatures(bytes.data(), bytes.size(), &features) != VP8_STATUS_OK)
    throw Failure(Status::kCorrupt, "the header of the WebP picture is damaged");
  if (features.has_animation != 0) return std::make_unique<Animation>(std::move(bytes));
  return std::make_unique<Picture>(std::move(bytes), features);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
