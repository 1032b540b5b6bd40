#include "imaging/pixels/resize.h"

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include "imaging/core/exception.h"
#include "imaging/pixels/kernels.h"
#include "imaging/pixels/row_reader.h"
#include "imaging/pixels/scaler.h"

namespace imaging {
namespace {

/// For each result pixel the source pixel below its centre.
std::vector<int> NearestOf(int length, int size) {
  std::vector<int> from(static_cast<std::size_t>(size));
  for (int i = 0; i < size; ++i) from[static_cast<std::size_t>(i)] = BoxAxis::Nearest(i, length, size);
  return from;
}

template <int Size>
void RepeatElements(std::uint8_t* out, const std::uint8_t* row, const std::vector<int>& from) {
  for (const int x : from) {
    std::memcpy(out, row + static_cast<std::ptrdiff_t>(x) * Size, Size);
    out += Size;
  }
}

void RepeatPacked(std::uint8_t* out, const std::uint8_t* row, const std::vector<int>& from, int bits) {
  const int perByte = 8 / bits;
  const unsigned mask = (1U << bits) - 1;
  unsigned byte = 0;
  int filled = 0;
  for (const int x : from) {
    byte = byte << bits | (row[x / perByte] >> (8 - bits - x % perByte * bits) & mask);
    if (++filled < perByte) continue;
    *out++ = static_cast<std::uint8_t>(byte);
    byte = 0;
    filled = 0;
  }
  if (filled != 0) *out = static_cast<std::uint8_t>(byte << bits * (perByte - filled));
}

void RepeatRow(std::uint8_t* out, const PixelStorage& source, int y, const std::vector<int>& from) {
  const std::uint8_t* row = source.HeldRow(y);
  if (static_cast<int>(from.size()) == source.Width()) {
    std::memcpy(out, row, source.HeldRowBytes());
    return;
  }
  switch (source.HeldBits()) {
    case 8:
      return RepeatElements<1>(out, row, from);
    case 24:
      return RepeatElements<3>(out, row, from);
    case 32:
      return RepeatElements<4>(out, row, from);
    default:
      return RepeatPacked(out, row, from, source.HeldBits());
  }
}

/// The target is held as the source is.
void RepeatInto(const PixelStorage& source, PixelStorage& target) {
  const std::vector<int> from = NearestOf(source.Width(), target.Width());
  int shown = -1;
  for (int y = 0; y < target.Height(); ++y) {
    const int row = BoxAxis::Nearest(y, source.Height(), target.Height());
    std::uint8_t* out = target.HeldRow(y);
    if (row == shown)
      std::memcpy(out, out - target.HeldPitch(), target.HeldRowBytes());
    else
      RepeatRow(out, source, row, from);
    shown = row;
  }
}

std::uint8_t Luminance(unsigned red, unsigned green, unsigned blue) {
  return static_cast<std::uint8_t>((299 * red + 587 * green + 114 * blue + 500) / 1000);
}

/// Pixels of step bytes each to grey; red is the place of the red byte.
void ToGray(std::uint8_t* out, const std::uint8_t* bytes, std::size_t count, std::size_t step,
            std::size_t red) {
  for (std::size_t i = 0; i < count; ++i, bytes += step)
    out[i] = Luminance(bytes[red], bytes[1], bytes[2 - red]);
}

/// Pixels of three or four channels into a row of the target; exchange: the two orders differ.
void WriteColors(std::uint8_t* out, const std::uint8_t* colors, std::size_t count, std::size_t channels,
                 std::size_t step, bool exchange) {
  const std::size_t first = exchange ? 2 : 0;
  for (std::size_t i = 0; i < count; ++i, colors += channels, out += step) {
    out[0] = colors[first];
    out[1] = colors[1];
    out[2] = colors[2 - first];
    if (step == 4) out[3] = channels == 4 ? colors[3] : 255;
  }
}

void GrayToColors(std::uint8_t* out, const std::uint8_t* grays, std::size_t count, std::size_t step) {
  for (std::size_t i = 0; i < count; ++i, out += step) {
    out[0] = out[1] = out[2] = grays[i];
    if (step == 4) out[3] = 255;
  }
}

/// The orders of a scaled row and of the target.
struct Orders {
  bool sourceRedFirst;
  bool targetRedFirst;
};

void WriteRow(PixelStorage& target, int y, const std::uint8_t* levels, std::size_t channels, Orders orders) {
  std::uint8_t* out = target.Row(y);
  const auto width = static_cast<std::size_t>(target.Width());
  const auto step = static_cast<std::size_t>(target.Bits() / 8);
  if (channels == 1 && step == 1)
    std::memcpy(out, levels, width);
  else if (channels == 1)
    GrayToColors(out, levels, width, step);
  else if (step == 1)
    ToGray(out, levels, width, channels, orders.sourceRedFirst ? 0 : 2);
  else
    WriteColors(out, levels, width, channels, step, orders.sourceRedFirst != orders.targetRedFirst);
}

bool RedFirst(const RowReader& reader, int order) {
  return reader.HasRecordOrder() && order == 0;
}

void AverageInto(const PixelStorage& source, int sourceOrder, PixelStorage& target, int targetOrder) {
  const RowReader reader(source, target.Bits() == 32 ? Alpha::Keep : Alpha::FlattenOnWhite);
  const Scaling scaling{0, 0, source.Width(), source.Height(), target.Width(), target.Height()};
  BoxScaler scaler(reader, scaling, 0, target.Width(), FastKernels());
  const auto channels = static_cast<std::size_t>(reader.Channels());
  const std::size_t rowBytes = static_cast<std::size_t>(target.Width()) * channels;
  std::vector<std::uint8_t> levels(rowBytes * BoxScaler::kRows);
  const Orders orders{RedFirst(reader, sourceOrder), targetOrder == 0};
  for (int y = 0; y < target.Height(); y += BoxScaler::kRows) {
    const int rows = std::min(BoxScaler::kRows, target.Height() - y);
    scaler.Rows(y, rows, levels.data(), static_cast<std::ptrdiff_t>(rowBytes));
    for (int r = 0; r < rows; ++r)
      WriteRow(target, y + r, levels.data() + static_cast<std::size_t>(r) * rowBytes, channels, orders);
  }
}

}  // namespace

std::unique_ptr<PixelStorage> SizedByRepeating(const PixelStorage& source, int width, int height) {
  auto target = source.CreateAlike(width, height);
  RepeatInto(source, *target);
  return target;
}

std::unique_ptr<PixelStorage> SizedByAveraging(const PixelStorage& source, int width, int height) {
  const int own = RowReader(source, Alpha::Keep).Channels() == 1 ? 8 : 24;
  auto target = PixelStorage::Create(width, height, std::max(own, source.Bits()));
  AverageInto(source, 1, *target, 1);
  return target;
}

void ResizeInto(const PixelStorage& source, int sourceOrder, PixelStorage& target, int targetOrder) {
  const bool isGray = RowReader(source, Alpha::Keep).Channels() == 1;
  if (target.Bits() >= 24 || (target.Bits() == 8 && (isGray || source.Bits() != 8))) {
    if (target.Bits() == 8) target.SetLinearGray();
    AverageInto(source, sourceOrder, target, targetOrder);
  } else if (target.Bits() == source.Bits()) {
    source.HoldBytes();
    target.HoldBytes();
    target.Palette() = source.Palette();
    RepeatInto(source, target);
  } else {
    Fail(kErrorUnsupported, "An image of %d bits per pixel can't be scaled into one of %d", source.Bits(),
         target.Bits());
  }
}

void ShowAsGrays(PixelStorage& bilevel) {
  const auto gray = [](const RGBQUAD& color) {
    return Luminance(color.rgbRed, color.rgbGreen, color.rgbBlue);
  };
  const auto& colors = std::as_const(bilevel).Palette();
  bilevel.ShowAsBytes(gray(colors[0]), gray(colors[1]));
  bilevel.SetLinearGray();
  bilevel.SetRegion(std::nullopt);
}

std::unique_ptr<PixelStorage> Grayed(const PixelStorage& source, int order) {
  const RowReader reader(source, Alpha::FlattenOnWhite);
  auto target = PixelStorage::Create(source.Width(), source.Height(), 8);
  const auto width = static_cast<std::size_t>(source.Width());
  const auto channels = static_cast<std::size_t>(reader.Channels());
  std::vector<std::uint8_t> scratch(width * channels);
  for (int y = 0; y < source.Height(); ++y) {
    const std::uint8_t* bytes = reader.Read(y, 0, source.Width(), scratch.data());
    if (channels == 1)
      std::memcpy(target->Row(y), bytes, width);
    else
      ToGray(target->Row(y), bytes, width, channels, RedFirst(reader, order) ? 0 : 2);
  }
  return target;
}

}  // namespace imaging
