#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "helper/protocol/descriptor.h"
#include "imaging/core/source.h"
#include "imaging/helper/process.h"

namespace imaging::helper_client {

/// How long the helper may take for an answer.
struct TimeLimits {
  std::chrono::milliseconds open;
  std::chrono::milliseconds decode;
};
TimeLimits UsualTimeLimits();

/// A page as the helper delivered it.
struct Delivered {
  helper::PageRecord page;
  int rows = 0;
  int damagedRows = 0;
  helper::Descriptor memory;  ///< sealed: nobody can change it any more
  std::ptrdiff_t pitch = 0;
};

/// How a page is drawn that has no pixels of its own.
struct DrawnAt {
  int resolution = 0;  ///< dots per inch, 0 as the module likes
  int width = 0;       ///< pixels; 0: as the resolution makes it
  int height = 0;
};

/// A file that is read by a module of the helper, in a process of its own that is started when it is needed
/// and again after it went for being idle. All that can be checked without knowing the kind is checked here.
/// Whatever the helper does ends in an answer or in a CLeadtoolsException*; what crashed it once isn't tried
/// again. Who waits may end the process and the call with kErrorUserAbort (imaging/core/waiting.h).
class Client {
 public:
  Client(const Source& source, std::string module, TimeLimits limits = UsualTimeLimits());

  int CountPages();
  helper::PageRecord Describe(int page, const DrawnAt& drawn = {});
  Delivered Decode(int page, const DrawnAt& drawn = {});
  /// The number of the process that has the file open; 0 without one.
  pid_t ProcessId() const;

 private:
  struct Session;

  helper::Reply Ask(helper::Request request, int descriptor);
  helper::Reply Exchange(const helper::Request& request, int descriptor);
  Session& OpenSession();
  void Begin(Session& session);
  Silence Await(Session& session, helper::Reply& reply, std::chrono::milliseconds limit) const;
  void End(Session& session);
  [[noreturn]] void FailReply(const helper::Reply& reply) const;
  [[noreturn]] void FailSilence(Silence silence, int page) const;
  void CheckKnownCrash(int page) const;
  void CheckPage(const helper::PageRecord& page) const;

  const Source& m_source;
  std::string m_module;
  TimeLimits m_limits;
  std::shared_ptr<Session> m_session;
};

}  // namespace imaging::helper_client
