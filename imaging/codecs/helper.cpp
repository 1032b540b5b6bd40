#include "imaging/codecs/helper.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
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

class HelperReader final : public Reader {
 public:
  HelperReader(const Source& source, const HelperFamily& family)
      : m_source(source), m_client(source, family.module) {}

  int CountPages() override { return m_client.CountPages(); }

  PageInfo Describe(int page) override {
    RequirePage(m_source, page, CountPages());
    return InfoOf(m_client.Describe(page));
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    RequirePage(m_source, page, CountPages());
    const Delivered delivered = m_client.Decode(page);
    DecodedPage decoded =
        delivered.page.delivery == helper::Delivery::kPixels ? Pixels(delivered) : Coded(delivered, wish);
    const int damaged = decoded.info.damagedRows;
    decoded.info = InfoOf(delivered.page);
    decoded.info.damagedRows = std::max(damaged, delivered.damagedRows);
    return decoded;
  }

 private:
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
  Client m_client;
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

bool IsPdf(const Candidate& candidate) {
  const auto head = candidate.head;
  constexpr std::string_view kMark = "%PDF-";
  return std::search(head.begin(), head.end(), kMark.begin(), kMark.end()) != head.end();
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
    {"DICOM", "dicom", IsDicom, Evidence::kSignature},
    {"PDF", "pdf", IsPdf, Evidence::kSignature},
    {"JBIG", "jbig", IsJbig, Evidence::kLikeness},
};

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

template <Evidence evidence>
std::unique_ptr<Reader> Open(const Source& source) {
  std::array<std::uint8_t, 512> buffer;
  const HelperFamily* family = FamilyOf<evidence>(CandidateOf(source, buffer));
  if (family == nullptr || !helper_client::HasModule(family->module))
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
  static constexpr Codec kJpeg2000 = {IsJpeg2000, Open<Evidence::kSignature>};
  return OpenReaderOf(kJpeg2000, block);
}

}  // namespace

std::vector<ReadableKind> ListReadableKinds() {
  constexpr const char* kInProcess[] = {
#define FAMILY(codec, name) name,
#include "imaging/codecs/families.def"
#undef FAMILY
  };
  std::vector<ReadableKind> kinds;
  for (const char* name : kInProcess)
    if (name != nullptr) kinds.push_back({name, nullptr, true});
  for (const HelperFamily& family : kFamilies)
    kinds.push_back({family.name, family.module, helper_client::HasModule(family.module)});
  return kinds;
}

const Codec kHelperCodec = {Recognise<Evidence::kSignature>, Open<Evidence::kSignature>};
const Codec kHelperLikenessCodec = {Recognise<Evidence::kLikeness>, Open<Evidence::kLikeness>,
                                    Evidence::kLikeness};

}  // namespace imaging
