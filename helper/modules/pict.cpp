#include <algorithm>
#include <cmath>
#include <optional>
#include <string_view>

#include "helper/modules/pict_bitmap.h"
#include "helper/modules/pict_bytes.h"
#include "helper/modules/pict_drawing.h"
#include "helper/modules/pict_jpeg.h"

// Macintosh pictures (PICT), versions 1 and 2: opcodes that draw. A picture that is one bitmap keeps its
// depth, one that is a JPEG of QuickTime is delivered as such, and several bitmaps are put together in 24
// bits.
namespace helper {
namespace {

constexpr int kFormat = 56;
constexpr int kPoints = 72;
constexpr std::size_t kAppHeader = 512;
constexpr std::int64_t kMostPixels = 150'000'000;
constexpr std::uint8_t kWhite = 0xff;

/// How many bytes of operands an opcode has that nothing is drawn for.
class OperandSkipper {
 public:
  explicit OperandSkipper(PictBytes& bytes) : m_bytes(bytes) {}

  void Skip(int opcode) {
    if ((opcode >= 0x70 && opcode <= 0x77) || (opcode >= 0x80 && opcode <= 0x87)) {
      m_bytes.SkipRegion();
    } else if (opcode >= 0x28 && opcode <= 0x2b) {
      constexpr int kBefore[] = {4, 1, 1, 2};
      m_bytes.Skip(static_cast<std::size_t>(kBefore[opcode - 0x28]));
      m_bytes.Skip(m_bytes.Unsigned(1));
    } else if (opcode == 0xa1) {
      m_bytes.Skip(2);
      m_bytes.Skip(m_bytes.Unsigned(2));
    } else if (IsWordCounted(opcode)) {
      m_bytes.Skip(m_bytes.Unsigned(2));
    } else if ((opcode >= 0xd0 && opcode <= 0xfe) || opcode >= 0x8100) {
      m_bytes.Skip(m_bytes.Unsigned(4));
    } else {
      m_bytes.Skip(Fixed(opcode));
    }
  }

 private:
  static bool IsWordCounted(int opcode) {
    return (opcode >= 0x24 && opcode <= 0x27) || (opcode >= 0x2c && opcode <= 0x2f) ||
           (opcode >= 0x92 && opcode <= 0x9f) || (opcode >= 0xa2 && opcode <= 0xaf);
  }

  static std::size_t Fixed(int opcode) {
    constexpr std::uint8_t kFirst[] = {0, 0, 8, 2, 1, 2, 4, 4, 2, 8, 8, 4, 4, 2, 4, 4, 8, 1,
                                       0, 0, 0, 2, 2, 0, 0, 0, 6, 6, 0, 6, 0, 6, 8, 4, 6, 2};
    if (opcode < static_cast<int>(std::size(kFirst))) return kFirst[opcode];
    if (opcode >= 0x30 && opcode < 0x70) {  // shapes, and from 8 on the same one again
      const bool arc = opcode >= 0x60;
      const bool again = (opcode & 8) != 0;
      return again ? (arc ? 4 : 0) : (arc ? 12 : 8);
    }
    if (opcode == 0xa0) return 2;
    if (opcode >= 0x100 && opcode < 0x8000) return static_cast<std::size_t>(opcode >> 8) * 2;
    return 0;
  }

  PictBytes& m_bytes;
};

/// The JPEG file in the operands of CompressedQuickTime; none if it is anything else.
std::span<const std::uint8_t> FindJpeg(std::span<const std::uint8_t> operands) {
  constexpr std::size_t kSizes = 38;  // behind the version and the matrix: length of the matte
  constexpr std::size_t kMask = 64;   // and length of the mask
  constexpr std::size_t kFixed = 68;
  constexpr std::size_t kDataSize = 44;  // in the description of the picture
  constexpr std::string_view kCodec = "jpeg";
  try {
    PictBytes sizes(operands);
    sizes.Skip(kSizes);
    if (sizes.Unsigned(4) != 0) return {};
    sizes.Skip(kMask - kSizes - 4);
    const std::uint32_t mask = sizes.Unsigned(4);
    PictBytes bytes(operands);
    bytes.Skip(kFixed);
    bytes.Skip(mask);
    const std::uint32_t description = bytes.Unsigned(4);
    const auto codec = bytes.Take(kCodec.size());
    if (!std::equal(codec.begin(), codec.end(), kCodec.begin())) return {};
    bytes.Skip(kDataSize - 8);
    const std::uint32_t size = bytes.Unsigned(4);
    if (description < kDataSize + 4) return {};
    bytes.Skip(description - kDataSize - 4);
    const std::size_t left = operands.size() - bytes.Place();
    return bytes.Take(std::min<std::size_t>(size, left));
  } catch (const EndOfPict&) {
    return {};
  }
}

struct JpegFrame {
  int width = 0;
  int height = 0;
  int components = 0;
};

/// What the first start of a frame says.
JpegFrame FrameOf(std::span<const std::uint8_t> jpeg) {
  JpegFrame frame;
  try {
    PictBytes bytes(jpeg);
    bytes.Skip(2);
    for (;;) {
      const int marker = bytes.Word();
      const int length = bytes.Word();
      if ((marker >> 8) != 0xff || length < 2) return {};
      if (marker >= 0xffc0 && marker <= 0xffc2) {
        bytes.Skip(1);
        frame.height = bytes.Word();
        frame.width = bytes.Word();
        frame.components = bytes.Byte();
        return frame;
      }
      bytes.Skip(static_cast<std::size_t>(length) - 2);
    }
  } catch (const EndOfPict&) {
    return {};
  }
}

/// Where the matrix in the operands of CompressedQuickTime puts a picture. One that turns it leaves it as it
/// is.
PictRect PlacedBy(std::span<const std::uint8_t> operands, const PictRect& bounds) {
  PictBytes matrix(operands.subspan(2));
  std::array<double, 9> values;  // by rows; the last one moves
  for (double& value : values) value = static_cast<std::int32_t>(matrix.Unsigned(4)) / 65536.0;
  const auto scaled = [](double scale, int side) {
    constexpr double kMost = 32767;
    return scale > 0 && scale * side <= kMost ? static_cast<int>(std::lround(scale * side)) : side;
  };
  const int left = static_cast<int>(values[6]);
  const int top = static_cast<int>(values[7]);
  return {top, left, top + scaled(values[4], bounds.Height()), left + scaled(values[0], bounds.Width())};
}

class Pict final : public Document {
 public:
  explicit Pict(const Input& input) : m_file(input.ReadAll()) {
    const std::span<const std::uint8_t> file = m_file;
    std::size_t start = 0;
    if (!HasVersion(file)) start = kAppHeader;
    if (file.size() <= start || !HasVersion(file.subspan(start)))
      throw Failure(Status::kCorrupt, "the header is cut off");
    m_bytes = PictBytes(file.subspan(start));
    m_bytes.Skip(2);
    m_frame = m_bytes.Rect();
    m_second = m_bytes.Byte() == 0;
    m_bytes.Skip(m_second ? 3 : 1);
    if (m_frame.IsEmpty()) throw Failure(Status::kCorrupt, "the picture has no size");
    Run();
    Describe();
  }

  int CountPages() override { return 1; }
  PageRecord Describe(int, int) override { return m_page; }

  Decoded Decode(int, int, const Canvas& canvas) override {
    if (!m_jpeg.empty()) {
      std::copy_n(m_jpeg.begin(), std::min(m_jpeg.size(), canvas.size), canvas.bytes);
      return {m_page.height, 0};
    }
    if (IsOneBitmap()) return DecodeBitmap(m_bitmaps[0], canvas);
    for (int y = 0; y < m_page.height; ++y)
      std::fill_n(canvas.Row(y), static_cast<std::size_t>(m_page.width) * 3, kWhite);
    PictPainter painter(canvas, m_frame);
    auto shape = m_drawing.Shapes().begin();
    for (std::size_t i = 0; i <= m_bitmaps.size(); ++i) {
      for (; shape != m_drawing.Shapes().end() && shape->bitmapsBefore == i; ++shape) painter.Draw(*shape);
      if (i < m_bitmaps.size()) Put(m_bitmaps[i], canvas);
    }
    return {m_page.height, 0};
  }

 private:
  static bool HasVersion(std::span<const std::uint8_t> head) {
    constexpr std::size_t kVersion = 10;
    if (head.size() < kVersion + 4) return false;
    const auto* at = &head[kVersion];
    return (at[0] == 0x11 && at[1] == 1) || (at[0] == 0 && at[1] == 0x11 && at[2] == 2 && at[3] == 0xff);
  }

  void Run() {
    try {
      while (Step()) {
      }
    } catch (const EndOfPict&) {
      m_cut = true;
    } catch (const Failure& failure) {  // what stands before is shown
      if (m_bitmaps.empty() && m_drawing.Shapes().empty()) throw;
    }
    if (m_bitmaps.empty() && m_jpeg.empty() && m_drawing.Shapes().empty())
      throw Failure(m_cut ? Status::kCorrupt : Status::kUnsupported,
                    m_cut ? "it ends before anything is drawn" : "pictures of texts alone can't be shown");
  }

  bool Step() {
    constexpr int kEnd = 0xff;
    constexpr int kHeader = 0xc00;
    constexpr int kQuickTime = 0x8200;
    if (m_second && m_bytes.Place() % 2 != 0) m_bytes.Skip(1);
    const int opcode = m_second ? m_bytes.Word() : m_bytes.Byte();
    if (opcode == kEnd) return false;
    if (opcode == 0x90 || opcode == 0x91 || (opcode >= 0x98 && opcode <= 0x9b)) {
      Add(ReadPictBitmap(m_bytes, opcode));
    } else if (opcode == kHeader) {
      ReadHeader();
    } else if (opcode == kQuickTime) {
      return FollowQuickTime(m_bytes.Take(m_bytes.Unsigned(4)));
    } else if (!m_drawing.Follow(opcode, m_bitmaps.size())) {
      OperandSkipper(m_bytes).Skip(opcode);
    }
    return true;
  }

  void Add(PictBitmap bitmap) {
    m_pixels += static_cast<std::int64_t>(bitmap.pixels.size());
    const PictPoint origin = m_drawing.Origin();
    bitmap.target.left -= origin.x;
    bitmap.target.right -= origin.x;
    bitmap.target.top -= origin.y;
    bitmap.target.bottom -= origin.y;
    if (m_pixels > kMostPixels * 3) throw Failure(Status::kTooLarge, "the picture's bitmaps are too large");
    m_bitmaps.push_back(std::move(bitmap));
  }

  /// The extended header has a resolution, and the frame in its pixels.
  void ReadHeader() {
    constexpr int kExtended = -2;
    PictBytes header(m_bytes.Take(24));
    if (header.Short() != kExtended) return;
    header.Skip(2);
    const int x = static_cast<int>(header.Unsigned(4) >> 16);
    const int y = static_cast<int>(header.Unsigned(4) >> 16);
    const PictRect frame = header.Rect();
    if (x == 0 || y == 0 || frame.IsEmpty()) return;
    m_xResolution = x;
    m_yResolution = y;
    m_frame = frame;
  }

  /// False behind a picture that is all; what follows is for those who can't read it. Other codings aren't
  /// read.
  bool FollowQuickTime(std::span<const std::uint8_t> operands) {
    if (IsJpeg(operands)) return false;
    const auto jpeg = FindJpeg(operands);
    if (jpeg.empty()) return true;
    PictBitmap bitmap = DecodePictJpeg(jpeg);
    bitmap.target = PlacedBy(operands, bitmap.bounds);
    Add(std::move(bitmap));
    return true;
  }

  /// A JPEG that fills the frame is the picture.
  bool IsJpeg(std::span<const std::uint8_t> operands) {
    const auto jpeg = FindJpeg(operands);
    const JpegFrame frame = FrameOf(jpeg);
    if (frame.width != m_frame.Width() || frame.height != m_frame.Height()) return false;
    if ((frame.components != 1 && frame.components != 3) || !m_bitmaps.empty()) return false;
    m_jpeg = jpeg;
    m_page.bits = m_page.memoryBits = frame.components * 8;
    return true;
  }

  bool IsOneBitmap() const {
    constexpr int kCopy = 0;
    constexpr int kDitheredCopy = 64;
    if (m_bitmaps.size() != 1) return false;
    const auto& shapes = m_drawing.Shapes();  // what stands before it is hidden by it
    if (!shapes.empty() && shapes.back().bitmapsBefore != 0) return false;
    const PictBitmap& bitmap = m_bitmaps[0];
    const PictRect& source = bitmap.source;
    const PictRect& bounds = bitmap.bounds;
    return (bitmap.transferMode == kCopy || bitmap.transferMode == kDitheredCopy) &&
           bitmap.target == m_frame && source.Width() == m_frame.Width() &&
           source.Height() == m_frame.Height() && source.left >= bounds.left && source.top >= bounds.top &&
           source.right <= bounds.right && source.bottom <= bounds.bottom &&
           source.top - bounds.top < bitmap.rows;
  }

  void Describe() {
    m_page.format = kFormat;
    m_page.width = m_frame.Width();
    m_page.height = m_frame.Height();
    m_page.xResolution = m_xResolution;
    m_page.yResolution = m_yResolution;
    if (!m_jpeg.empty()) {
      m_page.delivery = Delivery::kJpeg;
      m_page.deliveredBytes = static_cast<std::int64_t>(m_jpeg.size());
      SetCompression(m_page, "JPEG");
      return;
    }
    SetCompression(m_page, m_bitmaps.empty() ? "PICT" : m_bitmaps[0].packed ? "PackBits" : "None");
    m_page.bits = m_page.memoryBits = 24;
    if (!IsOneBitmap()) {
      if (static_cast<std::int64_t>(m_page.width) * m_page.height > kMostPixels)
        throw Failure(Status::kTooLarge, "the picture is too large");
      return;
    }
    const PictBitmap& first = m_bitmaps[0];
    m_page.bits = first.bits;
    if (first.bits > 8) return;
    m_page.memoryBits = first.bits == 2 ? 4 : first.bits;
    m_page.colors = 1U << first.bits;
    std::copy_n(first.colors.begin(), m_page.colors, m_page.palette.begin());
  }

  Decoded DecodeBitmap(const PictBitmap& bitmap, const Canvas& canvas) const {
    const int dx = bitmap.source.left - bitmap.bounds.left;
    const int dy = bitmap.source.top - bitmap.bounds.top;
    const int rows = std::min(m_page.height, bitmap.rows - dy);
    for (int y = 0; y < rows; ++y) {
      const std::uint8_t* from = bitmap.At(dx, y + dy);
      if (m_page.memoryBits >= 8)
        std::copy_n(from, static_cast<std::size_t>(m_page.width) * bitmap.PixelBytes(), canvas.Row(y));
      else
        PackRow(from, canvas.Row(y));
    }
    return {rows, 0};
  }

  void PackRow(const std::uint8_t* from, std::uint8_t* to) const {
    const int depth = m_page.memoryBits;
    const int perByte = 8 / depth;
    for (int x = 0; x < m_page.width; ++x) {
      std::uint8_t& byte = to[x / perByte];
      if (x % perByte == 0) byte = 0;
      byte = static_cast<std::uint8_t>(byte | from[x] << (8 - depth * (x % perByte + 1)));
    }
  }

  /// Scaled to its rectangle, which may reach over the frame.
  void Put(const PictBitmap& bitmap, const Canvas& canvas) const {
    const PictRect& target = bitmap.target;
    const PictRect& source = bitmap.source;
    if (target.IsEmpty() || source.IsEmpty()) return;
    for (int y = std::max(target.top, m_frame.top); y < std::min(target.bottom, m_frame.bottom); ++y) {
      const int fromY =
          Scaled(y - target.top, target.Height(), source.Height()) + source.top - bitmap.bounds.top;
      if (fromY < 0 || fromY >= bitmap.rows) continue;
      for (int x = std::max(target.left, m_frame.left); x < std::min(target.right, m_frame.right); ++x) {
        const int fromX =
            Scaled(x - target.left, target.Width(), source.Width()) + source.left - bitmap.bounds.left;
        if (fromX < 0 || fromX >= bitmap.bounds.Width()) continue;
        PutPixel(bitmap, bitmap.At(fromX, fromY),
                 canvas.Row(y - m_frame.top) + static_cast<std::ptrdiff_t>(x - m_frame.left) * 3);
      }
    }
  }

  static int Scaled(int place, int from, int to) {
    return static_cast<int>(static_cast<std::int64_t>(place) * to / from);
  }

  /// Of the transfer modes the one that leaves white out matters; all others copy.
  static void PutPixel(const PictBitmap& bitmap, const std::uint8_t* from, std::uint8_t* to) {
    constexpr int kOr = 1;
    constexpr int kTransparent = 36;
    const std::uint32_t color = bitmap.ColorOf(from);
    const bool leavesWhite = bitmap.transferMode == kOr || bitmap.transferMode == kTransparent;
    if (leavesWhite && color == 0xffffff) return;
    for (int i = 0; i < 3; ++i) to[i] = static_cast<std::uint8_t>(color >> (16 - 8 * i));
  }

  std::vector<std::uint8_t> m_file;
  PictBytes m_bytes{{}};
  PictDrawing m_drawing{m_bytes};
  PictRect m_frame;
  bool m_second = false;
  bool m_cut = false;
  int m_xResolution = kPoints;
  int m_yResolution = kPoints;
  std::int64_t m_pixels = 0;
  std::vector<PictBitmap> m_bitmaps;
  std::span<const std::uint8_t> m_jpeg;
  PageRecord m_page;
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Pict>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
