#include "imaging/codecs/work.h"

#include <algorithm>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

// A file may be as long as a disk without holding anything.
std::int64_t PixelsForBytes(std::int64_t size) {
  constexpr std::int64_t kMost = 4'000'000'000;
  return std::min(size, kMost / Limit().workPixelsPerByte) * Limit().workPixelsPerByte;
}

}  // namespace

WorkBudget::WorkBudget(const Source& source)
    : m_source(source),
      m_bytes(Limit().workBytes),
      m_pixels(Limit().workPixels + PixelsForBytes(source.Size())) {}

void WorkBudget::AllowPage(std::int64_t pixels) {
  m_bytes += pixels * Limit().workBytesPerPixel;
  m_pixels += pixels * Limit().workPixelsPerPixel;
}

void WorkBudget::Fail() const {
  imaging::Fail(kErrorLimit, "%s takes more work than a page of its size may cost", m_source.Name().c_str());
}

}  // namespace imaging
