#include "turned_copy.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>

#include "input_file.h"
#include "orientation_tag.h"
#include "resources.h"

namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(UINT text, const std::string& path) {
  throw FileError(static_cast<const char*>(TextWith(text, fs::path(path).filename().c_str())));
}

Bytes ReadWhole(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Bytes bytes(std::istreambuf_iterator<char>(file), {});
  if (!file.is_open() || file.bad()) Fail(IDS_CANT_READ, path);
  return bytes;
}

/// The target gets its name when all of it is there; it may be the source.
void WriteWhole(const std::string& path, const Bytes& bytes) {
  const std::string part = path + ".part";
  std::ofstream file(part, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  file.close();
  std::error_code error;
  if (file) fs::rename(part, path, error);
  if (file && !error) return;
  fs::remove(part, error);
  Fail(IDS_CANT_WRITE, path);
}

bool StartsWith(const Bytes& file, std::string_view mark) {
  return file.size() >= mark.size() &&
         std::equal(mark.begin(), mark.end(), file.begin(),
                    [](char c, std::uint8_t byte) { return static_cast<std::uint8_t>(c) == byte; });
}

/// Decoded, turned, and coded again in the same depth by a format that loses nothing.
void SaveTurnedPixels(const std::string& source, const std::string& target, int quarters, int format) {
  constexpr int kQuarter = 9000;  // hundredths of a degree
  const InputFile file(source);
  const struct_file_information info = Describe(file);
  struct_LEAD_Bitmap bitmap{};
  LEADTOOLS::InitBitmap(&bitmap, 0, 0, 1);
  Imaging(file, [&] { LEADTOOLS::LoadBitmapA(source.c_str(), &bitmap, 0, 1, nullptr, nullptr); });
  // What the memory holds otherwise, as 16 bits a sample or opacity, would be lost.
  constexpr int kTrueColor = 24;
  if (info.TotalPages > 1 || bitmap.BitsPerPixel != info.BitsPerPixel || bitmap.BitsPerPixel > kTrueColor) {
    LEADTOOLS::FreeBitmap(&bitmap);
    Fail(IDS_CANT_TURN, source);
  }
  try {
    Imaging(InputFile(target), [&] {
      LEADTOOLS::RotateBitmap(&bitmap, quarters * kQuarter, 0, 0);
      LEADTOOLS::SaveBitmap(target.c_str(), &bitmap, format, 0, 0, nullptr);
    });
  } catch (...) {
    LEADTOOLS::FreeBitmap(&bitmap);
    throw;
  }
  LEADTOOLS::FreeBitmap(&bitmap);
}

}  // namespace

void SaveTurnedCopy(const std::string& source, const std::string& target, int quarters) {
  constexpr int kPng = 75;
  constexpr int kBmp = 84;
  Bytes file = ReadWhole(source);
  if (quarters == 0) return WriteWhole(target, file);
  if (StartsWith(file, "\x89PNG")) return SaveTurnedPixels(source, target, quarters, kPng);
  if (StartsWith(file, "BM")) return SaveTurnedPixels(source, target, quarters, kBmp);
  const bool jpeg = StartsWith(file, "\xff\xd8");
  const auto turned = jpeg ? TurnedJpeg(std::move(file), quarters) : TurnedTiff(std::move(file), quarters);
  if (!turned) Fail(IDS_CANT_TURN, source);
  WriteWhole(target, *turned);
}
