#pragma once

#include <tiffio.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

namespace fuzz {

/// A file in memory for libtiff.
struct MemoryFile {
  std::vector<std::uint8_t> bytes;
  std::uint64_t position = 0;
  int complaints = 0;
};

inline TIFF* OpenInMemory(MemoryFile& file, const char* mode) {
  const auto self = [](thandle_t client) -> MemoryFile& { return *static_cast<MemoryFile*>(client); };
  static const auto of = self;
  TIFFOpenOptions* options = TIFFOpenOptionsAlloc();
  const auto complain = [](TIFF*, void* user, const char*, const char* format, va_list arguments) {
    if (std::getenv("FUZZ_TELL") != nullptr) std::vfprintf(stderr, format, arguments);
    ++static_cast<MemoryFile*>(user)->complaints;
    return 1;
  };
  TIFFOpenOptionsSetErrorHandlerExtR(options, complain, &file);
  TIFFOpenOptionsSetWarningHandlerExtR(options, complain, &file);
  TIFF* tiff = TIFFClientOpenExt(
      "", mode, &file,
      [](thandle_t client, void* to, tmsize_t size) -> tmsize_t {
        MemoryFile& file = of(client);
        if (file.position >= file.bytes.size()) return 0;
        const auto count =
            std::min<std::uint64_t>(static_cast<std::uint64_t>(size), file.bytes.size() - file.position);
        std::memcpy(to, file.bytes.data() + file.position, count);
        file.position += count;
        return static_cast<tmsize_t>(count);
      },
      [](thandle_t client, void* from, tmsize_t size) -> tmsize_t {
        MemoryFile& file = of(client);
        const auto end = file.position + static_cast<std::uint64_t>(size);
        if (end > file.bytes.size()) file.bytes.resize(end);
        std::memcpy(file.bytes.data() + file.position, from, static_cast<std::size_t>(size));
        file.position = end;
        return size;
      },
      [](thandle_t client, toff_t offset, int whence) -> toff_t {
        MemoryFile& file = of(client);
        file.position = offset + (whence == SEEK_SET   ? 0
                                  : whence == SEEK_CUR ? file.position
                                                       : file.bytes.size());
        return file.position;
      },
      [](thandle_t) { return 0; }, [](thandle_t client) -> toff_t { return of(client).bytes.size(); },
      nullptr, nullptr, options);
  TIFFOpenOptionsFree(options);
  return tiff;
}

/// The rows of group 4 coding, ones black; nothing if the library complains.
inline std::optional<std::vector<std::vector<std::uint8_t>>> DecodeByLibtiff(
    std::span<const std::uint8_t> coded, int width, int height) {
  MemoryFile file;
  TIFF* tiff = OpenInMemory(file, "w");
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, height);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_CCITTFAX4);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, height);
  std::vector<std::uint8_t> copy(coded.begin(), coded.end());
  TIFFWriteRawStrip(tiff, 0, copy.data(), static_cast<tmsize_t>(copy.size()));
  TIFFClose(tiff);
  file.complaints = 0;
  file.position = 0;
  tiff = OpenInMemory(file, "rm");
  if (tiff == nullptr) return std::nullopt;
  const auto rowBytes = static_cast<std::size_t>(TIFFScanlineSize(tiff));
  std::vector<std::vector<std::uint8_t>> rows;
  for (int y = 0; y < height && file.complaints == 0; ++y) {
    rows.emplace_back(rowBytes);
    if (TIFFReadScanline(tiff, rows.back().data(), static_cast<std::uint32_t>(y), 0) != 1) ++file.complaints;
  }
  TIFFClose(tiff);
  if (file.complaints != 0) return std::nullopt;
  return rows;
}

}  // namespace fuzz
