extern "C" {
#include <jbig.h>
}

#include <algorithm>
#include <array>

#include "helper/module.h"

// JBIG (T.82): bilevel pictures, and grey ones as planes in Gray code.
namespace helper {
namespace {

constexpr int kFormat = 115;
constexpr std::size_t kHeaderBytes = 20;

class JbigDecoder {
 public:
  JbigDecoder() { jbg_dec_init(&m_state); }
  ~JbigDecoder() { jbg_dec_free(&m_state); }
  JbigDecoder(const JbigDecoder&) = delete;
  JbigDecoder& operator=(const JbigDecoder&) = delete;
  jbg_dec_state& State() { return m_state; }

 private:
  jbg_dec_state m_state{};
};

class Jbig final : public Document {
 public:
  explicit Jbig(const Input& input) : m_bytes(input.ReadAll()) {
    if (m_bytes.size() <= kHeaderBytes) throw Failure(Status::kCorrupt, "the header is cut off");
    // The height may stand at the end only.
    jbg_newlen(m_bytes.data(), m_bytes.size());
    m_planes = m_bytes[2];
    if (m_planes < 1 || m_planes > kMostPlanes)
      throw Failure(Status::kUnsupported,
                    "pictures of " + std::to_string(m_planes) + " planes can't be shown");
  }

  int CountPages() override { return 1; }

  PageRecord Describe(int, int) override {
    const std::uint32_t width = BigU32(4);
    const std::uint32_t height = BigU32(8);
    if (width > INT32_MAX || height > INT32_MAX) throw Failure(Status::kTooLarge, "the picture is too large");
    m_page.format = kFormat;
    m_page.width = static_cast<int>(width);
    m_page.height = static_cast<int>(height);
    m_page.bits = m_planes;
    m_page.memoryBits = m_planes == 1 ? 1 : 8;
    if (m_planes == 1) {  // ones are ink
      m_page.colors = 2;
      m_page.palette[0] = 0xffffff;
    }
    SetCompression(m_page, "JBIG");
    return m_page;
  }

  Decoded Decode(int, int, const Canvas& canvas) override {
    JbigDecoder decoder;
    jbg_dec_state& state = decoder.State();
    std::size_t used = 0;
    int result = JBG_EAGAIN;
    while (used < m_bytes.size() && (result == JBG_EAGAIN || result == JBG_EOK_INTR)) {
      std::size_t count = 0;
      result = jbg_dec_in(&state, m_bytes.data() + used, m_bytes.size() - used, &count);
      if (count == 0) break;
      used += count;
    }
    const bool whole = result == JBG_EOK;
    const int rows = whole ? m_page.height : RowsOf(state);
    if (rows < 1) throw Failure(Status::kCorrupt, std::string(jbg_strerror(result)));
    if (m_planes == 1)
      CopyBits(whole ? jbg_dec_getimage(&state, 0) : state.lhp[0][0], rows, canvas);
    else
      MergePlanes(state, canvas);
    return {rows, 0};
  }

 private:
  static constexpr int kMostPlanes = 8;

  std::uint32_t BigU32(std::size_t at) const {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) value = value << 8 | m_bytes[at + i];
    return value;
  }

  /// How many rows of a picture that ends early are there. Only one with neither layers nor planes grows row
  /// by row; then one of the three loop counters counts the stripes and the others stay 0.
  int RowsOf(const jbg_dec_state& state) const {
    if (state.d != 0 || state.planes != 1 || state.lhp[0] == nullptr) return 0;
    const unsigned long stripes = state.ii[0] + state.ii[1] + state.ii[2];
    return static_cast<int>(
        std::min<unsigned long>(stripes * state.l0 + state.i, static_cast<unsigned long>(m_page.height)));
  }

  void CopyBits(const std::uint8_t* packed, int rows, const Canvas& canvas) const {
    const auto bytes = (static_cast<std::size_t>(m_page.width) + 7) / 8;
    for (int y = 0; y < rows; ++y)
      std::copy_n(packed + static_cast<std::size_t>(y) * bytes, bytes, canvas.Row(y));
  }

  /// Pixels of a byte each, as many as the library gives at a time.
  struct Target {
    const Canvas& canvas;
    std::size_t width;
    int most;
    std::size_t place = 0;
  };
  void MergePlanes(const jbg_dec_state& state, const Canvas& canvas) const {
    constexpr int kGrayCode = 1;
    Target target = {canvas, static_cast<std::size_t>(m_page.width), (1 << m_planes) - 1};
    jbg_dec_merge_planes(
        &state, kGrayCode,
        [](unsigned char* pixels, std::size_t count, void* user) {
          auto& goal = *static_cast<Target*>(user);
          for (std::size_t i = 0; i < count; ++i, ++goal.place)
            goal.canvas.Row(static_cast<int>(goal.place / goal.width))[goal.place % goal.width] =
                static_cast<std::uint8_t>((pixels[i] * 255 + goal.most / 2) / goal.most);
        },
        &target);
  }

  std::vector<std::uint8_t> m_bytes;
  int m_planes = 0;
  PageRecord m_page;
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Jbig>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
