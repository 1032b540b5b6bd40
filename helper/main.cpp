// The helper program: image-helper MODULE, started by the library with one end of a socket as descriptor 3.
// It loads the module, locks itself down, says so, and only then is given a file.

#include <dlfcn.h>
#include <poll.h>
#include <sys/mman.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>
#include <optional>

#include "helper/module.h"
#include "helper/protocol/channel.h"
#include "helper/sandbox/lockdown.h"

namespace helper {
namespace {

/// Font files and the tables that say where they are, on this system; PostScript's come with their encodings.
constexpr const char* kFontFolders =
    "/usr/share/fonts:/usr/local/share/fonts:/etc/fonts:/usr/share/fontconfig:/var/cache/fontconfig:"
    "/usr/share/ghostscript";

Reply Refusal(Status status, const char* text) {
  Reply reply;
  reply.status = status;
  std::strncpy(reply.text.data(), text, reply.text.size() - 1);
  return reply;
}

/// The module of that name in modules/ beside the program. Null if there is none that fits.
const Module* LoadModule(std::string_view name) {
  constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
  if (name.empty() || name.find_first_not_of(kLetters) != std::string_view::npos) return nullptr;
  std::array<char, 4096> path{};
  const ssize_t length = readlink("/proc/self/exe", path.data(), path.size() - 1);
  if (length <= 0) return nullptr;
  std::string file(path.data(), static_cast<std::size_t>(length));
  file.resize(file.rfind('/') + 1);
  void* library = dlopen((file + "modules/" + std::string(name) + ".so").c_str(), RTLD_NOW);
  if (library == nullptr) return nullptr;
  using Entry = const Module* (*)();
  const auto entry = reinterpret_cast<Entry>(dlsym(library, kModuleSymbol));
  const Module* module = entry == nullptr ? nullptr : entry();
  return module != nullptr && module->version == kProtocolVersion ? module : nullptr;
}

/// The library's memory file, mapped for as long as a page is written.
class PageMemory {
 public:
  PageMemory(int descriptor, std::size_t size)
      : m_size(size), m_bytes(mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0)) {
    if (m_bytes == MAP_FAILED) throw Failure(Status::kNoMemory, "there is no memory for the page");
  }
  ~PageMemory() { munmap(m_bytes, m_size); }
  PageMemory(const PageMemory&) = delete;
  PageMemory& operator=(const PageMemory&) = delete;
  std::uint8_t* Bytes() const { return static_cast<std::uint8_t*>(m_bytes); }

 private:
  std::size_t m_size;
  void* m_bytes;
};

/// Answers requests on one file.
class Service {
 public:
  explicit Service(const Module& module) : m_module(module) {}

  Reply Answer(const Request& request, Descriptor descriptor) {
    try {
      return Work(request, std::move(descriptor));
    } catch (const Failure& failure) {
      return Refusal(failure.status, failure.what());
    } catch (const std::bad_alloc&) {
      return Refusal(Status::kNoMemory, "the page takes more memory than it may");
    } catch (const std::exception& exception) {
      return Refusal(Status::kCorrupt, exception.what());
    }
  }

 private:
  Reply Work(const Request& request, Descriptor descriptor) {
    Reply reply;
    if (request.kind == RequestKind::kOpen) {
      m_file = std::move(descriptor);
      m_input.emplace(m_file.Get(), request.bytes);
      m_document = m_module.open(*m_input);
      reply.pages = m_document->CountPages();
      return reply;
    }
    if (m_document == nullptr) throw Failure(Status::kCorrupt, "no file is open");
    if (request.page < 1 || request.page > m_document->CountPages())
      throw Failure(Status::kNoSuchPage, "there is no such page");
    m_document->WantSize(request.width, request.height);
    if (request.kind == RequestKind::kDescribe)
      reply.page = m_document->Describe(request.page, request.resolution);
    else
      Decode(request, descriptor, reply);
    return reply;
  }

  void Decode(const Request& request, const Descriptor& target, Reply& reply) {
    const auto size = static_cast<std::size_t>(request.bytes);
    const PageMemory memory(target.Get(), size);
    const Canvas canvas = {memory.Bytes(), static_cast<std::ptrdiff_t>(request.pitch), size};
    const Decoded decoded = m_document->Decode(request.page, request.resolution, canvas);
    reply.rows = decoded.rows;
    reply.damagedRows = decoded.damagedRows;
  }

  const Module& m_module;
  Descriptor m_file;
  std::optional<Input> m_input;
  std::unique_ptr<Document> m_document;
};

/// A reader that never comes back to the socket doesn't see that the library's process is gone.
void LeaveIfAlone(int) {
  const int error = errno;
  pollfd library = {kSocket, 0, 0};
  if (poll(&library, 1, 0) > 0 && (library.revents & POLLHUP) != 0) _exit(0);
  errno = error;
}

/// Every second, whatever the module does. Not by the end of the thread that started this process, since one
/// of the library's threads may end where the library doesn't.
void LookForTheLibrary() {
  struct sigaction action {};
  action.sa_handler = &LeaveIfAlone;
  action.sa_flags = SA_RESTART;
  sigaction(SIGALRM, &action, nullptr);
  const itimerval second = {{1, 0}, {1, 0}};
  setitimer(ITIMER_REAL, &second, nullptr);
}

/// False if there is none for a while.
bool AwaitRequest() {
  using Clock = std::chrono::steady_clock;
  constexpr std::chrono::seconds kIdle{30};
  for (const auto end = Clock::now() + kIdle; Clock::now() < end;) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
    pollfd waiting = {kSocket, POLLIN, 0};
    const int ready = poll(&waiting, 1, static_cast<int>(left.count()));
    if (ready == 1) return true;
    if (ready < 0 && errno != EINTR) return false;
  }
  return false;
}

/// Ends when the library closes its end or asks nothing for a while; the next page starts a new process.
void Serve(const Module& module) {
  Service service(module);
  while (AwaitRequest()) {
    Request request;
    Descriptor descriptor;
    if (!Receive(kSocket, request, descriptor)) return;
    if (!Send(kSocket, service.Answer(request, std::move(descriptor)))) return;
  }
}

int Run(const char* name) {
  const Module* module = LoadModule(name);
  if (module == nullptr) return 2;
  if (module->prepare != nullptr) module->prepare();
  LookForTheLibrary();
  const std::string fault = LockDown(module->policy == Policy::kFonts ? kFontFolders : nullptr);
  if (!fault.empty()) {
    Send(kSocket, Refusal(Status::kNoSandbox, ("the sandbox can't be set up: " + fault).c_str()));
    return 3;
  }
  if (Send(kSocket, Reply())) Serve(*module);
  return 0;
}

}  // namespace
}  // namespace helper

// Leaves without the libraries' own ends, which may want what is locked away.
int main(int argc, char** argv) {
  _exit(argc == 2 ? helper::Run(argv[1]) : 2);
}
