#include "imaging/codecs/fax_codes.h"

#include "platform/base/fax_codes.h"

namespace imaging {
namespace {

/// Enters a code under every continuation of its bits.
void Enter(FaxRunTable& table, platform::FaxCode code, int run) {
  const std::size_t count = std::size_t{1} << (kFaxRunBits - code.length);
  for (std::size_t i = 0; i < count; ++i)
    table[code.bits * count + i] = {static_cast<std::int16_t>(run), code.length};
}

FaxRunTable Build(bool black) {
  FaxRunTable table{};
  for (int run = 0; run < platform::kMakeUpStep; ++run)
    Enter(table, platform::TerminatingCode(run, black), run);
  for (int run = platform::kMakeUpStep; run <= platform::kLongestMakeUp; run += platform::kMakeUpStep)
    Enter(table, platform::MakeUpCode(run, black), run);
  return table;
}

}  // namespace

const FaxRunTable& WhiteRuns() {
  static const FaxRunTable table = Build(false);
  return table;
}

const FaxRunTable& BlackRuns() {
  static const FaxRunTable table = Build(true);
  return table;
}

}  // namespace imaging
