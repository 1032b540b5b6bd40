#include "tests/imaging/raster_files.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <set>
#include <tuple>

#include "tests/imaging/raster_picture.h"

namespace codec_test {

using namespace raster;

namespace {

void AddPcx(std::vector<RasterFile>& files) {
  for (const bool packed : {false, true}) {
    for (const auto& [bits, planes] :
         {std::pair(1, 1), {1, 2}, {1, 3}, {1, 4}, {2, 1}, {4, 1}, {8, 1}, {8, 3}, {24, 1}})
      files.push_back(MakePcx(bits, planes, packed));
  }
  RasterFile file = MakePcx(1, 4, true);  // the version that has no colours of its own
  file.name = "pcx of version 3";
  file.bytes[1] = 3;
  file.color = [](int x, int y) {
    const int i = Index(x, y, 4);
    const int low = i < 8 ? 0 : 85;
    const auto level = [&](int bit) { return low + ((i & bit) != 0 ? 170 : 0); };
    return i == 6 ? Color{170, 85, 0, 255} : Color{level(4), level(2), level(1), 255};
  };
  files.push_back(file);
}

void AddTarga(std::vector<RasterFile>& files) {
  struct Form {
    int type;
    int bits;
    int alphaBits;
    int tableBits;
  };
  for (const Form& form : {Form{1, 8, 0, 15},
                           {1, 8, 0, 16},
                           {1, 8, 0, 24},
                           {1, 8, 0, 32},
                           {2, 15, 0, 0},
                           {2, 16, 0, 0},
                           {2, 16, 1, 0},
                           {2, 24, 0, 0},
                           {2, 32, 0, 0},
                           {2, 32, 8, 0},
                           {3, 8, 0, 0},
                           {3, 16, 8, 0}})
    for (const int packed : {0, 8})
      for (const int corner : {0, 0x10, 0x20, 0x30}) {
        const int first = form.type == 1 ? 2 : 0;
        Bytes file = {3, static_cast<std::uint8_t>(form.type == 1),
                      static_cast<std::uint8_t>(form.type | packed)};
        Words(file, {first, form.type == 1 ? 16 : 0});
        file.push_back(static_cast<std::uint8_t>(form.tableBits));
        Words(file, {5, 6, kWidth, kHeight});
        file.push_back(static_cast<std::uint8_t>(form.bits));
        file.push_back(static_cast<std::uint8_t>(corner | form.alphaBits));
        Append(file, Text("abc"));
        const auto word = [](const Color& c, bool high) {
          return static_cast<std::uint32_t>((high ? 0x8000 : 0) | c.red >> 3 << 10 | c.green >> 3 << 5 |
                                            c.blue >> 3);
        };
        const auto store = [&](Bytes& target, const Color& c, int bits, int alpha) {
          if (bits <= 16) return Little(target, word(c, alpha >= 128), 2);
          for (const int level : {c.blue, c.green, c.red, alpha})
            target.push_back(static_cast<std::uint8_t>(level));
          if (bits == 24) target.pop_back();
        };
        for (int i = 0; form.type == 1 && i < 16; ++i) store(file, Entry(i), form.tableBits, 7);
        Bytes pixels;
        for (int line = 0; line < kHeight; ++line)
          for (int column = 0; column < kWidth; ++column) {
            const int x = (corner & 0x10) != 0 ? kWidth - 1 - column : column;
            const int y = (corner & 0x20) != 0 ? line : kHeight - 1 - line;
            if (form.type == 2) {
              store(pixels, Direct(x, y), form.bits, Alpha(x, y));
            } else {
              pixels.push_back(
                  static_cast<std::uint8_t>(form.type == 1 ? first + Index(x, y, 4) : Index(x, y, 8)));
              if (form.bits == 16) pixels.push_back(static_cast<std::uint8_t>(Alpha(x, y)));
            }
          }
        if (packed == 0)
          Append(file, pixels);
        else
          EncodeWithCounts(
              file, pixels, static_cast<std::size_t>(form.bits + 7) / 8, 128, [](int n) { return n + 127; },
              [](int n) { return n - 1; });
        files.push_back(
            {"targa of type " + std::to_string(form.type) + ", bits " + std::to_string(form.bits) + " and " +
                 std::to_string(form.tableBits) + ", corner " + std::to_string(corner),
             file, 4, form.bits, packed == 0 ? "None" : "RLE",
             [=](int x, int y) {
               if (form.type == 1)
                 return form.tableBits <= 16 ? Coarse(Entry(Index(x, y, 4)), 5) : Entry(Index(x, y, 4));
               Color color = form.type == 3    ? Gray(Index(x, y, 8))
                             : form.bits <= 16 ? Coarse(Direct(x, y), 5)
                                               : Direct(x, y);
               if (form.alphaBits == 8) color.alpha = Alpha(x, y);
               if (form.alphaBits == 1) color.alpha = Alpha(x, y) >= 128 ? 255 : 0;
               return color;
             },
             form.alphaBits > 0 ? 32
             : form.bits == 8   ? 8
                                : 24});
      }
}

void AddPnm(std::vector<RasterFile>& files) {
  const auto number = [](int value) { return std::to_string(value) + (value % 3 == 0 ? "\n" : " "); };
  for (int kind = 1; kind <= 6; ++kind)
    for (const int most : {1, 100, 255, 1000}) {
      const bool bitmap = kind == 1 || kind == 4;
      const bool color = kind == 3 || kind == 6;
      if (bitmap != (most == 1)) continue;
      const auto level = [=](int x, int y, int channel) {
        const Color c = Direct(x, y);
        const int value = !color ? Index(x, y, 8) : channel == 0 ? c.red : channel == 1 ? c.green : c.blue;
        return value * most / 255;
      };
      Bytes file = Text("P" + std::to_string(kind) + "\n# one\n" + std::to_string(kWidth) + " # two\n" +
                        std::to_string(kHeight));
      Append(file, Text(bitmap ? "\n" : "\n#\n" + std::to_string(most) + "\n"));
      for (int y = 0; y < kHeight; ++y) {
        if (kind == 4) Append(file, IndexRow(y, 1, 1));
        for (int x = 0; x < kWidth; ++x) {
          if (kind == 1) file.push_back(static_cast<std::uint8_t>('0' + Index(x, y, 1)));
          for (int channel = 0; !bitmap && channel < (color ? 3 : 1); ++channel) {
            if (kind <= 3)
              Append(file, Text(number(level(x, y, channel))));
            else
              Big(file, static_cast<std::uint32_t>(level(x, y, channel)), most > 255 ? 2 : 1);
          }
        }
        if (kind <= 3) Append(file, Text("# a comment\n"));
      }
      const auto scaled = [=](int x, int y, int channel) {
        return (level(x, y, channel) * 255 + most / 2) / most;
      };
      const std::array<int, 6> codes = {102, 104, 106, 103, 105, 107};
      files.push_back({"P" + std::to_string(kind) + " to " + std::to_string(most), file,
                       codes[static_cast<std::size_t>(kind) - 1],
                       bitmap ? 1 : (most > 255 ? 16 : 8) * (color ? 3 : 1), "None",
                       [=](int x, int y) {
                         return bitmap ? kOneIsBlack(x, y)
                                       : Color{scaled(x, y, 0), scaled(x, y, 1), scaled(x, y, 2), 255};
                       },
                       bitmap  ? 1
                       : color ? 24
                               : 8});
    }
}

void AddPaint(std::vector<RasterFile>& files) {
  for (const bool header : {false, true}) {
    Bytes file(header ? 128 : 0);
    if (header) std::copy_n("PNTG", 4, file.begin() + 65);
    Big(file, 2, 4);
    file.resize(file.size() + 304, 0x77);
    file.resize(header ? 640 : 512);
    for (int y = 0; y < 720; ++y) {
      EncodeWithCounts(
          file, Packed([&](int x) { return Index(x % 50, y, 1); }, 576, 1, 1), 1, 100,
          [](int n) { return 257 - n; }, [](int n) { return n - 1; });
      if (y % 50 == 0) file.push_back(0x80);  // means nothing
    }
    files.push_back({"macpaint", file, 51, 1, "RLE", [](int x, int y) { return kOneIsBlack(x % 50, y); }});
  }
  for (const bool packed : {false, true}) {
    Bytes file = Text(packed ? "LinS" : "DanM");
    Words(file, {kWidth, kHeight, 1, 1, 1, 1, kWidth, kHeight, 0, 0, 0, 0, 0, 0});
    Bytes lines;
    for (int y = 0; y < kHeight; ++y) {
      const std::size_t before = lines.size();
      if (packed && y != 3) Append(lines, {0, 1, IndexRow(y, 1, 1)[0], 1, IndexRow(y, 1, 1)[1]});
      if (packed) Words(file, {static_cast<int>(lines.size() - before)});
      if (!packed) Append(lines, IndexRow(y, 1, 1));
    }
    Append(file, lines);
    files.push_back({packed ? "ms paint 2" : "ms paint 1", file, 53, 1, packed ? "RLE" : "None",
                     [=](int x, int y) { return packed && y == 3 ? Gray(255) : kOneIsWhite(x, y); }});
  }
  for (const int planes : {1, 4}) {
    Bytes file;
    BigWords(file, {1, planes == 1 ? 8 : 11 + 16 * 3, planes, 2, 85, 169, kWidth, kHeight});
    if (planes > 1) {
      Append(file, Text("XIMG"));
      BigWords(file, {0});
      for (int i = 0; i < 16; ++i) BigWords(file, {i * 66, 1000 - i * 60, 500});
    }
    for (int y = 0; y < kHeight; y += 2) {  // each line is shown twice, the last one once
      Append(file, {0, 0, 0xff, static_cast<std::uint8_t>(y + 1 < kHeight ? 2 : 1)});
      for (int plane = 0; plane < planes; ++plane) {
        const Bytes row = PlaneRow(y, planes, plane, 1);
        if (y == 2)
          Append(file, {0, 1, row[0], row[1]});
        else if (row[0] == 0 || row[0] == 0xff)
          Append(file, {static_cast<std::uint8_t>((row[0] & 0x80) | 1), 0x80, 1, row[1]});
        else
          Append(file, {0x80, 2, row[0], row[1]});
      }
    }
    files.push_back({"gem of " + std::to_string(planes), file, 52, planes, "RLE",
                     [=](int x, int y) {
                       const int i = Index(x, y / 2 * 2, planes);
                       const auto level = [](int part) { return (part * 255 + 500) / 1000; };
                       return planes == 1 ? Gray(i == 1 ? 0 : 255)
                                          : Color{level(i * 66), level(1000 - i * 60), level(500), 255};
                     },
                     planes, 299, 150});
  }
  files.push_back(MakeDrHalo());
}

Bytes Dib(int width, int height, int bits, bool mask) {
  Bytes file = MakeBmp(width, height, bits, 0, bits <= 8 ? Table(1 << bits, 2, 1, 0, 1) : Bytes(), {});
  file.erase(file.begin(), file.begin() + 14);
  if (mask) file[8] = static_cast<std::uint8_t>(height * 2);
  for (int y = height - 1; y >= 0; --y) {
    Bytes row = Packed([&](int x) { return Index(x, y, bits); }, width, std::min(bits, 8), 4);
    if (bits > 8) {
      row.clear();
      for (int x = 0; x < width; ++x) {
        const Color c = Direct(x, y);
        for (const int level : {c.blue, c.green, c.red}) row.push_back(static_cast<std::uint8_t>(level));
        if (bits == 32) row.push_back(static_cast<std::uint8_t>(mask ? Alpha(x, y) : 0));
      }
      row.resize((row.size() + 3) / 4 * 4);
    }
    Append(file, row);
  }
  return file;
}

void AddBitmaps(std::vector<RasterFile>& files) {
  for (const int bits : {1, 4, 8, 24, 32}) {
    const Bytes dib = Dib(kWidth, kHeight, bits, false);
    const auto color = [=](int x, int y) { return bits > 8 ? Direct(x, y) : Entry(Index(x, y, bits)); };
    files.push_back({"bare bitmap", dib, 114, bits, "None", color, bits == 32 ? 24 : bits, 100, 200});
    for (const bool wide : {false, true}) {
      Bytes file = {static_cast<std::uint8_t>(wide ? 0x51 : 0x50), 0xc3};
      Words(file, {2});
      const std::size_t entry = wide ? 172 : 89;
      for (const int format : {1, 8}) {
        const std::size_t start = file.size();
        Little(file, static_cast<std::uint32_t>(format), wide ? 4 : 2);
        Little(file, static_cast<std::uint32_t>(format == 1 ? 5 : dib.size()), 4);
        Little(file, static_cast<std::uint32_t>(4 + 2 * entry + (format == 1 ? 0 : 5)), 4);
        file.resize(start + entry);
      }
      Append(file, Text("text\n"));
      Append(file, dib);
      files.push_back({"clipboard", file, 114, bits, "None", color, bits == 32 ? 24 : bits, 100, 200});
    }
  }
  for (const bool masked : {false, true})
    for (const int bits : {1, 4, 8, 24, 32}) {
      const Bytes file = MakeIcons({{7, bits, masked}}, masked);
      files.push_back({"icon", file, masked ? 92 : 91, bits, "None",
                       [=](int x, int y) {
                         Color c = bits > 8 ? Direct(x, y) : Entry(Index(x, y, bits));
                         c.alpha = bits == 32 ? Alpha(x, y) : masked && (x + y) % 3 == 0 ? 0 : 255;
                         return c;
                       },
                       masked ? 32 : bits});
    }
}

}  // namespace

RasterFile MakePcx(int bits, int planes, bool packed) {
  Bytes file = {10, 5, static_cast<std::uint8_t>(packed), static_cast<std::uint8_t>(bits)};
  Words(file, {2, 3, kWidth + 1, kHeight + 2, 300, 150});
  Append(file, Table(16, 0, 1, 2));
  file.push_back(0);
  file.push_back(static_cast<std::uint8_t>(planes));
  const std::size_t align = bits == 24 ? 1 : 2;
  Words(file, {bits == 24 ? kWidth * 3
                          : static_cast<int>(PlaneRow(0, 1, 0, 2).size()) * (bits == 1 ? 1 : 0) +
                                (bits == 1 ? 0 : static_cast<int>(IndexRow(0, bits, align).size()))});
  file.resize(128);
  Bytes pixels;
  for (int y = 0; y < kHeight; ++y) {
    if (bits == 24) Append(pixels, ColorRow(y, false));
    for (int plane = 0; bits == 1 && plane < planes; ++plane) Append(pixels, PlaneRow(y, planes, plane, 2));
    if (bits != 1 && planes == 1 && bits != 24) Append(pixels, IndexRow(y, bits, 2));
    for (int channel = 0; planes == 3 && bits == 8 && channel < 3; ++channel)
      Append(pixels, Packed(
                         [&](int x) {
                           const Color c = Direct(x, y);
                           return channel == 0 ? c.red : channel == 1 ? c.green : c.blue;
                         },
                         kWidth, 8, 2));
  }
  if (packed)
    Encode(
        file, pixels, 1, 63,
        [](Bytes& out, std::size_t count, const std::uint8_t* one) {
          Append(out, {static_cast<std::uint8_t>(0xc0 | count), *one});
        },
        [](Bytes& out, std::size_t count, const std::uint8_t* all) {
          for (std::size_t i = 0; i < count; ++i) {
            if (all[i] >= 0xc0) out.push_back(0xc1);
            out.push_back(all[i]);
          }
        });
  else
    Append(file, pixels);
  const int depth = bits * planes;
  if (depth == 8) {
    file.push_back(12);
    Append(file, Table(256, 0, 1, 2));
  }
  return {"pcx of " + std::to_string(planes) + " x " + std::to_string(bits),
          file,
          1,
          depth,
          packed ? "RLE" : "None",
          [=](int x, int y) {
            return depth == 1 ? kOneIsWhite(x, y) : depth == 24 ? Direct(x, y) : Entry(Index(x, y, depth));
          },
          depth == 2 || depth == 3 ? 4 : depth,
          300,
          150};
}

Bytes MakeDcx(const std::vector<Bytes>& pages) {
  Bytes file = {0xb1, 0x68, 0xde, 0x3a};
  std::size_t end = 4 + 4 * (pages.size() + 1);
  for (const Bytes& page : pages) end += page.size();
  Bytes pictures;
  for (const Bytes& page : pages) {
    end -= page.size();
    Little(file, static_cast<std::uint32_t>(end), 4);
    pictures.insert(pictures.begin(), page.begin(), page.end());
  }
  Little(file, 0, 4);
  Append(file, pictures);
  return file;
}

RasterFile MakeDrHalo() {
  Bytes file;
  Words(file, {kWidth, kHeight, 0});
  for (int y = 0; y < kHeight; ++y) {
    Bytes line;
    EncodeWithCounts(
        line, IndexRow(y, 8, 1), 1, 100, [](int n) { return n | 128; }, [](int n) { return n; });
    line.push_back(0);
    Words(file, {static_cast<int>(line.size())});
    Append(file, line);
  }
  return {"dr halo", file, 108, 8, "RLE", [](int x, int y) { return Gray(Index(x, y, 8)); }};
}

Bytes MakeDrHaloColors() {
  Bytes file = Text("AH");
  Words(file, {227, 0, 10, 0, 0, 255, 255, 255, 255});
  file.resize(40);
  for (int i = 0; i < 256; ++i) {
    if (file.size() % 512 > 506) file.resize((file.size() / 512 + 1) * 512);
    const Color c = Entry(i);
    Words(file, {c.red, c.green, c.blue});
  }
  return file;
}

Bytes MakeIcons(const std::vector<IconForm>& forms, bool cursors) {
  Bytes file;
  Words(file, {0, cursors ? 2 : 1, static_cast<int>(forms.size())});
  Bytes pictures;
  for (const IconForm& form : forms) {
    Bytes picture;
    if (form.png) {
      picture = MakePng(form.size, form.size, 8, 2, false,
                        [](int x, int y, int) { return static_cast<unsigned>(x + y); });
    } else {
      picture = Dib(form.size, form.size, form.bits, true);
      for (int y = form.size - 1; y >= 0; --y)
        Append(picture,
               Packed([&](int x) { return form.masked && (x + y) % 3 == 0 ? 1 : 0; }, form.size, 1, 4));
    }
    Append(file, {16, 16, 0, 0});  // sizes and depths that aren't true
    Words(file, {1, 8});
    Little(file, 1, 4);
    Little(file, static_cast<std::uint32_t>(6 + 16 * forms.size() + pictures.size()), 4);
    Append(pictures, picture);
  }
  Append(file, pictures);
  return file;
}

Bytes MakeAnimatedCursor(const std::vector<Bytes>& frames) {
  const auto chunk = [](const char* name, const Bytes& data) {
    Bytes bytes = Text(name);
    Little(bytes, static_cast<std::uint32_t>(data.size()), 4);
    Append(bytes, data);
    if (data.size() % 2 != 0) bytes.push_back(0);
    return bytes;
  };
  Bytes list = Text("fram");
  for (const Bytes& frame : frames) Append(list, chunk("icon", frame));
  Bytes body = Text("ACON");
  for (const Bytes& part :
       {chunk("LIST", chunk("INFO", Bytes(5, 'n'))), chunk("anih", Bytes(36)), chunk("LIST", list)})
    Append(body, part);
  return chunk("RIFF", body);
}

std::vector<RasterFile> MakeRasterFiles() {
  std::vector<RasterFile> files;
  for (const auto add : {AddPcx, AddTarga, AddPnm, AddSun, AddXwd, AddX, AddPaint, AddBitmaps}) add(files);
  return files;
}

namespace {

void AppendLittle(Bytes& bytes, unsigned value, int size) {
  for (int i = 0; i < size; ++i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

struct FlicChunk {
  unsigned type;
  Bytes data;
};

Bytes FlicFrame(const std::vector<FlicChunk>& chunks) {
  Bytes body;
  for (const FlicChunk& chunk : chunks) {
    AppendLittle(body, static_cast<unsigned>(chunk.data.size() + 6), 4);
    AppendLittle(body, chunk.type, 2);
    body.insert(body.end(), chunk.data.begin(), chunk.data.end());
  }
  Bytes frame;
  AppendLittle(frame, static_cast<unsigned>(body.size() + 16), 4);
  AppendLittle(frame, 0xf1fa, 2);
  AppendLittle(frame, static_cast<unsigned>(chunks.size()), 2);
  frame.resize(16);
  frame.insert(frame.end(), body.begin(), body.end());
  return frame;
}

}  // namespace

FlicFile MakeFlic(bool fli) {
  constexpr std::size_t kWidth = kFlicWidth;
  constexpr std::size_t kPixels = kWidth * kFlicHeight;
  FlicFile file;
  Bytes pixels(kPixels);
  std::vector<int> colors(256);
  Bytes body;
  const auto add = [&](const std::vector<FlicChunk>& chunks) {
    const Bytes frame = FlicFrame(chunks);
    body.insert(body.end(), frame.begin(), frame.end());
    std::vector<int> page;
    for (const std::uint8_t pixel : pixels) page.push_back(colors[pixel]);
    file.pages.push_back(page);
  };
  // The whole table, and later entries 2 and 5 of it.
  Bytes table = {1, 0, 0, 0};
  for (int i = 0; i < 256; ++i) {
    const int level = fli ? i % 64 : 255 - i;
    colors[static_cast<std::size_t>(i)] = fli ? level << 2 | level >> 4 : level;
    table.insert(table.end(), {static_cast<std::uint8_t>(level), 9, 17});
  }
  const unsigned colorChunk = fli ? 11 : 4;
  // Each row a run of 10 and 11 pixels as they are.
  Bytes runs;
  for (std::size_t y = 0; y < kFlicHeight; ++y) {
    runs.insert(runs.end(), {2, 10, static_cast<std::uint8_t>(y), 0xf5});
    for (std::size_t x = 0; x < kWidth; ++x) {
      pixels[y * kWidth + x] = static_cast<std::uint8_t>(x < 10 ? y : x * 3 + y);
      if (x >= 10) runs.push_back(pixels[y * kWidth + x]);
    }
  }
  add({{colorChunk, table}, {15, runs}});
  // From row 2 on: a row with a run and a copy, and one without change; in words also the odd pixel at the
  // end.
  const auto set = [&](std::size_t x, std::size_t y, std::uint8_t value) { pixels[y * kWidth + x] = value; };
  for (std::size_t x = 3; x < 9; ++x) set(x, 2, fli ? 50 : x % 2 != 0 ? 50 : 51);
  for (std::size_t x = 10; x < 14; ++x) set(x, 2, static_cast<std::uint8_t>(x));
  if (fli) {
    add({{12, {2, 0, 2, 0, 2, 3, 0xfa, 50, 1, 4, 10, 11, 12, 13, 0}}});
  } else {
    set(20, 2, 77);
    add({{7, {1, 0, 0xfe, 0xff, 77, 0x80, 2, 0, 3, 0xfd, 50, 51, 1, 2, 10, 11, 12, 13}}});
  }
  for (std::size_t i = 0; i < kPixels; ++i) pixels[i] = static_cast<std::uint8_t>(i);
  add({{18, {1, 2, 3}}, {16, pixels}});
  std::fill(pixels.begin(), pixels.end(), std::uint8_t{0});
  colors[0] = fli ? 40 << 2 | 40 >> 4 : 40;
  colors[5] = fli ? 41 << 2 | 41 >> 4 : 41;
  add({{13, {}}, {colorChunk, {2, 0, 0, 1, 40, 0, 0, 4, 1, 41, 0, 0}}});
  add({});
  const std::size_t told = file.pages.size();
  add({{16, Bytes(kPixels, 9)}});
  file.pages.pop_back();
  AppendLittle(file.bytes, static_cast<unsigned>(body.size() + 128), 4);
  for (const unsigned value : {fli ? 0xaf11U : 0xaf12U, static_cast<unsigned>(told), unsigned{kFlicWidth},
                               unsigned{kFlicHeight}, 8U, 3U, 5U})
    AppendLittle(file.bytes, value, 2);
  file.bytes.resize(128);
  file.bytes.insert(file.bytes.end(), body.begin(), body.end());
  return file;
}

std::vector<Bytes> MakeRasterSamples() {
  const Bytes fax = MakePcx(1, 1, true).bytes;
  const Bytes icons = MakeIcons({{5, 8}, {9, 32, true}, {8, 24, false, true}});
  std::vector<Bytes> samples = {MakeDcx({fax, fax}), icons, MakeAnimatedCursor({icons, icons}),
                                MakeFlic(true).bytes, MakeFlic(false).bytes};
  std::set<std::tuple<int, std::string, int, int>> seen;
  for (const RasterFile& file : MakeRasterFiles())
    if (seen.emplace(file.format, file.compression, file.bits, file.memoryBits).second)
      samples.push_back(file.bytes);
  return samples;
}

}  // namespace codec_test
