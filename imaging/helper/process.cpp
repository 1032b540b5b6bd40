#include "imaging/helper/process.h"

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>

#include "helper/protocol/channel.h"
#include "imaging/core/waiting.h"

namespace imaging::helper_client {
namespace {

using Clock = std::chrono::steady_clock;

/// A list of what is done to the descriptors between fork and exec.
class SpawnActions {
 public:
  SpawnActions() { posix_spawn_file_actions_init(&m_actions); }
  ~SpawnActions() { posix_spawn_file_actions_destroy(&m_actions); }
  SpawnActions(const SpawnActions&) = delete;
  SpawnActions& operator=(const SpawnActions&) = delete;

  /// Nothing but the socket comes through.
  const posix_spawn_file_actions_t* KeepOnly(int socket) {
    // First, since the socket may have one of the numbers that are taken next.
    posix_spawn_file_actions_adddup2(&m_actions, socket, helper::kSocket);
    for (int number = 0; number < helper::kSocket; ++number)
      posix_spawn_file_actions_addopen(&m_actions, number, "/dev/null", O_RDWR, 0);
    posix_spawn_file_actions_addclosefrom_np(&m_actions, helper::kSocket + 1);
    return &m_actions;
  }

 private:
  posix_spawn_file_actions_t m_actions;
};

/// Handlers and blocked signals of the host aren't the helper's.
class SpawnAttributes {
 public:
  SpawnAttributes() {
    posix_spawnattr_init(&m_attributes);
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    posix_spawnattr_setsigmask(&m_attributes, &none);
    posix_spawnattr_setsigdefault(&m_attributes, &all);
    // A group of its own, so that an interrupt from the terminal is the host's alone.
    posix_spawnattr_setpgroup(&m_attributes, 0);
    posix_spawnattr_setflags(&m_attributes,
                             POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETPGROUP);
  }
  ~SpawnAttributes() { posix_spawnattr_destroy(&m_attributes); }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  const posix_spawnattr_t* Get() const { return &m_attributes; }

 private:
  posix_spawnattr_t m_attributes;
};

}  // namespace

Process::Process(const std::string& program, const char* module) {
  std::array<int, 2> ends{};
  if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
  m_socket = helper::Descriptor(ends[0]);
  helper::Descriptor far(ends[1]);
  if (far.Get() == helper::kSocket) {
    // A descriptor that is copied to its own number would keep its mark to be closed.
    far = helper::Descriptor(fcntl(ends[1], F_DUPFD_CLOEXEC, helper::kSocket + 1));
  }
  Start(program, module, far.Get());
}

void Process::Start(const std::string& program, const char* module, int socket) {
  SpawnActions actions;
  const SpawnAttributes attributes;
  std::string name = program;
  std::string argument = module;
  const std::array<char*, 3> arguments = {name.data(), argument.data(), nullptr};
  const std::array<char*, 1> environment = {nullptr};
  pid_t process = -1;
  if (posix_spawn(&process, name.c_str(), actions.KeepOnly(socket), attributes.Get(), arguments.data(),
                  environment.data()) == 0)
    m_process = process;
}

bool Process::Alive() {
  if (m_process < 0) return false;
  siginfo_t info{};
  if (waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOHANG) == 0 && info.si_pid == 0)
    return true;
  m_process = -1;
  m_socket.Reset();
  return false;
}

bool Process::IsWornOut() const {
  constexpr time_t kMostSeconds = 50;  // against helper/sandbox/lockdown.cpp, with one long page to come
  clockid_t clock{};
  timespec used{};
  return m_process >= 0 && clock_getcpuclockid(m_process, &clock) == 0 && clock_gettime(clock, &used) == 0 &&
         used.tv_sec > kMostSeconds;
}

bool Process::Send(const helper::Request& request, int descriptor) {
  return m_process >= 0 && helper::Send(m_socket.Get(), request, descriptor);
}

Silence Process::Receive(helper::Reply& reply, std::chrono::milliseconds limit) {
  using std::chrono::milliseconds;
  constexpr milliseconds kLook{50};  // how soon the user's wish to end is seen
  const auto end = Clock::now() + limit;
  for (;;) {
    if (m_process < 0) return Silence::kEnded;
    const auto left = std::chrono::duration_cast<milliseconds>(end - Clock::now());
    pollfd waiting = {m_socket.Get(), POLLIN, 0};
    const int ready = poll(&waiting, 1, static_cast<int>(std::clamp(left, milliseconds{0}, kLook).count()));
    if (ready > 0) break;
    const bool stopped = IsStopped();
    if (!stopped && left.count() > 0) continue;
    Kill();
    return stopped ? Silence::kCancelled : Silence::kTooLong;
  }
  helper::Descriptor stray;
  reply = {};
  if (helper::Receive(m_socket.Get(), reply, stray)) return Silence::kNone;
  return WhyItEnded();
}

/// An error of who is asked ends the process too: its answer would be taken for that to the next request.
bool Process::IsStopped() {
  try {
    return IsEndWanted();
  } catch (...) {
    Kill();
    throw;
  }
}

/// The socket gave its end, or nonsense.
Silence Process::WhyItEnded() {
  pollfd waiting = {m_socket.Get(), 0, 0};
  const bool closed = poll(&waiting, 1, 0) > 0 && (waiting.revents & POLLHUP) != 0;
  if (!closed) {
    Kill();
    return Silence::kNonsense;
  }
  // The socket closes on the way out, so the end is near, unless the helper closed it and lives on.
  siginfo_t info{};
  constexpr int kTries = 200;
  constexpr timespec kPause = {0, 5'000'000};
  for (int i = 0; i < kTries; ++i) {
    if (waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOHANG) != 0 || info.si_pid != 0) break;
    nanosleep(&kPause, nullptr);
  }
  if (info.si_pid == 0) {
    Kill();
    return Silence::kNonsense;
  }
  m_process = -1;
  m_socket.Reset();
  if (info.si_code == CLD_EXITED) return Silence::kEnded;
  switch (info.si_status) {
    case SIGSYS:
      return Silence::kForbidden;
    case SIGKILL:
    case SIGXCPU:
    case SIGXFSZ:
      return Silence::kTooLong;
    default:
      return Silence::kFault;
  }
}

void Process::Kill() {
  if (m_process < 0) return;
  // It hasn't been waited for, so the number is still its own.
  kill(m_process, SIGKILL);
  while (waitpid(m_process, nullptr, 0) < 0 && errno == EINTR) {
  }
  m_process = -1;
  m_socket.Reset();
}

}  // namespace imaging::helper_client
