#include <array>
#include <optional>
#include <string_view>

#include "platform/resources/detail/picture.h"

platform::PicturePixels platform::ReadPicture(const Picture* picture) {
  if (picture == nullptr || picture->rows.empty()) return {};
  std::array<std::optional<std::uint32_t>, 256> colours;
  for (const PictureColour& colour : picture->colours)
    colours[static_cast<unsigned char>(colour.symbol)] =
        (colour.rgb & 0xffffff) | (colour.transparent ? 0 : 0xff000000);
  PicturePixels pixels;
  for (const std::string_view row : picture->rows) {
    const int width = static_cast<int>(row.size());
    if (pixels.height > 0 && width != pixels.width) return {};
    pixels.width = width;
    ++pixels.height;
    for (const char symbol : row) {
      const auto& colour = colours[static_cast<unsigned char>(symbol)];
      if (!colour) return {};
      pixels.argb.push_back(*colour);
    }
  }
  return pixels.width > 0 ? pixels : PicturePixels{};
}
