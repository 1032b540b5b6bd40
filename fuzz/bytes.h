#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <vector>

#include "imaging/core/exception.h"

namespace fuzz {

/// Takes choices from the front of an input; the rest is what is worked on.
class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : m_bytes(data, size) {}
  unsigned Take() {
    if (m_bytes.empty()) return 0;
    const unsigned byte = m_bytes[0];
    m_bytes = m_bytes.subspan(1);
    return byte;
  }
  int TakeFrom(int low, int high) {
    return low + static_cast<int>((Take() << 8 | Take()) % static_cast<unsigned>(high - low + 1));
  }
  std::span<const std::uint8_t> Rest() const { return m_bytes; }
  std::vector<std::uint8_t> Copy() const { return {m_bytes.begin(), m_bytes.end()}; }

 private:
  std::span<const std::uint8_t> m_bytes;
};

/// Whether the work went well; the service's exception is the one way to fail.
template <typename Work>
bool Succeeds(Work work) {
  try {
    work();
    return true;
  } catch (CLeadtoolsException* exception) {
    if (std::getenv("FUZZ_TELL") != nullptr)
      std::fprintf(stderr, "%s\n",
                   static_cast<const char*>(CLeadtoolsException::GetErrorMessage(exception->m_nError)));
    exception->Delete();
    return false;
  }
}

inline void Require(bool holds, int line = __builtin_LINE()) {
  if (holds) return;
  std::fprintf(stderr, "not so: line %d\n", line);
  std::abort();
}

}  // namespace fuzz
