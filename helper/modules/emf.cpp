#include <emf2svg.h>
#include <iconv.h>

#include <cstring>
#include <memory>

#include "helper/modules/svg_page.h"

// Enhanced metafiles.
namespace helper {
namespace {

constexpr int kFormatEmf = 116;
constexpr std::size_t kHeaderBytes = 88;
constexpr std::int64_t kMostBytes = 100'000'000;
constexpr double kPointsPerMillimetre = 72 / 25.4;

std::int32_t Field(const std::vector<std::uint8_t>& file, std::size_t at) {
  std::int32_t value = 0;
  std::memcpy(&value, &file[at], sizeof value);
  return value;
}

/// What is drawn lies in the bounds, in pixels of the device that the file was made for, whose size is told
/// in pixels and in millimetres.
double SideInPoints(const std::vector<std::uint8_t>& file, std::size_t axis) {
  constexpr std::size_t kBounds = 8;
  constexpr std::size_t kDevice = 72;
  constexpr std::size_t kMillimetres = 80;
  const double pixels = static_cast<double>(Field(file, kBounds + 8 + 4 * axis)) -
                        static_cast<double>(Field(file, kBounds + 4 * axis));
  const std::int32_t device = Field(file, kDevice + 4 * axis);
  const std::int32_t millimetres = Field(file, kMillimetres + 4 * axis);
  if (pixels < 1 || device < 1 || millimetres < 1) return 0;
  return pixels * millimetres / device * kPointsPerMillimetre;
}

std::unique_ptr<Document> Open(const Input& input) {
  std::vector<std::uint8_t> file = input.ReadAll(kMostBytes);
  if (file.size() < kHeaderBytes) throw Failure(Status::kCorrupt, "the metafile ends in its header");
  char* text = nullptr;
  std::size_t length = 0;
  generatorOptions options{};
  options.svgDelimiter = true;
  const int done = emf2svg(reinterpret_cast<char*>(file.data()), file.size(), &text, &length, &options);
  const std::unique_ptr<char, void (*)(void*)> owned(text, std::free);
  if (done == 0 || text == nullptr) throw Failure(Status::kCorrupt, "the metafile is damaged");
  return DrawnDocument({std::string(text, length), SideInPoints(file, 0), SideInPoints(file, 1)}, kFormatEmf,
                       "EMF");
}

/// The C library loads tables for character sets when they are first asked for.
void Prepare() {
  PrepareDrawing();
  for (const char* encoding : {"UTF-16LE", "CP1252", "ISO-8859-1"})
    static_cast<void>(iconv_open("UTF-8", encoding));
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kFonts, helper::Prepare, helper::Open)
