#include <algorithm>
#include <array>
#include <memory>
#include <optional>

#include "helper/modules/media_headers.h"
#include "helper/modules/media_picture.h"

// Films and pictures that FFmpeg reads: frames as pages. The module says which of its demuxers and decoders
// may see a file; protocols and threads are never used.
namespace helper {
namespace {

constexpr std::size_t kMostFrames = 100'000;

/// The frames of a file, one decoded at a time.
class Frames {
 public:
  virtual ~Frames() = default;
  virtual int Count() const = 0;
  /// Decodes frame n, from 1, and leaves it in the decoder. The one behind the latest costs no other.
  virtual const AVFrame& Decode(int number) = 0;
  /// Sets what the file says beside the samples of the latest frame.
  virtual void Describe(int number, PageRecord& page) const = 0;
};

std::vector<std::uint8_t> ReadRange(const Input& input, const Range& range) {
  constexpr std::int64_t kMostBytes = 256'000'000;
  if (range.size > kMostBytes) throw Failure(Status::kTooLarge, "a frame of the file is too large");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(range.size));
  bytes.resize(input.ReadAt(range.begin, bytes));
  return bytes;
}

std::vector<std::uint8_t> LoadAll(const Input& input) {
  return input.ReadAll();
}

[[noreturn]] void FailFrame() {
  throw Failure(Status::kCorrupt, "the picture is damaged or missing");
}

/// A file that is one picture, all of which the decoder takes at once.
class Still final : public Frames {
 public:
  using DescribePage = void (*)(const Input& input, PageRecord& page);
  using Load = std::vector<std::uint8_t> (*)(const Input& input);
  Still(const Input& input, AVCodecID codec, DescribePage describe, Load load = LoadAll)
      : m_input(input), m_decoder(codec, nullptr), m_describe(describe), m_load(load) {
    m_decoder.Start();
  }
  int Count() const override { return 1; }
  const AVFrame& Decode(int) override {
    if (!m_decoder.Send(m_load(m_input)) || !m_decoder.Receive()) FailFrame();
    return m_decoder.Frame();
  }
  void Describe(int, PageRecord& page) const override { m_describe(m_input, page); }

 private:
  const Input& m_input;
  Decoder m_decoder;
  DescribePage m_describe;
  Load m_load;
};

void DescribePhotoCd(const Input&, PageRecord& page) {
  page.format = 57;
  SetCompression(page, "PhotoCD");
}

void DescribePsd(const Input& input, PageRecord& page) {
  page.format = 76;
  ReadPsdHeader(input, page);
}

/// The host has read the header.
void DescribeJpeg(const Input&, PageRecord& page) {
  SetCompression(page, "JPEG extended");
}

/// Each form is a picture of its own.
class Iff final : public Frames {
 public:
  explicit Iff(const Input& input) : m_input(input), m_forms(ListIffForms(input)) {}
  int Count() const override { return static_cast<int>(m_forms.size()); }

  const AVFrame& Decode(int number) override {
    const Range& form = m_forms[static_cast<std::size_t>(number) - 1];
    Container container(m_input, "iff", form.begin, form.size);
    const AVStream* video = container.Video();
    const Owned<AVPacket> packet(av_packet_alloc());
    if (video == nullptr || packet == nullptr) FailFrame();
    m_decoder = std::make_unique<Decoder>(video->codecpar->codec_id, video->codecpar);
    m_decoder->Start();
    if (!container.Read(*packet) || !m_decoder->Send(packet.get()) || !m_decoder->Receive()) FailFrame();
    return m_decoder->Frame();
  }
  void Describe(int number, PageRecord& page) const override {
    ReadIffForm(m_input, m_forms[static_cast<std::size_t>(number) - 1], page);
    if (page.bits == 1 && page.memoryBits == 8 && page.colors != 0) {
      page.memoryBits = 1;
      page.colors = 2;
    }
  }

 private:
  const Input& m_input;
  std::vector<Range> m_forms;
  std::unique_ptr<Decoder> m_decoder;
};

/// Frames that lie in the file as packets.
class Packets : public Frames {
 public:
  int Count() const override { return static_cast<int>(m_frames.size()); }

  const AVFrame& Decode(int number) override {
    const int key = KeyBefore(number);
    if (number <= m_latest || key > m_latest + 1) {
      m_decoder->Forget();
      m_latest = m_sent = key - 1;
    }
    while (m_latest < number) Step();
    if (!m_sound) FailFrame();
    return m_decoder->Frame();
  }

 protected:
  struct Packet {
    Range range;
    bool key;
  };
  const Input* m_input = nullptr;
  std::vector<Packet> m_frames;
  std::unique_ptr<Decoder> m_decoder;

 private:
  /// The latest frame up to this one that needs none before it.
  int KeyBefore(int number) const {
    while (number > 1 && !m_frames[static_cast<std::size_t>(number) - 1].key) --number;
    return number;
  }

  /// A packet that can't be decoded counts as a frame, so that the others keep their numbers.
  void Step() {
    m_sound = false;
    while (!m_sound && m_sent < Count()) {
      const std::vector<std::uint8_t> bytes =
          ReadRange(*m_input, m_frames[static_cast<std::size_t>(m_sent++)].range);
      const bool taken = m_decoder->Send(bytes);
      m_sound = m_decoder->Receive();
      if (!taken && !m_sound) break;
    }
    if (!m_sound && m_sent >= Count()) {
      m_decoder->Send(nullptr);
      m_sound = m_decoder->Receive();
    }
    ++m_latest;
  }

  int m_latest = 0;
  int m_sent = 0;
  bool m_sound = false;
};

const char* NameOf(AVCodecID codec) {
  switch (codec) {
    case AV_CODEC_ID_MJPEG:
      return "JPEG";
    case AV_CODEC_ID_MPEG1VIDEO:
      return "MPEG-1";
    case AV_CODEC_ID_MPEG2VIDEO:
      return "MPEG-2";
    case AV_CODEC_ID_RAWVIDEO:
      return "None";
    default:
      return avcodec_get_name(codec);
  }
}

class Avi final : public Packets {
 public:
  explicit Avi(const Input& input) {
    m_input = &input;
    Container container(input, "avi", 0, input.Size());
    AVStream* video = container.Video();
    if (video == nullptr) throw Failure(Status::kCorrupt, "the film has no pictures");
    m_codec = video->codecpar->codec_id;
    m_decoder = std::make_unique<Decoder>(m_codec, video->codecpar);
    m_decoder->Start();
    const AVCodecDescriptor* coding = avcodec_descriptor_get(m_codec);
    m_everyFrameIsKey = coding != nullptr && (coding->props & AV_CODEC_PROP_INTRA_ONLY) != 0;
    if (!TakeIndex(*video)) Scan(container);
    if (m_frames.empty()) throw Failure(Status::kCorrupt, "the film has no pictures");
  }
  void Describe(int, PageRecord& page) const override {
    page.format = 59;
    SetCompression(page, NameOf(m_codec));
  }

 private:
  void Add(std::int64_t begin, int size, int key) {
    // Nothing stands for a frame that is shown longer.
    if (size > 0 && m_frames.size() < kMostFrames)
      m_frames.push_back({{begin, size}, m_everyFrameIsKey || key != 0});
  }

  /// An index tells places and sizes without the frames being read. It is believed if each chunk that it
  /// names has that size.
  bool TakeIndex(AVStream& video) {
    constexpr std::int64_t kChunkHead = 8;
    const int count = avformat_index_get_entries_count(&video);
    for (int i = 0; i < count; ++i) {
      const AVIndexEntry* entry = avformat_index_get_entry(&video, i);
      if (entry->size <= 0) continue;
      const bool sound = LittleAt(*m_input, entry->pos + 4, 4) == static_cast<std::uint32_t>(entry->size) &&
                         entry->pos + kChunkHead + entry->size <= m_input->Size();
      if (!sound) {
        m_frames.clear();
        return false;
      }
      Add(entry->pos + kChunkHead, entry->size, entry->flags & AVINDEX_KEYFRAME);
    }
    return !m_frames.empty();
  }

  void Scan(Container& container) {
    const Owned<AVPacket> packet(av_packet_alloc());
    while (packet != nullptr && m_frames.size() < kMostFrames && container.Read(*packet))
      if (packet->pos >= 0) Add(packet->pos + 8, packet->size, packet->flags & AV_PKT_FLAG_KEY);
  }

  AVCodecID m_codec = AV_CODEC_ID_NONE;
  bool m_everyFrameIsKey = false;
};

/// Pictures stand in the order in which they are decoded; where one begins only the parser knows. A page
/// before the latest is looked for from the start.
class Mpeg final : public Frames {
 public:
  explicit Mpeg(const Input& input) : m_input(input), m_packet(av_packet_alloc()) {
    Rewind();
    while (m_count < static_cast<int>(kMostFrames) && m_container->Read(*m_packet)) ++m_count;
    if (m_count == 0) throw Failure(Status::kCorrupt, "the film has no pictures");
    Rewind();
  }
  int Count() const override { return m_count; }

  const AVFrame& Decode(int number) override {
    if (number <= m_latest) Rewind();
    for (; m_latest < number; ++m_latest)
      if (!Step()) {
        m_latest = m_count;
        FailFrame();
      }
    return m_decoder->Frame();
  }
  void Describe(int, PageRecord& page) const override {
    const AVCodecID codec = m_decoder->Context().codec_id;
    page.format = codec == AV_CODEC_ID_MPEG1VIDEO ? 243 : 246;
    SetCompression(page, NameOf(codec));
  }

 private:
  void Rewind() {
    constexpr std::uint32_t kPack = 0x000001ba;
    m_container.emplace(m_input, BigAt(m_input, 0, 4) == kPack ? "mpeg" : "mpegvideo", 0, m_input.Size());
    m_container->Probe();
    const AVStream* video = m_container->Video();
    if (video == nullptr) throw Failure(Status::kCorrupt, "the film has no pictures");
    m_decoder.emplace(video->codecpar->codec_id, video->codecpar);
    m_decoder->Start();
    m_latest = 0;
    m_ended = false;
  }

  bool Step() {
    while (!m_decoder->Receive()) {
      if (m_ended) return false;
      m_ended = !m_container->Read(*m_packet);
      m_decoder->Send(m_ended ? nullptr : m_packet.get());
    }
    return true;
  }

  const Input& m_input;
  Owned<AVPacket> m_packet;
  std::optional<Container> m_container;
  std::optional<Decoder> m_decoder;
  int m_count = 0;
  int m_latest = 0;
  bool m_ended = false;
};

std::unique_ptr<Frames> OpenFrames(const Input& input) {
  std::array<char, 12> head{};
  input.ReadAt(0, {reinterpret_cast<std::uint8_t*>(head.data()), head.size()});
  const std::string_view text(head.data(), head.size());
  const auto starts = [&](std::string_view mark) { return text.starts_with(mark); };
  if (starts("8BPS")) return std::make_unique<Still>(input, AV_CODEC_ID_PSD, DescribePsd, LoadPsd);
  if (starts("\xff\xd8")) return std::make_unique<Still>(input, AV_CODEC_ID_MJPEG, DescribeJpeg);
  if (starts("RIFF")) return std::make_unique<Avi>(input);
  if (starts("FORM") || starts("LIST") || starts("CAT ")) return std::make_unique<Iff>(input);
  if (BigAt(input, 0, 3) == 1) return std::make_unique<Mpeg>(input);
  return std::make_unique<Still>(input, AV_CODEC_ID_PHOTOCD, DescribePhotoCd);
}

/// A page is described by its frame, so that is decoded once for both.
class Media final : public Document {
 public:
  explicit Media(const Input& input) : m_frames(OpenFrames(input)) {}
  int CountPages() override { return m_frames->Count(); }

  PageRecord Describe(int page, int) override {
    if (page == m_number) return m_page;
    m_number = 0;
    m_frame = &m_frames->Decode(page);
    m_page = DescribeFrame(*m_frame);
    m_frames->Describe(page, m_page);
    m_number = page;
    return m_page;
  }

  Decoded Decode(int page, int resolution, const Canvas& canvas) override {
    const PageRecord described = Describe(page, resolution);
    WriteFrame(*m_frame, described, canvas);
    return {described.height, 0};
  }

 private:
  std::unique_ptr<Frames> m_frames;
  const AVFrame* m_frame = nullptr;
  PageRecord m_page;
  int m_number = 0;
};

void Prepare() {
  av_log_set_level(AV_LOG_QUIET);
}

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Media>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, helper::Prepare, helper::Open)
