// Writers: any picture is written and read back; a page is added to any bytes, which stay as they were if it
// can't be.

#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "fuzz/bytes.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"

namespace {

const std::string& Path() {
  static const std::string path =
      (std::filesystem::temp_directory_path() / ("tessarel-fuzz-" + std::to_string(getpid()))).string();
  return path;
}

std::vector<std::uint8_t> ReadFile() {
  std::ifstream file(Path(), std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

struct Picture {
  struct_LEAD_Bitmap record{};
  ~Picture() { delete record.pStorage; }
};

bool SameRows(const imaging::PixelStorage& a, const imaging::PixelStorage& b) {
  if (a.Width() != b.Width() || a.Height() != b.Height() || a.Bits() != b.Bits()) return false;
  const std::size_t whole = static_cast<std::size_t>(a.Width()) * static_cast<std::size_t>(a.Bits()) / 8;
  for (int y = 0; y < a.Height(); ++y)
    if (std::memcmp(a.Row(y), b.Row(y), whole) != 0) return false;
  return true;
}

void Fill(Picture& picture, fuzz::Bytes& bytes) {
  static constexpr unsigned kDepths[] = {1, 4, 8, 24, 32};
  const unsigned bits = kDepths[bytes.Take() % 5];
  const auto width = static_cast<unsigned>(bytes.TakeFrom(1, 300));
  const auto height = static_cast<unsigned>(bytes.TakeFrom(1, 100));
  LEADTOOLS::CreateBitmap(&picture.record, 1, width, height, bits, bytes.Take() % 2, nullptr, 1, nullptr, 0);
  picture.record.XResolution = bytes.TakeFrom(-1, 3000);
  picture.record.YResolution = bytes.TakeFrom(-1, 3000);
  picture.record.ViewPerspective = static_cast<int>(bytes.Take() % 10);
  const auto pixels = bytes.Rest();
  std::size_t at = 0;
  for (unsigned y = 0; y < height && !pixels.empty(); ++y)
    for (std::size_t i = 0; i < (width * bits + 7) / 8; ++i)
      picture.record.pStorage->Row(static_cast<int>(y))[i] = pixels[at++ % pixels.size()];
}

/// Pixels that happen to be another kind's mark, which lies so deep that it counts whatever stands before it.
bool LooksMedical() {
  const auto file = ReadFile();
  return file.size() > 132 && std::memcmp(file.data() + 128, "DICM", 4) == 0;
}

void WriteAndRead(fuzz::Bytes bytes, int format) {
  Picture picture;
  Fill(picture, bytes);
  std::remove(Path().c_str());
  if (!fuzz::Succeeds(
          [&] { LEADTOOLS::SaveBitmap(Path().c_str(), &picture.record, format, 0, 0, nullptr); })) {
    fuzz::Require(access(Path().c_str(), F_OK) != 0);
    return;
  }
  if (LooksMedical()) return;
  Picture again;
  fuzz::Require(fuzz::Succeeds([&] {
    LEADTOOLS::LoadBitmapA(Path().c_str(), &again.record, 0, picture.record.Order, nullptr, nullptr);
  }));
  const int bits = picture.record.BitsPerPixel;
  if (format != 98 && bits >= 8 && bits == again.record.BitsPerPixel &&
      picture.record.Order == again.record.Order)
    fuzz::Require(SameRows(*picture.record.pStorage, *again.record.pStorage));
}

void Append(fuzz::Bytes bytes, int format) {
  const auto size = static_cast<std::size_t>(bytes.TakeFrom(0, 4000));
  const auto before = bytes.Copy();
  std::ofstream(Path(), std::ios::binary)
      .write(reinterpret_cast<const char*>(before.data()), static_cast<std::streamsize>(before.size()));
  Picture picture;
  fuzz::Bytes tail(before.data() + std::min(size, before.size()),
                   before.size() - std::min(size, before.size()));
  Fill(picture, tail);
  _SAVEFILEOPTION options{sizeof options, bytes.TakeFrom(2, 5)};
  if (!fuzz::Succeeds(
          [&] { LEADTOOLS::SaveBitmap(Path().c_str(), &picture.record, format, 0, 0, &options); }))
    fuzz::Require(ReadFile() == before);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes(data, size);
  static constexpr int kFormats[] = {27, 75, 84, 87, 98};
  const unsigned mode = bytes.Take();
  const int format = kFormats[mode % 5];
  if (!fuzz::Succeeds(
          [&] { mode < 128 ? WriteAndRead(bytes, format) : Append(bytes, mode % 2 == 0 ? 27 : 87); }))
    return 0;
  std::remove(Path().c_str());
  return 0;
}
