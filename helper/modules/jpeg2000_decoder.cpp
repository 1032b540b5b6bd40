#include "helper/modules/jpeg2000_decoder.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace helper {

/// What is made before the body begins ends by the destructor, should the body throw.
Jpeg2000Decoder::Jpeg2000Decoder(Jpeg2000Source source, bool container, Jp2Header::Space space)
    : Jpeg2000Decoder(std::move(source), space,
                      opj_create_decompress(container ? OPJ_CODEC_JP2 : OPJ_CODEC_J2K)) {
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

Jpeg2000Decoder::Jpeg2000Decoder(Jpeg2000Source source, Jp2Header::Space space, opj_codec_t* codec)
    : m_source(std::move(source)), m_space(space), m_codec(codec) {}

Jpeg2000Decoder::~Jpeg2000Decoder() {
  opj_image_destroy(m_image);
  if (m_stream != nullptr) opj_stream_destroy(m_stream);
  if (m_codec != nullptr) opj_destroy_codec(m_codec);
}

void Jpeg2000Decoder::Decode() {
  if (opj_decode(m_codec, m_stream, m_image) == OPJ_FALSE) FailDecoding();
  TellSpace();
}

void Jpeg2000Decoder::OnError(const char* text, void* self) {
  std::string& kept = static_cast<Jpeg2000Decoder*>(self)->m_text;
  if (kept.empty()) kept = std::string_view(text).substr(0, std::string_view(text).find('\n'));
}

void Jpeg2000Decoder::SetStream() {
  opj_stream_set_user_data(m_stream, this, nullptr);
  opj_stream_set_user_data_length(m_stream, static_cast<OPJ_UINT64>(m_source.size));
  opj_stream_set_read_function(m_stream, [](void* target, OPJ_SIZE_T size, void* data) {
    auto& self = *static_cast<Jpeg2000Decoder*>(data);
    const std::size_t got = self.m_source.readAt(self.m_offset, {static_cast<std::uint8_t*>(target), size});
    self.m_offset += static_cast<std::int64_t>(got);
    return got == 0 ? static_cast<OPJ_SIZE_T>(-1) : got;
  });
  opj_stream_set_skip_function(m_stream, [](OPJ_OFF_T count, void* data) -> OPJ_OFF_T {
    auto& self = *static_cast<Jpeg2000Decoder*>(data);
    const std::int64_t target = std::clamp<std::int64_t>(self.m_offset + count, 0, self.m_source.size);
    const std::int64_t moved = target - self.m_offset;
    self.m_offset = target;
    return moved == 0 && count != 0 ? -1 : moved;
  });
  opj_stream_set_seek_function(m_stream, [](OPJ_OFF_T offset, void* data) -> OPJ_BOOL {
    auto& self = *static_cast<Jpeg2000Decoder*>(data);
    if (offset < 0 || offset > self.m_source.size) return OPJ_FALSE;
    self.m_offset = offset;
    return OPJ_TRUE;
  });
}

/// The library tells it late, and not all of them.
void Jpeg2000Decoder::TellSpace() {
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

void Jpeg2000Decoder::CheckHeader() const {
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

void Jpeg2000Decoder::FailDecoding() const {
  throw Failure(Status::kCorrupt, m_text.empty() ? "the picture is damaged" : m_text);
}

}  // namespace helper
