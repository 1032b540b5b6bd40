// Files of Sun workstations and of the X window system.

#include <array>
#include <cstdio>

#include "tests/imaging/raster_picture.h"

namespace codec_test::raster {

void AddSun(std::vector<RasterFile>& files) {
  struct Form {
    int bits;
    int type;
    bool table;
  };
  for (const Form& form : {Form{1, 1, false},
                           {1, 2, true},
                           {8, 0, false},
                           {8, 2, true},
                           {24, 1, false},
                           {24, 3, false},
                           {24, 2, false},
                           {32, 1, false},
                           {32, 3, false}}) {
    const bool rgb = form.type == 3;
    const Bytes pixels = AllRows([&](int y) {
      if (form.bits <= 8) return IndexRow(y, form.bits, 2);
      Bytes row = ColorRow(y, !rgb, false, form.bits == 32);
      row.resize((row.size() + 1) / 2 * 2);
      return row;
    });
    const int colors = form.table ? 1 << form.bits : 0;
    Bytes file = {0x59, 0xa6, 0x6a, 0x95};
    for (const int field : {kWidth, kHeight, form.bits, static_cast<int>(pixels.size()), form.type,
                            form.table ? 1 : 0, colors * 3})
      Big(file, static_cast<std::uint32_t>(field), 4);
    for (const int channel : {0, 1, 2})
      for (int i = 0; i < colors; ++i) {
        const Color c = Entry(i);
        file.push_back(static_cast<std::uint8_t>(channel == 0 ? c.red : channel == 1 ? c.green : c.blue));
      }
    if (form.type == 2)
      Encode(
          file, pixels, 1, 200,
          [](Bytes& out, std::size_t count, const std::uint8_t* one) {
            Append(out, {0x80, static_cast<std::uint8_t>(count - 1), *one});
          },
          [](Bytes& out, std::size_t count, const std::uint8_t* all) {
            for (std::size_t i = 0; i < count; ++i) {
              out.push_back(all[i]);
              if (all[i] == 0x80) out.push_back(0);
            }
          });
    else
      Append(file, pixels);
    files.push_back({"sun of type " + std::to_string(form.type) + ", bits " + std::to_string(form.bits), file,
                     55, form.bits, form.type == 2 ? "RLE" : "None",
                     [=](int x, int y) {
                       if (form.bits > 8) return Direct(x, y);
                       if (form.table) return Entry(Index(x, y, form.bits));
                       return form.bits == 1 ? kOneIsBlack(x, y) : Gray(Index(x, y, 8));
                     },
                     form.bits == 32 ? 24 : form.bits});
  }
}

void AddXwd(std::vector<RasterFile>& files) {
  struct Form {
    const char* name;
    int format;  ///< 1 by plane, 2 by pixel
    int depth;
    int bits;
    bool big;        ///< bytes
    bool highFirst;  ///< bits
    int unit;
    bool bigHeader;
  };
  for (const Form& form : {Form{"bits in words", 2, 1, 1, true, false, 32, true},
                           {"bits in order", 0, 1, 1, true, true, 8, true},
                           {"planes", 1, 3, 3, false, false, 16, false},
                           {"table", 2, 8, 8, true, true, 32, true},
                           {"16 bits", 2, 16, 16, false, true, 32, true},
                           {"24 bits", 2, 24, 24, true, true, 32, false},
                           {"32 bits", 2, 24, 32, false, true, 32, true}}) {
    const bool direct = form.bits > 8;
    const int colors = direct ? 0 : 1 << form.depth;
    const std::size_t unit = static_cast<std::size_t>(form.unit) / 8;
    const auto ordered = [&](Bytes row) {
      if (form.big != form.highFirst)
        for (std::size_t at = 0; at < row.size(); at += unit)
          std::reverse(row.begin() + static_cast<std::ptrdiff_t>(at),
                       row.begin() + static_cast<std::ptrdiff_t>(at + unit));
      for (std::uint8_t& byte : row)
        for (int turned = form.highFirst ? byte : 0, bit = 0; bit < 8 && !form.highFirst; ++bit) {
          turned |= (byte >> bit & 1) << (7 - bit);
          if (bit == 7) byte = static_cast<std::uint8_t>(turned);
        }
      return row;
    };
    Bytes pixels;
    for (int plane = form.format == 2 ? 0 : form.depth - 1; plane >= 0; --plane)
      for (int y = 0; y < kHeight; ++y) {
        if (form.format < 2)
          Append(pixels, ordered(PlaneRow(y, form.depth, plane, unit)));
        else if (!direct)
          Append(pixels, form.bits == 1 ? ordered(IndexRow(y, 1, unit)) : IndexRow(y, 8, 4));
        for (int x = 0; direct && x < kWidth; ++x) {
          const Color c = Direct(x, y);
          const auto pixel =
              static_cast<std::uint32_t>(form.bits == 16 ? c.red >> 3 << 11 | c.green >> 2 << 5 | c.blue >> 3
                                                         : c.red << 16 | c.green << 8 | c.blue);
          (form.big ? Big : Little)(pixels, pixel, form.bits / 8);
        }
      }
    const auto stride = static_cast<int>(pixels.size()) / kHeight / (form.format == 2 ? 1 : form.depth);
    const bool narrow = form.bits == 16;
    Bytes file;
    for (const int field : {104,
                            7,
                            form.format,
                            form.depth,
                            kWidth,
                            kHeight,
                            0,
                            form.big ? 1 : 0,
                            form.unit,
                            form.highFirst ? 1 : 0,
                            32,
                            form.format == 2 ? form.bits : 1,
                            stride,
                            direct ? 4 : 3,
                            narrow ? 0xf800 : 0xff0000,
                            narrow ? 0x7e0 : 0xff00,
                            narrow ? 0x1f : 0xff,
                            8,
                            colors,
                            colors,
                            kWidth,
                            kHeight,
                            0,
                            0,
                            0})
      (form.bigHeader ? Big : Little)(file, static_cast<std::uint32_t>(field), 4);
    Append(file, Text("win"));
    file.push_back(0);
    for (int i = 0; i < colors; ++i) {
      (form.bigHeader ? Big : Little)(file, static_cast<std::uint32_t>(i), 4);
      const Color c = Entry(i);
      for (const int level : {c.red, c.green, c.blue})
        (form.bigHeader ? Big : Little)(file, static_cast<std::uint32_t>(level << 8), 2);
      Words(file, {7});
    }
    Append(file, pixels);
    files.push_back(
        {std::string("xwd 11, ") + form.name, file, 133, form.bits, "None",
         [=](int x, int y) {
           if (!direct) return Entry(Index(x, y, form.depth));
           const Color c = Direct(x, y);
           return narrow ? Color{Coarse(c, 5).red, Coarse(c, 6).green, Coarse(c, 5).blue, 255} : c;
         },
         direct           ? 24
         : form.bits == 3 ? 4
                          : form.bits});
  }
  for (const int bits : {1, 3, 8}) {
    const int colors = bits == 1 ? 0 : 1 << bits;
    Bytes file;
    for (const int field : {44, 6, 1, bits, bits == 8 ? 2 : 1, kWidth, kHeight})
      Big(file, static_cast<std::uint32_t>(field), 4);
    BigWords(file, {kWidth, kHeight, 0, 0, 0, colors});
    Append(file, Text("win"));
    file.push_back(0);
    for (int i = 0; i < colors; ++i) {
      const Color c = Entry(i);
      BigWords(file, {i, c.red << 8, c.green << 8, c.blue << 8});
    }
    for (int plane = bits == 8 ? 0 : bits - 1; plane >= 0; --plane)
      for (int y = 0; y < kHeight; ++y) {
        const Bytes row = bits == 8 ? IndexRow(y, 8, 2) : PlaneRow(y, bits, plane, 2);
        for (std::size_t at = 0; at < row.size() && bits < 8; at += 2) {  // words whose last bit is the first
          std::uint32_t word = 0;
          for (unsigned bit = 0; bit < 16; ++bit)
            word |= static_cast<std::uint32_t>(row[at + bit / 8] >> (7 - bit % 8) & 1) << bit;
          Big(file, word, 2);
        }
        if (bits == 8) Append(file, row);
      }
    files.push_back({"xwd 10 of " + std::to_string(bits), file, 132, bits, "None",
                     bits == 1 ? std::function<Color(int, int)>(kOneIsWhite) : kIndexed(bits),
                     bits == 3 ? 4 : bits});
  }
}

void AddX(std::vector<RasterFile>& files) {
  for (const bool words : {false, true}) {
    std::string text = "/* a picture */\n#define a_b_width " + std::to_string(kWidth) +
                       "\n#define a_b_height " + std::to_string(kHeight) + "\nstatic " +
                       (words ? "unsigned short" : "char") + " a_b_bits[] = {";
    for (int y = 0; y < kHeight; ++y)
      for (int part = 0; part < (words ? 1 : 2); ++part) {
        unsigned number = 0;
        for (int bit = 0; bit < (words ? 16 : 8); ++bit)
          if (const int x = part * 8 + bit; x < kWidth)
            number |= static_cast<unsigned>(Index(x, y, 1)) << bit;
        char hex[12];
        std::snprintf(hex, sizeof hex, y == 1 ? "%u /**/" : "0x%x", number);
        text += std::string(y + part == 0 ? "" : ", ") + hex;
      }
    files.push_back({words ? "xbm of X10" : "xbm", Text(text + "};"), 110, 1, "None", kOneIsBlack});
  }
  struct Form {
    int bits;  ///< of an index
    int letters;
    int fileBits;
    bool transparent;
  };
  for (const Form& form :
       {Form{1, 1, 1, false}, {4, 1, 4, false}, {6, 2, 8, false}, {9, 2, 24, false}, {4, 2, 4, true}}) {
    const auto key = [&](int i) {
      return (form.letters == 2 ? std::string(1, static_cast<char>('A' + i / 32)) : "") +
             static_cast<char>('a' + i % 32 % 26 + (i % 32 >= 26 ? '(' - 'a' - 26 : 0));
    };
    std::string text = "/* XPM */\nstatic char* a[] = {\n\"" + std::to_string(kWidth) + " " +
                       std::to_string(kHeight) + " " + std::to_string(1 << form.bits) + " " +
                       std::to_string(form.letters) + "\",\n/* colors */\n";
    for (int i = 0; i < 1 << form.bits; ++i) {
      const Color c = Entry(i);
      char hex[16];
      const int scale = i % 2 == 0 ? 1 : 257;  // one byte or two
      std::snprintf(hex, sizeof hex, i % 2 == 0 ? "#%02x%02x%02x" : "#%04x%04x%04x", c.red * scale,
                    c.green * scale, c.blue * scale);
      text += "\"" + key(i) + "\tm white c " + (form.transparent && i == 3 ? "None" : hex) + " s name\",\n";
    }
    for (int y = 0; y < kHeight; ++y) {
      text += "\"";
      for (int x = 0; x < kWidth; ++x) text += key(Index(x, y, form.bits));
      text += y + 1 < kHeight ? "\",\n" : "\"};\n";
    }
    files.push_back({"xpm of " + std::to_string(1 << form.bits) + " colours", Text(text), 109, form.fileBits,
                     "None",
                     [=](int x, int y) {
                       const int i = Index(x, y, form.bits);
                       return form.transparent && i == 3 ? Color{0, 0, 0, 0} : Entry(i);
                     },
                     form.transparent ? 32 : form.fileBits});
  }
}

}  // namespace codec_test::raster
