#include "imaging/helper/client.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <list>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"
#include "imaging/helper/place.h"

namespace imaging::helper_client {

/// A process that has the file open.
struct Client::Session {
  Session(const std::string& program, const char* module) : process(program, module) {}
  Process process;
  int pages = 0;
  bool answering = false;  ///< who is asked whether to go on may read the same file meanwhile
};

namespace {

using helper::Reply;
using helper::Request;
using helper::RequestKind;
using helper::Status;

class Answering {
 public:
  explicit Answering(bool& answering) : m_answering(answering) { m_answering = true; }
  ~Answering() { m_answering = false; }
  Answering(const Answering&) = delete;
  Answering& operator=(const Answering&) = delete;

 private:
  bool& m_answering;
};

/// Which state of which file a session or a crash belongs to.
struct Place {
  SourceIdentity identity;
  std::string module;
  int page = 0;
  bool operator==(const Place&) const = default;
};

/// The newest in front.
template <typename Value>
using Known = std::list<std::pair<Place, Value>>;

template <typename Value>
Value* Find(Known<Value>& known, const Place& place) {
  for (auto entry = known.begin(); entry != known.end(); ++entry)
    if (entry->first == place) {
      known.splice(known.begin(), known, entry);
      return &entry->second;
    }
  return nullptr;
}

template <typename Value>
void Remember(Known<Value>& known, const Place& place, Value value, std::size_t most) {
  known.emplace_front(place, std::move(value));
  if (known.size() > most) known.pop_back();
}

Known<Silence>& Crashes() {
  static Known<Silence> crashes;
  return crashes;
}

helper::Descriptor MakeMemoryFile(std::int64_t bytes) {
  helper::Descriptor memory(memfd_create("page", MFD_CLOEXEC | MFD_ALLOW_SEALING));
  if (!memory || ftruncate(memory.Get(), bytes) != 0)
    Fail(kErrorNoMemory, "There is no memory for %lld bytes", static_cast<long long>(bytes));
  return memory;
}

/// Files are handed over by a descriptor that can only read; what has none, as a memory file that nobody can
/// change.
helper::Descriptor ReadableCopy(const Source& source) {
  helper::Descriptor memory = MakeMemoryFile(source.Size());
  std::vector<std::uint8_t> block(1 << 20);
  for (std::int64_t offset = 0; offset < source.Size();) {
    const std::size_t got = source.ReadAt(offset, block);
    if (got == 0) break;
    if (pwrite(memory.Get(), block.data(), got, offset) != static_cast<ssize_t>(got))
      Fail(kErrorNoMemory, "%s: there is no memory for a copy", source.Name().c_str());
    offset += static_cast<std::int64_t>(got);
  }
  fcntl(memory.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE | F_SEAL_SEAL);
  return memory;
}

bool Within(std::int64_t value, std::int64_t least, std::int64_t most) {
  return value >= least && value <= most;
}

/// The helper's texts go to the user, so they are made printable.
template <std::size_t size>
std::string TextOf(const std::array<char, size>& text) {
  std::string shown(text.begin(), std::find(text.begin(), text.end(), '\0'));
  for (char& letter : shown)
    if (letter < ' ' || letter > '~') letter = '?';
  return shown;
}

void SetDrawn(Request& request, const DrawnAt& drawn) {
  request.resolution = drawn.resolution;
  request.width = drawn.width;
  request.height = drawn.height;
}

std::ptrdiff_t PitchOf(const helper::PageRecord& page) {
  constexpr std::ptrdiff_t kAlignment = 64;  // as PixelStorage has it
  const std::ptrdiff_t bytes = (static_cast<std::ptrdiff_t>(page.width) * page.memoryBits + 7) / 8;
  return (bytes + kAlignment - 1) / kAlignment * kAlignment;
}

ErrorCode CodeOf(Status status) {
  switch (status) {
    case Status::kUnsupported:
      return kErrorUnsupported;
    case Status::kTooLarge:
      return kErrorLimit;
    case Status::kNoSuchPage:
      return kErrorPageNotFound;
    case Status::kNoMemory:
      return kErrorNoMemory;
    case Status::kUnknownKind:
      return kErrorFileFormat;
    case Status::kNoSandbox:
      return kErrorInternal;
    default:
      return kErrorCorrupt;
  }
}

}  // namespace

TimeLimits UsualTimeLimits() {
  return {std::chrono::milliseconds(Limit().helperOpenMs), std::chrono::milliseconds(Limit().helperDecodeMs)};
}

Client::Client(const Source& source, std::string module, TimeLimits limits)
    : m_source(source), m_module(std::move(module)), m_limits(limits) {}

int Client::CountPages() {
  CheckKnownCrash(0);
  return OpenSession().pages;
}

pid_t Client::ProcessId() const {
  return m_session == nullptr ? 0 : m_session->process.Id();
}

helper::PageRecord Client::Describe(int page, const DrawnAt& drawn) {
  Request request;
  request.kind = RequestKind::kDescribe;
  request.page = page;
  SetDrawn(request, drawn);
  const Reply reply = Ask(request, -1);
  CheckPage(reply.page);
  return reply.page;
}

Delivered Client::Decode(int page, const DrawnAt& drawn) {
  Delivered delivered;
  delivered.page = Describe(page, drawn);
  delivered.pitch = PitchOf(delivered.page);
  Request request;
  request.kind = RequestKind::kDecode;
  request.page = page;
  SetDrawn(request, drawn);
  request.pitch = delivered.pitch;
  request.bytes = delivered.page.delivery == helper::Delivery::kPixels
                      ? delivered.pitch * delivered.page.height
                      : delivered.page.deliveredBytes;
  delivered.memory = MakeMemoryFile(request.bytes);
  fcntl(delivered.memory.Get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW);
  const Reply reply = Ask(request, delivered.memory.Get());
  // Fails while the helper still has it mapped for writing, so what is checked now stays as it is.
  if (fcntl(delivered.memory.Get(), F_ADD_SEALS, F_SEAL_WRITE | F_SEAL_SEAL) != 0) {
    m_session.reset();
    FailSilence(Silence::kNonsense, page);
  }
  if (!Within(reply.rows, 0, delivered.page.height) || !Within(reply.damagedRows, 0, delivered.page.height))
    FailSilence(Silence::kNonsense, page);
  delivered.rows = reply.rows;
  delivered.damagedRows = reply.damagedRows;
  return delivered;
}

Reply Client::Ask(Request request, int descriptor) {
  CheckKnownCrash(request.page);
  const Reply reply = Exchange(request, descriptor);
  if (reply.status != Status::kDone) FailReply(reply);
  return reply;
}

/// One that went for being idle just when it was asked is started again, once.
Reply Client::Exchange(const Request& request, int descriptor) {
  const auto limit = request.kind == RequestKind::kDecode ? m_limits.decode : m_limits.open;
  Reply reply;
  for (const bool again : {false, true}) {
    Session& session = OpenSession();
    const Silence silence =
        session.process.Send(request, descriptor) ? Await(session, reply, limit) : Silence::kEnded;
    if (silence == Silence::kNone) break;
    End(session);
    if (again || silence != Silence::kEnded) FailSilence(silence, request.page);
  }
  return reply;
}

/// What the helper has open, at most four files; each ends by itself after some idle seconds.
Client::Session& Client::OpenSession() {
  static Known<std::shared_ptr<Session>> sessions;
  constexpr std::size_t kMostSessions = 4;
  // This also waits for those that have ended.
  std::erase_if(sessions, [](const auto& entry) { return !entry.second->process.Alive(); });
  if (m_session != nullptr && m_session->process.Alive() && !m_session->process.IsWornOut())
    return *m_session;
  m_session.reset();
  const auto identity = m_source.Identity();
  if (identity)
    if (const auto* known = Find(sessions, {*identity, m_module, 0});
        known != nullptr && !(*known)->answering) {
      m_session = *known;
      if (!m_session->process.IsWornOut()) return *m_session;
      m_session->process.Kill();
    }
  const std::string program = ProgramPath();
  if (program.empty()) Fail(kErrorFileFormat, "%s: the helper isn't installed", m_source.Name().c_str());
  const auto session = std::make_shared<Session>(program, m_module.c_str());
  Begin(*session);
  m_session = session;
  if (identity) Remember(sessions, {*identity, m_module, 0}, m_session, kMostSessions);
  return *m_session;
}

/// Waits until it is locked down, and gives it the file.
void Client::Begin(Session& session) {
  const auto expect = [&] {
    Reply reply;
    if (const Silence silence = Await(session, reply, m_limits.open); silence != Silence::kNone) {
      End(session);
      FailSilence(silence, 0);
    }
    if (reply.status != Status::kDone) FailReply(reply);
    return reply;
  };
  expect();
  Request request;
  request.bytes = m_source.Size();
  const helper::Descriptor copy = m_source.Descriptor() < 0 ? ReadableCopy(m_source) : helper::Descriptor();
  // Should it be gone already, the answer tells.
  session.process.Send(request, copy ? copy.Get() : m_source.Descriptor());
  session.pages = expect().pages;
  if (!Within(session.pages, 1, Limit().pages)) FailSilence(Silence::kNonsense, 0);
}

Silence Client::Await(Session& session, Reply& reply, std::chrono::milliseconds limit) const {
  const Answering answering(session.answering);
  const Silence silence = session.process.Receive(reply, limit);
  return silence == Silence::kNone && reply.status > Status::kLast ? Silence::kNonsense : silence;
}

void Client::End(Session& session) {
  session.process.Kill();
  m_session.reset();
}

void Client::FailReply(const Reply& reply) const {
  Fail(CodeOf(reply.status), "%s: %s", m_source.Name().c_str(), TextOf(reply.text).c_str());
}

void Client::FailSilence(Silence silence, int page) const {
  const char* name = m_source.Name().c_str();
  if (silence == Silence::kCancelled) Fail(kErrorUserAbort, "%s: loading was ended", name);
  constexpr std::size_t kCrashes = 64;
  if (const auto identity = m_source.Identity(); identity && silence != Silence::kEnded)
    Remember(Crashes(), {*identity, m_module, page}, silence, kCrashes);
  switch (silence) {
    case Silence::kEnded:
      Fail(kErrorInternal, "%s: the module %s can't be started", name, m_module.c_str());
    case Silence::kTooLong:
      Fail(kErrorLimit, "%s, page %d: too large or too slow", name, page);
    case Silence::kForbidden:
      Fail(kErrorCorrupt, "%s, page %d: its reader was stopped by the sandbox", name, page);
    default:
      Fail(kErrorCorrupt, "%s, page %d: damaged, its reader failed on it", name, page);
  }
}

/// Thumbnails mustn't crash the helper again and again.
void Client::CheckKnownCrash(int page) const {
  const auto identity = m_source.Identity();
  if (!identity) return;
  for (const int part : {0, page})
    if (const Silence* silence = Find(Crashes(), {*identity, m_module, part}); silence != nullptr) {
      const Silence known = *silence;
      Crashes().pop_front();
      FailSilence(known, part);
    }
}

void Client::CheckPage(const helper::PageRecord& page) const {
  constexpr std::array kDepths = {1, 4, 8, 24, 32};
  constexpr int kMostFormat = 1000;
  constexpr int kMostBits = 512;
  constexpr int kMostDots = 1'000'000;
  const bool known =
      page.delivery <= helper::Delivery::kLast && page.colors <= page.palette.size() &&
      std::find(kDepths.begin(), kDepths.end(), page.memoryBits) != kDepths.end() &&
      Within(page.format, 0, kMostFormat) && Within(page.bits, 1, kMostBits) &&
      Within(page.perspective, 0, 8) && Within(page.xResolution, 0, kMostDots) &&
      Within(page.yResolution, 0, kMostDots) &&
      (page.delivery == helper::Delivery::kPixels || page.delivery == helper::Delivery::kDrawn ||
       Within(page.deliveredBytes, 1, Limit().codecBytes));
  if (!known) FailSilence(Silence::kNonsense, 0);
  if (page.width < 1 || page.height < 1 || page.width > Limit().side || page.height > Limit().side ||
      std::int64_t{page.width} * page.height > Limit().pagePixels ||
      PitchOf(page) * page.height > Limit().bitmapBytes)
    Fail(kErrorLimit, "%s: an image of %d by %d pixels is too large", m_source.Name().c_str(), page.width,
         page.height);
}

}  // namespace imaging::helper_client
