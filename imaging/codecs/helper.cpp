#include "imaging/codecs/helper.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <vector>

#include "imaging/codecs/rows.h"
#include "imaging/core/exception.h"
#include "imaging/helper/client.h"
#include "imaging/helper/place.h"

// Families that are read outside the host's process. The host still says by the signature what a file is.
namespace imaging {
namespace {

using helper_client::Client;
using helper_client::Delivered;
using helper_client::DrawnAt;

PageInfo InfoOf(const helper::PageRecord& page) {
  PageInfo info;
  info.format = page.format;
  info.width = page.width;
  info.height = page.height;
  info.bits = page.bits;
  info.compression.assign(page.compression.begin(),
                          std::find(page.compression.begin(), page.compression.end(), '\0'));
  info.viewPerspective = page.perspective == 1 ? 0 : page.perspective;
  info.xResolution = page.xResolution;
  info.yResolution = page.yResolution;
  return info;
}

/// Reads what the helper wrote. False if the memory file is shorter, which its seals don't let happen.
bool ReadMemory(const Delivered& delivered, std::uint8_t* target, std::size_t bytes) {
  std::size_t done = 0;
  while (done < bytes) {
    const ssize_t got = pread(delivered.memory.Get(), target + done, bytes - done, static_cast<off_t>(done));
    if (got <= 0) return false;
    done += static_cast<std::size_t>(got);
  }
  return true;
}

std::unique_ptr<Reader> OpenDelivered(const Source& block, helper::Delivery delivery);

int g_drawnResolution = 0;

/// A bilevel page that was drawn, at its own resolution, in grey at most.
std::unique_ptr<PixelStorage> TwoLevels(const PixelStorage& drawn) {
  constexpr int kMiddle = 128;
  auto pixels = PixelStorage::Create(drawn.Width(), drawn.Height(), 1);
  for (int y = 0; y < drawn.Height(); ++y) {
    const std::uint8_t* from = drawn.Row(y);
    std::uint8_t* row = pixels->Row(y);
    std::memset(row, 0, pixels->RowBytes());
    for (int x = 0; x < drawn.Width(); ++x, from += 3)
      if (from[1] >= kMiddle) row[x / 8] = static_cast<std::uint8_t>(row[x / 8] | 0x80 >> x % 8);
  }
  return pixels;
}

/// While it lives the listener is asked whether the work is to go on.
class Asking {
 public:
  Asking(std::optional<Client>& client, DecodeListener* listener) : m_client(client) {
    if (m_client && listener != nullptr)
      m_client->SetCancelled([listener] { return listener->WantsToEnd(); });
  }
  ~Asking() {
    if (m_client) m_client->SetCancelled({});
  }
  Asking(const Asking&) = delete;
  Asking& operator=(const Asking&) = delete;

 private:
  std::optional<Client>& m_client;
};

class HelperReader final : public Reader {
 public:
  HelperReader(const Source& source, const HelperFamily& family) : m_source(source), m_family(family) {
    if (helper_client::HasModule(family.module)) m_client.emplace(source, family.module);
    if (family.drawer != nullptr && helper_client::HasModule(family.drawer))
      m_drawer.emplace(source, family.drawer);
  }

  int CountPages() override {
    if (!m_client) return m_drawer->CountPages();
    try {
      return m_client->CountPages();
    } catch (CLeadtoolsException* exception) {
      LeaveToDrawer(exception);
    }
    return m_drawer->CountPages();
  }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, CountPages());
    return InfoOf(Find(page).page);
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    RequirePage(m_source, page, CountPages());
    const Asking asking(m_client, wish.listener);
    const Asking askingDrawer(m_drawer, wish.listener);
    const Shown shown = Find(page);
    if (!m_client || shown.client != &*m_client) return Take(shown, page, wish);
    try {
      return Take(shown, page, wish);
    } catch (CLeadtoolsException* exception) {
      LeaveToDrawer(exception);
    }
    return Take(Drawn(page, {g_drawnResolution}), page, wish);
  }

 private:
  /// Who shows a page, at which resolution, and what it is then.
  struct Shown {
    Client* client;
    DrawnAt drawn;
    helper::PageRecord page;
  };

  Shown Find(int page) {
    if (!m_client) return Drawn(page, {g_drawnResolution});
    try {
      const helper::PageRecord own = m_client->Describe(page, {g_drawnResolution});
      if (own.delivery != helper::Delivery::kDrawn) return {&*m_client, {g_drawnResolution}, own};
      return DrawnAs(own, page);
    } catch (CLeadtoolsException* exception) {
      LeaveToDrawer(exception);
    }
    return Drawn(page, {g_drawnResolution});
  }

  Shown Drawn(int page, const DrawnAt& drawn) {
    if (!m_drawer)
      Fail(kErrorUnsupported,
           "%s: a page that is more than a picture of a known coding is drawn by the module %s, which isn't "
           "installed",
           m_source.Name().c_str(), m_family.drawer);
    return {&*m_drawer, drawn, m_drawer->Describe(page, drawn)};
  }

  /// A picture in a coding that only the renderer knows keeps its resolution, its depth and its name.
  Shown DrawnAs(const helper::PageRecord& own, int page) {
    const bool lies = own.perspective > 4;  // the renderer stands it up
    Shown shown =
        Drawn(page, {own.xResolution, lies ? own.height : own.width, lies ? own.width : own.height});
    shown.page.format = own.format;
    shown.page.bits = own.bits;
    shown.page.memoryBits = own.memoryBits;
    shown.page.compression = own.compression;
    return shown;
  }

  /// What the family's own module couldn't do the other one may; throws on where there is none.
  void LeaveToDrawer(CLeadtoolsException* exception) const {
    const int code = exception->m_nError;
    const bool ofTheFile = code != kErrorUserAbort && code != kErrorNoMemory && code != kErrorPageNotFound;
    if (m_family.drawer == nullptr || !ofTheFile || (!m_drawer && code != kErrorUnsupported)) throw exception;
    exception->Delete();
  }

  DecodedPage Take(const Shown& shown, int page, const DecodeWish& wish) const {
    const Delivered delivered =
        shown.client->Decode(page, wish.side > 0 ? Coarser(shown, wish.side) : shown.drawn);
    if (delivered.page.delivery == helper::Delivery::kDrawn)
      Fail(kErrorInternal, "%s: the page can't be taken over", m_source.Name().c_str());
    DecodedPage decoded =
        delivered.page.delivery == helper::Delivery::kPixels ? Pixels(delivered) : Coded(delivered, wish);
    if (shown.page.memoryBits == 1 && decoded.pixels->Bits() == 24)
      decoded.pixels = TwoLevels(*decoded.pixels);
    const int damaged = decoded.info.damagedRows;
    decoded.info = InfoOf(shown.page);
    decoded.info.damagedRows = std::max(damaged, delivered.damagedRows);
    return decoded;
  }

  /// The resolution at which a page that is drawn has twice the sides of a small picture. Others are as they
  /// are.
  static DrawnAt Coarser(const Shown& shown, int side) {
    const int longer = std::max(shown.page.width, shown.page.height);
    if (longer <= 2 * side || shown.page.xResolution == 0) return shown.drawn;
    return {std::max(1, shown.page.xResolution * 2 * side / longer)};
  }

  DecodedPage Pixels(const Delivered& delivered) const {
    const helper::PageRecord& page = delivered.page;
    if (delivered.rows == 0) Fail(kErrorCorrupt, "%s: nothing can be decoded", m_source.Name().c_str());
    DecodedPage decoded;
    decoded.pixels = PixelStorage::Create(page.width, page.height, page.memoryBits);
    PixelStorage& pixels = *decoded.pixels;
    const std::size_t bytes =
        static_cast<std::size_t>(pixels.Pitch()) * static_cast<std::size_t>(delivered.rows);
    if (pixels.Pitch() != delivered.pitch || !ReadMemory(delivered, pixels.Row(0), bytes))
      Fail(kErrorInternal, "%s: the page can't be taken over", m_source.Name().c_str());
    std::vector<RGBQUAD> colors;
    for (std::size_t i = 0; i < page.colors; ++i) colors.push_back(ColorOf(page.palette[i]));
    if (pixels.Bits() <= 8) SetPalette(pixels, colors);
    for (int y = delivered.rows; y < page.height; ++y) std::memset(pixels.Row(y), 0xff, pixels.RowBytes());
    return decoded;
  }

  /// The page's own coding, which the readers of this process know.
  DecodedPage Coded(const Delivered& delivered, const DecodeWish& wish) const {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(delivered.page.deliveredBytes));
    if (!ReadMemory(delivered, bytes.data(), bytes.size()))
      Fail(kErrorInternal, "%s: the page can't be taken over", m_source.Name().c_str());
    const auto block = OpenBlockSource(std::move(bytes), m_source.Name());
    const auto reader = OpenDelivered(*block, delivered.page.delivery);
    if (reader == nullptr) Fail(kErrorCorrupt, "%s: the page's data is damaged", m_source.Name().c_str());
    DecodedPage decoded = reader->Decode(1, wish);
    if (decoded.info.width != delivered.page.width || decoded.info.height != delivered.page.height)
      Fail(kErrorCorrupt, "%s: the page has another size than its description", m_source.Name().c_str());
    return decoded;
  }

  const Source& m_source;
  const HelperFamily& m_family;
  std::optional<Client> m_client;
  std::optional<Client> m_drawer;
};

bool StartsWith(const Candidate& candidate, std::string_view mark, std::size_t offset = 0) {
  const auto head = candidate.head;
  return head.size() >= offset + mark.size() && std::memcmp(&head[offset], mark.data(), mark.size()) == 0;
}

bool IsWebP(const Candidate& candidate) {
  return StartsWith(candidate, "RIFF") && StartsWith(candidate, "WEBP", 8);
}

/// The container, or a bare codestream: start and size marker.
bool IsJpeg2000(const Candidate& candidate) {
  using namespace std::string_view_literals;
  return StartsWith(candidate, "\0\0\0\x0cjP  \r\n\x87\n"sv) || StartsWith(candidate, "\xff\x4f\xff\x51\0"sv);
}

/// One of the brands of the first box says that its pictures are HEVC.
bool IsHeic(const Candidate& candidate) {
  const auto head = candidate.head;
  constexpr std::size_t kBoxHead = 8;
  constexpr std::size_t kBrandBytes = 4;
  if (!StartsWith(candidate, "ftyp", 4)) return false;
  const std::size_t end = std::min<std::size_t>(BigU32(head.data()), head.size());
  for (std::size_t at = kBoxHead; at + kBrandBytes <= end; at += kBrandBytes)
    for (const char* brand : {"heic", "heix", "heim", "heis"})
      if (StartsWith(candidate, brand, at)) return true;
  return false;
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

/// Two bytes, and flags and a depth that mean something.
bool IsFlic(const Candidate& candidate) {
  const auto head = candidate.head;
  constexpr std::size_t kHeaderBytes = 128;
  if (head.size() < kHeaderBytes || head[5] != 0xaf || (head[4] != 0x11 && head[4] != 0x12)) return false;
  return (head[12] == 8 || head[12] == 0) && head[13] == 0;
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

/// The placeable header, or a bare one: kind 1 or 2, a header of nine words, version 1.0 or 3.0.
bool IsWmf(const Candidate& candidate) {
  using namespace std::string_view_literals;
  const auto head = candidate.head;
  constexpr std::size_t kHeaderBytes = 18;
  if (StartsWith(candidate, "\xd7\xcd\xc6\x9a"sv)) return true;
  return head.size() >= kHeaderBytes && (head[0] == 1 || head[0] == 2) && head[1] == 0 &&
         StartsWith(candidate, "\x09\0"sv, 2) && head[4] == 0 && (head[5] == 1 || head[5] == 3) &&
         head[16] == 0 && head[17] == 0;
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

constexpr HelperFamily kFamilies[] = {
    {"WebP", "webp", IsWebP, Evidence::kSignature},
    {"JPEG 2000", "jpeg2000", IsJpeg2000, Evidence::kSignature},
    {"HEIC", "heic", IsHeic, Evidence::kSignature},
    {"Photoshop", "media", IsPsd, Evidence::kSignature},
    {"PhotoCD", "media", IsPhotoCd, Evidence::kSignature},
    {"IFF", "media", IsIff, Evidence::kSignature},
    {"AVI", "media", IsAvi, Evidence::kSignature},
    {"MPEG", "media", IsMpeg, Evidence::kSignature},
    {"FLIC", "media", IsFlic, Evidence::kSignature},
    {"DICOM", "dicom", IsDicom, Evidence::kSignature},
    {"PDF", "pdf", IsPdf, Evidence::kSignature, "pdfdraw"},
    {"FlashPix", "flashpix", IsFlashpix, Evidence::kSignature},
    {"WMF", "wmf", IsWmf, Evidence::kSignature},
    {"EMF", "emf", IsEmf, Evidence::kSignature},
    {"WPG", "wpg", IsWpg, Evidence::kSignature},
    {"PICT", "pict", IsPict, Evidence::kSignature},
    {"JBIG", "jbig", IsJbig, Evidence::kLikeness},
};

/// The reader of JPEG hands these over.
constexpr HelperFamily kTwelveBitJpeg = {"JPEG with 12 bits a sample", "media", nullptr,
                                         Evidence::kSignature};

Candidate CandidateOf(const Source& source, std::span<std::uint8_t> buffer) {
  return {buffer.first(source.ReadAt(0, buffer)), source, EndingOf(source.Name())};
}

template <Evidence evidence>
const HelperFamily* FamilyOf(const Candidate& candidate) {
  const auto* family = std::find_if(
      std::begin(kFamilies), std::end(kFamilies),
      [&](const HelperFamily& known) { return known.evidence == evidence && known.recognise(candidate); });
  return family == std::end(kFamilies) ? nullptr : family;
}

template <Evidence evidence>
bool Recognise(const Candidate& candidate) {
  return FamilyOf<evidence>(candidate) != nullptr;
}

bool IsInstalled(const HelperFamily& family) {
  return helper_client::HasModule(family.module) ||
         (family.drawer != nullptr && helper_client::HasModule(family.drawer));
}

template <Evidence evidence>
std::unique_ptr<Reader> Open(const Source& source) {
  std::array<std::uint8_t, 512> buffer;
  const HelperFamily* family = FamilyOf<evidence>(CandidateOf(source, buffer));
  if (family == nullptr || !IsInstalled(*family))
    Fail(kErrorFileFormat,
         "%s is not an image of a known kind: %s is read by the module %s, which isn't installed",
         source.Name().c_str(), family == nullptr ? "it" : family->name,
         family == nullptr ? "" : family->module);
  return std::make_unique<HelperReader>(source, *family);
}

/// The helper says what it is, so it is nothing else, and above all no document that holds another.
std::unique_ptr<Reader> OpenDelivered(const Source& block, helper::Delivery delivery) {
  if (delivery == helper::Delivery::kTiff) return OpenReaderOf(kTiffCodec, block);
  if (delivery == helper::Delivery::kJpeg) return OpenReaderOf(kJpegCodec, block);
  return OpenJpeg2000(block);
}

}  // namespace

std::unique_ptr<Reader> OpenJpeg2000(const Source& block) {
  static constexpr Codec kJpeg2000 = {IsJpeg2000, Open<Evidence::kSignature>};
  return OpenReaderOf(kJpeg2000, block);
}

void RequireJpeg2000(const Source& file) {
  if (!helper_client::HasModule("jpeg2000"))
    Fail(kErrorUnsupported, "%s: JPEG 2000 is read by the module jpeg2000, which isn't installed",
         file.Name().c_str());
}

std::unique_ptr<Reader> OpenTwelveBitJpeg(const Source& source) {
  if (!helper_client::HasModule(kTwelveBitJpeg.module)) return nullptr;
  return std::make_unique<HelperReader>(source, kTwelveBitJpeg);
}

std::vector<ReadableKind> ListReadableKinds() {
  constexpr const char* kInProcess[] = {
#define FAMILY(codec, name) name,
#include "imaging/codecs/families.def"
#undef FAMILY
  };
  std::vector<ReadableKind> kinds;
  for (const char* name : kInProcess)
    if (name != nullptr) kinds.push_back({name, nullptr, true});
  for (const HelperFamily& family : kFamilies) {
    kinds.push_back({family.name, family.module, helper_client::HasModule(family.module)});
    if (family.drawer != nullptr)
      kinds.push_back({family.name, family.drawer, helper_client::HasModule(family.drawer)});
  }
  kinds.push_back(
      {kTwelveBitJpeg.name, kTwelveBitJpeg.module, helper_client::HasModule(kTwelveBitJpeg.module)});
  return kinds;
}

void SetDrawnResolution(int dotsPerInch) {
  g_drawnResolution = dotsPerInch;
}

const Codec kHelperCodec = {Recognise<Evidence::kSignature>, Open<Evidence::kSignature>};
const Codec kHelperLikenessCodec = {Recognise<Evidence::kLikeness>, Open<Evidence::kLikeness>,
                                    Evidence::kLikeness};

}  // namespace imaging
