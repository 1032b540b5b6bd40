#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "docview/zp_page.h"
#include "platform/framework/message_box.h"
#include "tessarel12_testing.h"
#include "tests/imagewindow/tiff_writer.h"

/// A page with its protected side open.
class TestPage : public CZPPage {
 public:
  using CZPPage::DoLoad;
  using CZPPage::LoadCallback;
  using CZPPage::m_bitmap;
  using CZPPage::m_nRotation;
};

/// A folder for files, and every message box written down.
class PageTest : public testing::Test {
 protected:
  using Page = test_pages::Page;

  void SetUp() override {
    m_folder = std::filesystem::temp_directory_path() / ("tessarel-pages-" + std::to_string(::getpid()));
    std::filesystem::create_directories(m_folder);
    Boxes().clear();
    platform::testing::SetMessageBoxAnswer([](const CString& text, UINT) {
      Boxes().push_back(static_cast<const char*>(text));
      return int{IDOK};
    });
  }
  void TearDown() override { std::filesystem::remove_all(m_folder); }

  std::string File(const std::vector<Page>& pages) {
    const std::string path = m_folder / (std::to_string(m_files++) + ".tif");
    test_pages::Write(path, pages);
    return path;
  }
  static std::vector<BYTE> BytesOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  const std::filesystem::path& Folder() const { return m_folder; }
  static std::vector<std::string>& Boxes() {
    static std::vector<std::string> boxes;
    return boxes;
  }

 private:
  std::filesystem::path m_folder;
  int m_files = 0;
};

/// A bitmap of 8 bits that frees itself.
struct OwnBitmap : struct_LEAD_Bitmap {
  OwnBitmap(int width, int height) : struct_LEAD_Bitmap{} {
    LEADTOOLS::InitBitmap(this, width, height, 8);
    LEADTOOLS::AllocateBitmap(this, 1);
  }
  OwnBitmap(const OwnBitmap&) = delete;
  OwnBitmap& operator=(const OwnBitmap&) = delete;
  ~OwnBitmap() { LEADTOOLS::FreeBitmap(this); }
};

/// Whether the record refers to pixels that exist.
inline bool IsAlive(struct_LEAD_Bitmap* bitmap) {
  struct_LEAD_Bitmap copy{};
  try {
    LEADTOOLS::CopyBitmap(&copy, bitmap);
  } catch (CLeadtoolsException* error) {
    error->Delete();
    return false;
  }
  LEADTOOLS::FreeBitmap(&copy);
  return true;
}
