#include "platform/base/aside.h"

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <csignal>
#include <exception>
#include <mutex>
#include <thread>
#include <utility>

#include "platform/base/exception.h"

namespace platform {
namespace {

// Between two calls of serve. Short work is done before the first.
constexpr std::chrono::milliseconds kInterval(4);

AsideScope*& Innermost() {
  static thread_local AsideScope* scope = nullptr;
  return scope;
}

const std::atomic<bool>*& StopFlag() {
  static thread_local const std::atomic<bool>* flag = nullptr;
  return flag;
}

/// The framework's exceptions are pointers, which their catcher ends.
void Forget(const std::exception_ptr& thrown) {
  try {
    if (thrown) std::rethrow_exception(thrown);
  } catch (CException* exception) {
    exception->Delete();
  } catch (...) {  // NOLINT(bugprone-empty-catch): what stopped work throws doesn't count
  }
}

/// The program's handlers are for its own threads.
void BlockSignals() {
  sigset_t all;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

}  // namespace

/// A thread that does one piece of work after another.
class AsideScope::Worker {
 public:
  Worker() : m_thread([this] { Run(); }) {}
  ~Worker() {
    {
      const std::lock_guard lock(m_mutex);
      m_ended = true;
    }
    m_changed.notify_all();
    m_thread.join();
  }
  Worker(const Worker&) = delete;
  Worker& operator=(const Worker&) = delete;

  void Begin(const std::function<void()>& work) {
    m_stop = false;
    {
      const std::lock_guard lock(m_mutex);
      m_work = &work;
    }
    m_changed.notify_all();
  }
  /// Whether the work is done; waits a little for it.
  bool IsDone() {
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, kInterval, [this] { return m_work == nullptr; });
  }
  void Stop() { m_stop = true; }
  bool IsStopped() const { return m_stop; }
  std::exception_ptr TakeThrown() { return std::exchange(m_thrown, nullptr); }

 private:
  void Run() {
    BlockSignals();
    StopFlag() = &m_stop;
    std::unique_lock lock(m_mutex);
    for (;;) {
      m_changed.wait(lock, [this] { return m_work != nullptr || m_ended; });
      if (m_work == nullptr) return;
      lock.unlock();
      try {
        (*m_work)();
      } catch (...) {
        m_thrown = std::current_exception();
      }
      lock.lock();
      m_work = nullptr;
      m_changed.notify_all();
    }
  }

  std::mutex m_mutex;
  std::condition_variable m_changed;
  const std::function<void()>* m_work = nullptr;
  std::exception_ptr m_thrown;
  std::atomic<bool> m_stop = false;
  bool m_ended = false;
  std::thread m_thread;  // the last: it uses the others
};

AsideScope::AsideScope(std::function<bool()> serve)
    : m_serve(std::move(serve)), m_outer(std::exchange(Innermost(), this)) {}

bool AsideScope::Serve() {
  const struct Serving {
    explicit Serving(bool& flag) : flag(flag) { flag = true; }
    ~Serving() { flag = false; }
    Serving(const Serving&) = delete;
    Serving& operator=(const Serving&) = delete;
    bool& flag;
  } serving(m_serving);
  return m_serve();
}

AsideScope::~AsideScope() {
  Innermost() = m_outer;
}

bool HasAside() {
  const AsideScope* const scope = Innermost();
  return scope != nullptr && !scope->m_serving;
}

bool RunAside(const std::function<void()>& work) {
  AsideScope* const scope = Innermost();
  const auto workHere = [&work] {
    work();
    return true;
  };
  if (!HasAside()) return workHere();
  try {
    if (scope->m_worker == nullptr) scope->m_worker = std::make_unique<AsideScope::Worker>();
  } catch (const std::exception&) {
    return workHere();  // no thread can be had, or no memory for one
  }
  // Work that is over before the first look may come again and again.
  if (!scope->Serve()) return false;
  AsideScope::Worker& worker = *scope->m_worker;
  worker.Begin(work);
  std::exception_ptr servingThrew;
  while (!worker.IsDone()) {
    try {
      if (servingThrew || !scope->Serve()) worker.Stop();
    } catch (...) {
      servingThrew = std::current_exception();  // told once nothing uses the caller's variables any more
    }
  }
  const std::exception_ptr thrown = worker.TakeThrown();
  if (thrown && !worker.IsStopped()) std::rethrow_exception(thrown);
  Forget(thrown);
  if (servingThrew) std::rethrow_exception(servingThrew);
  return !thrown;
}

void AwaitAside() {
  for (AsideScope* scope = Innermost(); scope != nullptr; scope = scope->m_outer) {
    if (scope->m_worker == nullptr) continue;
    scope->m_worker->Stop();
    while (!scope->m_worker->IsDone()) {
    }
  }
}

bool IsWorkStopped() {
  const std::atomic<bool>* const flag = StopFlag();
  return flag != nullptr && *flag;
}

}  // namespace platform
