#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>

#include "platform/spooler/detail/beside.h"
#include "platform/spooler/print_records.h"

namespace platform {

/// Between the thread that sends a document and the one that the user works on: before each piece the sender
/// waits for leave.
class Leave {
 public:
  /// On the sending thread; false: stop.
  bool Ask() {
    std::unique_lock lock(m_mutex);
    m_asked = true;
    m_changed.notify_all();
    m_changed.wait(lock, [this] { return !m_asked || m_stopped; });
    return !m_stopped;
  }
  void End() {
    const std::lock_guard lock(m_mutex);
    m_ended = true;
    m_changed.notify_all();
  }

  /// On the user's thread: what the sender does.
  enum class Sender { Busy, Asks, Ended };
  Sender Watch(std::chrono::milliseconds limit) {
    std::unique_lock lock(m_mutex);
    m_changed.wait_for(lock, limit, [this] { return m_asked || m_ended; });
    if (m_ended) return Sender::Ended;
    return m_asked ? Sender::Asks : Sender::Busy;
  }
  void Give() {
    const std::lock_guard lock(m_mutex);
    m_asked = false;
    m_changed.notify_all();
  }
  void Stop() {
    const std::lock_guard lock(m_mutex);
    m_stopped = true;
    m_changed.notify_all();
  }

 private:
  std::mutex m_mutex;
  std::condition_variable m_changed;
  bool m_asked = false;
  bool m_ended = false;
  bool m_stopped = false;
};

/// Runs send beside this thread, which goes on asking goOn, many times a second, whatever the service does.
/// The result of send; SP_APPABORT as soon as goOn says so; SP_NOANSWER if the service is silent for too
/// long. send owns what it uses, as it may still hang when this returns.
inline int HandOver(const std::function<bool()>& goOn,
                    const std::function<int(const std::function<bool()>& mayGoOn)>& send,
                    std::chrono::milliseconds patience = std::chrono::seconds(5)) {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::milliseconds kTick(20);
  constexpr std::chrono::seconds kTimeToCancel(1);
  const auto leave = std::make_shared<Leave>();
  const Beside<int> sending([leave, send] {
    const int result = send([leave] { return leave->Ask(); });
    leave->End();
    return result;
  });
  for (auto heard = Clock::now();;) {
    const Leave::Sender sender = leave->Watch(kTick);
    if (sender == Leave::Sender::Ended) return sending.WaitFor(kTimeToCancel).value_or(SP_ERROR);
    if (!goOn()) {
      leave->Stop();
      sending.WaitFor(kTimeToCancel);
      return SP_APPABORT;
    }
    if (sender == Leave::Sender::Asks) {
      leave->Give();
      heard = Clock::now();
    } else if (Clock::now() - heard > patience) {
      leave->Stop();
      return SP_NOANSWER;
    }
  }
}

}  // namespace platform
