#pragma once

#include "helper/module.h"

namespace helper {

/// The program of an encapsulated PostScript file, without the binary header that DOS puts before it, and the
/// box that it says to draw in.
class EpsFile {
 public:
  /// Throws if it tells no box.
  explicit EpsFile(const Input& input);

  /// How many bytes of the program there were.
  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const;

  /// In points.
  double Left() const { return m_left; }
  double Bottom() const { return m_bottom; }
  double Width() const { return m_right - m_left; }
  double Height() const { return m_top - m_bottom; }

 private:
  bool FindBox(std::int64_t offset);

  const Input& m_input;
  std::int64_t m_start = 0;
  std::int64_t m_size;
  double m_left = 0;
  double m_bottom = 0;
  double m_right = 0;
  double m_top = 0;
};

}  // namespace helper
