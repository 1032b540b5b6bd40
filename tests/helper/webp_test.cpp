#include <gtest/gtest.h>
#include <unistd.h>
#include <webp/encode.h>

#include <array>
#include <csignal>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "imaging/core/exception.h"
#include "imaging/helper/place.h"
#include "tests/helper/damage.h"
#include "tests/helper/processes.h"
#include "tests/imaging/codec_files.h"

namespace codec_test {
namespace {

constexpr int kWidth = 37;
constexpr int kHeight = 29;

Color ColorOf(int x, int y, bool alpha) {
  return {x * 6, y * 8, (x + y) * 3, alpha ? 255 - x * 5 : 255};
}

Bytes MakeWebP(bool alpha, bool lossless) {
  Bytes pixels;
  for (int y = 0; y < kHeight; ++y)
    for (int x = 0; x < kWidth; ++x) {
      const Color color = ColorOf(x, y, alpha);
      for (const int level : {color.red, color.green, color.blue, color.alpha})
        pixels.push_back(static_cast<std::uint8_t>(level));
    }
  std::uint8_t* coded = nullptr;
  const std::size_t size = lossless
                               ? WebPEncodeLosslessRGBA(pixels.data(), kWidth, kHeight, kWidth * 4, &coded)
                               : WebPEncodeRGBA(pixels.data(), kWidth, kHeight, kWidth * 4, 95, &coded);
  Bytes file(coded, coded + size);
  WebPFree(coded);
  return file;
}

bool Near(const Color& a, const Color& b, int most) {
  return std::abs(a.red - b.red) <= most && std::abs(a.green - b.green) <= most &&
         std::abs(a.blue - b.blue) <= most && a.alpha == b.alpha;
}

TEST(WebP, PixelsDepthAndName) {
  for (const bool alpha : {false, true})
    for (const bool lossless : {false, true}) {
      SCOPED_TRACE(std::to_string(alpha) + std::to_string(lossless));
      const Loaded page = LoadMemory(MakeWebP(alpha, lossless));
      ASSERT_EQ(page.error, "");
      EXPECT_EQ(page.info.BitsPerPixel, alpha ? 32 : 24);
      EXPECT_EQ(page.info.Format, 0);
      EXPECT_STREQ(page.info.Compression, lossless ? "WebP lossless" : "WebP");
      ASSERT_EQ(page.record.Width, kWidth);
      ASSERT_EQ(page.record.Height, kHeight);
      for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
          ASSERT_TRUE(Near(ColorAt(page, x, y), ColorOf(x, y, alpha), lossless ? 0 : 24)) << x << ',' << y;
    }
}

struct Frame {
  int left, top, width, height;
  Color color;
  bool disposed;  ///< taken away again before the next
};

/// Frames of one colour upon each other (the container's chunks VP8X, ANIM and ANMF), on 40 by 30 pixels.
Bytes MakeAnimation(const std::vector<Frame>& frames) {
  const auto put = [](Bytes& target, int value, int bytes) {
    for (int i = 0; i < bytes; ++i) target.push_back(static_cast<std::uint8_t>(value >> i * 8));
  };
  const auto chunk = [&put](Bytes& target, std::string_view name, const Bytes& data) {
    target.insert(target.end(), name.begin(), name.end());
    put(target, static_cast<int>(data.size()), 4);
    target.insert(target.end(), data.begin(), data.end());
  };
  constexpr int kAnimated = 0x02;
  constexpr int kAlpha = 0x10;
  Bytes header = {kAnimated | kAlpha, 0, 0, 0, 39, 0, 0, 29, 0, 0};
  Bytes body = {'W', 'E', 'B', 'P'};
  chunk(body, "VP8X", header);
  chunk(body, "ANIM", {0, 0, 0, 0, 0, 0});
  for (const Frame& frame : frames) {
    Bytes pixels;
    for (int i = 0; i < frame.width * frame.height; ++i)
      for (const int level : {frame.color.red, frame.color.green, frame.color.blue, frame.color.alpha})
        pixels.push_back(static_cast<std::uint8_t>(level));
    std::uint8_t* coded = nullptr;
    const std::size_t size =
        WebPEncodeLosslessRGBA(pixels.data(), frame.width, frame.height, frame.width * 4, &coded);
    Bytes data;
    for (const int value : {frame.left / 2, frame.top / 2, frame.width - 1, frame.height - 1, 100})
      put(data, value, 3);
    data.push_back(frame.disposed ? 1 : 0);
    constexpr std::size_t kFileHeader = 12;
    data.insert(data.end(), coded + kFileHeader, coded + size);
    WebPFree(coded);
    chunk(body, "ANMF", data);
  }
  Bytes file;
  chunk(file, "RIFF", body);
  return file;
}

TEST(WebP, FramesAreComposed) {
  constexpr Color kRed{255, 0, 0, 255};
  constexpr Color kBlue{0, 0, 255, 255};
  constexpr Color kClear{0, 0, 0, 0};
  const Bytes file = MakeAnimation({{0, 0, 20, 30, kRed, false},
                                    {10, 10, 20, 10, {0, 255, 0, 255}, true},
                                    {30, 20, 10, 10, kBlue, false}});
  struct Row {
    int page;
    std::array<Color, 3> seen;  ///< at (5, 5), (15, 15) and (35, 25)
  };
  // Also backwards, and from one frame to the next.
  const std::array rows = {Row{3, {kRed, kClear, kBlue}}, Row{1, {kRed, kRed, kClear}},
                           Row{2, {kRed, {0, 255, 0, 255}, kClear}}, Row{3, {kRed, kClear, kBlue}}};
  const TempFolder folder;
  WriteAll(folder.Path("a.webp"), file);
  usleep(150'000);  // from here on one process serves all pages
  for (const Row& row : rows) {
    SCOPED_TRACE(row.page);
    const Loaded page = LoadFile(folder.Path("a.webp"), row.page);
    ASSERT_EQ(page.error, "");
    EXPECT_EQ(page.record.Width * 100 + page.record.Height, 4030);
    const std::array seen = {ColorAt(page, 5, 5), ColorAt(page, 15, 15), ColorAt(page, 35, 25)};
    EXPECT_EQ(seen, row.seen);
  }
  EXPECT_EQ(InformMemory(file).record.TotalPages, 3);
  ExpectPageOrError(file, {7, 96, file.size() * 8, 13}, 30);
}

TEST(WebP, CutFilesGiveTheirRowsOrAnError) {
  const TempFolder folder;
  const Bytes whole = MakeWebP(true, true);
  for (std::size_t size = 0; size < whole.size(); size += 1 + whole.size() / 40) {
    const std::string path = folder.Path("cut" + std::to_string(size) + ".webp");
    WriteAll(path, Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    const Loaded page = LoadFile(path);
    EXPECT_TRUE(!page.error.empty() || page.record.Height == kHeight);
  }
}

int EndWithoutARow(struct_file_information*, struct_LEAD_Bitmap* page, BYTE*, UINT, int row, int rows,
                   void* asked) {
  EXPECT_EQ(page->Width, kWidth);
  EXPECT_EQ(row + rows, 0);
  return ++*static_cast<int*>(asked) < 3 ? 1 : 0;
}
int ThrowWithoutARow(struct_file_information*, struct_LEAD_Bitmap*, BYTE*, UINT, int, int, void*) {
  throw 7;
}

// A helper that doesn't answer is asked for; the host isn't kept waiting for the time limit.
TEST(WebP, TheCallbackOfALoadEndsTheProcess) {
  const TempFolder folder;
  const std::string path = folder.Path("slow.webp");
  WriteAll(path, MakeWebP(false, true));
  usleep(150'000);  // a younger file may still change, and its process isn't kept
  for (const bool throws : {false, true}) {
    Information info = InformFile(path);
    std::istringstream children(Children());
    pid_t helper = 0;
    for (pid_t child = 0; children >> child;) helper = child;
    ASSERT_GT(helper, 0);
    kill(helper, SIGSTOP);
    info.record.InfoFlags = leadtools12::kInfoIsFilled;
    struct_LEAD_Bitmap page{};
    int asked = 0;
    try {
      LEADTOOLS::LoadFile(path.c_str(), &page, 0, 1, 3, throws ? ThrowWithoutARow : EndWithoutARow, &asked,
                          nullptr, &info.record);
      ADD_FAILURE();
    } catch (CLeadtoolsException* exception) {
      EXPECT_EQ(exception->m_nError, imaging::kErrorUserAbort);
      exception->Delete();
      EXPECT_EQ(asked, 3);
    } catch (int thrown) {
      EXPECT_EQ(thrown, 7);
    }
    EXPECT_EQ(page.pStorage, nullptr);
    EXPECT_NE(kill(helper, 0), 0) << "the process is still there";
    EXPECT_EQ(LoadFile(path).error, "") << "the file is thought to be bad";
  }
}

// The modules are looked for beside the binary, so a copy of this one elsewhere has none.
TEST(WebP, TheRefusalNamesAModuleThatIsMissing) {
  const bool copied = imaging::helper_client::ProgramPath().empty();
  if (copied) {
    const Loaded page = LoadMemory(MakeWebP(false, true));
    EXPECT_EQ(page.code, -9);
    EXPECT_EQ(
        page.error,
        "memory is not an image of a known kind: WebP is read by the module webp, which isn't installed");
    return;
  }
  const TempFolder folder;
  std::filesystem::copy("/proc/self/exe", folder.Path("copy"));
  const std::string command = folder.Path("copy") + " --gtest_filter=WebP.TheRefusal* > /dev/null";
  EXPECT_EQ(std::system(command.c_str()), 0);
}

}  // namespace
}  // namespace codec_test
