#include "tests/hostile/samples.h"

#include <array>

#include "tests/hostile/faults.h"
#include "tests/imaging/fax_files.h"
#include "tests/imaging/raster_files.h"

namespace hostile {

using namespace codec_test;

std::vector<Sample> MakeSamples() {
  const TiffForm fax{"fax", 1, 1, PHOTOMETRIC_MINISWHITE, COMPRESSION_CCITTFAX4};
  const TiffForm color{"color", 8, 3, PHOTOMETRIC_RGB, COMPRESSION_LZW, false, true};
  const TiffForm deflate{"deflate", 16, 4, PHOTOMETRIC_SEPARATED, COMPRESSION_ADOBE_DEFLATE, true};
  TiffForm ycc{"ycc", 8, 3, PHOTOMETRIC_YCBCR, COMPRESSION_JPEG};
  ycc.width = ycc.height = 64;
  ycc.rowsPerStrip = 16;
  const auto ramp = [](int x, int y, int c) { return static_cast<std::uint8_t>(x * 5 ^ y * 3 ^ c * 77); };
  const auto wide = [](int x, int y, int c) { return static_cast<unsigned>(x * 5 ^ y * 3 ^ c * 77) & 255U; };
  std::vector<Sample> samples = {{"fax tiff", MakeTiff({fax})},
                                 {"tiled tiff", MakeTiff({color})},
                                 {"deep tiff", MakeTiff({deflate})},
                                 {"jpeg tiff", MakeTiff({ycc})},
                                 {"jpeg", MakeJpeg(60, 40, 3, false, ramp)},
                                 {"progressive jpeg", MakeJpeg(60, 40, 3, true, ramp)},
                                 {"png", MakePng(60, 50, 8, 6, true, wide)},
                                 {"gif", MakeGif(64, 64, {{0, 0, 64, 64, 1, 1}, {5, 5, 20, 20, 2, 2}})},
                                 {"bmp", MakeBmp(60, 30, 8, 1, Bytes(1024, 9), Bytes(1000, 7))}};
  int number = 0;
  for (const auto& more : {MakeRasterSamples(), MakeArchiveSamples()})
    for (const Bytes& bytes : more) samples.push_back({"plain " + std::to_string(++number), bytes});
  return samples;
}

std::string LoadWatched(const Bytes& bytes) {
  Bytes copy = bytes;
  auto options = OptionsFor(1);
  return ResultOf(Load([&](auto* bitmap, auto* info) {
    const faults::Watched watched;
    LEADTOOLS::LoadBitmapMemory(reinterpret_cast<char*>(copy.data()), bitmap, 8, 0,
                                static_cast<long>(copy.size()), &options, info);
  }));
}

std::string InformWatched(const Bytes& bytes) {
  Bytes copy = bytes;
  const Information told = Inform([&](auto* info) {
    const faults::Watched watched;
    LEADTOOLS::FileInfoMemory(reinterpret_cast<char*>(copy.data()), info, static_cast<long>(copy.size()), 1,
                              nullptr);
  });
  if (!told.error.empty()) throw told.error;
  const auto& record = told.record;
  std::string text = record.Compression;
  for (const long number :
       {record.Format, record.Width, record.Height, record.BitsPerPixel, record.TotalPages,
        record.XResolution, record.YResolution, record.ViewPerspective})
    text += ' ' + std::to_string(number);
  return text;
}

std::string ResultOf(const Loaded& page) {
  if (!page.error.empty()) throw page.error;
  const imaging::PixelStorage& pixels = *page.pixels;
  std::uint64_t sum = 0;
  const auto bytes =
      (static_cast<std::size_t>(pixels.Width()) * static_cast<std::size_t>(pixels.Bits()) + 7) / 8;
  for (int y = 0; y < pixels.Height(); ++y)
    for (std::size_t i = 0; i < bytes; ++i) sum = sum * 1099511628211U + pixels.Row(y)[i];
  return std::to_string(pixels.Width()) + "x" + std::to_string(pixels.Height()) + "x" +
         std::to_string(pixels.Bits()) + " lost " + std::to_string(page.info.DamagedRows) + " sum " +
         std::to_string(sum);
}

void SaveTo(const std::string& path, const Loaded& page, int format, int number) {
  const Information done = Inform([&](auto*) {
    _SAVEFILEOPTION options{sizeof options, number};
    struct_LEAD_Bitmap record = page.record;
    const faults::Watched watched;
    LEADTOOLS::SaveBitmap(path.c_str(), &record, format, 0, 0, &options);
  });
  if (!done.error.empty()) throw done.error;
}

void ExportTo(const std::string& path) {
  static const std::array pages = {MakePage(24, Look::kNoise), MakePage(1, Look::kRuns),
                                   MakePage(8, Look::kPalette)};
  static const std::array kFormats = {87, 27, 87};
  const Information done = Inform([&](auto*) {
    const faults::Watched watched;
    leadtools12::NewFile file(path.c_str());
    for (std::size_t i = 0; i < pages.size(); ++i)
      SaveTo(path, pages.at(i), kFormats.at(i), static_cast<int>(i) + 1);
    file.Complete();
  });
  if (!done.error.empty()) throw done.error;
}

}  // namespace hostile
