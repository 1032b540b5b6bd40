#include <gtest/gtest.h>

#include <array>

#include "tests/helper/damage.h"
#include "tests/helper/jpeg2000_files.h"
#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

constexpr const char* kExplicit = "1.2.840.10008.1.2.1";
constexpr const char* kBig = "1.2.840.10008.1.2.2";
constexpr const char* kRle = "1.2.840.10008.1.2.5";
constexpr const char* kJpeg = "1.2.840.10008.1.2.4.50";
constexpr const char* kJpeg2000 = "1.2.840.10008.1.2.4.90";

/// Writes data elements with their value types.
class DicomWriter {
 public:
  explicit DicomWriter(bool big = false) : m_big(big) {}
  void U16(unsigned value) {
    const auto high = static_cast<std::uint8_t>(value >> 8);
    const auto low = static_cast<std::uint8_t>(value);
    bytes.insert(bytes.end(), {m_big ? high : low, m_big ? low : high});
  }
  void U32(unsigned value) {
    U16(m_big ? value >> 16 : value & 0xffff);
    U16(m_big ? value & 0xffff : value >> 16);
  }
  void Text(unsigned group, unsigned element, const char* type, std::string text) {
    if (text.size() % 2 != 0) text += type == std::string("UI") ? '\0' : ' ';
    Head(group, element, type);
    U16(static_cast<unsigned>(text.size()));
    bytes.insert(bytes.end(), text.begin(), text.end());
  }
  void Short(unsigned element, unsigned value) {
    Head(0x28, element, "US");
    U16(2);
    U16(value);
  }
  /// Pixels as they are: words or bytes.
  void Pixels(const Bytes& pixels, const char* type) {
    Head(0x7fe0, 0x10, type);
    U16(0);
    U32(static_cast<unsigned>(pixels.size()));
    Append(pixels);
  }
  /// Coded frames, an item each behind an empty table; or in halves, behind a table that says where they
  /// begin.
  void Frames(const std::vector<Bytes>& frames, bool halves) {
    Head(0x7fe0, 0x10, "OB");
    U16(0);
    U32(0xffffffff);
    DicomWriter table;
    DicomWriter items;
    for (Bytes frame : frames) {
      table.U32(static_cast<unsigned>(items.bytes.size()));
      while (frame.size() % 4 != 0) frame.push_back(0);
      const auto middle = frame.begin() + (halves ? std::ssize(frame) / 2 : 0);
      if (halves) items.Item(0xe000, {frame.begin(), middle});
      items.Item(0xe000, {middle, frame.end()});
    }
    Item(0xe000, halves ? table.bytes : Bytes());
    Append(items.bytes);
    Item(0xe0dd, {});
  }
  void Append(const Bytes& more) { bytes.insert(bytes.end(), more.begin(), more.end()); }

  Bytes bytes;

 private:
  void Head(unsigned group, unsigned element, const char* type) {
    U16(group);
    U16(element);
    bytes.insert(bytes.end(), {static_cast<std::uint8_t>(type[0]), static_cast<std::uint8_t>(type[1])});
  }
  void Item(unsigned element, const Bytes& contents) {
    U16(0xfffe);
    U16(element);
    U32(static_cast<unsigned>(contents.size()));
    Append(contents);
  }
  bool m_big;
};

struct Picture {
  const char* syntax = kExplicit;
  int width = 5;
  int height = 3;
  int bits = 8;
  int samples = 1;
  int frames = 1;
  const char* colors = "MONOCHROME2";
  const char* center = "";
  const char* windowWidth = "";
  Bytes pixels = {};
  std::vector<Bytes> coded = {};
  bool halves = false;
  bool isSigned = false;
};

Bytes MakeDicom(const Picture& picture) {
  DicomWriter meta;
  meta.Text(2, 2, "UI", "1.2.840.10008.5.1.4.1.1.7");
  meta.Text(2, 3, "UI", "1.2.3");
  meta.Text(2, 0x10, "UI", picture.syntax);
  DicomWriter file;
  file.bytes.assign(128, 0);
  file.Append({'D', 'I', 'C', 'M', 2, 0, 0, 0, 'U', 'L', 4, 0});
  file.U32(static_cast<unsigned>(meta.bytes.size()));
  file.Append(meta.bytes);
  DicomWriter data(picture.syntax == std::string(kBig));
  data.Short(2, static_cast<unsigned>(picture.samples));
  data.Text(0x28, 4, "CS", picture.colors);
  if (picture.samples > 1) data.Short(6, 0);
  if (picture.frames > 1) data.Text(0x28, 8, "IS", std::to_string(picture.frames));
  data.Short(0x10, static_cast<unsigned>(picture.height));
  data.Short(0x11, static_cast<unsigned>(picture.width));
  data.Short(0x100, static_cast<unsigned>(picture.bits));
  data.Short(0x101, static_cast<unsigned>(picture.bits));
  data.Short(0x102, static_cast<unsigned>(picture.bits - 1));
  data.Short(0x103, picture.isSigned ? 1 : 0);
  if (*picture.center != '\0') {
    data.Text(0x28, 0x1050, "DS", picture.center);
    data.Text(0x28, 0x1051, "DS", picture.windowWidth);
  }
  if (picture.coded.empty())
    data.Pixels(picture.pixels, picture.bits > 8 ? "OW" : "OB");
  else
    data.Frames(picture.coded, picture.halves);
  file.Append(data.bytes);
  return file.bytes;
}

/// Segments of runs: a plane of bytes each, here only literal ones.
Bytes PackRle(const std::vector<Bytes>& planes) {
  DicomWriter header;
  header.U32(static_cast<unsigned>(planes.size()));
  Bytes data;
  std::size_t entries = 0;
  for (const Bytes& plane : planes) {
    header.U32(static_cast<unsigned>(64 + data.size()));
    ++entries;
    data.push_back(static_cast<std::uint8_t>(plane.size() - 1));
    data.insert(data.end(), plane.begin(), plane.end());
    if (data.size() % 2 != 0) data.push_back(0x80);
  }
  for (; entries < 15; ++entries) header.U32(0);
  header.Append(data);
  return header.bytes;
}

Bytes Ramp(int first, int count, int step) {
  Bytes bytes;
  for (int i = 0; i < count; ++i) bytes.push_back(static_cast<std::uint8_t>(first + i * step));
  return bytes;
}
Bytes Words(const std::vector<int>& values, bool big = false) {
  Bytes bytes;
  for (const int value : values)
    for (const int shift : {big ? 8 : 0, big ? 0 : 8})
      bytes.push_back(static_cast<std::uint8_t>(value >> shift));
  return bytes;
}

/// A codestream of 5 by 3 pixels, its samples row by row.
Bytes PackJpeg2000(const std::vector<int>& values, int bits, bool isSigned = false, bool transform = false) {
  constexpr std::size_t kPixels = 15;
  opj_image_cmptparm_t component{};
  component.dx = component.dy = 1;
  component.w = 5;
  component.h = 3;
  component.prec = static_cast<OPJ_UINT32>(bits);
  component.sgnd = isSigned ? 1 : 0;
  std::vector<opj_image_cmptparm_t> components(values.size() / kPixels, component);
  const bool gray = components.size() == 1;
  opj_image_t* image = opj_image_create(static_cast<OPJ_UINT32>(components.size()), components.data(),
                                        gray ? OPJ_CLRSPC_GRAY : OPJ_CLRSPC_SRGB);
  image->x1 = component.w;
  image->y1 = component.h;
  for (std::size_t i = 0; i < values.size(); ++i)
    image->comps[i % components.size()].data[i / components.size()] = values[i];
  return EncodeJpeg2000(image, false, transform);
}

struct Case {
  const char* name;
  Picture picture;
  int code;
  const char* compression;
  Color first;
  Color last;
};

TEST(Dicom, CodingsDepthsAndWindows) {
  const std::vector<int> values = {1000, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2000};
  const std::vector<int> wide = {-1000, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2000};
  std::vector<int> colors(45);
  for (std::size_t i = 0; i < colors.size(); ++i) colors[i] = static_cast<int>(i) * 5;
  const std::vector<Case> cases = {
      {"smallest to largest", {.pixels = Ramp(10, 15, 5)}, 89, "None", {0, 0, 0, 255}, {255, 255, 255, 255}},
      {"the file's window",
       {.center = "128", .windowWidth = "256", .pixels = Ramp(16, 15, 8)},
       89,
       "None",
       {16, 16, 16, 255},
       {128, 128, 128, 255}},
      {"white is 0",
       {.colors = "MONOCHROME1", .pixels = Ramp(10, 15, 5)},
       89,
       "None",
       {255, 255, 255, 255},
       {0, 0, 0, 255}},
      {"16 bits",
       {.bits = 16, .pixels = Words(values)},
       89,
       "None",
       {128, 128, 128, 255},
       {255, 255, 255, 255}},
      {"big endian",
       {.syntax = kBig, .bits = 16, .pixels = Words(values, true)},
       89,
       "None",
       {128, 128, 128, 255},
       {255, 255, 255, 255}},
      {"colour",
       {.samples = 3, .colors = "RGB", .pixels = Ramp(0, 45, 5)},
       90,
       "None",
       {0, 5, 10, 255},
       {210, 215, 220, 255}},
      {"runs",
       {.syntax = kRle, .coded = {PackRle({Ramp(10, 15, 5)})}},
       125,
       "RLE",
       {0, 0, 0, 255},
       {255, 255, 255, 255}},
      {"runs of colour",
       {.syntax = kRle,
        .samples = 3,
        .colors = "RGB",
        .coded = {PackRle({Ramp(1, 15, 1), Ramp(31, 15, 1), Ramp(61, 15, 1)})}},
       126,
       "RLE",
       {1, 31, 61, 255},
       {15, 45, 75, 255}},
      {"wavelets, below 0",
       {.syntax = kJpeg2000, .bits = 16, .coded = {PackJpeg2000(wide, 16, true)}, .isSigned = true},
       127,
       "JPEG 2000",
       {0, 0, 0, 255},
       {255, 255, 255, 255}},
      {"wavelets, colours as one, in halves",
       {.syntax = kJpeg2000,
        .samples = 3,
        .colors = "YBR_RCT",
        .coded = {PackJpeg2000(colors, 8, false, true)},
        .halves = true},
       128,
       "JPEG 2000",
       {0, 5, 10, 255},
       {210, 215, 220, 255}},
  };
  for (const Case& form : cases) {
    SCOPED_TRACE(form.name);
    const Loaded page = LoadMemory(MakeDicom(form.picture));
    EXPECT_EQ(page.error, "");
    if (!page.error.empty()) continue;
    EXPECT_EQ(page.info.Format, form.code);
    EXPECT_STREQ(page.info.Compression, form.compression);
    EXPECT_EQ(page.info.BitsPerPixel, form.picture.bits * form.picture.samples);
    EXPECT_EQ(page.info.XResolution, 0);
    EXPECT_NEAR(ColorAt(page, 0, 0).red, form.first.red, 1);
    EXPECT_NEAR(ColorAt(page, 0, 0).blue, form.first.blue, 1);
    EXPECT_NEAR(ColorAt(page, 4, 2).red, form.last.red, 1);
    EXPECT_NEAR(ColorAt(page, 4, 2).green, form.last.green, 1);
  }
}

TEST(Dicom, FramesArePages) {
  std::vector<Bytes> frames;
  for (const int level : {40, 90, 200})
    frames.push_back(
        MakeJpeg(16, 16, 3, false, [&](int, int, int) { return static_cast<std::uint8_t>(level); }));
  const Bytes file = MakeDicom({.syntax = kJpeg,
                                .width = 16,
                                .height = 16,
                                .samples = 3,
                                .frames = 3,
                                .colors = "YBR_FULL_422",
                                .coded = frames});
  EXPECT_EQ(InformMemory(file).record.TotalPages, 3);
  constexpr std::array kLevels = {40, 90, 200};
  for (const int page : {3, 1, 2}) {
    const Loaded loaded = LoadMemory(file, page);
    ASSERT_EQ(loaded.error, "");
    EXPECT_EQ(loaded.info.Format, 128);
    EXPECT_NEAR(ColorAt(loaded, 8, 8).red, kLevels[static_cast<std::size_t>(page) - 1], 3);
  }
  EXPECT_NE(LoadMemory(file, 4).error, "");
}

// Where a frame takes several items, the table says which is the first.
TEST(Dicom, FramesInSeveralItems) {
  for (const bool halves : {false, true}) {
    std::vector<Bytes> frames;
    for (const int level : {40, 90, 200}) frames.push_back(PackJpeg2000(std::vector<int>(45, level), 8));
    const Bytes file = MakeDicom(
        {.syntax = kJpeg2000, .samples = 3, .frames = 3, .colors = "RGB", .coded = frames, .halves = halves});
    constexpr std::array kLevels = {40, 90, 200};
    for (const int page : {3, 1, 2}) {
      const Loaded loaded = LoadMemory(file, page);
      ASSERT_EQ(loaded.error, "");
      EXPECT_EQ(ColorAt(loaded, 2, 1).green, kLevels[static_cast<std::size_t>(page) - 1]);
    }
  }
}

TEST(Dicom, FramesOfAnotherSize) {
  const Bytes small = PackJpeg2000(std::vector<int>(15, 7), 8);
  EXPECT_NE(LoadMemory(MakeDicom({.syntax = kJpeg2000, .width = 6, .coded = {small}})).error, "");
  EXPECT_NE(
      LoadMemory(MakeDicom({.syntax = kJpeg2000, .samples = 3, .colors = "RGB", .coded = {small}})).error,
      "");
}

TEST(Dicom, DamagedFiles) {
  const std::vector<int> level(15, 7);
  const Bytes waves = MakeDicom({.syntax = kJpeg2000, .coded = {PackJpeg2000(level, 8)}});
  ExpectPageOrError(waves, {29, 128 * 8, waves.size() * 8, 29});
  const Bytes whole = MakeDicom({.pixels = Ramp(10, 15, 5)});
  ExpectPageOrError(whole, {7, 128 * 8, whole.size() * 8, 53});
}

}  // namespace
}  // namespace codec_test
