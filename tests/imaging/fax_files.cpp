#include "tests/imaging/fax_files.h"

#include <algorithm>

#include "tests/imaging/lossless_files.h"

namespace codec_test {
namespace {

void Append(Bytes& bytes, const Bytes& more) {
  for (const std::uint8_t byte : more) bytes.push_back(byte);
}
void AppendBig(Bytes& bytes, unsigned value, int size) {
  for (int i = size - 1; i >= 0; --i) bytes.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}
void SetLittle(Bytes& bytes, std::size_t at, unsigned value, int size) {
  for (int i = 0; i < size; ++i)
    bytes[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(value >> 8 * i);
}

}  // namespace

void ToggleFaxPixels(Bytes& row, int from, int to) {
  for (int x = from; x < to; ++x)
    row[static_cast<std::size_t>(x / 8)] ^= static_cast<std::uint8_t>(0x80U >> x % 8);
}

std::vector<Bytes> RandomFaxRows(int width, int count, unsigned seed) {
  const auto next = [&seed](int limit) {
    seed = seed * 1664525U + 1013904223U;
    return static_cast<int>((seed >> 8) % static_cast<unsigned>(limit));
  };
  std::vector<int> edges;
  std::vector<Bytes> rows;
  for (int y = 0; y < count; ++y) {
    if (y % 16 == 0) {
      edges.clear();
      const int longest = 1 + next(y % 32 == 0 ? 3000 : 40);
      for (int x = next(longest); x < width; x += 1 + next(longest)) edges.push_back(x);
    }
    std::vector<int> moved;
    for (const int edge : edges)
      if (next(20) != 0) moved.push_back(std::clamp(edge + (y % 3 == 0 ? 0 : next(9) - 4), 0, width));
    std::sort(moved.begin(), moved.end());
    Bytes row(static_cast<std::size_t>(width + 7) / 8);
    for (std::size_t i = 0; i < moved.size(); i += 2)
      ToggleFaxPixels(row, moved[i], i + 1 < moved.size() ? moved[i + 1] : width);
    rows.push_back(row);
  }
  return rows;
}

Bytes EncodeFax(const std::vector<Bytes>& rows, int width, int compression, int g3Options) {
  const TempFolder folder;
  const std::string path = folder.Path("fax.tif");
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<int>(rows.size()));
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, static_cast<int>(rows.size()));
  if (g3Options != 0) TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, g3Options);
  for (std::size_t y = 0; y < rows.size(); ++y) {
    Bytes row = rows[y];
    TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0);
  }
  TIFFClose(tiff);
  tiff = TIFFOpen(path.c_str(), "r");
  Bytes coded(static_cast<std::size_t>(TIFFRawStripSize64(tiff, 0)));
  TIFFReadRawStrip(tiff, 0, coded.data(), static_cast<tmsize_t>(coded.size()));
  TIFFClose(tiff);
  return coded;
}

std::vector<Bytes> EncodeFaxRows(const std::vector<Bytes>& rows, int width) {
  std::vector<Bytes> coded;
  for (const Bytes& row : rows) coded.push_back(EncodeFax({row}, width, COMPRESSION_CCITTFAX3));
  return coded;
}

Bytes ReturnToControl(bool twoDimensional) {
  Bytes bytes(10);
  const int length = twoDimensional ? 13 : 12;
  for (int code = 0; code < 6; ++code) {
    ToggleFaxPixels(bytes, code * length + 11, code * length + 12);
    if (twoDimensional) ToggleFaxPixels(bytes, code * length + 12, code * length + 13);
  }
  bytes.resize(static_cast<std::size_t>(6 * length + 7) / 8);
  return bytes;
}

void ReverseFaxBits(Bytes& bytes) {
  TIFFReverseBits(bytes.data(), static_cast<tmsize_t>(bytes.size()));
}

std::string FaxDifference(const Loaded& page, const std::vector<Bytes>& rows) {
  if (page.pixels == nullptr) return page.error;
  if (page.record.Height != static_cast<int>(rows.size()))
    return std::to_string(page.record.Height) + " rows for " + std::to_string(rows.size());
  for (int y = 0; y < page.record.Height; ++y)
    for (int x = 0; x < page.record.Width; ++x) {
      const bool black =
          (rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x / 8)] >> (7 - x % 8) & 1) != 0;
      if ((ColorAt(page, x, y).red == 0) != black) return std::to_string(x) + "," + std::to_string(y);
    }
  return "";
}

Bytes MakeCals(const std::string& fields, const Bytes& coded) {
  constexpr std::size_t kRecord = 128;
  std::string header;
  const auto add = [&header](const std::string& record) {
    header += record;
    header.resize((header.size() + kRecord - 1) / kRecord * kRecord, ' ');
  };
  add("srcdocid: NONE");
  for (std::size_t at = 0; at < fields.size(); at = fields.find('\n', at) + 1)
    add(fields.substr(at, fields.find('\n', at) - at));
  header.resize(2048, ' ');
  Bytes file(header.begin(), header.end());
  Append(file, coded);
  return file;
}

Bytes MakeTiledCals(const std::vector<Bytes>& rows, int width, const CalsTileForm& form) {
  const auto element = [&form](std::uint8_t tag, const Bytes& contents) {
    Bytes bytes = {tag};
    const bool endless = form.endless && (tag & 0x20) != 0;
    if (endless) {
      bytes.push_back(0x80);
    } else {
      bytes.push_back(0x83);
      AppendBig(bytes, static_cast<unsigned>(contents.size()), 3);
    }
    Append(bytes, contents);
    if (endless) Append(bytes, {0, 0});
    return bytes;
  };
  Bytes attributes;
  const auto number = [&](int tag, int value) {
    Bytes contents;
    AppendBig(contents, static_cast<unsigned>(value), 3);
    Append(attributes, element(static_cast<std::uint8_t>(0x80 + tag), contents));
  };
  const auto height = static_cast<int>(rows.size());
  number(0, width);
  number(1, height);
  Bytes types;
  Bytes coded;
  std::size_t index = 0;
  const int side = form.side == 0 ? std::max(width, height) : form.side;
  for (int y = 0; y < height; y += side)
    for (int x = 0; x < width; x += side, ++index) {
      const int type = index < form.types.size() ? form.types[index] : 2;
      Append(types, element(2, {static_cast<std::uint8_t>(type)}));
      const int tileWidth = (form.cut && type != 3) || form.side == 0 ? std::min(side, width - x) : side;
      std::vector<Bytes> tile;
      for (int i = y; i < std::min(y + side, height); ++i) {
        const Bytes& row = rows[static_cast<std::size_t>(i)];
        Bytes part(static_cast<std::size_t>(tileWidth + 7) / 8);
        std::copy_n(row.begin() + x / 8, std::min(std::ssize(part), std::ssize(row) - x / 8), part.begin());
        tile.push_back(part);
      }
      if (type == 2) Append(coded, EncodeFax(tile, tileWidth));
      if (type == 3) tile.resize(static_cast<std::size_t>(side), Bytes(static_cast<std::size_t>(side) / 8));
      if (type == 3)
        for (const Bytes& row : tile) Append(coded, row);
    }
  if (form.side != 0) {
    number(6, side);
    number(7, side);
  }
  if (!form.types.empty()) Append(attributes, element(0xa9, types));
  const auto middle = coded.begin() + std::ssize(coded) / 2;
  Bytes octets = element(4, {coded.begin(), middle});
  Append(octets, element(4, {middle, coded.end()}));
  Bytes portion = element(0x31, element(0xa2, attributes));
  Append(portion, element(0x24, octets));
  Bytes document = element(0xa0, element(0x31, {4, 1, 7}));  // the profile, which nobody needs
  Append(document, element(0xa3, portion));
  return MakeCals("rtype: 2\nrdensty: 0300\n", document);
}

Bytes MakeIoca(const IocaForm& form, const Bytes& data, std::size_t piece) {
  Bytes segment = {0x70, 0, 0x91, 1, 0xff, 0x94, 9, 0};
  for (const int value : {2400, 1200, form.width, form.height})
    AppendBig(segment, static_cast<unsigned>(value), 2);
  Append(segment, {0x95, 3, static_cast<std::uint8_t>(form.coding), 1,
                   form.reversed ? std::uint8_t{1} : std::uint8_t{0}});
  Append(segment, {0x96, 1, static_cast<std::uint8_t>(form.bits)});
  Append(segment, {0x9b, 8, form.subtractive ? std::uint8_t{0x80} : std::uint8_t{0}, 1, 0, 0, 0, 8, 8, 8});
  for (std::size_t at = 0; at < data.size(); at += piece) {
    const std::size_t size = std::min(piece, data.size() - at);
    Append(segment, {0xfe, 0x92});
    AppendBig(segment, static_cast<unsigned>(size), 2);
    Append(segment, Bytes(data.begin() + static_cast<std::ptrdiff_t>(at),
                          data.begin() + static_cast<std::ptrdiff_t>(at + size)));
  }
  Append(segment, {0x93, 0, 0x71, 0});
  return segment;
}

Bytes MakeModca(const std::vector<Bytes>& segments, std::size_t fieldBytes) {
  Bytes file;
  const auto field = [&file](unsigned code, const Bytes& data) {
    file.push_back(0x5a);
    AppendBig(file, static_cast<unsigned>(data.size()) + 8, 2);
    AppendBig(file, code, 3);
    Append(file, {0, 0, 0});
    Append(file, data);
  };
  field(0xd3a8a8, Bytes(8, 0x40));
  for (const Bytes& segment : segments) {
    field(0xd3a8fb, {});
    for (std::size_t at = 0; at < segment.size(); at += fieldBytes)
      field(0xd3eefb,
            Bytes(segment.begin() + static_cast<std::ptrdiff_t>(at),
                  segment.begin() + static_cast<std::ptrdiff_t>(std::min(at + fieldBytes, segment.size()))));
    field(0xd3a9fb, {});
  }
  field(0xd3a9a8, {});
  return file;
}

Bytes MakeIntergraph(const IntergraphForm& form, const std::vector<Bytes>& data) {
  constexpr std::size_t kHeader = 4096;
  constexpr std::size_t kTileDirectory = 128;
  Bytes file(kHeader);
  file[0] = 8;
  file[1] = 9;
  SetLittle(file, 2, (kHeader - 4) / 2, 2);
  SetLittle(file, 4, static_cast<unsigned>(form.tile != 0 ? 65 : form.type), 2);
  SetLittle(file, 184, static_cast<unsigned>(form.width), 4);
  SetLittle(file, 188, static_cast<unsigned>(form.height), 4);
  file[194] = static_cast<std::uint8_t>(form.scanLines);
  if (form.palette) {
    SetLittle(file, 532, 2, 2);
    SetLittle(file, 536, 256, 4);
    for (unsigned i = 0; i < 256; ++i)
      for (unsigned word = 0; word < 4; ++word)
        SetLittle(file, 1024 + i * 8 + word * 2, word == 0 ? i : (255 - i) * 256 + word, 2);
  }
  if (form.tile != 0) {
    Bytes directory(kTileDirectory + data.size() * 12);
    SetLittle(directory, 18, static_cast<unsigned>(form.type), 2);
    SetLittle(directory, 120, static_cast<unsigned>(form.tile), 4);
    auto offset = static_cast<unsigned>(directory.size());
    for (std::size_t i = 0; i < data.size(); ++i) {
      const auto size = static_cast<unsigned>(data[i].size());
      SetLittle(directory, kTileDirectory + i * 12, offset, 4);
      SetLittle(directory, kTileDirectory + i * 12 + 4, size, 4);
      SetLittle(directory, kTileDirectory + i * 12 + 8, size, 4);
      offset += size;
    }
    Append(file, directory);
  }
  for (const Bytes& block : data) Append(file, block);
  return file;
}

Bytes MakeEps(const Bytes& preview, bool metafile) {
  const std::string text = "%!PS-Adobe-3.0 EPSF-3.0\n";
  Bytes file(30);
  Append(file, Bytes(text.begin(), text.end()));
  AppendBig(file, 0, 1);
  for (std::size_t i = 0; i < 4; ++i) file[i] = std::array<std::uint8_t, 4>{0xc5, 0xd0, 0xd3, 0xc6}[i];
  SetLittle(file, 4, 30, 4);
  SetLittle(file, 8, static_cast<unsigned>(text.size()), 4);
  SetLittle(file, metafile ? 12 : 20, preview.empty() ? 0 : static_cast<unsigned>(file.size()), 4);
  SetLittle(file, metafile ? 16 : 24, static_cast<unsigned>(preview.size()), 4);
  Append(file, preview);
  return file;
}

std::vector<Bytes> MakeArchiveSamples() {
  constexpr int kWidth = 300;
  const auto rows = RandomFaxRows(kWidth, 60, 3);
  const Bytes group4 = EncodeFax(rows, kWidth);
  const Bytes mixed = EncodeFax(rows, kWidth, COMPRESSION_CCITTFAX3, GROUP3OPT_2DENCODING);
  const TiffForm color{"color", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, false, true};
  IocaForm twoDimensional{kWidth, 60, 0x81};
  const auto ramp = [](int x, int y, int c) { return (x * 5 ^ y * 3 ^ c * 77) & 255; };
  return {mixed,
          EncodeFax(RandomFaxRows(1728, 60, 3), 1728),
          MakeCals("rpelcnt: 000300,000060\n", group4),
          MakeTiledCals(rows, kWidth, {64, {}, true}),
          MakeIoca({kWidth, 60, 3}, Bytes(38 * 60, 0x35)),
          MakeModca({MakeIoca({kWidth, 60}, group4), MakeIoca(twoDimensional, mixed)}),
          MakeIntergraph({9, 64, 40, 6, 0, false}, {Bytes(3000, 3)}),
          MakeIntergraph({24, kWidth, 60, 4, 512, true}, {group4}),
          MakeIntergraph({27, 64, 40, 4, 0, false}, {Bytes(3000, 0x83)}),
          MakeEps(MakeTiff({color})),
          MakeLosslessJpeg(50, 40, {8, 3, 4, 0, 8}, ramp)};
}

}  // namespace codec_test
