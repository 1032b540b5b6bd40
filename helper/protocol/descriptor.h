#pragma once

#include <unistd.h>

#include <utility>

namespace helper {

/// Owns a descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int descriptor) : m_descriptor(descriptor) {}
  ~Descriptor() { Reset(); }
  Descriptor(Descriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Reset();
      m_descriptor = std::exchange(other.m_descriptor, -1);
    }
    return *this;
  }
  int Get() const { return m_descriptor; }
  explicit operator bool() const { return m_descriptor >= 0; }
  void Reset() {
    if (m_descriptor >= 0) close(m_descriptor);
    m_descriptor = -1;
  }

 private:
  int m_descriptor = -1;
};

}  // namespace helper
