#include "platform/graphics/resource_bitmap.h"

#include <algorithm>
#include <span>
#include <vector>

#include "platform/graphics/detail/objects.h"
#include "platform/resources/detail/find.h"
#include "platform/resources/detail/picture.h"

namespace {

using platform::BitmapRecord;
using platform::PicturePixels;

std::vector<PicturePixels> ReadPictures(const platform::BitmapResource& resource) {
  std::vector<PicturePixels> pictures;
  for (const platform::Picture* picture : resource.pictures) {
    pictures.push_back(platform::ReadPicture(picture));
    const int height = pictures.back().height;
    if (height == 0 || height != pictures.front().height) return {};
  }
  return pictures;
}

std::uint32_t Mapped(std::uint32_t pixel, std::span<const COLORMAP> map) {
  for (const COLORMAP& entry : map)
    if (platform::PixelOf(entry.from) == pixel) return platform::PixelOf(entry.to);
  return pixel;
}

/// The colour's number in the table, which grows by it; none left: 256.
std::size_t NumberOf(std::uint32_t colour, std::vector<std::uint32_t>& table) {
  const auto found = std::find(table.begin(), table.end(), colour);
  const auto number = static_cast<std::size_t>(found - table.begin());
  if (found == table.end() && number < 256) table.push_back(colour);
  return number;
}

bool PlacePicture(BitmapRecord& bitmap, int left, const PicturePixels& picture) {
  for (int y = 0; y < picture.height; ++y)
    for (int x = 0; x < picture.width; ++x) {
      const auto at =
          static_cast<std::size_t>(y) * static_cast<std::size_t>(picture.width) + static_cast<std::size_t>(x);
      const std::size_t number = NumberOf(picture.argb[at] | platform::kOpaque, bitmap.colors);
      if (number > 255) return false;
      bitmap.raster.Row(y)[left + x] = static_cast<BYTE>(number);
    }
  return true;
}

HBITMAP Load(HINSTANCE module, LPCSTR name, std::span<const COLORMAP> map) {
  const platform::BitmapResource* resource = platform::FindBitmapResource(module, name);
  if (resource == nullptr) return nullptr;
  const std::vector<PicturePixels> pictures = ReadPictures(*resource);
  int width = 0;
  for (const PicturePixels& picture : pictures) width += picture.width;
  BitmapRecord bitmap;
  if (pictures.empty() || !platform::AllocateBitmap(bitmap, width, pictures.front().height, 8))
    return nullptr;
  int left = 0;
  for (const PicturePixels& picture : pictures) {
    if (!PlacePicture(bitmap, left, picture)) return nullptr;
    left += picture.width;
  }
  for (std::uint32_t& colour : bitmap.colors) colour = Mapped(colour, map);
  bitmap.raster.colors = bitmap.colors.data();
  bitmap.raster.colorCount = static_cast<int>(bitmap.colors.size());
  return platform::AddObject<HBITMAP>(std::move(bitmap));
}

}  // namespace

HBITMAP LoadBitmapA(HINSTANCE module, LPCSTR name) {
  return Load(module, name, {});
}

HBITMAP CreateMappedBitmap(HINSTANCE module, std::intptr_t id, UINT flags, const COLORMAP* map, int count) {
  if (flags != 0 || count < 0) return nullptr;
  const LPCSTR name = MAKEINTRESOURCE(static_cast<unsigned>(id));
  if (map != nullptr) return Load(module, name, {map, static_cast<std::size_t>(count)});
  const COLORMAP usual[] = {{RGB(0, 0, 0), GetSysColor(COLOR_BTNTEXT)},
                            {RGB(128, 128, 128), GetSysColor(COLOR_BTNSHADOW)},
                            {RGB(192, 192, 192), GetSysColor(COLOR_BTNFACE)},
                            {RGB(255, 255, 255), GetSysColor(COLOR_BTNHIGHLIGHT)}};
  return Load(module, name, usual);
}
