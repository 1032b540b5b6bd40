// Lists of bitmaps: pages decoded when they are asked for, and pixels that are owned exactly once.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "tests/imaging/codec_files.h"
#include "tests/imaging/pixel_support.h"

using namespace codec_test;
using imaging::PixelStorage;
using pixel_test::AllPixels;
using pixel_test::ErrorOf;
using pixel_test::OwnedBitmap;

namespace {

/// A list handle that ends with its scope.
struct List {
  List() { LEADTOOLS::CreateBitmapList(&handle); }
  explicit List(std::string path) { LEADTOOLS::LoadBitmapList(path.data(), &handle, 0, 1, nullptr, nullptr); }
  ~List() { LEADTOOLS::DestroyBitmapList(handle); }
  List(const List&) = delete;
  List& operator=(const List&) = delete;

  unsigned Count() const {
    unsigned count = 0;
    LEADTOOLS::GetBitmapListCount(handle, &count);
    return count;
  }
  struct_LEAD_Bitmap At(unsigned index) const {
    struct_LEAD_Bitmap header{};
    LEADTOOLS::GetBitmapListItem(handle, index, &header);
    return header;
  }
  int ErrorAt(unsigned index) const {
    return ErrorOf([&] { At(index); });
  }
  /// Gives the list a bitmap of that width.
  struct_LEAD_Bitmap Insert(unsigned index, int width) const {
    struct_LEAD_Bitmap bitmap{};
    LEADTOOLS::InitBitmap(&bitmap, width, 3, 8);
    LEADTOOLS::AllocateBitmap(&bitmap, 1);
    LEADTOOLS::InsertBitmapListItem(handle, index, &bitmap);
    return bitmap;
  }
  std::vector<int> Widths() const {
    std::vector<int> widths;
    for (unsigned i = 0; i < Count(); ++i) widths.push_back(At(i).Width);
    return widths;
  }

  void* handle = nullptr;
};

constexpr unsigned kEnd = ~0U;

TiffForm Form(int bits, int samples, int width, int compression = COMPRESSION_NONE) {
  TiffForm form;
  form.bits = bits;
  form.samples = samples;
  form.width = width;
  form.compression = compression;
  form.photometric = samples == 3 ? PHOTOMETRIC_RGB : PHOTOMETRIC_MINISBLACK;
  form.rowsPerStrip = form.height;
  return form;
}

Bytes ThreeKinds() {
  return MakeTiff({Form(1, 1, 40), Form(8, 1, 50), Form(8, 3, 60)});
}

}  // namespace

TEST(BitmapList, HoldsThePagesWhateverTheOrderOfAsking) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  WriteAll(path, ThreeKinds());
  const List list(path);
  ASSERT_EQ(list.Count(), 3U);
  for (const unsigned index : {2U, 0U, 1U, 2U}) {
    const Loaded page = LoadFile(path, static_cast<int>(index) + 1, 0, 1);
    const struct_LEAD_Bitmap header = list.At(index);
    EXPECT_EQ(header.BitsPerPixel, page.record.BitsPerPixel) << index;
    EXPECT_EQ(header.Order, page.record.Order) << index;
    EXPECT_EQ(AllPixels(header), AllPixels(page.record)) << index;
    EXPECT_EQ(header.pStorage, list.At(index).pStorage) << "decoded twice";
  }
}

// Nothing is decoded before it is asked for: a damaged page shows up at its own item.
TEST(BitmapList, ADamagedPageThrowsAtItsItemAlone) {
  const TempFolder folder;
  const std::string path = folder.Path("damaged.tif");
  WriteAll(path, MakeTiff({Form(8, 1, 40), Form(8, 1, 50, COMPRESSION_ADOBE_DEFLATE), Form(8, 1, 60)}));
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  ASSERT_NE(tiff, nullptr);
  TIFFSetDirectory(tiff, 1);
  const auto offset = static_cast<std::size_t>(TIFFGetStrileOffset(tiff, 0));
  const auto count = static_cast<std::size_t>(TIFFGetStrileByteCount(tiff, 0));
  TIFFClose(tiff);
  Bytes bytes = ReadAll(path);
  std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(offset), count, std::uint8_t{0xff});
  WriteAll(path, bytes);

  const List list(path);
  EXPECT_EQ(list.Count(), 3U);
  EXPECT_EQ(list.ErrorAt(0), 0);
  EXPECT_NE(list.ErrorAt(1), 0);
  EXPECT_NE(list.ErrorAt(1), 0) << "the second time it must not pass for decoded";
  EXPECT_EQ(list.At(2).Width, 60);
}

TEST(BitmapList, AFileThatIsNoLongerTheSameIsAnError) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  const std::string other = folder.Path("other.tif");
  const struct {
    const char* name;
    void (*change)(const std::string& path, const std::string& other);
    int error;
  } cases[] = {
      {"replaced", [](const std::string& p, const std::string& o) { std::filesystem::rename(o, p); },
       imaging::kErrorFileRead},
      {"cut short", [](const std::string& p, const std::string&) { std::filesystem::resize_file(p, 100); },
       imaging::kErrorFileRead},
      {"removed", [](const std::string& p, const std::string&) { std::filesystem::remove(p); },
       imaging::kErrorFileOpen},
      {"linked",
       [](const std::string& p, const std::string& o) {
         std::filesystem::remove(o);
         std::filesystem::create_hard_link(p, o);
       },
       0},
  };
  for (const auto& c : cases) {
    WriteAll(path, ThreeKinds());
    WriteAll(other, ThreeKinds());
    const List list(path);
    list.At(0);
    c.change(path, other);
    EXPECT_EQ(list.ErrorAt(1), c.error) << c.name;
    EXPECT_EQ(list.ErrorAt(0), 0) << c.name;
    std::filesystem::remove(other);
  }
}

TEST(BitmapList, OpensOnlyWhatCanBeShown) {
  const TempFolder folder;
  std::string path = folder.Path("text");
  WriteAll(path, {'n', 'o'});
  void* handle = nullptr;
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::LoadBitmapList(path.data(), &handle, 0, 1, nullptr, nullptr); }),
            imaging::kErrorFileFormat);
  EXPECT_EQ(handle, nullptr);
}

// The way of a thumbnail: grey, reduced, given back. Where it fails between, nothing is lost or freed twice.
TEST(BitmapList, ABorrowedHeaderIsChangedInPlace) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  WriteAll(path, ThreeKinds());
  const List list(path);
  struct_LEAD_Bitmap header = list.At(0);
  LEADTOOLS::GrayScaleBitmap(&header, 8);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SizeBitmapExt(&header, 79, 0, 2); }), imaging::kErrorInvalidParameter);
  EXPECT_EQ(list.At(0).BitsPerPixel, 8);
  LEADTOOLS::SizeBitmapExt(&header, 20, 14, 2);
  LEADTOOLS::SetBitmapListItem(list.handle, 0, &header);
  EXPECT_EQ(AllPixels(list.At(0)), AllPixels(header));
  EXPECT_EQ(list.At(0).Width, 20);
  EXPECT_EQ(list.At(0).Height, 14);
}

TEST(BitmapList, InsertsWhereItIsTold) {
  const List list;
  EXPECT_EQ(list.Count(), 0U);
  const std::pair<unsigned, int> inserts[] = {{kEnd, 10}, {kEnd, 20}, {0, 5}, {1, 7}, {4, 30}};
  for (const auto& [index, width] : inserts) list.Insert(index, width);
  EXPECT_EQ(list.Widths(), (std::vector<int>{5, 7, 10, 20, 30}));
  OwnedBitmap bitmap(3, 3, 8);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::InsertBitmapListItem(list.handle, 6, &bitmap); }),
            imaging::kErrorInvalidParameter);
  EXPECT_TRUE(PixelStorage::IsLive(bitmap.pStorage)) << "a refused bitmap stays the caller's";
}

TEST(BitmapList, OwnsEachBitmapOnce) {
  auto list = std::make_unique<List>();
  const List other;
  struct_LEAD_Bitmap first = list->Insert(kEnd, 10);
  struct_LEAD_Bitmap second = list->Insert(kEnd, 20);
  for (void* handle : {list->handle, other.handle})
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::InsertBitmapListItem(handle, kEnd, &first); }),
              imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SetBitmapListItem(list->handle, 0, &second); }),
            imaging::kErrorInvalidParameter);

  struct_LEAD_Bitmap replacement{};
  LEADTOOLS::InitBitmap(&replacement, 30, 3, 8);
  LEADTOOLS::AllocateBitmap(&replacement, 1);
  LEADTOOLS::SetBitmapListItem(list->handle, 0, &replacement);
  EXPECT_FALSE(PixelStorage::IsLive(first.pStorage));
  EXPECT_EQ(list->Widths(), (std::vector<int>{30, 20}));

  LEADTOOLS::FreeBitmap(&second);  // against the rules, but no reason to free it again
  EXPECT_EQ(list->ErrorAt(1), imaging::kErrorNoBitmap);
  list.reset();
  EXPECT_FALSE(PixelStorage::IsLive(replacement.pStorage));
}

TEST(BitmapList, BadHandlesAndIndicesAreErrors) {
  struct_LEAD_Bitmap header{};
  OwnedBitmap bitmap(3, 3, 8);
  unsigned count = 0;
  void* dead = nullptr;
  LEADTOOLS::CreateBitmapList(&dead);
  LEADTOOLS::DestroyBitmapList(dead);
  LEADTOOLS::DestroyBitmapList(dead);
  LEADTOOLS::DestroyBitmapList(nullptr);
  const List empty;
  for (void* handle : {static_cast<void*>(nullptr), dead, static_cast<void*>(&count), empty.handle}) {
    const int refused = handle == empty.handle ? 0 : imaging::kErrorInvalidParameter;
    EXPECT_EQ(ErrorOf([&] { LEADTOOLS::GetBitmapListCount(handle, &count); }), refused);
    for (const unsigned index : {0U, kEnd}) {
      EXPECT_EQ(ErrorOf([&] { LEADTOOLS::GetBitmapListItem(handle, index, &header); }),
                imaging::kErrorInvalidParameter);
      EXPECT_EQ(ErrorOf([&] { LEADTOOLS::SetBitmapListItem(handle, index, &bitmap); }),
                imaging::kErrorInvalidParameter);
    }
  }
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::CreateBitmapList(nullptr); }), imaging::kErrorInvalidParameter);
  EXPECT_EQ(ErrorOf([&] { LEADTOOLS::InsertBitmapListItem(empty.handle, kEnd, &header); }),
            imaging::kErrorNoBitmap);
}

TEST(BitmapList, HoldsThePagesOfSampleFiles) {
  const std::string folder = CorpusFolder();
  if (folder.empty() || !std::filesystem::exists(folder + "/TRUTH.tsv")) GTEST_SKIP() << "no sample files";
  int lists = 0;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".tif" || entry.file_size() > 2'000'000) continue;
    const Information info = InformFile(entry.path().string());
    if (!info.error.empty() || info.record.TotalPages < 2) continue;
    const List list(entry.path().string());
    ASSERT_EQ(list.Count(), static_cast<unsigned>(info.record.TotalPages)) << entry.path();
    const Loaded last = LoadFile(entry.path().string(), info.record.TotalPages, 0, 1);
    if (!last.error.empty()) continue;
    EXPECT_EQ(AllPixels(list.At(list.Count() - 1)), AllPixels(last.record)) << entry.path();
    if (++lists == 5) break;
  }
  EXPECT_GT(lists, 0);
}
