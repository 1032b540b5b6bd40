#include <algorithm>
#include <array>
#include <cstring>
#include <initializer_list>
#include <string_view>

#include "imaging/codecs/eps_header.h"
#include "imaging/codecs/helper.h"

// By what the families are known that a module of the helper reads. The host says what a file is.
namespace imaging {
namespace {

bool StartsWith(const Candidate& candidate, std::string_view mark, std::size_t offset = 0) {
  const auto head = candidate.head;
  return head.size() >= offset + mark.size() && std::memcmp(&head[offset], mark.data(), mark.size()) == 0;
}

bool IsWebP(const Candidate& candidate) {
  return StartsWith(candidate, "RIFF") && StartsWith(candidate, "WEBP", 8);
}

/// Whether the first box has one of these brands.
bool HasBrand(const Candidate& candidate, std::initializer_list<const char*> brands) {
  const auto head = candidate.head;
  constexpr std::size_t kBoxHead = 8;
  constexpr std::size_t kBrandBytes = 4;
  if (!StartsWith(candidate, "ftyp", 4)) return false;
  const std::size_t end = std::min<std::size_t>(BigU32(head.data()), head.size());
  for (std::size_t at = kBoxHead; at + kBrandBytes <= end; at += kBrandBytes)
    for (const char* brand : brands)
      if (StartsWith(candidate, brand, at)) return true;
  return false;
}

/// Its pictures are HEVC.
bool IsHeic(const Candidate& candidate) {
  return HasBrand(candidate, {"heic", "heix", "heim", "heis"});
}

/// Its pictures are AV1.
bool IsAvif(const Candidate& candidate) {
  return HasBrand(candidate, {"avif"});
}

bool IsPsd(const Candidate& candidate) {
  using namespace std::string_view_literals;
  return StartsWith(candidate, "8BPS\0\x01"sv);
}

/// The first sectors are empty but for a mark that only overviews have.
bool IsPhotoCd(const Candidate& candidate) {
  constexpr std::int64_t kMarkAt = 2048;
  constexpr std::string_view kMark = "PCD_IPI";
  std::array<std::uint8_t, kMark.size()> mark;
  return StartsWith(candidate, "\xff\xff\xff\xff") && candidate.source.ReadExactly(kMarkAt, mark) &&
         std::memcmp(mark.data(), kMark.data(), mark.size()) == 0;
}

/// A picture, or a list or catalogue of whatever.
bool IsIff(const Candidate& candidate) {
  if (StartsWith(candidate, "LIST") || StartsWith(candidate, "CAT "))
    return StartsWith(candidate, "ILBM", 8) || StartsWith(candidate, "    ", 8);
  if (!StartsWith(candidate, "FORM")) return false;
  for (const char* type : {"ILBM", "PBM ", "ACBM", "DEEP", "RGB8", "RGBN"})
    if (StartsWith(candidate, type, 8)) return true;
  return false;
}

bool IsAvi(const Candidate& candidate) {
  return StartsWith(candidate, "RIFF") && StartsWith(candidate, "AVI ", 8);
}

/// A sequence of pictures, or a pack of a film with sound.
bool IsMpeg(const Candidate& candidate) {
  using namespace std::string_view_literals;
  return StartsWith(candidate, "\0\0\x01\xb3"sv) || StartsWith(candidate, "\0\0\x01\xba"sv);
}

bool IsPdf(const Candidate& candidate) {
  const auto head = candidate.head;
  constexpr std::string_view kMark = "%PDF-";
  return std::search(head.begin(), head.end(), kMark.begin(), kMark.end()) != head.end();
}

/// The header record, and its mark behind the frame.
bool IsEmf(const Candidate& candidate) {
  using namespace std::string_view_literals;
  constexpr std::size_t kMark = 40;
  return StartsWith(candidate, "\1\0\0\0"sv) && StartsWith(candidate, " EMF", kMark);
}

/// The program alone, or behind a header that tells of no preview where one can be.
bool IsEps(const Candidate& candidate) {
  const std::int64_t size = candidate.source.Size();
  if (const auto header = ReadEpsHeader(candidate.head))
    return !header->tiff.In(size) && !header->metafile.In(size);
  if (!StartsWith(candidate, "%!PS-Adobe-")) return false;
  constexpr std::string_view kMark = " EPSF-";
  const auto line = std::find_if(candidate.head.begin(), candidate.head.end(),
                                 [](std::uint8_t letter) { return letter == '\n' || letter == '\r'; });
  return std::search(candidate.head.begin(), line, kMark.begin(), kMark.end()) != line;
}

/// The prefix of that program's files, whose kind 0x16 is graphics.
bool IsWpg(const Candidate& candidate) {
  constexpr std::size_t kKind = 9;
  return StartsWith(candidate,
                    "\xff"
                    "WPC") &&
         StartsWith(candidate, "\x16", kKind);
}

/// A compound file whose root has the class of a FlashPix view or picture. The header tells where the root
/// is.
bool IsFlashpix(const Candidate& candidate) {
  using namespace std::string_view_literals;
  constexpr std::size_t kHeaderBytes = 512;
  constexpr std::int64_t kClassInEntry = 80;
  constexpr auto kClassEnd = "aVT\xc1\xce\x11\x85\x53\0\xaa\0\xa1\xf9\x5b"sv;
  const auto head = candidate.head;
  if (head.size() < kHeaderBytes || !StartsWith(candidate, "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"sv))
    return false;
  if ((head[30] != 9 && head[30] != 12) || head[31] != 0) return false;
  const std::int64_t root = (std::int64_t{LittleU32(&head[48])} + 1) << head[30];
  std::array<std::uint8_t, 16> name;
  return candidate.source.ReadExactly(root + kClassInEntry, name) && name[0] == 0 &&
         (name[1] == 0x67 || name[1] == 0x60) &&
         std::memcmp(&name[2], kClassEnd.data(), kClassEnd.size()) == 0;
}

/// The version's opcode behind a frame, bare or after the header of 512 bytes; the short mark of version 1
/// needs the ending or the size as well.
bool IsPict(const Candidate& candidate) {
  constexpr std::int64_t kAppHeader = 512;
  for (const std::int64_t start : {std::int64_t{0}, kAppHeader}) {
    std::array<std::uint8_t, 14> head;
    if (!candidate.source.ReadExactly(start, head)) return false;
    const auto field = [&head](std::size_t at) {
      return static_cast<std::int16_t>(head[at] << 8 | head[at + 1]);
    };
    if (field(6) <= field(2) || field(8) <= field(4)) continue;
    if (BigU32(&head[10]) == 0x001102ff) return true;
    const std::string& ending = candidate.ending;
    const bool named = ending == "pict" || ending == "pct" || ending == "pic";
    const auto rest = static_cast<std::int16_t>(candidate.source.Size() - start);
    if (head[10] == 0x11 && head[11] == 1 && (named || field(0) == rest)) return true;
  }
  return false;
}

/// Its preamble may carry the signature of another kind.
bool IsDicom(const Candidate& candidate) {
  constexpr std::size_t kPreambleBytes = 128;
  return StartsWith(candidate, "DICM", kPreambleBytes);
}

/// No signature: layers, planes, a byte that is 0, a size, and option bits that mean something.
bool IsJbig(const Candidate& candidate) {
  const auto head = candidate.head;
  const std::string& ending = candidate.ending;
  if (ending != "jbg" && ending != "jbig" && ending != "bie") return false;
  constexpr std::size_t kHeaderBytes = 20;
  return head.size() > kHeaderBytes && head[0] <= head[1] && head[1] <= 32 && head[2] >= 1 && head[3] == 0 &&
         BigU32(&head[4]) != 0 && BigU32(&head[12]) != 0 && head[16] < 128 && (head[18] & 0xf0) == 0 &&
         (head[19] & 0x80) == 0;
}

}  // namespace

/// The placeable header, or a bare one: kind 1 or 2, a header of nine words, version 1.0 or 3.0.
bool IsMetafile(const Candidate& candidate) {
  using namespace std::string_view_literals;
  const auto head = candidate.head;
  constexpr std::size_t kHeaderBytes = 18;
  if (StartsWith(candidate, "\xd7\xcd\xc6\x9a"sv)) return true;
  return head.size() >= kHeaderBytes && (head[0] == 1 || head[0] == 2) && head[1] == 0 &&
         StartsWith(candidate, "\x09\0"sv, 2) && head[4] == 0 && (head[5] == 1 || head[5] == 3) &&
         head[16] == 0 && head[17] == 0;
}

/// The container, or a bare codestream: start and size marker.
bool IsJpeg2000(const Candidate& candidate) {
  using namespace std::string_view_literals;
  return StartsWith(candidate, "\0\0\0\x0cjP  \r\n\x87\n"sv) || StartsWith(candidate, "\xff\x4f\xff\x51\0"sv);
}

std::span<const HelperFamily> HelperFamilies() {
  static constexpr HelperFamily kFamilies[] = {
      {"WebP", "webp", IsWebP, Evidence::kSignature},
      {"JPEG 2000", "jpeg2000", IsJpeg2000, Evidence::kSignature},
      {"HEIC", "heic", IsHeic, Evidence::kSignature},
      {"AVIF", "heic", IsAvif, Evidence::kSignature},
      {"Photoshop", "media", IsPsd, Evidence::kSignature},
      {"PhotoCD", "media", IsPhotoCd, Evidence::kSignature},
      {"IFF", "media", IsIff, Evidence::kSignature},
      {"AVI", "media", IsAvi, Evidence::kSignature},
      {"MPEG", "media", IsMpeg, Evidence::kSignature},
      {"DICOM", "dicom", IsDicom, Evidence::kSignature},
      {"EPS", "eps", IsEps, Evidence::kSignature},
      {"PDF", "pdf", IsPdf, Evidence::kSignature, "pdfdraw"},
      {"FlashPix", "flashpix", IsFlashpix, Evidence::kSignature},
      {"WMF", "wmf", IsMetafile, Evidence::kSignature},
      {"EMF", "emf", IsEmf, Evidence::kSignature},
      {"WPG", "wpg", IsWpg, Evidence::kSignature},
      {"PICT", "pict", IsPict, Evidence::kSignature},
      {"JBIG", "jbig", IsJbig, Evidence::kLikeness},
  };
  return kFamilies;
}

}  // namespace imaging
