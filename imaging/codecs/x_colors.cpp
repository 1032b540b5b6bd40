#include "imaging/codecs/x_colors.h"

#include <charconv>
#include <string>

#include "imaging/codecs/rows.h"

namespace imaging {
namespace {

/// Names and colours of X, one after another. Greys are written with an a here.
constexpr std::string_view kNames =
    " aliceblue f0f8ff antiquewhite faebd7 aquamarine 7fffd4 azure f0ffff beige f5f5dc bisque ffe4c4 "
    "black 000000 blanchedalmond ffebcd blue 0000ff blueviolet 8a2be2 brown a52a2a burlywood deb887 "
    "cadetblue 5f9ea0 chartreuse 7fff00 chocolate d2691e coral ff7f50 cornflowerblue 6495ed "
    "cornsilk fff8dc cyan 00ffff darkblue 00008b darkcyan 008b8b darkgoldenrod b8860b darkgray a9a9a9 "
    "darkgreen 006400 darkkhaki bdb76b darkmagenta 8b008b darkolivegreen 556b2f darkorange ff8c00 "
    "darkorchid 9932cc darkred 8b0000 darksalmon e9967a darkseagreen 8fbc8f darkslateblue 483d8b "
    "darkslategray 2f4f4f darkturquoise 00ced1 darkviolet 9400d3 deeppink ff1493 deepskyblue 00bfff "
    "dimgray 696969 dodgerblue 1e90ff firebrick b22222 floralwhite fffaf0 forestgreen 228b22 "
    "gainsboro dcdcdc ghostwhite f8f8ff gold ffd700 goldenrod daa520 gray bebebe green 00ff00 "
    "greenyellow adff2f honeydew f0fff0 hotpink ff69b4 indianred cd5c5c ivory fffff0 khaki f0e68c "
    "lavender e6e6fa lavenderblush fff0f5 lawngreen 7cfc00 lemonchiffon fffacd lightblue add8e6 "
    "lightcoral f08080 lightcyan e0ffff lightgoldenrod eedd82 lightgoldenrodyellow fafad2 "
    "lightgray d3d3d3 lightgreen 90ee90 lightpink ffb6c1 lightsalmon ffa07a lightseagreen 20b2aa "
    "lightskyblue 87cefa lightslateblue 8470ff lightslategray 778899 lightsteelblue b0c4de "
    "lightyellow ffffe0 limegreen 32cd32 linen faf0e6 magenta ff00ff maroon b03060 "
    "mediumaquamarine 66cdaa mediumblue 0000cd mediumorchid ba55d3 mediumpurple 9370db "
    "mediumseagreen 3cb371 mediumslateblue 7b68ee mediumspringgreen 00fa9a mediumturquoise 48d1cc "
    "mediumvioletred c71585 midnightblue 191970 mintcream f5fffa mistyrose ffe4e1 moccasin ffe4b5 "
    "navajowhite ffdead navy 000080 navyblue 000080 oldlace fdf5e6 olivedrab 6b8e23 orange ffa500 "
    "orangered ff4500 orchid da70d6 palegoldenrod eee8aa palegreen 98fb98 paleturquoise afeeee "
    "palevioletred db7093 papayawhip ffefd5 peachpuff ffdab9 peru cd853f pink ffc0cb plum dda0dd "
    "powderblue b0e0e6 purple a020f0 red ff0000 rosybrown bc8f8f royalblue 4169e1 saddlebrown 8b4513 "
    "salmon fa8072 sandybrown f4a460 seagreen 2e8b57 seashell fff5ee sienna a0522d skyblue 87ceeb "
    "slateblue 6a5acd slategray 708090 snow fffafa springgreen 00ff7f steelblue 4682b4 tan d2b48c "
    "thistle d8bfd8 tomato ff6347 turquoise 40e0d0 violet ee82ee violetred d02090 wheat f5deb3 "
    "white ffffff whitesmoke f5f5f5 yellow ffff00 yellowgreen 9acd32 ";

std::optional<unsigned> Number(std::string_view digits, int base) {
  unsigned number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
  return error == std::errc() && end == digits.data() + digits.size() ? std::optional(number) : std::nullopt;
}

std::optional<std::uint32_t> FromDigits(std::string_view digits) {
  const std::size_t each = digits.size() / 3;
  if (digits.size() % 3 != 0 || each < 1 || each > 4) return std::nullopt;
  std::uint32_t color = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    const auto level = Number(digits.substr(i * each, each), 16);
    if (!level) return std::nullopt;
    color = color << 8 | ScaleLevel(*level, (1U << 4 * each) - 1);
  }
  return color;
}

/// Greys from gray0 to gray100, in hundredths of white.
std::optional<std::uint32_t> Gray(std::string_view name) {
  const auto part = Number(name.substr(4), 10);
  return part && *part <= 100 ? std::optional(0x010101U * ScaleLevel(*part, 100)) : std::nullopt;
}

}  // namespace

std::optional<std::uint32_t> XColor(std::string_view text) {
  if (text.starts_with('#')) return FromDigits(text.substr(1));
  std::string name(text);
  for (char& letter : name)
    if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
  if (const std::size_t grey = name.find("grey"); grey != std::string::npos) name[grey + 2] = 'a';
  if (name.starts_with("gray") && name.size() > 4) return Gray(name);
  const std::size_t found = kNames.find(" " + name + " ");
  if (name.empty() || found == std::string_view::npos) return std::nullopt;
  return Number(kNames.substr(found + name.size() + 2, 6), 16);
}

}  // namespace imaging
