#include "helper/modules/jpeg2000_samples.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace helper {
namespace {

std::uint8_t Clamp(double level) {
  return static_cast<std::uint8_t>(std::lround(std::clamp(level, 0.0, 255.0)));
}

/// A component, read by places of the whole picture.
class Plane {
 public:
  Plane(const opj_image_t& image, int index) : m_image(image), m_component(image.comps[index]) {
    const std::int64_t most = (std::int64_t{1} << std::min<OPJ_UINT32>(m_component.prec, 31)) - 1;
    m_most = std::max<std::int64_t>(most, 1);
    m_offset = m_component.sgnd != 0 ? (m_most + 1) / 2 : 0;
  }
  bool Empty() const { return m_component.data == nullptr || m_component.w == 0 || m_component.h == 0; }

  /// 0 to 255. Coarser components repeat their samples.
  std::uint8_t LevelAt(int x, int y) const {
    const std::size_t column = Place(x, m_image.x0, m_component.dx, m_component.w);
    const std::size_t row = Place(y, m_image.y0, m_component.dy, m_component.h);
    const std::int64_t value =
        std::clamp<std::int64_t>(m_component.data[row * m_component.w + column] + m_offset, 0, m_most);
    return static_cast<std::uint8_t>((value * 255 + m_most / 2) / m_most);
  }

 private:
  static std::size_t Place(int at, OPJ_UINT32 origin, OPJ_UINT32 step, OPJ_UINT32 count) {
    const std::uint64_t place = static_cast<std::uint64_t>(at) + origin;
    const std::uint64_t first = (static_cast<std::uint64_t>(origin) + step - 1) / step;
    const std::uint64_t sample = place / step;
    return std::min<std::uint64_t>(sample < first ? 0 : sample - first, count - 1);
  }

  const opj_image_t& m_image;
  const opj_image_comp_t& m_component;
  std::int64_t m_most;
  std::int64_t m_offset;
};

using Levels = std::array<std::uint8_t, 4>;

Levels YccToRgb(const Levels& ycc) {
  const double luma = ycc[0];
  const double blue = ycc[1] - 128.0;
  const double red = ycc[2] - 128.0;
  return {Clamp(luma + 1.402 * red), Clamp(luma - 0.344136 * blue - 0.714136 * red),
          Clamp(luma + 1.772 * blue), 0};
}

Levels InkToRgb(const Levels& ink) {
  const auto light = [&](int color) {
    return static_cast<std::uint8_t>((255 - ink[static_cast<std::size_t>(color)]) * (255 - ink[3]) / 255);
  };
  return {light(0), light(1), light(2), 0};
}

bool IsSubsampled(const opj_image_t& image) {
  return image.comps[0].dx == 1 && (image.comps[1].dx > 1 || image.comps[1].dy > 1);
}

}  // namespace

Channels ChannelsOf(const opj_image_t& image) {
  const auto components = std::span(image.comps, image.numcomps);
  const auto alpha = std::find_if(components.begin(), components.end(),
                                  [](const auto& component) { return component.alpha != 0; });
  Channels channels = ChannelsOf(static_cast<int>(image.numcomps), alpha != components.end(), image);
  if (alpha != components.end()) channels.alpha = static_cast<int>(alpha - components.begin());
  channels.ycc = channels.colors == 3 && (image.color_space == OPJ_CLRSPC_SYCC ||
                                          image.color_space == OPJ_CLRSPC_EYCC || IsSubsampled(image));
  return channels;
}

Channels ChannelsOf(int components, bool alpha, const opj_image_t& image) {
  // Bare streams don't tell what is alpha: two and four components have one.
  const bool untold = image.color_space == OPJ_CLRSPC_UNSPECIFIED || image.color_space == OPJ_CLRSPC_UNKNOWN;
  if (untold && (components == 2 || components == 4)) alpha = true;
  Channels channels;
  const int others = components - (alpha ? 1 : 0);
  channels.alpha = alpha ? components - 1 : -1;
  channels.cmyk = image.color_space == OPJ_CLRSPC_CMYK && others >= 4;
  channels.colors = channels.cmyk ? 4 : others >= 3 && image.color_space != OPJ_CLRSPC_GRAY ? 3 : 1;
  return channels;
}

int MemoryBitsOf(const Channels& channels, const opj_image_t& image) {
  if (channels.alpha >= 0) return 32;
  if (channels.colors >= 3) return 24;
  return image.comps[0].prec == 1 ? 1 : 8;
}

void WriteRows(const opj_image_t& image, const Channels& channels, int memoryBits, const Canvas& canvas) {
  std::vector<Plane> planes;
  const int count = static_cast<int>(image.numcomps);
  for (int i = 0; i < count && static_cast<int>(planes.size()) < channels.colors; ++i)
    if (i != channels.alpha) planes.emplace_back(image, i);
  const bool alpha = channels.alpha >= 0 && channels.alpha < count;
  if (alpha) planes.emplace_back(image, channels.alpha);
  if (static_cast<int>(planes.size()) < channels.colors)
    throw Failure(Status::kCorrupt, "a component of the picture is missing");
  for (const Plane& plane : planes)
    if (plane.Empty()) throw Failure(Status::kCorrupt, "a component of the picture is missing");
  const auto colors = static_cast<std::size_t>(channels.colors);
  const auto width = static_cast<int>(image.x1 - image.x0);
  const auto height = static_cast<int>(image.y1 - image.y0);
  for (int y = 0; y < height; ++y) {
    std::uint8_t* row = canvas.Row(y);
    if (memoryBits == 1) std::fill_n(row, canvas.pitch, std::uint8_t{0});
    for (int x = 0; x < width; ++x) {
      Levels levels{};
      for (std::size_t i = 0; i < colors; ++i) levels[i] = planes[i].LevelAt(x, y);
      if (channels.cmyk) levels = InkToRgb(levels);
      if (channels.ycc) levels = YccToRgb(levels);
      if (memoryBits == 1) {
        if (levels[0] != 0) row[x / 8] |= static_cast<std::uint8_t>(0x80 >> x % 8);
      } else if (memoryBits == 8) {
        *row++ = levels[0];
      } else {
        for (std::size_t i = 0; i < 3; ++i) *row++ = levels[colors >= 3 ? i : 0];
        if (memoryBits == 32) *row++ = alpha ? planes.back().LevelAt(x, y) : 255;
      }
    }
  }
}

}  // namespace helper
