extern "C" {
#include <libwmf/api.h>
#include <libwmf/svg.h>
}

#include <array>
#include <memory>

#include "helper/modules/svg_page.h"

// Metafiles of 16 bits.
namespace helper {
namespace {

constexpr int kFormatWmf = 15;
constexpr std::int64_t kMostBytes = 100'000'000;
constexpr unsigned long kFlags =
    WMF_OPT_FUNCTION | WMF_OPT_IGNORE_NONFATAL | WMF_OPT_NO_ERROR | WMF_OPT_NO_DEBUG;

struct EndPlayer {
  void operator()(wmfAPI* player) const { wmf_api_destroy(player); }
};
using Player = std::unique_ptr<wmfAPI, EndPlayer>;

void Require(wmf_error_t error) {
  if (error == wmf_E_None) return;
  throw Failure(error == wmf_E_InsMem ? Status::kNoMemory : Status::kCorrupt, "the metafile is damaged");
}

Player MakePlayer() {
  wmfAPI_Options options{};
  options.function = wmf_svg_function;
  wmfAPI* player = nullptr;
  Require(wmf_api_create(&player, kFlags, &options));
  return Player(player);
}

std::string Play(wmfAPI& player, wmfD_Rect bounds, unsigned width, unsigned height) {
  static char none[] = "";
  wmf_svg_t* device = WMF_SVG_GetData(&player);
  device->out = wmf_stream_create(&player, nullptr);
  if (device->out == nullptr) throw Failure(Status::kNoMemory, "there is no memory for the drawing");
  device->bbox = bounds;
  device->width = width;
  device->height = height;
  device->Description = none;
  device->flags |= WMF_SVG_INLINE_IMAGES;
  const wmf_error_t error = wmf_play(&player, 0, &bounds);
  char* text = nullptr;
  unsigned long length = 0;
  wmf_stream_destroy(&player, device->out, &text, &length);
  Require(error);
  if (text == nullptr) throw Failure(Status::kCorrupt, "the metafile draws nothing");
  return {text, length};
}

std::unique_ptr<Document> Open(const Input& input) {
  std::vector<std::uint8_t> file = input.ReadAll(kMostBytes);
  const Player player = MakePlayer();
  Require(wmf_mem_open(player.get(), file.data(), static_cast<long>(file.size())));
  wmfD_Rect bounds{};
  Require(wmf_scan(player.get(), 0, &bounds));
  constexpr double kDotsPerInch = 72;
  unsigned width = 0;
  unsigned height = 0;
  Require(wmf_display_size(player.get(), &width, &height, kDotsPerInch, kDotsPerInch));
  constexpr unsigned kMostPoints = 20'000;
  if (width < 1 || height < 1 || width > kMostPoints || height > kMostPoints)
    throw Failure(Status::kCorrupt, "the metafile has no size");
  return DrawnDocument(
      {Play(*player, bounds, width, height), static_cast<double>(width), static_cast<double>(height)},
      kFormatWmf, "WMF");
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kFonts, helper::PrepareDrawing, helper::Open)
