// Names that are no ordinary file's, or hardly: an answer in time with a text that isn't made of the name's
// letters.

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>

#include "tests/hostile/outcome.h"
#include "tests/hostile/samples.h"

namespace hostile {
namespace {

using namespace codec_test;

std::vector<std::string> SpecialFiles(const TempFolder& folder) {
  mkfifo(folder.Path("pipe").c_str(), 0600);
  std::filesystem::create_directory_symlink("loop", folder.Path("loop"));
  std::filesystem::create_symlink("nowhere/at/all", folder.Path("dangling"));
  const int server = socket(AF_UNIX, SOCK_STREAM, 0);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::snprintf(address.sun_path, sizeof address.sun_path, "%s", folder.Path("socket").c_str());
  EXPECT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  close(server);
  return {"",
          "/",
          ".",
          "..",
          "/dev/null",
          "/dev/zero",
          "/dev/full",
          "/dev/tty",
          "/proc/self/mem",
          "/proc/self/maps",
          "/proc/self/fd/0",
          "/proc/kmsg",
          "/sys",
          "/nonexistent/a/b",
          folder.Path(""),
          folder.Path("pipe"),
          folder.Path("socket"),
          folder.Path("loop"),
          folder.Path("loop/below"),
          folder.Path("dangling"),
          folder.Path(std::string(300, 'n')),
          "/" + std::string(5000, 'p'),
          folder.Path("pipe/below")};
}

TEST(OddPaths, AreAnsweredInTime) {
  const TempFolder folder;
  const Loaded page = MakePage(24, Look::kNoise);
  long answers = 0;
  for (const std::string& path : SpecialFiles(folder)) {
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_NE(LoadFile(path).error, "") << path;
    EXPECT_NE(InformFile(path).error, "") << path;
    // Devices are left out, since a test has no business to try and replace them.
    if (path != folder.Path("dangling") && path.rfind("/dev", 0) != 0 && path.rfind("/proc", 0) != 0) {
      EXPECT_THROW(SaveTo(path, page, 75, 1), std::string) << path;
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << path;
    answers += 3;
  }
  PrintFigure("answers about what is no file", answers, "");
}

TEST(OddPaths, NamesOfAnyBytesAreWrittenAndRead) {
  const TempFolder folder;
  const Loaded page = MakePage(24, Look::kNoise);
  long names = 0;
  for (const std::string& name :
       {std::string("a b"), std::string("line\nbreak"), std::string("%s%n%n%n%99999d"),
        std::string("\xff\xfe\x80"), std::string("tab\t'\"`$(x)"), std::string(255, 'n'), std::string("-rf"),
        std::string("..."), std::string("\xe2\x80\xae.gnp"), std::string("x.\x01\x02"), std::string("*?[a]"),
        std::string("\\back\\slash")}) {
    const std::string path = folder.Path(name);
    EXPECT_NO_THROW(SaveTo(path, page, 75, 1)) << name;
    EXPECT_EQ(LoadFile(path).error, "") << name;
    WriteAll(path, {'n', 'o', 'n', 'e'});
    // Breaks of lines would spoil the box that shows it.
    std::string shown = name.substr(0, 40);
    std::replace_if(
        shown.begin(), shown.end(), [](char letter) { return letter == '\n' || letter == '\t'; }, ' ');
    EXPECT_NE(LoadFile(path).error.find(shown), std::string::npos) << LoadFile(path).error;
    ++names;
  }
  PrintFigure("odd names", names, "");
}

}  // namespace
}  // namespace hostile
