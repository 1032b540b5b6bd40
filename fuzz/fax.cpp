// The fax decoder: what any bytes are made into, and the coders of both directions against libtiff.

#include <tiffio.h>

#include <cstring>

#include "fuzz/bytes.h"
#include "fuzz/fax_tiff.h"
#include "imaging/codecs/fax.h"
#include "platform/spooler/detail/fax_encoder.h"

namespace {

using Rows = std::vector<std::vector<std::uint8_t>>;
using imaging::FaxDecoder;

std::size_t RowBytes(int width) {
  return (static_cast<std::size_t>(width) + 7) / 8;
}

/// Rows until the first that isn't sound.
Rows Decode(std::span<const std::uint8_t> coded, int width, int most, bool& sound) {
  std::vector<std::uint8_t> padded(coded.begin(), coded.end());
  padded.resize(coded.size() + FaxDecoder::kPadding);
  FaxDecoder decoder(width);
  decoder.Start(std::span(padded).first(coded.size()));
  std::vector<std::uint8_t> row((static_cast<std::size_t>(width) + 63) / 64 * 8);
  Rows rows;
  sound = true;
  for (int y = 0; y < most && sound; ++y) {
    const FaxDecoder::Row step = decoder.Next();
    sound =
        (step == FaxDecoder::Row::kDecoded || step == FaxDecoder::Row::kSameAsAbove) && decoder.WithinData();
    if (!sound) break;
    decoder.Paint(row.data(), 0);
    rows.emplace_back(row.begin(), row.begin() + static_cast<std::ptrdiff_t>(RowBytes(width)));
    if (width % 8 != 0) rows.back().back() &= static_cast<std::uint8_t>(0xff00U >> width % 8);
  }
  return rows;
}

void DecodeGroup3(std::span<const std::uint8_t> coded, int width, bool twoDimensional) {
  std::vector<std::uint8_t> padded(coded.begin(), coded.end());
  padded.resize(coded.size() + FaxDecoder::kPadding);
  FaxDecoder decoder(width);
  decoder.Start(std::span(padded).first(coded.size()));
  std::vector<std::uint8_t> row((static_cast<std::size_t>(width) + 63) / 64 * 8);
  for (int y = 0; y < 2000; ++y) {
    const FaxDecoder::Row step = decoder.NextGroup3(twoDimensional);
    if (step == FaxDecoder::Row::kEndOfBlock) return;
    if (step == FaxDecoder::Row::kDamaged)
      decoder.SkipDamagedRow();
    else
      decoder.Paint(row.data(), 0xff);
  }
}

void ComparePicture(fuzz::Bytes bytes, int width) {
  Rows rows;
  const auto picture = bytes.Rest();
  for (std::size_t at = 0; at + RowBytes(width) <= picture.size(); at += RowBytes(width)) {
    const auto row = picture.subspan(at, RowBytes(width));
    rows.emplace_back(row.begin(), row.end());
    if (width % 8 != 0) rows.back().back() &= static_cast<std::uint8_t>(0xff00U >> width % 8);
  }
  if (rows.empty()) return;
  platform::FaxEncoder encoder(width, 1);
  for (const auto& row : rows) encoder.AddRow(row.data());
  const auto coded = encoder.Finish();
  bool sound = false;
  fuzz::Require(Decode(coded, width, static_cast<int>(rows.size()), sound) == rows);
  fuzz::Require(sound);
  const auto theirs = fuzz::DecodeByLibtiff(coded, width, static_cast<int>(rows.size()));
  fuzz::Require(theirs && *theirs == rows);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Bytes bytes(data, size);
  const unsigned mode = bytes.Take() % 4;
  const int width = bytes.TakeFrom(1, 2600);
  if (mode == 0) {
    ComparePicture(bytes, width);
  } else if (mode == 1) {
    bool sound = false;
    const Rows rows = Decode(bytes.Rest(), width, 200, sound);
    if (rows.empty()) return 0;
    // Where both find the same rows sound they see the same pixels.
    const auto theirs = fuzz::DecodeByLibtiff(bytes.Rest(), width, static_cast<int>(rows.size()));
    if (theirs) fuzz::Require(*theirs == rows);
  } else {
    DecodeGroup3(bytes.Rest(), width, mode == 3);
  }
  return 0;
}
