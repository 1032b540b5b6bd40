#include "helper/modules/fax_tiff.h"

#include <array>

namespace helper {
namespace {

struct Tag {
  std::uint16_t number;
  std::uint32_t value;
};

void Append(std::vector<std::uint8_t>& file, std::uint32_t value, int bytes) {
  for (int i = 0; i < bytes; ++i) file.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

std::uint32_t CompressionOf(const FaxForm& form) {
  return form.coding < 0 ? 4 : form.aligned ? 2 : 3;
}

}  // namespace

std::vector<std::uint8_t> WrapFax(const FaxForm& form, std::span<const std::uint8_t> coded) {
  constexpr std::uint32_t kHeaderBytes = 8;
  constexpr std::uint32_t kTags = 10;
  constexpr std::uint32_t kDataAt = kHeaderBytes + 2 + kTags * 12 + 4;
  const auto height = static_cast<std::uint32_t>(form.height);
  const std::array<Tag, kTags> tags = {{{256, static_cast<std::uint32_t>(form.width)},
                                        {257, height},
                                        {258, 1},
                                        {259, CompressionOf(form)},
                                        {262, form.blackIsWhite ? 1U : 0U},
                                        {273, kDataAt},
                                        {277, 1},
                                        {278, height},
                                        {279, static_cast<std::uint32_t>(coded.size())},
                                        {292, form.coding > 0 ? 1U : 0U}}};
  std::vector<std::uint8_t> file = {'I', 'I', 42, 0};
  Append(file, kHeaderBytes, 4);
  Append(file, kTags, 2);
  for (const Tag& tag : tags) {
    constexpr std::uint32_t kLong = 4;
    Append(file, tag.number, 2);
    Append(file, kLong, 2);
    Append(file, 1, 4);
    Append(file, tag.value, 4);
  }
  Append(file, 0, 4);
  file.insert(file.end(), coded.begin(), coded.end());
  return file;
}

}  // namespace helper
