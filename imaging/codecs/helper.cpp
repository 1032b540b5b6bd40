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

// Files of families that are read outside the host's process.
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

/// The reader of JPEG hands these over.
constexpr HelperFamily kTwelveBitJpeg = {"JPEG with 12 bits a sample", "media", nullptr,
                                         Evidence::kSignature};

Candidate CandidateOf(const Source& source, std::span<std::uint8_t> buffer) {
  return {buffer.first(source.ReadAt(0, buffer)), source, EndingOf(source.Name())};
}

template <Evidence evidence>
const HelperFamily* FamilyOf(const Candidate& candidate) {
  const auto families = HelperFamilies();
  const auto family = std::find_if(families.begin(), families.end(), [&](const HelperFamily& known) {
    return known.evidence == evidence && known.recognise(candidate);
  });
  return family == families.end() ? nullptr : &*family;
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

std::unique_ptr<Reader> OpenMetafile(const Source& block) {
  static constexpr Codec kMetafile = {IsMetafile, Open<Evidence::kSignature>};
  return OpenReaderOf(kMetafile, block);
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
  for (const HelperFamily& family : HelperFamilies()) {
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
