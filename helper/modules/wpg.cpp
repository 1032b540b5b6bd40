#include <librevenge-stream/librevenge-stream.h>
#include <libwpg/libwpg.h>

#include "helper/modules/wpg_drawing.h"

// WordPerfect graphics, of both versions.
namespace helper {
namespace {

constexpr int kFormatWpg = 54;
constexpr std::int64_t kMostBytes = 100'000'000;

std::unique_ptr<Document> Open(const Input& input) {
  const std::vector<std::uint8_t> file = input.ReadAll(kMostBytes);
  librevenge::RVNGStringStream stream(file.data(), static_cast<unsigned>(file.size()));
  WpgDrawing drawing;
  if (!libwpg::WPGraphics::parse(&stream, &drawing))
    throw Failure(Status::kCorrupt, "the drawing is damaged");
  return DrawnDocument(drawing.Take(), kFormatWpg, "WPG");
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kFonts, helper::PrepareDrawing, helper::Open)
