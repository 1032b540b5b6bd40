#include "helper/modules/media_decoder.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace helper {
namespace {

constexpr AVCodecID kCodecs[] = {
    AV_CODEC_ID_PHOTOCD,    AV_CODEC_ID_PSD,      AV_CODEC_ID_IFF_ILBM, AV_CODEC_ID_MPEG1VIDEO,
    AV_CODEC_ID_MPEG2VIDEO, AV_CODEC_ID_MJPEG,    AV_CODEC_ID_MPEG4,    AV_CODEC_ID_MSMPEG4V2,
    AV_CODEC_ID_MSMPEG4V3,  AV_CODEC_ID_MSVIDEO1, AV_CODEC_ID_MSRLE,    AV_CODEC_ID_CINEPAK,
    AV_CODEC_ID_INDEO3,     AV_CODEC_ID_RAWVIDEO, AV_CODEC_ID_H263,     AV_CODEC_ID_HUFFYUV,
    AV_CODEC_ID_DVVIDEO,
};

/// FFmpeg's own decoder, never one that wraps another library.
const AVCodec* FindDecoder(AVCodecID id) {
  if (std::find(std::begin(kCodecs), std::end(kCodecs), id) == std::end(kCodecs))
    throw Failure(Status::kUnsupported, "the pictures of this film are in a coding that isn't read");
  const AVCodec* codec = avcodec_find_decoder(id);
  if (codec == nullptr) throw Failure(Status::kUnsupported, "this FFmpeg lacks the decoder");
  return codec;
}

int RefuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
  return AVERROR(EACCES);
}

}  // namespace

Decoder::Decoder(AVCodecID codec, const AVCodecParameters* parameters)
    : m_codec(FindDecoder(codec)), m_context(avcodec_alloc_context3(m_codec)), m_frame(av_frame_alloc()) {
  if (m_context == nullptr || m_frame == nullptr) throw std::bad_alloc();
  if (parameters != nullptr) avcodec_parameters_to_context(m_context.get(), parameters);
  constexpr std::int64_t kMostPixels = 1'000'000'000;
  m_context->thread_count = 1;
  m_context->max_pixels = kMostPixels;
}

void Decoder::Start() {
  if (avcodec_open2(m_context.get(), m_codec, nullptr) != 0)
    throw Failure(Status::kCorrupt, "the decoder can't use what the file says of its pictures");
}

bool Decoder::Send(std::span<const std::uint8_t> bytes) {
  const Owned<AVPacket> packet(av_packet_alloc());
  if (packet == nullptr || av_new_packet(packet.get(), static_cast<int>(bytes.size())) != 0)
    throw std::bad_alloc();
  std::copy(bytes.begin(), bytes.end(), packet->data);
  packet->flags |= AV_PKT_FLAG_KEY;
  return Send(packet.get());
}

Container::Container(const Input& input, const char* format, std::int64_t begin, std::int64_t size)
    : m_input(input), m_begin(begin), m_size(size) {
  constexpr int kBufferBytes = 1 << 15;
  constexpr std::int64_t kProbeBytes = 1 << 20;
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferBytes));
  m_io = avio_alloc_context(buffer, kBufferBytes, 0, this, ReadBytes, nullptr, Seek);
  m_context = avformat_alloc_context();
  if (m_io == nullptr || m_context == nullptr) throw std::bad_alloc();
  m_context->pb = m_io;
  m_context->probesize = kProbeBytes;
  m_context->io_open = RefuseToOpen;
  m_context->flags |= AVFMT_FLAG_CUSTOM_IO;
  // A context that can't be opened is freed there.
  if (avformat_open_input(&m_context, nullptr, av_find_input_format(format), nullptr) == 0) return;
  m_context = nullptr;
  av_freep(&m_io->buffer);
  avio_context_free(&m_io);
  throw Failure(Status::kCorrupt, "the head of the file is damaged");
}

Container::~Container() {
  avformat_close_input(&m_context);
  av_freep(&m_io->buffer);
  avio_context_free(&m_io);
}

AVStream* Container::Video() const {
  for (unsigned i = 0; i < m_context->nb_streams; ++i)
    if (m_context->streams[i]->codecpar->codec_type == AVMEDIA_TYPE_VIDEO) return m_context->streams[i];
  return nullptr;
}

bool Container::Read(AVPacket& packet) {
  const AVStream* video = Video();
  for (;;) {
    av_packet_unref(&packet);
    if (av_read_frame(m_context, &packet) != 0) return false;
    if (video == nullptr) video = Video();
    if (video != nullptr && packet.stream_index == video->index) return true;
  }
}

int Container::ReadBytes(void* self, std::uint8_t* target, int size) {
  auto& container = *static_cast<Container*>(self);
  const std::int64_t left = std::max<std::int64_t>(container.m_size - container.m_position, 0);
  const auto wanted = static_cast<std::size_t>(std::min<std::int64_t>(left, size));
  const std::size_t got =
      container.m_input.ReadAt(container.m_begin + container.m_position, {target, wanted});
  container.m_position += static_cast<std::int64_t>(got);
  return got == 0 ? AVERROR_EOF : static_cast<int>(got);
}

std::int64_t Container::Seek(void* self, std::int64_t offset, int whence) {
  auto& container = *static_cast<Container*>(self);
  if (whence == AVSEEK_SIZE) return container.m_size;
  if (whence == SEEK_CUR) offset += container.m_position;
  if (whence == SEEK_END) offset += container.m_size;
  if (offset < 0) return AVERROR(EINVAL);
  return container.m_position = offset;
}

}  // namespace helper
