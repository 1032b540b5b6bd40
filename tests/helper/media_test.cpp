#include <gtest/gtest.h>

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <cstring>
#include <string_view>

#include "tests/helper/damage.h"
#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

/// Fields of either byte order.
struct Writer {
  Bytes bytes;
  Writer& Text(std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
    return *this;
  }
  Writer& Little(std::size_t count, std::uint32_t value) {
    for (std::size_t i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    return *this;
  }
  Writer& Big(std::size_t count, std::uint32_t value) {
    for (std::size_t i = count; i-- > 0;) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    return *this;
  }
  Writer& Append(const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
    return *this;
  }
  /// A chunk of RIFF or IFF with its size before it.
  Writer& Chunk(std::string_view tag, const Bytes& data, bool big) {
    Text(tag);
    const auto size = static_cast<std::uint32_t>(data.size());
    if (big)
      Big(4, size);
    else
      Little(4, size);
    Append(data);
    if (data.size() % 2 != 0) bytes.push_back(0);
    return *this;
  }
};

constexpr int kWidth = 16;
constexpr int kHeight = 8;
constexpr int kFrames = 5;
/// The grey of a frame, from 1.
constexpr int LevelOf(int frame) {
  return 20 + 40 * frame;
}

/// A picture of channels, unpacked, with 150 by 75 dots per inch.
Bytes MakePsd(int channels, int bits, int mode) {
  Writer file;
  file.Text("8BPS").Big(2, 1).Big(4, 0).Big(2, 0).Big(2, static_cast<unsigned>(channels));
  file.Big(4, kHeight).Big(4, kWidth).Big(2, static_cast<unsigned>(bits)).Big(2, static_cast<unsigned>(mode));
  Writer resource;
  resource.Text("8BIM").Big(2, 1000).Big(2, 0).Big(4, 3).Big(4, 0x01020300);
  resource.Text("8BIM").Big(2, 1005).Big(2, 0).Big(4, 16);
  resource.Big(4, 150U << 16).Big(4, 0x10001).Big(4, 75U << 16).Big(4, 0x10001);
  file.Big(4, 0).Big(4, static_cast<std::uint32_t>(resource.bytes.size())).Append(resource.bytes);
  file.Big(4, 0).Big(2, 0);
  for (int channel = 0; channel < channels; ++channel)
    file.Append(Bytes(static_cast<std::size_t>(kWidth * kHeight * bits / 8),
                      static_cast<std::uint8_t>(50 + 60 * channel)));
  return file.bytes;
}

/// Planes without runs; the colours are greys.
Bytes MakeIlbm(int planes, std::uint8_t bits, bool dots = false) {
  Writer form;
  form.Text("ILBM");
  Writer head;
  head.Big(2, kWidth).Big(2, kHeight).Big(4, 0).Big(1, static_cast<unsigned>(planes)).Big(3, 0);
  head.Big(2, 0).Big(2, 0x0a0b).Big(2, kWidth).Big(2, kHeight);
  form.Chunk("BMHD", head.bytes, true);
  Bytes colors;
  for (int i = 0; i < 1 << planes; ++i)
    colors.insert(colors.end(), 3, static_cast<std::uint8_t>(10 + 30 * i));
  form.Chunk("CMAP", colors, true);
  if (dots) form.Chunk("DPI ", {0, 90, 0, 80}, true);
  form.Chunk("BODY", Bytes(static_cast<std::size_t>(kWidth / 8 * kHeight * planes), bits), true);
  return Writer().Chunk("FORM", form.bytes, true).bytes;
}

Bytes MakeIffList(const std::vector<Bytes>& forms) {
  Writer list;
  list.Text("ILBM");
  for (const Bytes& form : forms) list.Append(form);
  return Writer().Chunk("LIST", list.bytes, true).bytes;
}

/// JPEG frames, with an index, without, or with one that lies.
enum class Index { kTrue, kNone, kFalse };
Bytes MakeAvi(Index kind) {
  Writer header;
  header.Text("avih").Little(4, 56).Little(4, 40'000).Little(4, 0).Little(4, 0).Little(4, 0x10);
  header.Little(4, 999).Little(4, 0).Little(4, 1).Little(4, 0).Little(4, kWidth).Little(4, kHeight);
  header.Append(Bytes(16));
  Writer stream;
  stream.Text("strl").Text("strh").Little(4, 56).Text("vidsMJPG").Append(Bytes(12));
  stream.Little(4, 1).Little(4, 25).Little(4, 0).Little(4, 999).Append(Bytes(20));
  stream.Text("strf")
      .Little(4, 40)
      .Little(4, 40)
      .Little(4, kWidth)
      .Little(4, kHeight)
      .Little(2, 1)
      .Little(2, 24);
  stream.Text("MJPG").Append(Bytes(20));
  Writer list;
  list.Text("hdrl").Append(header.bytes).Chunk("LIST", stream.bytes, false);
  Writer movie;
  movie.Text("movi");
  Writer index;
  for (int number = 1; number <= kFrames; ++number) {
    const Bytes frame = MakeJpeg(kWidth, kHeight, 3, false,
                                 [&](int, int, int) { return static_cast<std::uint8_t>(LevelOf(number)); });
    const auto place = static_cast<std::uint32_t>(movie.bytes.size());
    index.Text("00dc").Little(4, 0x10).Little(4, place + (kind == Index::kFalse ? 2 : 0));
    index.Little(4, static_cast<std::uint32_t>(frame.size()));
    movie.Chunk("00dc", frame, false);
  }
  Writer riff;
  riff.Text("AVI ").Chunk("LIST", list.bytes, false).Chunk("LIST", movie.bytes, false);
  if (kind != Index::kNone) riff.Chunk("idx1", index.bytes, false);
  return Writer().Chunk("RIFF", riff.bytes, false).bytes;
}

/// Plain sequences, with pictures that are coded before others that are shown earlier.
Bytes MakeMpeg(AVCodecID id) {
  Bytes file;
  AVCodecContext* context = avcodec_alloc_context3(avcodec_find_encoder(id));
  context->width = 48;
  context->height = 48;
  context->time_base = {1, 25};
  context->pix_fmt = AV_PIX_FMT_YUV420P;
  context->max_b_frames = 1;
  context->gop_size = 3;
  context->bit_rate = 4'000'000;
  context->thread_count = 1;
  if (avcodec_open2(context, nullptr, nullptr) != 0) return {};
  AVFrame* frame = av_frame_alloc();
  AVPacket* packet = av_packet_alloc();
  for (int number = 1; number <= kFrames + 1; ++number) {
    frame->width = frame->height = 48;
    frame->format = AV_PIX_FMT_YUV420P;
    av_frame_get_buffer(frame, 0);
    for (int plane = 0; plane < 3; ++plane)
      std::memset(frame->data[plane], plane == 0 ? 16 + LevelOf(number) * 219 / 255 : 128,
                  static_cast<std::size_t>(frame->linesize[plane] * (plane == 0 ? 48 : 24)));
    frame->pts = number;
    avcodec_send_frame(context, number > kFrames ? nullptr : frame);
    while (avcodec_receive_packet(context, packet) == 0)
      file.insert(file.end(), packet->data, packet->data + packet->size);
    av_frame_unref(frame);
  }
  av_packet_free(&packet);
  av_frame_free(&frame);
  avcodec_free_context(&context);
  return file;
}

struct StillCase {
  const char* name;
  Bytes file;
  int code;
  int bits;
  int dots;
  Color color;
};

TEST(Media, Pictures) {
  const std::vector<StillCase> cases = {
      {"Photoshop grey", MakePsd(1, 8, 1), 76, 8, 150, {50, 50, 50, 255}},
      {"Photoshop colour", MakePsd(3, 8, 3), 76, 24, 150, {50, 110, 170, 255}},
      {"Photoshop alpha", MakePsd(4, 8, 3), 76, 32, 150, {50, 110, 170, 230}},
      {"Photoshop bilevel", MakePsd(1, 1, 0), 76, 1, 150, {255, 255, 255, 255}},
      {"IFF of 3 planes", MakeIlbm(3, 0xff, true), 111, 3, 90, {220, 220, 220, 255}},
      {"IFF of 1 plane", MakeIlbm(1, 0xff), 111, 1, 0, {40, 40, 40, 255}},
  };
  for (const StillCase& form : cases) {
    SCOPED_TRACE(form.name);
    const Loaded page = LoadMemory(form.file);
    EXPECT_EQ(page.error, "");
    if (!page.error.empty()) continue;
    EXPECT_EQ(page.info.Format, form.code);
    EXPECT_EQ(page.info.BitsPerPixel, form.bits);
    EXPECT_EQ(page.info.XResolution, form.dots);
    EXPECT_STREQ(page.info.Compression, "None");
    const Color color = ColorAt(page, 0, 0);
    EXPECT_EQ(color.red, form.color.red);
    EXPECT_EQ(color.blue, form.color.blue);
    EXPECT_EQ(color.alpha, form.color.alpha);
  }
}

struct FilmCase {
  const char* name;
  Bytes file;
  int code;
  const char* compression;
};

std::vector<FilmCase> Films() {
  return {{"AVI", MakeAvi(Index::kTrue), 59, "JPEG"},
          {"AVI without an index", MakeAvi(Index::kNone), 59, "JPEG"},
          {"AVI with an index that lies", MakeAvi(Index::kFalse), 59, "JPEG"},
          {"MPEG-1", MakeMpeg(AV_CODEC_ID_MPEG1VIDEO), 243, "MPEG-1"},
          {"MPEG-2", MakeMpeg(AV_CODEC_ID_MPEG2VIDEO), 246, "MPEG-2"}};
}

// In any order, by counts that the file doesn't tell or tells wrongly.
TEST(Media, FramesArePages) {
  for (const FilmCase& film : Films()) {
    SCOPED_TRACE(film.name);
    EXPECT_EQ(InformMemory(film.file).record.TotalPages, kFrames);
    for (const int number : {5, 1, 2, 4, 3}) {
      const Loaded page = LoadMemory(film.file, number);
      EXPECT_EQ(page.error, "");
      if (!page.error.empty()) continue;
      EXPECT_EQ(page.info.Format, film.code);
      EXPECT_STREQ(page.info.Compression, film.compression);
      EXPECT_NEAR(ColorAt(page, 3, 3).red, LevelOf(number), 4);
    }
    EXPECT_NE(LoadMemory(film.file, kFrames + 1).error, "");
  }
}

TEST(Media, ListsAndSingleFrames) {
  const Bytes list = MakeIffList({MakeIlbm(3, 0), MakeIlbm(3, 0xff), MakeIlbm(1, 0)});
  EXPECT_EQ(InformMemory(list).record.TotalPages, 3);
  const Loaded page = LoadMemory(list, 2);
  EXPECT_EQ(page.error, "");
  EXPECT_EQ(page.info.Format, 112);
  EXPECT_EQ(ColorAt(page, 0, 0).red, 220);
}

TEST(Media, DamagedFiles) {
  for (const Bytes& still : {MakePsd(3, 8, 3), MakeIlbm(3, 0x55, true)})
    ExpectPageOrError(still, {43, 8, 1000, 67});
  for (const FilmCase& film : Films()) {
    SCOPED_TRACE(film.name);
    ExpectPageOrError(film.file, {film.file.size() / 6, 8, 80 * 8, 61});
  }
}

}  // namespace
}  // namespace codec_test
