#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/imaging/save_support.h"

// Written files are judged by the codec libraries, which know nothing of our loader, and by our loader.
namespace codec_test {
namespace {

constexpr int kBmp = 84;
constexpr int kExif = 98;
constexpr int kG3 = 27;
constexpr int kPackBits = 87;
constexpr int kPng = 75;

std::string Save(const std::string& path, const Loaded& page, int format, int number = 1, int bits = 0) {
  return Inform([&](auto*) {
           _SAVEFILEOPTION options{};
           LEADTOOLS::GetDefaultSaveFileOption(&options);
           options.PageNumber = number;
           struct_LEAD_Bitmap record = page.record;
           LEADTOOLS::SaveBitmap(path.c_str(), &record, format, bits, 0, &options);
         })
      .error;
}

struct SaveCase {
  const char* name;
  int format;
  int bits;
  Look look;
  int width = 37;
  int order = 1;
};

std::ostream& operator<<(std::ostream& out, const SaveCase& row) {
  return out << row.name;
}

class SaveTable : public testing::TestWithParam<SaveCase> {};

INSTANTIATE_TEST_SUITE_P(
    Rows, SaveTable,
    testing::Values(
        SaveCase{"G3", kG3, 1, Look::kNoise}, SaveCase{"G3WhiteFirst", kG3, 1, Look::kWhiteFirst},
        SaveCase{"G3Colored", kG3, 1, Look::kPalette}, SaveCase{"G3LongRuns", kG3, 1, Look::kRuns, 5300},
        SaveCase{"PackBits1", kPackBits, 1, Look::kNoise},
        SaveCase{"PackBits1Colored", kPackBits, 1, Look::kPalette},
        SaveCase{"PackBits4", kPackBits, 4, Look::kPalette},
        SaveCase{"PackBits4Gray", kPackBits, 4, Look::kNoise},
        SaveCase{"PackBits8", kPackBits, 8, Look::kPalette},
        SaveCase{"PackBits8Gray", kPackBits, 8, Look::kRuns, 3000},
        SaveCase{"PackBits24", kPackBits, 24, Look::kNoise},
        SaveCase{"PackBits24RedFirst", kPackBits, 24, Look::kRuns, 37, 0},
        SaveCase{"PackBits32", kPackBits, 32, Look::kNoise}, SaveCase{"Bmp1", kBmp, 1, Look::kPalette},
        SaveCase{"Bmp4Noise", kBmp, 4, Look::kPalette}, SaveCase{"Bmp4Runs", kBmp, 4, Look::kRuns, 1201},
        SaveCase{"Bmp8Noise", kBmp, 8, Look::kPalette, 1201},
        SaveCase{"Bmp8Runs", kBmp, 8, Look::kRuns, 1202}, SaveCase{"Bmp8Narrow", kBmp, 8, Look::kNoise, 1},
        SaveCase{"Bmp24", kBmp, 24, Look::kNoise}, SaveCase{"Bmp24RedFirst", kBmp, 24, Look::kNoise, 38, 0},
        SaveCase{"Bmp32", kBmp, 32, Look::kSoft}, SaveCase{"Png8", kPng, 8, Look::kPalette},
        SaveCase{"Png24", kPng, 24, Look::kNoise}, SaveCase{"Jpeg1", kExif, 1, Look::kSoft},
        SaveCase{"Jpeg4", kExif, 4, Look::kSoft}, SaveCase{"Jpeg8", kExif, 8, Look::kSoft},
        SaveCase{"Jpeg24", kExif, 24, Look::kSoft}, SaveCase{"Jpeg24RedFirst", kExif, 24, Look::kSoft, 37, 0},
        SaveCase{"Jpeg32", kExif, 32, Look::kSoft}),
    [](const auto& info) { return info.param.name; });

/// Independent of our loader: by libtiff, libjpeg or the reader of plain and RLE bitmaps in this folder.
Picture ReadByLibrary(const std::string& path, int format, int page = 1) {
  if (format == kBmp) return ReadBmp(ReadAll(path));
  if (format == kExif) return ReadExifJpeg(path);
  return ReadTiff(path, page);
}

int CompressionOf(const SaveCase& row) {
  if (row.format == kG3) return COMPRESSION_CCITTFAX3;
  if (row.format == kPackBits) return COMPRESSION_PACKBITS;
  if (row.format == kBmp && row.bits <= 8) return row.bits == 8 ? 1 : row.bits == 4 ? 2 : 0;
  return 0;
}

TEST_P(SaveTable, LibrariesAndLoaderReadTheSame) {
  const SaveCase& row = GetParam();
  const TempFolder folder;
  const std::string path = folder.Path("out");
  const Loaded page = MakePage(row.bits, row.look, row.width, row.order);
  ASSERT_EQ(Save(path, page, row.format), "");
  const int tolerance = row.format == kExif ? 12 : 0;

  if (row.format != kPng) {
    const Picture picture = ReadByLibrary(path, row.format);
    ASSERT_EQ(picture.error, "");
    EXPECT_EQ(FirstDifference(page, picture, tolerance), "");
    EXPECT_EQ(picture.xResolution, 204);
    EXPECT_EQ(picture.yResolution, 98);
    EXPECT_EQ(picture.orientation, row.format == kBmp ? 1 : 6);
    EXPECT_EQ(picture.compression, CompressionOf(row));
  }
  const Loaded again = LoadFile(path);
  ASSERT_EQ(again.error, "");
  EXPECT_EQ(FirstDifference(page, again, tolerance), "");
  EXPECT_EQ(again.record.XResolution, 204);
  EXPECT_EQ(again.record.YResolution, 98);
  const bool plainBmp = row.format == kBmp && row.bits != 4 && row.bits != 8;  // a code of its own
  EXPECT_EQ(again.info.Format, plainBmp ? 6 : row.format);
  const bool hasOrientation = row.format != kBmp && row.format != kPng;
  EXPECT_EQ(again.record.ViewPerspective, hasOrientation ? 6 : 0);
}

TEST(SaveTiff, FaxPagesAreWhatFaxSoftwareReads) {
  const TempFolder folder;
  const std::string path = folder.Path("fax.tif");
  for (const Look look : {Look::kNoise, Look::kWhiteFirst}) {
    ASSERT_EQ(Save(path, MakePage(1, look), kG3, 1, 1), "");
    TIFF* tiff = TIFFOpen(path.c_str(), "r");
    EXPECT_EQ(ShortTag(tiff, TIFFTAG_PHOTOMETRIC), PHOTOMETRIC_MINISWHITE);
    EXPECT_EQ(LongTag(tiff, TIFFTAG_GROUP3OPTIONS), 0U);
    EXPECT_EQ(LongTag(tiff, TIFFTAG_SUBFILETYPE), static_cast<std::uint32_t>(FILETYPE_PAGE));
    EXPECT_EQ(TIFFNumberOfStrips(tiff), 1U);
    TIFFClose(tiff);
  }
  EXPECT_NE(Save(path, MakePage(8, Look::kNoise), kG3), "");
  EXPECT_NE(Save(path, MakePage(1, Look::kNoise), kG3, 1, 8), "");
}

TEST(SaveTiff, UnknownResolutionStaysUnknown) {
  const TempFolder folder;
  Loaded page = MakePage(24, Look::kNoise);
  page.record.XResolution = page.record.YResolution = page.record.ViewPerspective = 0;
  for (const int format : {kPackBits, kExif, kBmp, kPng}) {
    ASSERT_EQ(Save(folder.Path("out"), page, format), "");
    const Loaded again = LoadFile(folder.Path("out"));
    EXPECT_EQ(again.record.XResolution, 0) << format;
    EXPECT_EQ(again.record.YResolution, 0) << format;
    EXPECT_EQ(again.record.ViewPerspective, 0) << format;
  }
}

TEST(SaveJpeg, GraysStayGray) {
  const TempFolder folder;
  ASSERT_EQ(Save(folder.Path("gray.jpg"), MakePage(8, Look::kRuns), kExif), "");
  const Picture picture = ReadExifJpeg(folder.Path("gray.jpg"));
  for (const Color& color : picture.colors) {
    ASSERT_EQ(color.red, color.green);
    ASSERT_EQ(color.green, color.blue);
  }
}

struct PageForm {
  int format;
  int bits;
  Look look;
};
const std::vector<PageForm> kMixed = {{kG3, 1, Look::kNoise},       {kPackBits, 8, Look::kPalette},
                                      {kPackBits, 24, Look::kRuns}, {kG3, 1, Look::kPalette},
                                      {kPackBits, 4, Look::kNoise}, {kPackBits, 32, Look::kNoise}};

void CheckMixed(const std::string& path, int first) {
  for (std::size_t i = 0; i < kMixed.size(); ++i) {
    const Loaded page = MakePage(kMixed[i].bits, kMixed[i].look);
    const int number = first + static_cast<int>(i);
    EXPECT_EQ(FirstDifference(page, ReadTiff(path, number), 0), "") << "page " << number;
    EXPECT_EQ(FirstDifference(page, LoadFile(path, number), 0), "") << "page " << number;
  }
}

TEST(SaveTiff, PagesOfMixedDepthsAreAdded) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  for (int round = 0; round < 2; ++round) {  // the second replaces the first
    int number = 0;
    for (const PageForm& form : kMixed)
      ASSERT_EQ(Save(path, MakePage(form.bits, form.look), form.format, ++number), "");
    CheckMixed(path, 1);
    EXPECT_EQ(InformFile(path).record.TotalPages, number);
  }
  const Bytes before = ReadAll(path);
  const Loaded page = MakePage(1, Look::kNoise);
  for (const int number : {-1, 0, 2, 6, 8}) {
    const std::string error = Save(path, page, kG3, number);
    EXPECT_NE(error.find(path), std::string::npos) << number << ": " << error;
  }
  EXPECT_EQ(ReadAll(path), before);
}

/// Other writers' files go on in their own byte order and offset size.
TEST(SaveTiff, PagesAreAddedToForeignFiles) {
  const TempFolder folder;
  const std::string path = folder.Path("foreign.tif");
  for (const char* mode : {"wl", "wb", "w8l", "w8b"}) {
    TiffForm form;
    form.mode = mode;
    WriteAll(path, MakeTiff({form, form}));
    int number = 2;
    for (const PageForm& added : kMixed)
      ASSERT_EQ(Save(path, MakePage(added.bits, added.look), added.format, ++number), "") << mode;
    CheckMixed(path, 3);
    EXPECT_TRUE(InformFile(path, 2).error.empty());
  }
}

/// A chain that leads back must neither hang the writer nor hide the new page.
TEST(SaveTiff, LoopingChainIsEnded) {
  const TempFolder folder;
  const std::string path = folder.Path("loop.tif");
  const Loaded page = MakePage(1, Look::kNoise);
  ASSERT_EQ(Save(path, page, kG3), "");
  Bytes file = ReadAll(path);
  const std::size_t directory = file[4] | file[5] << 8U;
  const std::size_t entries = file[directory] | file[directory + 1] << 8U;
  std::copy_n(file.begin() + 4, 4, file.begin() + static_cast<std::ptrdiff_t>(directory + 2 + 12 * entries));
  WriteAll(path, file);
  ASSERT_EQ(Save(path, page, kG3, 2), "");
  EXPECT_EQ(InformFile(path).record.TotalPages, 2);
  EXPECT_EQ(FirstDifference(page, ReadTiff(path, 2), 0), "");
  file.resize(directory + 4);
  WriteAll(path, file);
  EXPECT_NE(Save(path, page, kG3, 2), "");
  EXPECT_EQ(ReadAll(path), file);
}

/// A disk that is full after so many bytes of a file. The limit's signal keeps its default action, which ends
/// the process.
class SizeLimit {
 public:
  explicit SizeLimit(std::size_t bytes) {
    getrlimit(RLIMIT_FSIZE, &m_before);
    const rlimit limit{bytes, m_before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~SizeLimit() { setrlimit(RLIMIT_FSIZE, &m_before); }
  SizeLimit(const SizeLimit&) = delete;
  SizeLimit& operator=(const SizeLimit&) = delete;

 private:
  rlimit m_before{};
};

std::ptrdiff_t Entries(const std::string& folder) {
  return std::distance(std::filesystem::directory_iterator(folder), {});
}

TEST(SaveFailures, FullDiskKeepsTheOldFile) {
  const TempFolder folder;
  const std::string path = folder.Path("old");
  const Bytes old = {'o', 'l', 'd'};
  WriteAll(path, old);
  for (const auto& [format, bits] :
       {std::pair{kG3, 1}, {kPackBits, 24}, {kBmp, 8}, {kBmp, 24}, {kExif, 24}, {kPng, 24}}) {
    const Loaded page = MakePage(bits, Look::kNoise);
    for (const std::size_t room : {0U, 9U, 150U, 300U}) {
      std::string error;
      {
        const SizeLimit limit(room);
        error = Save(path, page, format);
      }
      EXPECT_NE(error.find(path), std::string::npos) << format << ": " << error;
      EXPECT_NE(error.find("too large"), std::string::npos) << format << ": " << error;
      EXPECT_EQ(ReadAll(path), old);
      EXPECT_EQ(Entries(folder.Path("")), 1) << "the part of a file was left";
    }
  }
}

/// All of kMixed into a new file; the error, empty if it was completed.
std::string SaveMixed(const std::string& path) {
  return Inform([&](auto*) {
           leadtools12::NewFile file(path.c_str());
           int number = 0;
           for (const PageForm& form : kMixed) {
             const Loaded page = MakePage(form.bits, form.look);
             struct_LEAD_Bitmap record = page.record;
             _SAVEFILEOPTION options{sizeof options, ++number};
             LEADTOOLS::SaveBitmap(path.c_str(), &record, form.format, 0, 0, &options);
           }
           file.Complete();
         })
      .error;
}

TEST(SaveNewFile, TakesItsPlaceWithAllItsPages) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  for (int round = 0; round < 2; ++round) {
    ASSERT_EQ(SaveMixed(path), "");
    CheckMixed(path, 1);
    EXPECT_EQ(InformFile(path).record.TotalPages, static_cast<int>(kMixed.size()));
  }
  const Bytes whole = ReadAll(path);
  const Loaded page = MakePage(1, Look::kNoise);
  {
    const leadtools12::NewFile file(path.c_str());
    EXPECT_NE(Save(path, page, kG3, 2).find("added to 0 pages"), std::string::npos);
    ASSERT_EQ(Save(path, page, kG3, 1), "");
    EXPECT_NE(Save(path, page, kG3, 3).find("added to 1 pages"), std::string::npos);
    ASSERT_EQ(Save(path, page, kG3, 2), "");
  }
  EXPECT_EQ(ReadAll(path), whole) << "it wasn't completed";
  int failures = 0;
  for (std::size_t room = 0; room < whole.size(); room += 97, ++failures) {
    const SizeLimit limit(room);
    EXPECT_NE(SaveMixed(path).find("too large"), std::string::npos) << room;
  }
  EXPECT_GT(failures, 20);
  EXPECT_EQ(ReadAll(path), whole);
  EXPECT_EQ(Entries(folder.Path("")), 1);
}

/// Killed wherever it may be, an export leaves the old file or the new one, and nothing beside it.
TEST(SaveNewFile, AKilledProcessLeavesAWholeFile) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  ASSERT_EQ(SaveMixed(path), "");
  const Bytes whole = ReadAll(path);
  for (int kill = 0; kill < 40; ++kill) {
    const Bytes old(100, 'o');
    WriteAll(path, old);
    const pid_t child = fork();
    if (child == 0) _exit(SaveMixed(path).empty() ? 0 : 1);
    usleep(static_cast<useconds_t>(kill * 100));
    ::kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const Bytes now = ReadAll(path);
    EXPECT_TRUE(now == old || now == whole) << kill;
  }
  ASSERT_EQ(SaveMixed(path), "");
  EXPECT_EQ(Entries(folder.Path("")), 1);
}

/// Wherever adding a page is cut short, the file is as it was before.
TEST(SaveFailures, FullDiskKeepsThePagesBefore) {
  const TempFolder folder;
  const std::string path = folder.Path("pages.tif");
  ASSERT_EQ(Save(path, MakePage(24, Look::kNoise), kPackBits, 1), "");
  ASSERT_EQ(Save(path, MakePage(1, Look::kNoise), kG3, 2), "");
  const Bytes before = ReadAll(path);
  const Loaded third = MakePage(8, Look::kPalette);
  int failures = 0;
  for (std::size_t room = before.size();; room += 37) {
    std::string error;
    {
      const SizeLimit limit(room);
      error = Save(path, third, kPackBits, 3);
    }
    if (error.empty()) break;
    ++failures;
    ASSERT_NE(error.find(path), std::string::npos) << error;
    ASSERT_EQ(ReadAll(path), before) << room;
  }
  EXPECT_GT(failures, 20);
  EXPECT_EQ(FirstDifference(third, ReadTiff(path, 3), 0), "");
}

TEST(SaveFailures, TargetsThatCannotBeFiles) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path("folder"));
  WriteAll(folder.Path("text.tif"), {'t', 'e', 'x', 't', ' ', ' ', ' ', ' '});
  const Loaded page = MakePage(1, Look::kNoise);
  const struct {
    std::string path;
    int number;
    const char* reason;
  } rows[] = {{folder.Path("folder"), 1, "folder"},         {folder.Path("folder"), 2, "folder"},
              {folder.Path("none/out"), 1, "No such file"}, {folder.Path("none"), 2, "No such file"},
              {folder.Path("text.tif"), 2, "not a TIFF"},   {"/dev/full", 1, "ordinary"},
              {"/proc/out.tif", 1, "/proc/out.tif"}};
  for (const auto& row : rows) {
    const std::string error = Save(row.path, page, kG3, row.number);
    EXPECT_NE(error.find(row.path), std::string::npos) << error;
    EXPECT_NE(error.find(row.reason), std::string::npos) << error;
  }
  EXPECT_EQ(Entries(folder.Path("")), 2);
  EXPECT_NE(Save(folder.Path("two.jpg"), page, kExif, 2), "");
  EXPECT_NE(Save(folder.Path("wide.jpg"), MakePage(8, Look::kRuns, 66000), kExif), "");
}

TEST(SaveFailures, RightsAreRespected) {
  if (geteuid() == 0) GTEST_SKIP() << "nothing is forbidden to this user";
  const TempFolder folder;
  const std::string path = folder.Path("locked.bmp");
  const Loaded page = MakePage(8, Look::kNoise);
  WriteAll(path, {'x'});
  chmod(path.c_str(), 0444);
  EXPECT_NE(Save(path, page, kBmp).find("Permission denied"), std::string::npos);
  chmod(folder.Path("").c_str(), 0555);
  EXPECT_NE(Save(folder.Path("new.bmp"), page, kBmp).find("Permission denied"), std::string::npos);
  chmod(folder.Path("").c_str(), 0755);
}

TEST(SaveTarget, PermissionsAndLinksStay) {
  const TempFolder folder;
  const std::string path = folder.Path("real.bmp");
  const std::string link = folder.Path("link.bmp");
  const auto mode = [&] {
    struct stat status {};
    stat(path.c_str(), &status);
    return status.st_mode & 0777;
  };
  const Loaded page = MakePage(8, Look::kNoise);
  const mode_t mask = umask(027);
  ASSERT_EQ(Save(path, page, kBmp), "");
  umask(mask);
  EXPECT_EQ(mode(), 0640U);
  chmod(path.c_str(), 0604);
  std::filesystem::create_symlink("real.bmp", link);
  ASSERT_EQ(Save(link, page, kBmp), "");
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(mode(), 0604U);
  EXPECT_EQ(FirstDifference(page, ReadBmp(ReadAll(path)), 0), "");
}

}  // namespace
}  // namespace codec_test
