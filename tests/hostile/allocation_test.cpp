// Every allocation of a load, a save and an export is refused once. The process lives, and who asked gets an
// error or the very same result.

#include <gtest/gtest.h>

#include <functional>

#include "tests/hostile/outcome.h"
#include "tests/hostile/samples.h"

namespace hostile {
namespace {

using namespace codec_test;

constexpr Fault kRefused{faults::Calls::kAllocations, faults::Deed::kFail, 0};

struct Tally {
  long points = 0;
  long errors = 0;
  long same = 0;
  long crashesOfTheTiffLibrary = 0;
};

void RefuseEach(const std::string& name, const Work& work, Tally& tally) {
  const Outcome whole = RunWith(kRefused, 0, work);
  ASSERT_FALSE(whole.failed) << name << ": " << whole.result;
  for (long n = 1; n <= whole.counted; ++n) {
    const Outcome outcome = RunWith(kRefused, n, work);
    // It takes its tables of fields for granted (4.5.0). Our part is to see beforehand that there is room for
    // them.
    if (outcome.signal != 0 && outcome.result.find("libtiff") != std::string::npos) {
      ++tally.crashesOfTheTiffLibrary;
      continue;
    }
    EXPECT_EQ(outcome.signal, 0) << name << ", allocation " << n << " of " << whole.counted;
    if (outcome.signal == 0 && !outcome.failed) {
      EXPECT_EQ(outcome.result, whole.result)
          << name << ", allocation " << n << ": another result, and nobody was told";
    }
    ++tally.points;
    ++(outcome.failed ? tally.errors : tally.same);
  }
}

std::string Contents(const std::string& path) {
  const Bytes bytes = ReadAll(path);
  return std::to_string(std::hash<std::string>()({bytes.begin(), bytes.end()}));
}

TEST(RefusedMemory, EndsNothingAndIsTold) {
#ifdef FAULTS_LEAVE_ALLOCATIONS
  GTEST_SKIP() << "the sanitizer has the allocator";
#endif
  Tally tally;
  for (const Sample& sample : MakeSamples())
    for (const auto& work : {LoadWatched, InformWatched})
      RefuseEach(
          sample.name, [&] { return work(sample.bytes); }, tally);
  PrintFigure("allocations refused while loading", tally.points, "points");
  PrintFigure("told as an error", tally.errors, "");
  PrintFigure("crashes inside libtiff", tally.crashesOfTheTiffLibrary, "");
  Tally saving;
  const TempFolder folder;
  for (const auto& [format, bits] : {std::pair{27, 1}, {87, 24}, {84, 8}, {98, 24}, {75, 24}}) {
    const Loaded page = MakePage(bits, Look::kNoise);
    const std::string path = folder.Path("saved");
    RefuseEach(
        "format " + std::to_string(format), [&] { return SaveTo(path, page, format, 1), Contents(path); },
        saving);
  }
  RefuseEach(
      "export", [&] { return ExportTo(folder.Path("pages.tif")), Contents(folder.Path("pages.tif")); },
      saving);
  PrintFigure("allocations refused while saving", saving.points, "points");
  PrintFigure("told as an error", saving.errors, "");
  PrintFigure("crashes inside libtiff", saving.crashesOfTheTiffLibrary, "");
}

}  // namespace
}  // namespace hostile
