#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace platform {

/// Owner of an open file.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
  FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
  }
  ~FileDescriptor() { Close(); }

  bool IsOpen() const { return m_descriptor >= 0; }
  int Get() const { return m_descriptor; }
  /// False if the system tells of a failed write only now.
  bool Close() { return m_descriptor < 0 || ::close(std::exchange(m_descriptor, -1)) == 0; }

 private:
  int m_descriptor = -1;
};

inline bool WriteAll(int descriptor, const char* data, std::size_t size) {
  while (size > 0) {
    const ssize_t written = ::write(descriptor, data, size);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    data += written;
    size -= static_cast<std::size_t>(written);
  }
  return true;
}

}  // namespace platform
