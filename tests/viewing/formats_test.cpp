#include <gtest/gtest.h>

#include <string>

#include "viewing/file_formats.h"

namespace {

TEST(FileFormats, EndsGapsAndTheFaxFormats) {
  const struct {
    int code;
    const char* name;
  } rows[] = {
      {1, "ZSoft PCX"},
      {27, "TIFF, compressed using CCITT, group 3, 1 dimension"},
      {29, "TIFF, compressed using CCITT, group 4"},
      {125, "DICOM grayscale – RLE compressed"},
      {246, "MPEG Type 2"},
      {-1, ""},
      {0, ""},
      {7, ""},
      {113, ""},
      {200, ""},
      {247, ""},
  };
  for (const auto& row : rows) EXPECT_EQ(std::string(FileFormatName(row.code)), row.name) << row.code;
  EXPECT_STREQ(FileFormatName(61), FileFormatName(134));
  EXPECT_STREQ(FileFormatName(163), FileFormatName(164));
}

TEST(FileFormats, AHundredAndFifteenHaveNames) {
  int names = 0;
  for (int code = -10; code < 400; ++code) names += *FileFormatName(code) != 0 ? 1 : 0;
  EXPECT_EQ(names, 115);
}

}  // namespace
