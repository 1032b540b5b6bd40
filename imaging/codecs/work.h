#pragma once

#include <cstdint>

#include "imaging/core/source.h"

namespace imaging {

/// What is left of the work that a decode may take (limits.h). Spending tells by its result whether there was
/// enough, since libraries must not be left by an exception.
class WorkBudget {
 public:
  explicit WorkBudget(const Source& source);
  /// Adds what a page of that size is worth.
  void AllowPage(std::int64_t pixels);
  bool SpendBytes(std::int64_t count) { return (m_bytes -= count) >= 0; }
  bool SpendPixels(std::int64_t count) { return (m_pixels -= count) >= 0; }
  bool IsSpent() const { return m_bytes < 0 || m_pixels < 0; }
  [[noreturn]] void Fail() const;

 private:
  const Source& m_source;
  std::int64_t m_bytes;
  std::int64_t m_pixels;
};

}  // namespace imaging
