#include <cstddef>
#include <cstdint>
#include <vector>

#include "imaging/codecs/codec.h"
#include "imaging/ltwrap.h"
#include "imaging/pixels/storage.h"

namespace {

// Pages that take long for their size alone tell nothing.
constexpr std::int64_t kMostPixels = 4'000'000;

/// A family that goes by the file's name as well, which bytes in memory don't have.
void LoadAs(const imaging::Codec& codec, const std::vector<char>& file) {
  try {
    const auto source = imaging::OpenMemorySource(file.data(), static_cast<long>(file.size()));
    const auto reader = codec.open(*source);
    const imaging::PageInfo info = reader->Describe(1);
    if (std::int64_t{info.width} * info.height <= kMostPixels) reader->Decode(reader->CountPages(), {});
  } catch (CLeadtoolsException* exception) {
    exception->Delete();
  }
}

}  // namespace

// Loads the first pages of any bytes as an image in memory. Whatever they are, the service gives pixels or
// throws its exception. The families are told apart by their first bytes, so one target serves all.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::vector<char> file(data, data + size);
  // Its search for the width takes long under the sanitizers, so most of the inputs are spared it.
  if (size % 8 == 0) LoadAs(imaging::kRawFaxCodec, file);
  for (int page = 1; page <= 3; ++page) {
    for (const int bits : {0, 8}) {
      struct_LEAD_Bitmap bitmap{};
      struct_file_information info{};
      try {
        _LOADFILEOPTION options{};
        LEADTOOLS::GetDefaultLoadFileOption(&options);
        options.PageNumber = page;
        LEADTOOLS::FileInfoMemory(file.data(), &info, static_cast<long>(size), 1, &options);
        if (std::int64_t{info.Width} * info.Height > kMostPixels) continue;
        LEADTOOLS::LoadBitmapMemory(file.data(), &bitmap, bits, page % 2, static_cast<long>(size), &options,
                                    &info);
      } catch (CLeadtoolsException* exception) {
        exception->Delete();
      }
      delete bitmap.pStorage;  // as FreeBitmap does
    }
  }
  return 0;
}
