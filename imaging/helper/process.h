#pragma once

#include <sys/types.h>

#include <chrono>
#include <string>

#include "helper/protocol/descriptor.h"
#include "helper/protocol/protocol.h"

namespace imaging::helper_client {

/// How a conversation ended before its answer.
enum class Silence {
  kNone,
  kEnded,      ///< the process ended by itself: idle, or it couldn't start
  kFault,      ///< it crashed
  kForbidden,  ///< it did what the sandbox forbids
  kTooLong,    ///< it took too long, or more memory or time than it may
  kNonsense,   ///< what came is no answer
  kCancelled,  ///< by the user
};

/// One running helper. Its end, by whatever way, leaves nothing of it.
class Process {
 public:
  /// Starts the program with a module; Alive tells whether that worked.
  Process(const std::string& program, const char* module);
  ~Process() { Kill(); }
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// False once it has ended, which is also when it is waited for.
  bool Alive();
  /// True once it has used much of the time that one process may use over all its pages.
  bool IsWornOut() const;
  bool Send(const helper::Request& request, int descriptor);
  /// Waits for the answer; asks IsEndWanted meanwhile. After anything but kNone the process is gone.
  Silence Receive(helper::Reply& reply, std::chrono::milliseconds limit);
  void Kill();
  pid_t Id() const { return m_process; }

 private:
  bool IsStopped();
  Silence WhyItEnded();
  void Start(const std::string& program, const char* module, int socket);

  pid_t m_process = -1;
  helper::Descriptor m_socket;
};

}  // namespace imaging::helper_client
