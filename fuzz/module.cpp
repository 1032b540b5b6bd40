// A module of the helper, without its sandbox.

#include <sys/mman.h>
#include <unistd.h>

#include "helper/module.h"

extern "C" const helper::Module* tessarel_module();

namespace {

constexpr std::int64_t kMostBytes = 16'000'000;

void ReadPages(const helper::Module& module, const helper::Input& input) {
  const auto document = module.open(input);
  const int pages = document->CountPages();
  for (int page = 1; page <= pages && page <= 2; ++page) {
    const helper::PageRecord record = document->Describe(page, 72);
    const std::int64_t pitch = (std::int64_t{record.width} * record.memoryBits + 31) / 32 * 4;
    const std::int64_t bytes =
        record.delivery == helper::Delivery::kPixels ? pitch * record.height : record.deliveredBytes;
    if (record.width < 1 || record.height < 1 || bytes < 1 || bytes > kMostBytes) continue;
    std::vector<std::uint8_t> memory(static_cast<std::size_t>(bytes));
    document->Decode(page, 72, {memory.data(), static_cast<std::ptrdiff_t>(pitch), memory.size()});
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const helper::Module& module = *tessarel_module();
  static const bool prepared = module.prepare == nullptr || (module.prepare(), true);
  static const int file = memfd_create("input", MFD_CLOEXEC);
  if (!prepared || ftruncate(file, 0) != 0 || pwrite(file, data, size, 0) < 0) return 0;
  try {
    ReadPages(module, helper::Input(file, static_cast<std::int64_t>(size)));
  } catch (const std::exception&) {
    // What the helper tells its host as a failure.
  }
  return 0;
}
