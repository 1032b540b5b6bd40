#include "imaging/device/printing.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "imaging/codecs/writer.h"
#include "platform/spooler/page_images.h"

namespace imaging {

RECT PrintedRect(const Bitmap& bitmap, const RECT& asked, const SIZE& page, const SIZE& dotsPerInch) {
  if (asked.right > asked.left || asked.bottom > asked.top) return asked;
  const double width = bitmap.Width;
  double height = bitmap.Height;
  if (dotsPerInch.cx > 0 && dotsPerInch.cy > 0) height = height * dotsPerInch.cy / dotsPerInch.cx;
  const double factor = std::min((page.cx - asked.left) / width, (page.cy - asked.top) / height);
  const auto scaled = [factor](double extent) { return std::max(1, static_cast<int>(extent * factor)); };
  return {asked.left, asked.top, asked.left + scaled(width), asked.top + scaled(height)};
}

namespace {

bool EqualRect(const RECT& a, const RECT& b) {
  return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
}

/// The file's own bytes where they can be had. Pixels that come from lossy coding and were turned or resized
/// gain nothing from being kept to the bit.
std::optional<CodedForm> FormToPassOn(const PixelStorage& pixels, const Bitmap& bitmap) {
  if (const auto coded = pixels.Coded())
    if (auto form = coded->Read()) return form;
  if (!pixels.IsLossy() || (pixels.Bits() < 24 && !pixels.IsLinearGray())) return std::nullopt;
  CodedForm form{CodedForm::Coding::kJpeg, 3, true, false, CodeAsJpeg({pixels, bitmap.Order})};
  return form.bytes.empty() ? std::nullopt : std::optional(std::move(form));
}

platform::CodedImage Coded(const CodedForm& form, int orientation) {
  using Coding = platform::CodedImage::Coding;
  return {form.coding == CodedForm::Coding::kJpeg ? Coding::kJpeg : Coding::kGroup4,
          form.bytes,
          form.components,
          form.ycc,
          form.blackIsOne,
          orientation};
}

/// What stands in the file for a bitmap of which an upright copy is drawn, and how it lies there.
std::optional<CodedForm> StoredForm(Bitmap* stored, int& orientation) {
  if (stored == nullptr) return std::nullopt;
  const auto coded = RequirePixels(stored, "print").Coded();
  auto form = coded ? coded->Read() : std::nullopt;
  if (form) orientation = stored->ViewPerspective;
  return form;
}

}  // namespace

bool DrawOnPrinter(HDC dc, Bitmap* bitmap, const RECT& source, const RECT& destination, Bitmap* stored) {
  const PixelStorage& pixels = RequirePixels(bitmap, "print");
  platform::PrinterImage image;
  image.top = pixels.HeldRow(0);
  image.stride = pixels.HeldPitch();
  image.width = pixels.Width();
  image.height = pixels.Height();
  image.bits = pixels.HeldBits();
  std::array<RGBQUAD, 256> colors{};
  if (image.bits <= 8) {
    const std::size_t count = std::size_t{1} << image.bits;
    for (unsigned i = 0; i < count; ++i) colors[i] = pixels.Palette()[pixels.IndexOf(i)];
    image.colors = {colors.data(), count};
  }
  image.blueFirst = bitmap->Order != 0;
  const RECT whole{0, 0, image.width, image.height};
  int orientation = 1;
  auto form = StoredForm(stored, orientation);
  if (!form && EqualRect(source, whole)) form = FormToPassOn(pixels, *bitmap);
  const auto coded = form ? Coded(*form, orientation) : platform::CodedImage{};
  if (form) image.coded = &coded;
  return platform::DrawImageOnPrinter(dc, image, destination, source);
}

}  // namespace imaging
