#include "helper/modules/media_picture.h"

extern "C" {
#include <libavutil/pixdesc.h>
}

#include <cstring>

namespace helper {
namespace {

int BitsOf(const AVPixFmtDescriptor& description) {
  int bits = 0;
  for (int i = 0; i < description.nb_components; ++i) bits += description.comp[i].depth;
  return bits;
}

AVPixelFormat TargetOf(const PageRecord& page) {
  constexpr int kGray = 8;
  constexpr int kColor = 24;
  if (page.memoryBits == kGray) return AV_PIX_FMT_GRAY8;
  return page.memoryBits == kColor ? AV_PIX_FMT_RGB24 : AV_PIX_FMT_RGBA;
}

void Convert(const AVFrame& frame, const PageRecord& page, const Canvas& canvas) {
  const auto format = static_cast<AVPixelFormat>(frame.format);
  const Owned<SwsContext> scaler(
      sws_getContext(frame.width, frame.height, format, frame.width, frame.height, TargetOf(page),
                     SWS_BICUBIC | SWS_ACCURATE_RND | SWS_FULL_CHR_H_INT, nullptr, nullptr, nullptr));
  if (scaler == nullptr) throw Failure(Status::kUnsupported, "the samples of this picture can't be shown");
  const int full = frame.color_range == AVCOL_RANGE_JPEG ? 1 : 0;
  constexpr int kOne = 1 << 16;
  if (full != 0)
    sws_setColorspaceDetails(scaler.get(), sws_getCoefficients(SWS_CS_DEFAULT), 1,
                             sws_getCoefficients(SWS_CS_DEFAULT), 1, 0, kOne, kOne);
  std::uint8_t* const rows[] = {canvas.bytes, nullptr, nullptr, nullptr};
  const int pitches[] = {static_cast<int>(canvas.pitch), 0, 0, 0};
  sws_scale(scaler.get(), frame.data, frame.linesize, 0, frame.height, rows, pitches);
}

void PackBits(const std::uint8_t* source, int width, std::uint8_t* target) {
  std::memset(target, 0, static_cast<std::size_t>(width + 7) / 8);
  for (int x = 0; x < width; ++x)
    if ((source[x] & 1) != 0) target[x / 8] |= static_cast<std::uint8_t>(0x80 >> x % 8);
}

}  // namespace

PageRecord DescribeFrame(const AVFrame& frame) {
  const AVPixFmtDescriptor* description = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(frame.format));
  if (description == nullptr) throw Failure(Status::kUnsupported, "the samples of this picture are unknown");
  constexpr int kByte = 8;
  PageRecord page;
  page.width = frame.width;
  page.height = frame.height;
  page.bits = BitsOf(*description);
  const bool alpha = (description->flags & AV_PIX_FMT_FLAG_ALPHA) != 0;
  page.memoryBits = alpha ? 32 : description->nb_components < 3 ? kByte : 24;
  if (frame.format == AV_PIX_FMT_PAL8) {
    page.memoryBits = page.bits = kByte;
    page.colors = static_cast<std::uint32_t>(page.palette.size());
    std::memcpy(page.palette.data(), frame.data[1], sizeof page.palette);
    for (std::uint32_t& color : page.palette) color &= 0xffffff;
  } else if (frame.format == AV_PIX_FMT_MONOWHITE || frame.format == AV_PIX_FMT_MONOBLACK) {
    page.memoryBits = page.bits = 1;
    page.colors = 2;
    page.palette[frame.format == AV_PIX_FMT_MONOWHITE ? 0 : 1] = 0xffffff;
  }
  return page;
}

void WriteFrame(const AVFrame& frame, const PageRecord& page, const Canvas& canvas) {
  const bool indexed = frame.format == AV_PIX_FMT_PAL8;
  const bool packed = frame.format == AV_PIX_FMT_MONOWHITE || frame.format == AV_PIX_FMT_MONOBLACK;
  if (!indexed && !packed) return Convert(frame, page, canvas);
  const auto rowBytes = static_cast<std::size_t>(packed ? (frame.width + 7) / 8 : frame.width);
  for (int y = 0; y < frame.height; ++y) {
    const std::uint8_t* row = frame.data[0] + static_cast<std::ptrdiff_t>(y) * frame.linesize[0];
    if (indexed && page.memoryBits == 1)
      PackBits(row, frame.width, canvas.Row(y));
    else
      std::memcpy(canvas.Row(y), row, rowBytes);
  }
}

}  // namespace helper
