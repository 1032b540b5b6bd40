// A process that is killed at any call which changes files leaves the old file or the whole new one, and what
// it leaves beside it the next run takes away.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/graphics/gdi.h"
#include "platform/registry/registry.h"
#include "platform/spooler/printers.h"
#include "tessarel12_testing.h"
#include "tests/hostile/outcome.h"
#include "tests/hostile/samples.h"

namespace hostile {
namespace {

using namespace codec_test;

namespace fs = std::filesystem;

struct Job {
  const char* name;
  std::function<void(const std::string& path)> run;
};

void PrintTo(const std::string& path) {
  const HDC dc = CreateDCA(nullptr, "Uno", nullptr, nullptr);
  const DOCINFOA document{sizeof(DOCINFOA), "Prova", path.c_str(), nullptr, 0};
  bool printed = StartDocA(dc, &document) > 0;
  for (int page = 0; page < 3; ++page) {
    printed = printed && StartPage(dc) > 0;
    Rectangle(dc, 100, 100, 500, 500);
    printed = printed && EndPage(dc) > 0;
  }
  printed = printed && EndDoc(dc) > 0;
  DeleteDC(dc);
  if (!printed) throw std::string("not printed");
}

long CountEntries(const std::string& folder) {
  return std::distance(fs::recursive_directory_iterator(folder), {});
}

std::string Names(const std::string& folder) {
  std::string names;
  for (const auto& entry : fs::recursive_directory_iterator(folder)) names += entry.path().string() + " ";
  return names;
}

class Kill : public testing::Test {
 protected:
  void SetUp() override {
    platform::TestPrinter printer;
    printer.name = "Uno";
    printer.folder = folder.Path("queue");
    printer.isDefault = printer.accepting = true;
    platform::testing::SetTestPrinters({&printer, 1});
    setenv("TMPDIR", folder.Path("").c_str(), 1);
  }
  void TearDown() override { unsetenv("TMPDIR"); }

  /// At every call that changes files; the count of those.
  long KillEach(const Job& job, const std::string& path, const std::function<bool(const Bytes&)>& isFine) {
    const Work work = [&] { return job.run(path), std::string(); };
    const Outcome whole = RunWith({faults::Calls::kChanges}, 0, work);
    EXPECT_FALSE(whole.failed) << job.name << whole.result;
    const long entries = CountEntries(folder.Path(""));
    for (long n = 1; n <= whole.counted; ++n) {
      const Outcome outcome = RunWith({faults::Calls::kChanges, faults::Deed::kKill}, n, work);
      EXPECT_EQ(outcome.signal, SIGKILL) << job.name << ", call " << n << " of " << whole.counted;
      const Bytes now = ReadAll(path);
      EXPECT_TRUE(isFine(now)) << job.name << ", call " << n << ": "
                               << std::string(now.begin(), now.end()).substr(0, 100);
      left += std::max(CountEntries(folder.Path("")) - entries, 0L);
      EXPECT_FALSE(RunWith({}, 0, work).failed) << job.name << " after a kill at call " << n;
      EXPECT_EQ(CountEntries(folder.Path("")), entries)
          << job.name << ", call " << n << ": something is left: " << Names(folder.Path(""));
    }
    return whole.counted;
  }

  TempFolder folder;
  long left = 0;
};

TEST_F(Kill, LeavesWholeFilesAndNothingBeside) {
  static const Loaded color = MakePage(24, Look::kNoise);
  const std::string path = folder.Path("target");
  long points = 0;
  for (const Job& job : {Job{"export", &ExportTo}, Job{"print", &PrintTo},
                         Job{"png", [](const std::string& target) { SaveTo(target, color, 75, 1); }},
                         Job{"jpeg", [](const std::string& target) { SaveTo(target, color, 98, 1); }},
                         Job{"bmp", [](const std::string& target) { SaveTo(target, color, 84, 1); }}}) {
    job.run(path);
    const std::size_t size = ReadAll(path).size();
    points += KillEach(job, path, [&](const Bytes& now) { return now.size() == size; });
    const Job fresh{job.name, [&](const std::string& target) { fs::remove(target), job.run(target); }};
    points += KillEach(fresh, path, [&](const Bytes& now) { return now.empty() || now.size() == size; });
    fs::remove(path);
  }
  PrintFigure("kills while a file is written", points, "points");
  PrintFigure("left-overs that the next run took away", left, "");
}

TEST_F(Kill, LeavesSettingsWhole) {
  setenv("XDG_CONFIG_HOME", folder.Path("").c_str(), 1);
  const auto put = [](const std::string&) {
    HKEY key = nullptr;
    RegCreateKeyExA(HKEY_CURRENT_USER, "software\\kill", 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, &key,
                    nullptr);
    // Another number each time, or nothing would be saved.
    DWORD number = 0;
    DWORD size = sizeof number;
    RegQueryValueExA(key, "n", nullptr, nullptr, reinterpret_cast<BYTE*>(&number), &size);
    number = number == 7 ? 8 : 7;
    for (const char* name : {"a", "b", "c", "d", "n"})
      if (RegSetValueExA(key, name, 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number), sizeof number) !=
          ERROR_SUCCESS)
        throw std::string("not saved");
  };
  put({});
  const long points = KillEach({"settings", put}, folder.Path("tessarel12/registry"), [](const Bytes& now) {
    const std::string text(now.begin(), now.end());
    return text.rfind("[software]\n", 0) == 0 &&
           (text.find("\nkill\\n=7\n") != text.npos || text.find("\nkill\\n=8\n") != text.npos);
  });
  EXPECT_FALSE(fs::exists(folder.Path("tessarel12/registry.damaged-1")));
  PrintFigure("kills while settings are saved", points, "points");
  PrintFigure("left-overs that the next save took away", left, "");
}

}  // namespace
}  // namespace hostile
