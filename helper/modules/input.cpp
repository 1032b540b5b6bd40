#include <unistd.h>

#include "helper/module.h"

namespace helper {

std::size_t Input::ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const {
  std::size_t done = 0;
  while (done < target.size() && offset >= 0) {
    const ssize_t got = pread(m_descriptor, target.data() + done, target.size() - done,
                              static_cast<off_t>(offset + static_cast<std::int64_t>(done)));
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::vector<std::uint8_t> Input::ReadAll(std::int64_t most) const {
  if (m_size > most) throw Failure(Status::kTooLarge, "the file is too large to be read at once");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(m_size));
  if (ReadAt(0, bytes) != bytes.size()) throw Failure(Status::kCorrupt, "the file can't be read to its end");
  return bytes;
}

}  // namespace helper
