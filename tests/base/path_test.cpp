#include "platform/base/path.h"

#include <gtest/gtest.h>

namespace {

struct Row {
  const char *path, *folder, *name, *stem, *extension;
};
constexpr Row kRows[] = {
    {"/a/b.c/fax.tif", "/a/b.c/", "fax.tif", "fax", ".tif"},
    {"C:\\docs\\page", "C:\\docs\\", "page", "page", ""},
    {"/mixed\\two.parts.tif", "/mixed\\", "two.parts.tif", "two.parts", ".tif"},
    {"name.only", "", "name.only", "name", ".only"},
    {"/folder/", "/folder/", "", "", ""},
    {"/.hidden", "/", ".hidden", ".hidden", ""},
    {"", "", "", "", ""},
};

TEST(Paths, SplitAtEitherSeparator) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(row.path);
    const auto path = platform::SplitPath(row.path);
    EXPECT_EQ(path.folder, row.folder);
    EXPECT_EQ(path.name, row.name);
    const auto name = platform::SplitName(path.name);
    EXPECT_EQ(name.stem, row.stem);
    EXPECT_EQ(name.extension, row.extension);
  }
}

}  // namespace
