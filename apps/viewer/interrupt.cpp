#include "interrupt.h"

#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>

namespace {

constexpr std::array kSignals = {SIGINT, SIGTERM, SIGHUP};

std::atomic<int> g_signal = 0;
static_assert(std::atomic<int>::is_always_lock_free);

void Note(int signal) {
  g_signal = signal;
}

}  // namespace

InterruptibleWork::InterruptibleWork(UINT text) : m_text(text), m_aside([] { return g_signal == 0; }) {
  struct sigaction action = {};
  action.sa_handler = &Note;
  action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  for (const int signal : kSignals) {
    struct sigaction before = {};
    // What is ignored stays so, as in a script that goes on without its terminal.
    if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
      sigaction(signal, &action, nullptr);
  }
}

InterruptibleWork::~InterruptibleWork() {
  for (const int signal : kSignals) {
    struct sigaction now = {};
    if (sigaction(signal, nullptr, &now) == 0 && now.sa_handler == &Note) std::signal(signal, SIG_DFL);
  }
  if (m_told) std::fputs("\r\x1b[K", stderr);
}

bool InterruptibleWork::Reach(int page, int pages) {
  if (pages > 1 && isatty(STDERR_FILENO) != 0) {
    CString text;
    text.FormatMessage(m_text, page, pages);
    std::fprintf(stderr, "\r%s\x1b[K", static_cast<const char*>(text));
    m_told = true;
  }
  return g_signal == 0;
}

int InterruptibleWork::Signal() {
  return g_signal;
}
