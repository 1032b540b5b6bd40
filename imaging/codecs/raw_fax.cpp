#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "imaging/codecs/bilevel_page.h"
#include "imaging/codecs/codec.h"
#include "imaging/codecs/fax_page.h"
#include "imaging/codecs/raw_fax_trial.h"
#include "imaging/codecs/remembered_files.h"
#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

// Fax data as it goes over the line, without a header: pages of ITU-T T.4 or T.6 one after the other.
namespace imaging {
namespace {

struct RawFaxPage {
  std::int64_t firstBit = 0;
  int width = 0;
  int height = 0;
  int damagedRows = 0;
};

/// Rows of a page whose height shows only at its end.
class GrowingPage {
 public:
  GrowingPage(const Source& source, int width) : m_source(source), m_width(width) {}

  void Add(FaxRows& rows, bool repeat) {
    MakeRoom();
    std::uint8_t* row = m_pixels->Row(m_height++);
    if (!repeat)
      rows.Paint(row, 0xff);
    else if (m_height > 1)
      std::memcpy(row, m_pixels->Row(m_height - 2), m_pixels->RowBytes());
    else
      std::memset(row, 0xff, m_pixels->RowBytes());
  }
  std::unique_ptr<PixelStorage> Take() {
    if (m_height > m_pixels->Height() / 2) {
      m_pixels->DropRows(m_height);
      return std::move(m_pixels);
    }
    BilevelPage page(m_width, m_height);
    for (int y = 0; y < m_height; ++y) page.Store(m_pixels->Row(y), y, 0);
    return page.Take();
  }

 private:
  void MakeRoom() {
    constexpr int kFirst = 4096;  // more than a sheet at 300 dots per inch
    CheckPageSize(m_source, m_width, m_height + 1);
    if (m_pixels == nullptr)
      Resize(kFirst);
    else if (m_height == m_pixels->Height())
      Resize(std::min(m_height * 2, Limit().side));
  }
  void Resize(int height) {
    auto larger = PixelStorage::Create(m_width, height, 1);
    for (int y = 0; y < m_height; ++y) std::memcpy(larger->Row(y), m_pixels->Row(y), larger->RowBytes());
    m_pixels = std::move(larger);
  }

  const Source& m_source;
  int m_width;
  int m_height = 0;
  std::unique_ptr<PixelStorage> m_pixels;
};

/// What is known of a file so far: where a page ends shows only when it is decoded.
struct RawFaxPages {
  RawFaxForm form;
  std::vector<RawFaxPage> pages;
  std::int64_t nextBit = 0;
  bool complete = false;
  int attempts = 0;  ///< at a page, those at none too
  int searches = 0;  ///< for another width
};

RawFaxPages BeginPages(const Source& source) {
  const auto form = FindRawFaxForm(source);
  if (!form) Fail(kErrorFileFormat, "%s is no fax data", source.Name().c_str());
  return {*form, {}};
}

class RawFaxReader final : public Reader {
 public:
  explicit RawFaxReader(const Source& source)
      : m_source(source),
        m_known(RememberedFiles<RawFaxPages>::Of(source, [&] { return BeginPages(source); })),
        m_data(FaxData::Read(source, 0, source.Size(), Form().reversed)) {}

  int CountPages() override {
    while (FindNext(nullptr)) {
    }
    return static_cast<int>(Pages().size());
  }

  PageInfo Describe(int page) override {
    FindUpTo(page);
    return Information(Page(page));
  }

  DecodedPage Decode(int page, const DecodeWish& wish) override {
    FindUpTo(page - 1);
    DecodedPage decoded;
    std::unique_ptr<GrowingPage> rows;
    if (static_cast<int>(Pages().size()) < page) FindNext(&rows);
    const RawFaxPage& found = Page(page);
    decoded.info = Information(found);
    if (rows != nullptr) {
      decoded.pixels = rows->Take();
      return decoded;
    }
    decoded.pixels = DecodeFaxPage(m_source, m_data, Form().coding, wish, decoded.info, found.firstBit);
    decoded.info.damagedRows = found.damagedRows;
    return decoded;
  }

 private:
  const RawFaxForm& Form() const { return m_known->form; }
  std::vector<RawFaxPage>& Pages() const { return m_known->pages; }

  const RawFaxPage& Page(int page) const {
    RequirePage(m_source, page, static_cast<int>(Pages().size()));
    return Pages()[static_cast<std::size_t>(page) - 1];
  }

  void FindUpTo(int page) {
    while (static_cast<int>(Pages().size()) < page && FindNext(nullptr)) {
    }
  }

  PageInfo Information(const RawFaxPage& page) const {
    static constexpr std::array kCodes = {kFormatRawFaxG3OneDimensional, kFormatRawFaxG3TwoDimensional,
                                          kFormatRawFaxG4};
    CheckPageSize(m_source, page.width, page.height);
    PageInfo info;
    info.format = kCodes[static_cast<std::size_t>(Form().coding)];
    info.width = page.width;
    info.height = page.height;
    info.bits = 1;
    info.compression = FaxCodingName(Form().coding);
    info.damagedRows = page.damagedRows;
    // Nothing tells the resolution. Fax machines send 204 dots per inch by 98 lines, or 196 if asked for fine
    // ones, of which a page has about 2300.
    constexpr int kMostCoarseLines = 1400;
    info.xResolution = 204;
    info.yResolution = page.height < kMostCoarseLines ? 98 : 196;
    return info;
  }

  /// 0 if nothing seems to follow. Files of very many pages that fit no width are given up.
  int WidthFrom(std::int64_t firstBit) const {
    constexpr int kMostSearches = 8;
    if (firstBit >= m_data.Bits() || m_known->attempts++ >= Limit().pages) return 0;
    if (Pages().empty() && firstBit == 0) return Form().width;
    if (Form().coding != FaxCoding::kGroup4) return FindGroup3Width(m_data.Coded(), firstBit, Form().coding);
    const int likely = Pages().empty() ? Form().width : Pages().back().width;
    if (FitsGroup4(m_data.Coded(), firstBit, likely)) return likely;
    return m_known->searches++ < kMostSearches ? FindGroup4Width(m_data.Coded(), firstBit) : 0;
  }

  /// Group 4 pages begin with a byte. No code begins with eight zeros, so bytes of them are filling.
  std::int64_t SkipFilling(std::int64_t bit) const {
    if (Form().coding != FaxCoding::kGroup4) return bit;
    const auto coded = m_data.Coded();
    std::int64_t byte = (bit + 7) / 8;
    while (byte < std::ssize(coded) && coded[static_cast<std::size_t>(byte)] == 0) ++byte;
    return byte * 8;
  }

  /// Finds the next page and gives its rows where they are wanted; false if there is none.
  bool FindNext(std::unique_ptr<GrowingPage>* pixels) {
    while (!m_known->complete) {
      const std::int64_t firstBit = SkipFilling(m_known->nextBit);
      const int width = WidthFrom(firstBit);
      m_known->complete = width == 0;
      if (m_known->complete) break;
      if (pixels != nullptr) *pixels = std::make_unique<GrowingPage>(m_source, width);
      if (DecodePage(firstBit, width, pixels == nullptr ? nullptr : pixels->get())) return true;
    }
    if (pixels != nullptr) pixels->reset();
    return false;
  }

  /// False for a page without rows, which an end of page stands for that follows another.
  bool DecodePage(std::int64_t firstBit, int width, GrowingPage* pixels) {
    FaxRows rows(width, Form().coding);
    rows.Start(m_data.Coded(), firstBit);
    for (auto step = rows.Next(); step != FaxRows::Step::kEnd; step = rows.Next()) {
      FailIfEndWanted();
      if (rows.Count() > Limit().side) break;
      if (pixels != nullptr) pixels->Add(rows, step == FaxRows::Step::kRepeat);
    }
    m_known->complete = !rows.SkipToNextPage() || rows.BitPosition() <= m_known->nextBit;
    m_known->nextBit = rows.BitPosition();
    if (rows.Sound() == 0) return false;
    Pages().push_back({firstBit, width, rows.Count(), rows.Damaged()});
    return true;
  }

  const Source& m_source;
  std::shared_ptr<RawFaxPages> m_known;
  FaxData m_data;
};

bool Recognise(const Candidate& candidate) {
  static constexpr std::array<std::string_view, 8> kEndings = {"g3", "g4",    "fax",          "t4",
                                                               "t6", "ccitt", "ccitt_group3", "ccitt_group4"};
  return std::find(kEndings.begin(), kEndings.end(), candidate.ending) != kEndings.end() ||
         IsCleanRawFax(candidate.source);
}

}  // namespace

extern const Codec kRawFaxCodec = {Recognise, OpenAs<RawFaxReader>, Evidence::kLikeness};

}  // namespace imaging
