#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libswscale/swscale.h>
}

#include <memory>
#include <span>

#include "helper/module.h"

// What of FFmpeg's interface the module uses, owned.
namespace helper {

struct Release {
  void operator()(AVCodecContext* context) const { avcodec_free_context(&context); }
  void operator()(AVCodecParameters* parameters) const { avcodec_parameters_free(&parameters); }
  void operator()(AVFrame* frame) const { av_frame_free(&frame); }
  void operator()(AVPacket* packet) const { av_packet_free(&packet); }
  void operator()(SwsContext* scaler) const { sws_freeContext(scaler); }
};
template <typename T>
using Owned = std::unique_ptr<T, Release>;

/// A decoder without threads, and its latest frame.
class Decoder {
 public:
  /// Parameters of a stream may be null. Throws unless the coding is one of those that the module reads.
  Decoder(AVCodecID codec, const AVCodecParameters* parameters);
  /// False if the decoder can't use the packet. Null: no more come.
  bool Send(const AVPacket* packet) { return avcodec_send_packet(m_context.get(), packet) == 0; }
  bool Send(std::span<const std::uint8_t> bytes);
  /// False if it wants a packet, or at the end.
  bool Receive() { return avcodec_receive_frame(m_context.get(), m_frame.get()) == 0; }
  void Forget() { avcodec_flush_buffers(m_context.get()); }
  const AVFrame& Frame() const { return *m_frame; }
  const AVCodecContext& Context() const { return *m_context; }
  void Start();

 private:
  const AVCodec* m_codec;
  Owned<AVCodecContext> m_context;
  Owned<AVFrame> m_frame;
};

/// The video stream of a container within a part of the file.
class Container {
 public:
  Container(const Input& input, const char* format, std::int64_t begin, std::int64_t size);
  ~Container();
  Container(const Container&) = delete;
  Container& operator=(const Container&) = delete;

  void Probe() { avformat_find_stream_info(m_context, nullptr); }
  /// Null if there is none.
  AVStream* Video() const;
  /// The stream's next packet; false at the end.
  bool Read(AVPacket& packet);

 private:
  static int ReadBytes(void* self, std::uint8_t* target, int size);
  static std::int64_t Seek(void* self, std::int64_t offset, int whence);

  const Input& m_input;
  std::int64_t m_begin;
  std::int64_t m_size;
  std::int64_t m_position = 0;
  AVIOContext* m_io = nullptr;
  AVFormatContext* m_context = nullptr;
};

}  // namespace helper
