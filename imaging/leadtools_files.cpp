#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/codecs/helper.h"
#include "imaging/codecs/rows.h"
#include "imaging/codecs/writer.h"
#include "imaging/core/coding.h"
#include "imaging/core/guard.h"
#include "imaging/core/source.h"
#include "imaging/core/waiting.h"
#include "imaging/ltwrap.h"
#include "imaging/pages/page_record.h"
#include "imaging/pixels/record.h"

using namespace imaging;

namespace {

constexpr int kDefaultPassCount = 1;

int PageOf(const _LOADFILEOPTION* options) {
  return options == nullptr ? 1 : options->PageNumber;
}

void FillInformation(const PageInfo& page, const Source& source, int number, struct_file_information& info) {
  info = {};
  info.uStructSize = sizeof info;
  info.Format = page.format;
  info.Width = page.width;
  info.Height = page.height;
  info.BitsPerPixel = page.bits;
  info.SizeDisk = static_cast<int>(std::min<std::int64_t>(source.Size(), INT_MAX));
  std::snprintf(info.Compression, sizeof info.Compression, "%s", page.compression.c_str());
  info.ViewPerspective = page.viewPerspective;
  info.Order = page.order;
  info.XResolution = page.xResolution;
  info.YResolution = page.yResolution;
  info.PageNumber = number;
  info.DamagedRows = page.damagedRows;
}

/// An operation of the interface that reads or writes.
template <typename Work>
int Coding(Work work) {
  return Guarded([&] {
    RunCoding(work);
    return 1;
  });
}

/// The same of one that calls the caller back, on his thread.
template <typename Work>
int CodingWith(leadtools12::LoadRowCallback callback, Work work) {
  if (callback == nullptr) return Coding(work);
  const CodingLock lock;
  return Coding(work);
}

void Describe(const Source& source, struct_file_information* info, UINT flags,
              const _LOADFILEOPTION* options) {
  if (info == nullptr) Fail(kErrorInvalidParameter, "No record for the file information was given");
  const auto reader = OpenReader(source);
  const int page = PageOf(options);
  FillInformation(reader->Describe(page), source, page, *info);
  if ((flags & leadtools12::kInfoCountsPages) != 0) info->TotalPages = reader->CountPages();
}

/// The record is written only once the page is there, so that a failed load leaves it as it was.
void Load(const Source& source, struct_LEAD_Bitmap* bitmap, int bits, const DecodeWish& wish,
          const _LOADFILEOPTION* options, struct_file_information* info) {
  if (bitmap == nullptr) Fail(kErrorInvalidParameter, "No record for the bitmap was given");
  const int page = PageOf(options);
  DecodedPage decoded = DecodeAt(bits, *OpenReader(source), page, wish);
  if (info != nullptr) FillInformation(decoded.info, source, page, *info);

  *bitmap = RecordOf(std::move(decoded));
}

/// Who is told of the rows, and what it is given with them.
struct RowListener {
  int bits;  ///< the depth that was asked for
  leadtools12::LoadRowCallback callback;
  void* userData;
  UINT flags;
};

/// Tells the rows as they are decoded, each once, so that a load which is ended costs no more than what has
/// been told of it.
class RowTeller final : public DecodeListener {
 public:
  RowTeller(const RowListener& listener, const Source& source) : m_listener(listener), m_source(source) {}

  /// Until then nothing is known of the page.
  void Describes(struct_file_information& info) { m_info = &info; }

  void Reached(PixelStorage& pixels, int order, int endRow) override {
    const bool asBytes = m_listener.bits == 8 && pixels.Bits() == 1;
    Bitmap header = HeaderOf(pixels.Width(), pixels.Height(), asBytes ? 8 : pixels.Bits());
    header.Order = order;
    // Expanded in groups of eight pixels.
    m_row.resize(asBytes ? pixels.RowBytes() * 8 : pixels.RowBytes());
    for (; m_next < endRow; ++m_next) {
      CopyRow(pixels, asBytes);
      if (!Tell(header, 1)) Fail(kErrorUserAbort, "%s: loading was ended", m_source.Name().c_str());
    }
  }

  /// For where rows are long in coming.
  bool WantsToEnd() {
    constexpr std::chrono::milliseconds kLong(50);
    if (std::chrono::steady_clock::now() - m_told < kLong) return false;
    Bitmap header = HeaderOf(m_info->Width, m_info->Height, std::max(1, m_info->BitsPerPixel));
    // Room for a whole row, should the caller look at one all the same.
    m_row.assign(static_cast<std::size_t>(std::max(1, m_info->Width)) * sizeof(RGBQUAD), 0xff);
    return !Tell(header, 0);
  }

 private:
  /// Without pixels: the callback may throw, and it mustn't free them.
  Bitmap HeaderOf(int width, int height, int bits) const {
    Bitmap header = EmptyBitmap(width, height, bits);
    header.ViewPerspective = m_info->ViewPerspective;
    header.XResolution = m_info->XResolution;
    header.YResolution = m_info->YResolution;
    return header;
  }
  bool Tell(Bitmap& header, int rows) {
    m_told = std::chrono::steady_clock::now();
    return m_listener.callback(m_info, &header, m_row.data(), m_listener.flags, m_next, rows,
                               m_listener.userData) != 0;
  }
  void CopyRow(const PixelStorage& pixels, bool asBytes) {
    if (!asBytes) return pixels.CopyRow(m_next, m_row.data());
    const BilevelColors colors{pixels.Palette()[0], pixels.Palette()[1]};
    ExpandBits(pixels.Row(m_next), m_row.data(), pixels.Width(), colors.ByteOfZero(), colors.ByteOfOne());
  }

  RowListener m_listener;
  const Source& m_source;
  struct_file_information m_nothing{};
  struct_file_information* m_info = &m_nothing;
  int m_next = 0;
  std::vector<std::uint8_t> m_row;
  std::chrono::steady_clock::time_point m_told = std::chrono::steady_clock::now();
};

void LoadWithRows(const Source& source, struct_LEAD_Bitmap* bitmap, DecodeWish wish,
                  const RowListener& listener, const _LOADFILEOPTION* options,
                  struct_file_information* info) {
  if (bitmap == nullptr) Fail(kErrorInvalidParameter, "No record for the bitmap was given");
  const int page = PageOf(options);
  struct_file_information own{};
  struct_file_information& told = info == nullptr ? own : *info;
  const bool filled = (told.InfoFlags & leadtools12::kInfoIsFilled) != 0;
  RowTeller teller(listener, source);
  if (filled) teller.Describes(told);
  const WaitScope waiting([&] { return listener.callback != nullptr && teller.WantsToEnd(); });
  const auto reader = OpenReader(source);
  if (listener.callback != nullptr) {
    if (!filled) FillInformation(reader->Describe(page), source, page, told);
    teller.Describes(told);
    wish.listener = &teller;
  }
  DecodedPage decoded = DecodeAt(listener.bits, *reader, page, wish);
  if (!filled) FillInformation(decoded.info, source, page, told);
  if (listener.callback != nullptr) teller.Reached(*decoded.pixels, decoded.order, decoded.pixels->Height());
  *bitmap = RecordOf(std::move(decoded));
}

}  // namespace

int LEADTOOLS::GetDefaultLoadFileOption(_LOADFILEOPTION* options) {
  if (options == nullptr) Fail(kErrorInvalidParameter, "No record for the load options was given");
  *options = {sizeof *options, kDefaultPassCount, 1};
  return 1;
}

int LEADTOOLS::FileInfo(const char* path, struct_file_information* info, unsigned int flags,
                        _LOADFILEOPTION* options) {
  return Coding([&] { Describe(*OpenFileSource(path), info, flags, options); });
}

int LEADTOOLS::FileInfoMemory(char* buffer, struct_file_information* info, long size, unsigned int flags,
                              _LOADFILEOPTION* options) {
  return Coding([&] { Describe(*OpenMemorySource(buffer, size), info, flags, options); });
}

int LEADTOOLS::LoadBitmapA(const char* path, struct_LEAD_Bitmap* bitmap, int bits, int order,
                           _LOADFILEOPTION* options, struct_file_information* info) {
  return Coding([&] { Load(*OpenFileSource(path), bitmap, bits, {order}, options, info); });
}

int LEADTOOLS::LoadBitmapMemory(char* buffer, struct_LEAD_Bitmap* bitmap, int bits, int order, long size,
                                _LOADFILEOPTION* options, struct_file_information* info) {
  return Coding([&] { Load(*OpenMemorySource(buffer, size), bitmap, bits, {order}, options, info); });
}

int LEADTOOLS::LoadFile(const char* path, struct_LEAD_Bitmap* bitmap, int bits, int order, unsigned int flags,
                        leadtools12::LoadRowCallback callback, void* userData, _LOADFILEOPTION* options,
                        struct_file_information* info) {
  return CodingWith(callback, [&] {
    LoadWithRows(*OpenFileSource(path), bitmap, {order}, {bits, callback, userData, flags}, options, info);
  });
}

int LEADTOOLS::LoadMemory(char* buffer, struct_LEAD_Bitmap* bitmap, int bits, int order, unsigned int flags,
                          leadtools12::LoadRowCallback callback, void* userData, long size,
                          _LOADFILEOPTION* options, struct_file_information* info) {
  return CodingWith(callback, [&] {
    LoadWithRows(*OpenMemorySource(buffer, size), bitmap, {order}, {bits, callback, userData, flags}, options,
                 info);
  });
}

int LEADTOOLS::LoadSmallPagesMemory(char* buffer, long size, int side,
                                    void (*take)(struct_LEAD_Bitmap*, void*), void* userData) {
  return imaging::Guarded([&] {
    std::unique_ptr<Source> source;
    std::unique_ptr<Reader> reader;
    int pages = 0;
    RunCoding([&] {
      source = OpenMemorySource(buffer, size);
      reader = OpenReader(*source);
      pages = reader->CountPages();
    });
    for (int page = 1; page <= pages; ++page) {
      Bitmap record = EmptyBitmap(0, 0, 1);
      RunCoding([&] { record = RecordOf(DecodeAt(0, *reader, page, {1, side})); });
      take(&record, userData);
    }
    return 1;
  });
}

int LEADTOOLS::ListFormats(void (*tell)(const char*, const char*, int, void*), void* userData) {
  return imaging::Guarded([&] {
    for (const ReadableKind& kind : ListReadableKinds())
      tell(kind.name, kind.module, kind.installed ? 1 : 0, userData);
    return 1;
  });
}

int LEADTOOLS::SetDrawnResolution(int dotsPerInch) {
  constexpr int kLeast = 36;
  constexpr int kMost = 1200;
  if (dotsPerInch != 0 && (dotsPerInch < kLeast || dotsPerInch > kMost))
    Fail(kErrorInvalidParameter, "Pages can't be drawn at %d dots per inch", dotsPerInch);
  imaging::SetDrawnResolution(dotsPerInch);
  return 1;
}

int LEADTOOLS::GetDefaultSaveFileOption(_SAVEFILEOPTION* options) {
  if (options == nullptr) Fail(kErrorInvalidParameter, "No record for the save options was given");
  *options = {sizeof *options, 1};
  return 1;
}

int LEADTOOLS::SaveBitmap(const char* path, struct_LEAD_Bitmap* bitmap, int format, int bits, int quality,
                          _SAVEFILEOPTION* options) {
  return imaging::Guarded([&] {
    if (path == nullptr || *path == '\0') Fail(kErrorInvalidParameter, "No file name was given");
    if (bitmap == nullptr || (bitmap->Flags & leadtools12::kAllocated) == 0 ||
        !PixelStorage::IsLive(bitmap->pStorage))
      Fail(kErrorNoBitmap, "%s: there is no image to write", path);
    if (bits != 0 && bits != bitmap->BitsPerPixel)
      Fail(kErrorUnsupported, "%s: an image of %d bits can't be written with %d", path, bitmap->BitsPerPixel,
           bits);
    const SavedPage page{*bitmap->pStorage,   bitmap->Order,       bitmap->ViewPerspective,
                         bitmap->XResolution, bitmap->YResolution, quality};
    RunCoding([&] { SavePage(path, page, format, options == nullptr ? 1 : options->PageNumber); });
    return 1;
  });
}

leadtools12::Waiting::Waiting(WaitCallback callback, void* userData)
    : m_scope(std::make_unique<imaging::WaitScope>([=] { return callback(userData) == 0; })) {}

leadtools12::Waiting::~Waiting() = default;

leadtools12::NewFile::NewFile(const char* path)
    : m_session(imaging::Guarded([&] { return std::make_unique<imaging::SaveSession>(path); })) {}

leadtools12::NewFile::~NewFile() = default;

void leadtools12::NewFile::Complete() {
  Coding([&] { m_session->Complete(); });
}
