#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <utility>

namespace platform {

/// Work on a thread beside this one, for calls that can hang. It owns all that it touches: once nobody waits
/// for it any more, it ends by itself, whenever that is.
template <typename Result>
class Beside {
 public:
  explicit Beside(std::function<Result()> work) : m_state(std::make_shared<State>()) {
    std::thread([state = m_state, work = std::move(work)] {
      std::optional<Result> result;
      try {
        result = work();
      } catch (const std::exception&) {
        result = Result{};
      }
      const std::lock_guard lock(state->mutex);
      state->result = std::move(result);
      state->done.notify_all();
    }).detach();
  }

  /// The result; none if it took longer than that.
  std::optional<Result> WaitFor(std::chrono::milliseconds limit) const {
    std::unique_lock lock(m_state->mutex);
    m_state->done.wait_for(lock, limit, [this] { return m_state->result.has_value(); });
    return m_state->result;
  }

 private:
  struct State {
    std::mutex mutex;
    std::condition_variable done;
    std::optional<Result> result;
  };
  std::shared_ptr<State> m_state;
};

}  // namespace platform
