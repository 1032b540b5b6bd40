#include <cmath>

#include "platform/spooler/detail/cups_destinations.h"

namespace platform::cups {
namespace {

Paper PaperOf(const cups_size_t& size) {
  return {size.media, size.width, size.length, size.left, size.top, size.right, size.bottom};
}

/// A paper under any of its names; none if the queue has no such paper.
bool FindPaper(cups_dest_t& dest, cups_dinfo_t* info, const std::string& name, cups_size_t& size) {
  if (name.empty()) return false;
  if (::cupsGetDestMediaByName(CUPS_HTTP_DEFAULT, &dest, info, name.c_str(), 0, &size) != 0) return true;
  // What the user has saved may be the name that drivers have for it.
  const pwg_media_t* known = ::pwgMediaForPPD(name.c_str());
  if (known == nullptr) known = ::pwgMediaForLegacy(name.c_str());
  return known != nullptr &&
         ::cupsGetDestMediaByName(CUPS_HTTP_DEFAULT, &dest, info, known->pwg, 0, &size) != 0;
}

/// The papers that a wish for "media" can name; the word may stand beside a tray's.
bool FindFirstOf(cups_dest_t& dest, cups_dinfo_t* info, const std::string& words, cups_size_t& size) {
  for (std::size_t begin = 0; begin < words.size();) {
    const std::size_t end = std::min(words.find(',', begin), words.size());
    if (FindPaper(dest, info, words.substr(begin, end - begin), size)) return true;
    begin = end + 1;
  }
  return false;
}

/// What a job without wishes is printed on: the user's saved choice, else the queue's own, which isn't always
/// what the library takes for the default.
bool FindDefault(cups_dest_t& dest, cups_dinfo_t* info, cups_size_t& size) {
  if (FindFirstOf(dest, info, Option(dest, "media"), size)) return true;
  if (FindFirstOf(dest, info, Option(dest, "PageSize"), size)) return true;
  ipp_attribute_t* own = ::cupsFindDestDefault(CUPS_HTTP_DEFAULT, &dest, info, "media");
  const char* name = own == nullptr ? nullptr : ::ippGetString(own, 0, nullptr);
  if (name != nullptr && FindPaper(dest, info, name, size)) return true;
  return ::cupsGetDestMediaDefault(CUPS_HTTP_DEFAULT, &dest, info, 0, &size) != 0;
}

void AskDots(cups_dest_t& dest, cups_dinfo_t* info, Details& details) {
  ipp_attribute_t* resolution = ::cupsFindDestDefault(CUPS_HTTP_DEFAULT, &dest, info, "printer-resolution");
  if (resolution == nullptr) return;
  ipp_res_t unit = IPP_RES_PER_INCH;
  int y = 0;
  const int x = ::ippGetResolution(resolution, 0, &y, &unit);
  if (x <= 0) return;
  const double factor = unit == IPP_RES_PER_CM ? 2.54 : 1;
  details.dpiX = static_cast<int>(std::lround(x * factor));
  details.dpiY = static_cast<int>(std::lround((y > 0 ? y : x) * factor));
}

}  // namespace

Details AskDetails(cups_dest_t& dest) {
  Details details;
  const DestInfo info(::cupsCopyDestInfo(CUPS_HTTP_DEFAULT, &dest));
  cups_size_t size{};
  if (info && FindDefault(dest, info.get(), size)) details.papers.push_back(PaperOf(size));
  const int count = info ? ::cupsGetDestMediaCount(CUPS_HTTP_DEFAULT, &dest, info.get(), 0) : 0;
  for (int i = 0; i < count; ++i)
    if (::cupsGetDestMediaByIndex(CUPS_HTTP_DEFAULT, &dest, info.get(), i, 0, &size) != 0)
      details.papers.push_back(PaperOf(size));
  // A queue that tells nothing: A4 with the margins of most devices.
  if (details.papers.empty())
    details.papers.push_back({"iso_a4_210x297mm", 21000, 29700, 423, 423, 423, 423});
  if (info) AskDots(dest, info.get(), details);
  return details;
}

}  // namespace platform::cups
