#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"

// What the tests of the codecs share: calls that give an error as a text, and pixels by colour.
namespace codec_test {

using Bytes = std::vector<std::uint8_t>;

struct Information {
  struct_file_information record{};
  std::string error;  ///< empty if the call succeeded
};

struct Loaded {
  struct_LEAD_Bitmap record{};
  struct_file_information info{};
  std::unique_ptr<imaging::PixelStorage> pixels;
  std::string error;
  int code = 0;
};

struct Color {
  int red;
  int green;
  int blue;
  int alpha;
  bool operator==(const Color&) const = default;
};

inline std::string TakeText(CLeadtoolsException* exception) {
  const std::string text =
      static_cast<const char*>(CLeadtoolsException::GetErrorMessage(exception->m_nError));
  exception->Delete();
  return text.empty() ? "error without a text" : text;
}

inline _LOADFILEOPTION OptionsFor(int page) {
  _LOADFILEOPTION options{};
  LEADTOOLS::GetDefaultLoadFileOption(&options);
  options.PageNumber = page;
  return options;
}

template <typename Call>
Information Inform(const Call& call) {
  Information result;
  try {
    call(&result.record);
  } catch (CLeadtoolsException* exception) {
    result.error = TakeText(exception);
  }
  return result;
}

template <typename Call>
Loaded Load(const Call& call) {
  Loaded result;
  try {
    call(&result.record, &result.info);
    result.pixels.reset(result.record.pStorage);
  } catch (CLeadtoolsException* exception) {
    result.code = exception->m_nError;
    result.error = TakeText(exception);
  }
  return result;
}

inline Information InformFile(const std::string& path, int page = 1, unsigned flags = 1) {
  auto options = OptionsFor(page);
  return Inform([&](auto* info) { LEADTOOLS::FileInfo(path.c_str(), info, flags, &options); });
}

inline Information InformMemory(const Bytes& data, int page = 1, unsigned flags = 1) {
  auto options = OptionsFor(page);
  Bytes copy = data;  // the interface asks for writable memory; a copy shows stray reads to the sanitizer
  return Inform([&](auto* info) {
    LEADTOOLS::FileInfoMemory(reinterpret_cast<char*>(copy.data()), info, static_cast<long>(copy.size()),
                              flags, &options);
  });
}

inline Loaded LoadFile(const std::string& path, int page = 1, int bits = 0, int order = 0) {
  auto options = OptionsFor(page);
  return Load([&](auto* bitmap, auto* info) {
    LEADTOOLS::LoadBitmapA(path.c_str(), bitmap, bits, order, &options, info);
  });
}

inline Loaded LoadMemory(const Bytes& data, int page = 1, int bits = 0, int order = 0) {
  auto options = OptionsFor(page);
  Bytes copy = data;
  return Load([&](auto* bitmap, auto* info) {
    LEADTOOLS::LoadBitmapMemory(reinterpret_cast<char*>(copy.data()), bitmap, bits, order,
                                static_cast<long>(copy.size()), &options, info);
  });
}

inline int IndexAt(const imaging::PixelStorage& pixels, int x, int y) {
  const std::uint8_t* row = pixels.Row(y);
  if (pixels.Bits() == 1) return row[x / 8] >> (7 - x % 8) & 1;
  if (pixels.Bits() == 4) return x % 2 == 0 ? row[x / 2] >> 4 : row[x / 2] & 15;
  return row[x];
}

inline Color ColorAt(const Loaded& page, int x, int y) {
  const imaging::PixelStorage& pixels = *page.pixels;
  if (pixels.Bits() <= 8) {
    const RGBQUAD& color = pixels.Palette()[static_cast<std::size_t>(IndexAt(pixels, x, y))];
    return {color.rgbRed, color.rgbGreen, color.rgbBlue, 255};
  }
  const int bytes = pixels.Bits() / 8;
  const std::uint8_t* p = pixels.Row(y) + static_cast<std::ptrdiff_t>(x) * bytes;
  const bool blueFirst = page.record.Order == 1;
  return {blueFirst ? p[2] : p[0], p[1], blueFirst ? p[0] : p[2], bytes == 4 ? p[3] : 255};
}

/// Folder of the sample files, empty if they aren't there.
inline std::string CorpusFolder() {
  const char* folder = std::getenv("TESSAREL_CORPUS");
  return folder == nullptr ? "" : folder;
}

}  // namespace codec_test
