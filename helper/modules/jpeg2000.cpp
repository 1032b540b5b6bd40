#include <openjpeg.h>

#include <algorithm>
#include <array>

#include "helper/module.h"
#include "helper/modules/jp2_boxes.h"
#include "helper/modules/jpeg2000_samples.h"

// JPEG 2000, in its container and as a bare codestream.
namespace helper {
namespace {

constexpr int kContainer = 163;
constexpr int kCodestream = 164;

/// The library's reading state over the file, up to the header of the picture.
class Jp2Decoder {
 public:
  /// What is made before the body begins ends by the destructor, should the body throw.
  Jp2Decoder(const Input& input, bool container, Jp2Header::Space space)
      : Jp2Decoder(input, space, opj_create_decompress(container ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K)) {
    constexpr std::size_t kBuffer = 1 << 16;
    m_stream = opj_stream_create(kBuffer, OPJ_TRUE);
    if (m_codec == nullptr || m_stream == nullptr)
      throw Failure(Status::kNoMemory, "there is no memory for the decoder");
    opj_set_error_handler(m_codec, OnError, this);
    SetStream();
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    // A file that is cut off shows what it has.
    if (opj_setup_decoder(m_codec, &parameters) == OPJ_FALSE ||
        opj_decoder_set_strict_mode(m_codec, OPJ_FALSE) == OPJ_FALSE ||
        opj_read_header(m_stream, m_codec, &m_image) == OPJ_FALSE)
      FailDecoding();
    CheckHeader();
    TellSpace();
  }
  ~Jp2Decoder() {
    opj_image_destroy(m_image);
    if (m_stream != nullptr) opj_stream_destroy(m_stream);
    if (m_codec != nullptr) opj_destroy_codec(m_codec);
  }
  Jp2Decoder(const Jp2Decoder&) = delete;
  Jp2Decoder& operator=(const Jp2Decoder&) = delete;

  const opj_image_t& Image() const { return *m_image; }
  /// Replaces palette indices by colours and puts the components in order, too.
  void Decode() {
    if (opj_decode(m_codec, m_stream, m_image) == OPJ_FALSE) FailDecoding();
    TellSpace();
  }

 private:
  Jp2Decoder(const Input& input, Jp2Header::Space space, opj_codec_t* codec)
      : m_input(input), m_space(space), m_codec(codec) {}
  static void OnError(const char* text, void* self) {
    std::string& kept = static_cast<Jp2Decoder*>(self)->m_text;
    if (kept.empty()) kept = std::string_view(text).substr(0, std::string_view(text).find('\n'));
  }
  void SetStream() {
    opj_stream_set_user_data(m_stream, this, nullptr);
    opj_stream_set_user_data_length(m_stream, static_cast<OPJ_UINT64>(m_input.Size()));
    opj_stream_set_read_function(m_stream, [](void* target, OPJ_SIZE_T size, void* data) {
      auto& self = *static_cast<Jp2Decoder*>(data);
      const std::size_t got = self.m_input.ReadAt(self.m_offset, {static_cast<std::uint8_t*>(target), size});
      self.m_offset += static_cast<std::int64_t>(got);
      return got == 0 ? static_cast<OPJ_SIZE_T>(-1) : got;
    });
    opj_stream_set_skip_function(m_stream, [](OPJ_OFF_T count, void* data) -> OPJ_OFF_T {
      auto& self = *static_cast<Jp2Decoder*>(data);
      const std::int64_t target = std::clamp<std::int64_t>(self.m_offset + count, 0, self.m_input.Size());
      const std::int64_t moved = target - self.m_offset;
      self.m_offset = target;
      return moved == 0 && count != 0 ? -1 : moved;
    });
    opj_stream_set_seek_function(m_stream, [](OPJ_OFF_T offset, void* data) -> OPJ_BOOL {
      auto& self = *static_cast<Jp2Decoder*>(data);
      if (offset < 0 || offset > self.m_input.Size()) return OPJ_FALSE;
      self.m_offset = offset;
      return OPJ_TRUE;
    });
  }
  /// The library tells it late, and not all of them.
  void TellSpace() {
    switch (m_space) {
      case Jp2Header::Space::kRgb:
        m_image->color_space = OPJ_CLRSPC_SRGB;
        break;
      case Jp2Header::Space::kGray:
        m_image->color_space = OPJ_CLRSPC_GRAY;
        break;
      case Jp2Header::Space::kYcc:
        m_image->color_space = OPJ_CLRSPC_SYCC;
        break;
      case Jp2Header::Space::kCmyk:
        m_image->color_space = OPJ_CLRSPC_CMYK;
        break;
      default:
        break;
    }
  }
  void CheckHeader() const {
    constexpr OPJ_UINT32 kMostComponents = 64;
    if (m_image->numcomps < 1 || m_image->numcomps > kMostComponents)
      throw Failure(Status::kUnsupported, "pictures of so many components can't be shown");
    if (m_image->x1 <= m_image->x0 || m_image->y1 <= m_image->y0 || m_image->x1 > INT32_MAX ||
        m_image->y1 > INT32_MAX)
      throw Failure(Status::kCorrupt, "the size of the picture makes no sense");
    for (const auto& component : std::span(m_image->comps, m_image->numcomps))
      if (component.dx == 0 || component.dy == 0 || component.prec == 0 ||
          component.dx > m_image->x1 - m_image->x0 || component.dy > m_image->y1 - m_image->y0)
        throw Failure(Status::kCorrupt, "a component makes no sense");
  }
  [[noreturn]] void FailDecoding() const {
    throw Failure(Status::kCorrupt, m_text.empty() ? "the picture is damaged" : m_text);
  }

  const Input& m_input;
  Jp2Header::Space m_space;
  std::int64_t m_offset = 0;
  opj_codec_t* m_codec;
  opj_stream_t* m_stream = nullptr;
  opj_image_t* m_image = nullptr;
  std::string m_text;
};

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
    Jp2Decoder decoder(m_input, m_container, m_header.space);
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
    Jp2Decoder decoder(m_input, m_container, m_header.space);
    decoder.Decode();
    const opj_image_t& image = decoder.Image();
    WriteRows(image, ChannelsOf(image), m_page.memoryBits, canvas);
    return {m_page.height, 0};
  }

 private:
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
