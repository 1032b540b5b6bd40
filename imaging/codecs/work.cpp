#include "imaging/codecs/work.h"

#include <algorithm>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {

WorkBudget::WorkBudget(const Source& source)
    : m_source(source),
      m_bytes(limits::kWorkBytes),
      m_pixels(limits::kWorkPixels +
               std::min(source.Size() * limits::kWorkPixelsPerByte, limits::kMostWorkPixels)) {}

void WorkBudget::AllowPage(std::int64_t pixels) {
  m_bytes += pixels * limits::kWorkBytesPerPixel;
  m_pixels += pixels * limits::kWorkPixelsPerPixel;
}

void WorkBudget::Fail() const {
  imaging::Fail(kErrorLimit, "%s takes more work than a page of its size may cost", m_source.Name().c_str());
}

}  // namespace imaging
