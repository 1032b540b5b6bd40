#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/graphics/gdi.h"
#include "platform/spooler/page_images.h"
#include "platform/spooler/printers.h"
#include "tessarel12_testing.h"

/// A grey or coloured picture that poppler has made of a page.
struct Picture {
  int width = 0;
  int height = 0;
  std::vector<std::uint8_t> rgb;
  const std::uint8_t* At(int x, int y) const {
    return rgb.data() +
           (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)) * 3;
  }
};

/// A folder of its own for each test, and the queues "Uno" (the default) and "Due" that print into it.
class PrintTest : public ::testing::Test {
 protected:
  void SetUp() override {
    std::string name = (std::filesystem::temp_directory_path() / "printing-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    m_folder = name;
    std::filesystem::create_directory(m_folder / "queue");
    std::filesystem::create_directory(m_folder / "spool");
    setenv("TMPDIR", (m_folder / "spool").c_str(), 1);
    SetPrinters();
  }
  void TearDown() override {
    unsetenv("TMPDIR");
    std::filesystem::remove_all(m_folder);
  }

  void SetPrinters(bool accepting = true, bool gone = false) {
    platform::TestPrinter one;
    one.name = "Uno";
    one.folder = (m_folder / "queue").string();
    one.isDefault = true;
    one.accepting = accepting;
    one.gone = gone;
    one.location = "Primo piano";
    one.comment = "Stampante dell'ufficio";
    platform::TestPrinter two = one;
    two.name = "Due";
    two.isDefault = false;
    two.accepting = true;
    two.gone = false;
    two.dpi = 600;
    two.paperWidth = 21590;
    two.paperLength = 27940;
    const platform::TestPrinter both[] = {one, two};
    platform::testing::SetTestPrinters(both);
  }

  std::string Target() const { return (m_folder / "out.pdf").string(); }
  std::string QueuedJob(int number) const {
    return (m_folder / "queue" / ("job-" + std::to_string(number) + ".pdf")).string();
  }
  /// Files below the test's folder.
  int CountFiles() const {
    int count = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(m_folder))
      count += entry.is_regular_file() ? 1 : 0;
    return count;
  }

  static std::string Read(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  static bool HasPoppler() {
    return std::system("command -v pdftoppm pdfimages pdfinfo >/dev/null 2>&1") == 0;
  }
  static std::string Output(const std::string& command) {
    std::string text;
    FILE* pipe = popen(("(" + command + ") 2>&1").c_str(), "r");
    if (pipe == nullptr) return text;
    char buffer[4096];
    for (std::size_t got = 0; (got = fread(buffer, 1, sizeof buffer, pipe)) > 0;) text.append(buffer, got);
    pclose(pipe);
    return text;
  }

  /// A part of a page (in dots of dpi from the sheet's corner), rendered with scale pixels to a dot, without
  /// smoothing.
  Picture Render(const std::string& pdf, const RECT& part, int dpi, int scale) const {
    const std::string prefix = (m_folder / "page").string();
    const auto option = [scale](const char* name, int dots) { return name + std::to_string(dots * scale); };
    EXPECT_EQ(
        Output("pdftoppm -singlefile -aa no -aaVector no" + option(" -r ", dpi) + option(" -x ", part.left) +
               option(" -y ", part.top) + option(" -W ", part.right - part.left) +
               option(" -H ", part.bottom - part.top) + " " + pdf + " " + prefix),
        "");
    Picture picture;
    std::istringstream file(Read(prefix + ".ppm"));
    std::string magic;
    int most = 0;
    file >> magic >> picture.width >> picture.height >> most;
    file.get();
    picture.rgb.resize(static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height) *
                       3);
    file.read(reinterpret_cast<char*>(picture.rgb.data()), static_cast<std::streamsize>(picture.rgb.size()));
    EXPECT_EQ(magic, "P6") << pdf;
    return picture;
  }

  std::filesystem::path m_folder;
};

/// Pixels with their colours, as a printer takes them.
struct TestImage {
  std::vector<std::uint8_t> bytes;
  std::vector<RGBQUAD> colors;
  platform::PrinterImage view;

  TestImage(int width, int height, int bits) {
    const int stride = (width * bits + 7) / 8;
    bytes.resize(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height));
    for (int i = 0; bits <= 8 && i < 1 << bits; ++i) {
      const auto level = static_cast<BYTE>(i * 255 / ((1 << bits) - 1));
      colors.push_back({level, level, level, 0});
    }
    view = {bytes.data(), stride, width, height, bits, colors, true};
  }
  void SetBit(int x, int y, bool value) {
    std::uint8_t& byte = bytes[static_cast<std::size_t>(y * view.stride + x / 8)];
    const auto mask = static_cast<std::uint8_t>(0x80 >> x % 8);
    byte = static_cast<std::uint8_t>(value ? byte | mask : byte & ~mask);
  }
};
