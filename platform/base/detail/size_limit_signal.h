#pragma once

#include <csignal>

namespace platform {

/// For its life a write beyond the limit on the size of files fails with EFBIG like a full disk: the signal,
/// whose default action ends the process, is taken back.
class SizeLimitSignalHeld {
 public:
  SizeLimitSignalHeld() {
    sigset_t pending;
    sigpending(&pending);
    m_wasPending = sigismember(&pending, SIGXFSZ) != 0;
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
  }
  ~SizeLimitSignalHeld() {
    const timespec none{};
    if (!m_wasPending) sigtimedwait(&m_signal, nullptr, &none);
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
  }
  SizeLimitSignalHeld(const SizeLimitSignalHeld&) = delete;
  SizeLimitSignalHeld& operator=(const SizeLimitSignalHeld&) = delete;

 private:
  sigset_t m_signal{};
  sigset_t m_before{};
  bool m_wasPending = false;
};

}  // namespace platform
