#pragma once

#include <algorithm>
#include <span>

#include "imaging/core/source.h"

namespace imaging {

/// One step of a run-length coding: so many units, all alike or each for itself.
struct RunStep {
  enum Kind {
    kRepeat,   ///< one unit follows, which is repeated
    kLiteral,  ///< the units follow
    kValue     ///< the unit, a byte, was part of the code
  };
  Kind kind = kRepeat;
  int count = 0;
  std::uint8_t value = 0;
};

/// Undoes a run-length coding in which runs may go on in the next row; a kind is told by its next step. A
/// step of no units is skipped.
template <RunStep (*nextStep)(ByteReader&)>
class RunDecoder {
 public:
  /// No step begins at the end, a position of the data, or after it.
  explicit RunDecoder(std::size_t unitBytes = 1, std::int64_t end = INT64_MAX)
      : m_unitBytes(unitBytes), m_end(end) {}

  /// Fills the target, a whole number of units; with zeros past the end of the data.
  void Read(ByteReader& data, std::span<std::uint8_t> target) {
    while (!target.empty()) {
      if (m_step.count == 0 && !Begin(data)) {
        std::fill(target.begin(), target.end(), std::uint8_t{0});
        return;
      }
      const std::size_t units = std::min(static_cast<std::size_t>(m_step.count), target.size() / m_unitBytes);
      const auto part = target.first(units * m_unitBytes);
      if (m_step.kind == RunStep::kLiteral)
        data.Read(part);
      else
        for (std::size_t i = 0; i < part.size(); ++i) part[i] = m_unit[i % m_unitBytes];
      m_step.count -= static_cast<int>(units);
      target = target.subspan(part.size());
    }
  }

 private:
  bool Begin(ByteReader& data) {
    while (m_step.count <= 0 && !data.AtEnd() && data.Position() < m_end) m_step = nextStep(data);
    if (m_step.kind == RunStep::kRepeat) data.Read(std::span(m_unit).first(m_unitBytes));
    if (m_step.kind == RunStep::kValue) m_unit[0] = m_step.value;
    return m_step.count > 0;
  }

  std::size_t m_unitBytes;
  std::int64_t m_end;
  RunStep m_step;
  std::array<std::uint8_t, 4> m_unit{};
};

}  // namespace imaging
