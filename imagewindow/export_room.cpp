#include <sys/stat.h>

#include <algorithm>
#include <optional>

#include "imagewindow/detail/export_room.h"
#include "platform/base/output_file.h"
#include "platform/base/translation.h"
#include "platform/framework/message_box.h"

namespace exporting {
namespace {

constexpr int kDeepest = 24;                     // deeper ones are written with it
constexpr std::int64_t kHeaders = 2000;          // with a palette
constexpr std::int64_t kLargePage = 64'000'000;  // few are larger
constexpr std::int64_t kPackedRun = 64;          // PackBits: 128 bytes become two
constexpr std::int64_t kPackedFlat = 128;        // JPEG of one colour

std::int64_t RowBytes(const struct_file_information& page) {
  return (std::int64_t{page.Width} * std::min(page.BitsPerPixel, kDeepest) + 7) / 8;
}

Size Sum(const Size& a, const Size& b) {
  return {a.least + b.least, a.most + b.most};
}

/// As users read it; what is needed is rounded up, what is there down.
CString SizeText(std::int64_t bytes, bool up) {
  constexpr std::int64_t kKilo = 1000;
  constexpr std::int64_t kMega = 1'000'000;
  const std::int64_t unit = bytes < 10 * kMega ? kKilo : kMega;
  CString text;
  text.Format("%lld %s", static_cast<long long>((bytes + (up ? unit - 1 : 0)) / unit),
              unit == kKilo ? "KB" : "MB");
  return text;
}

CString Told(const char* text, const CString& target, std::int64_t needed, std::int64_t free) {
  CString told;
  told.Format(platform::Localized(text), static_cast<const char*>(target),
              static_cast<const char*>(SizeText(needed, true)),
              static_cast<const char*>(SizeText(free, false)));
  return told;
}

}  // namespace

Size SizeOf(const struct_file_information& page, const Format& format) {
  const std::int64_t raw = RowBytes(page) * page.Height;
  if (format.code == kTifBilevel.code) return {page.Height, raw + kHeaders};
  if (format.code == kTifOther.code) return {raw / kPackedRun, raw + raw / kPackedFlat + kHeaders};
  if (format.code == kJpg.code) return {raw / kPackedFlat, raw + kHeaders};
  return {raw, raw + std::int64_t{4} * page.Height + kHeaders};
}

Size SizeOfTif(const PageSource& source, int pages, const CString& target) {
  // The directories of a long file take their time.
  const std::optional<std::int64_t> room = platform::RoomFor(target);
  if (!room || *room > kLargePage * pages) return {};
  Size size;
  for (int number = 1; number <= pages; ++number) {
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    options.PageNumber = number;
    struct_file_information page{};
    source.Describe(&page, &options);
    size = Sum(size, SizeOf(page, TifFormatOf(page.BitsPerPixel)));
  }
  return size;
}

Size SizeOfFile(const CString& file) {
  struct stat status {};
  if (stat(file, &status) != 0) return {};
  return {status.st_size, status.st_size};
}

bool HasRoom(const CString& target, const Size& size, ReportErrorFunction report) {
  const std::optional<std::int64_t> room = platform::RoomFor(target);
  if (!room || *room >= size.most) return true;
  if (*room < size.least) {
    report(
        0,
        Told("Per scrivere %s servono almeno %s, ma sul disco ne sono liberi %s. Non è stato cambiato nulla.",
             target, size.least, *room));
    return false;
  }
  const CString question = Told(
      "Per scrivere %s possono servire fino a %s, ma sul disco ne sono liberi %s. Se non bastano, "
      "quello che c'è resta com'è. Esportare?",
      target, size.most, *room);
  return AfxMessageBox(question, MB_OKCANCEL | MB_ICONEXCLAMATION) == IDOK;
}

}  // namespace exporting
