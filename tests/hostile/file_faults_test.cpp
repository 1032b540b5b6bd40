// Reads and writes that fail, are interrupted, or move less than they were asked to.

#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <filesystem>

#include "tests/hostile/outcome.h"
#include "tests/hostile/samples.h"

namespace hostile {
namespace {

using namespace codec_test;
using faults::Calls;
using faults::Deed;

std::ptrdiff_t Entries(const TempFolder& folder) {
  return std::distance(std::filesystem::directory_iterator(folder.Path("")), {});
}

TEST(FileFaults, ReadsThatFailAreToldAndOthersChangeNothing) {
  const TempFolder folder;
  const std::string path = folder.Path("sample");
  long failing = 0;
  long harmless = 0;
  for (const Sample& sample : MakeSamples()) {
    WriteAll(path, sample.bytes);
    const Work work = [&] { return ResultOf(LoadFile(path)); };
    const Outcome whole = RunWith({Calls::kReads}, 0, work);
    if (whole.failed) continue;  // a kind that goes by the name's ending
    for (long n = 1; n <= whole.counted; ++n) {
      const Outcome broken = RunWith({Calls::kReads, Deed::kFail, EIO}, n, work);
      EXPECT_EQ(broken.signal, 0) << sample.name << ", read " << n;
      const Outcome interrupted = RunWith({Calls::kReads, Deed::kInterrupt}, n, work);
      EXPECT_EQ(interrupted.result, whole.result) << sample.name << ", read " << n;
      ++failing;
      ++harmless;
    }
    EXPECT_EQ(RunWith({Calls::kReads, Deed::kShort}, 1, work).result, whole.result) << sample.name;
    ++harmless;
  }
  EXPECT_GT(failing, 50);
  PrintFigure("reads that fail", failing, "points");
  PrintFigure("reads that are interrupted or short", harmless, "points");
}

struct Job {
  const char* name;
  std::function<void(const std::string& path)> run;
};

std::vector<Job> Jobs() {
  static const Loaded color = MakePage(24, Look::kNoise);
  static const Loaded fax = MakePage(1, Look::kRuns);
  return {{"png", [](const std::string& path) { SaveTo(path, color, 75, 1); }},
          {"jpeg", [](const std::string& path) { SaveTo(path, color, 98, 1); }},
          {"bmp", [](const std::string& path) { SaveTo(path, color, 84, 1); }},
          {"fax", [](const std::string& path) { SaveTo(path, fax, 27, 1); }},
          {"export", [](const std::string& path) { ExportTo(path); }}};
}

// The old file stays until the new one is whole, and nothing stands beside it.
TEST(FileFaults, WritesThatFailKeepTheOldFile) {
  const TempFolder folder;
  const std::string path = folder.Path("target");
  long points = 0;
  long kept = 0;
  for (const Job& job : Jobs()) {
    job.run(path);
    const Bytes whole = ReadAll(path);
    const Bytes old(100, 'o');
    const Work work = [&] { return job.run(path), std::string(); };
    WriteAll(path, old);
    const long calls = RunWith({Calls::kChanges}, 0, work).counted;
    EXPECT_GT(calls, 3) << job.name;
    const auto check = [&](const Fault& fault, long n, bool mayFail) {
      WriteAll(path, old);
      const Outcome outcome = RunWith(fault, n, work);
      const std::string where = std::string(job.name) + ", call " + std::to_string(n) + ", error " +
                                std::to_string(fault.error) + ": " + outcome.result;
      EXPECT_EQ(outcome.signal, 0) << where;
      EXPECT_TRUE(mayFail || !outcome.failed) << where;
      EXPECT_TRUE(ReadAll(path) == (outcome.failed ? old : whole)) << where;
      EXPECT_EQ(Entries(folder), 1) << where;
      ++points;
      kept += outcome.failed ? 1 : 0;
    };
    for (long n = 1; n <= calls; ++n)
      for (const int error : {EIO, ENOSPC, EDQUOT}) check({Calls::kChanges, Deed::kFail, error}, n, true);
    check({Calls::kChanges, Deed::kShort}, 1, false);
  }
  PrintFigure("changes of files that fail", points, "points");
  PrintFigure("the old file kept", kept, "");
}

constexpr std::size_t kBlock = 4096;

/// A small disk of this process alone, which goes with it. False where that isn't allowed.
bool MountSmallDisk(const std::string& folder) {
  return (unshare(CLONE_NEWNS) == 0 || unshare(CLONE_NEWUSER | CLONE_NEWNS) == 0) &&
         mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", folder.c_str(), "tmpfs", 0, "size=256k") == 0;
}

void LeaveBlocks(const std::string& folder, std::size_t blocks) {
  struct statvfs disk {};
  statvfs(folder.c_str(), &disk);
  WriteAll(folder + "/filler", Bytes((disk.f_bavail - blocks) * kBlock));
}

TEST(FileFaults, AFullDiskKeepsTheOldFile) {
  const TempFolder folder;
  const std::string path = folder.Path("target");
  const Bytes old(100, 'o');
  long kept = 0;
  long written = 0;
  for (const Job& job : Jobs())
    for (std::size_t blocks = 0; blocks < 16; ++blocks) {
      const Outcome outcome = RunWith({}, 0, [&]() -> std::string {
        if (!MountSmallDisk(folder.Path(""))) return "no disk";
        job.run(path);
        const Bytes whole = ReadAll(path);
        WriteAll(path, old);
        LeaveBlocks(folder.Path(""), blocks);
        bool failed = false;
        try {
          job.run(path);
        } catch (const std::string&) {
          failed = true;
        }
        if (Entries(folder) != 2) return "something is left";
        return ReadAll(path) != (failed ? old : whole) ? "broken" : failed ? "kept" : "written";
      });
      if (outcome.result == "no disk") GTEST_SKIP() << "this user may mount nothing";
      EXPECT_TRUE(outcome.result == "kept" || outcome.result == "written")
          << job.name << " with " << blocks << " blocks left: " << outcome.result << outcome.signal;
      ++(outcome.result == "kept" ? kept : written);
    }
  EXPECT_GT(kept, 5);
  EXPECT_GT(written, 5);
  PrintFigure("disks too full", kept, "points");
  PrintFigure("disks with just room enough", written, "points");
}

// While a file is looked at, it is replaced, cut or overwritten.
TEST(FileFaults, FilesReplacedUnderTheReader) {
  const TempFolder folder;
  const std::string path = folder.Path("page.tif");
  const std::vector<Sample> samples = MakeSamples();
  long pages = 0;
  long errors = 0;
  for (unsigned round = 0; round < 400; ++round) {
    Bytes bytes = samples[round % samples.size()].bytes;
    if (round % 3 == 1) bytes.resize(bytes.size() / 2);
    if (round % 3 == 2) {
      WriteAll(folder.Path("new"), bytes);
      std::filesystem::rename(folder.Path("new"), path);
    } else {
      WriteAll(path, bytes);
    }
    InformFile(path, 1 + static_cast<int>(round % 2));
    std::filesystem::resize_file(path, bytes.size() - bytes.size() * (round % 5) / 16);
    const Loaded loaded = LoadFile(path, 1, round % 2 == 0 ? 8 : 0);
    ASSERT_TRUE(loaded.pixels != nullptr || !loaded.error.empty());
    ++(loaded.pixels != nullptr ? pages : errors);
  }
  EXPECT_GT(pages, 50);
  PrintFigure("files replaced between two calls", pages + errors, "rounds");
}

}  // namespace
}  // namespace hostile
