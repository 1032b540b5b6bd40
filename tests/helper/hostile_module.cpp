#include <fcntl.h>
#include <linux/seccomp.h>
#include <poll.h>
#include <pthread.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "helper/module.h"
#include "helper/protocol/channel.h"

// A module for tests: does what the word in the file says, as a library that a hostile file has taken over
// could.
namespace helper {
namespace {

std::uint8_t* g_kept = nullptr;

[[noreturn]] void LoopForever() {
  for (volatile unsigned i = 0;;) i = i + 1;
}

void TakeAllMemory() {
  constexpr std::size_t kBlock = 64 << 20;
  for (;;) {
    char* volatile block = new char[kBlock];
    *block = 1;
  }
}

/// Refused softly, since libraries try it: succeeding would be the fault.
void OpenFile(const char* path, int flags) {
  if (open(path, flags, 0600) >= 0) return;
  throw Failure(Status::kUnsupported, std::strerror(errno));
}

void Execute() {
  static char name[] = "/bin/true";
  char* const arguments[] = {name, nullptr};
  execv(name, arguments);
}

void MakeExecutable() {
  mmap(nullptr, 4096, PROT_READ | PROT_WRITE | PROT_EXEC, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
}

void MakeThread() {
  pthread_t thread{};
  const int error = pthread_create(
      &thread, nullptr, [](void*) -> void* { return nullptr; }, nullptr);
  if (error != 0) throw Failure(Status::kUnsupported, std::strerror(error));
}

/// Through whatever descriptor there is beside the socket.
void ChangeFile() {
  constexpr int kMost = 1024;
  const char byte = 'X';
  for (int descriptor = kSocket + 1; descriptor < kMost; ++descriptor)
    if (write(descriptor, &byte, 1) == 1) throw Failure(Status::kUnsupported, "it can be written");
  throw Failure(Status::kUnsupported, std::strerror(errno));
}

/// While the page is still being written.
void AnswerEarly() {
  Reply reply;
  reply.rows = 10;
  Send(kSocket, reply);
  LoopForever();
}

void Misbehave(std::string_view word) {
  if (word == "fault") *static_cast<volatile int*>(nullptr) = 1;
  if (word == "abort") std::abort();
  if (word == "loop") LoopForever();
  if (word == "sleep") pause();
  if (word == "wait") poll(nullptr, 0, -1);
  if (word == "memory") TakeAllMemory();
  if (word == "throw") throw 1;
  if (word == "open") OpenFile("/etc/passwd", O_RDONLY);
  if (word == "create") OpenFile("/tmp/tessarel-hostile", O_WRONLY | O_CREAT);
  if (word == "socket") socket(AF_INET, SOCK_STREAM, 0);
  if (word == "fork") syscall(SYS_clone, SIGCHLD, 0, 0, 0, 0);
  if (word == "exec") Execute();
  if (word == "code") MakeExecutable();
  if (word == "kill") kill(1, 0);
  if (word == "killhost") kill(getppid(), SIGTERM);
  if (word == "thread") MakeThread();
  if (word == "link" && symlink("/etc/passwd", "/tmp/tessarel-hostile") == 0) return;
  if (word == "memfd") memfd_create("kept", 0);
  if (word == "unlock") prctl(PR_SET_PDEATHSIG, 0, 0, 0, 0);
  if (word == "trace") syscall(SYS_process_vm_readv, 1, nullptr, 0, nullptr, 0, 0);
  if (word == "write") ChangeFile();
  if (word == "early") AnswerEarly();
  if (word == "exit") _exit(0);
  if (word == "close") {
    close(kSocket);
    LoopForever();
  }
  if (word == "nonsense") {
    const char bytes[] = "nonsense";
    [[maybe_unused]] const auto sent = write(kSocket, bytes, sizeof bytes);
    LoopForever();
  }
}

class Hostile final : public Document {
 public:
  explicit Hostile(const Input& input) {
    const auto bytes = input.ReadAll();
    std::string text(bytes.begin(), bytes.end());
    const std::size_t blank = text.find(' ');
    m_stage = text.substr(0, blank);
    m_word = text.substr(blank + 1);
    if (m_stage == "init") Misbehave(m_word);
  }
  int CountPages() override { return m_word == "pages" ? -5 : m_word == "many" ? 2'000'000'000 : 3; }

  PageRecord Describe(int page, int) override {
    if (m_stage == "describe" && page == 2) Misbehave(m_word);
    PageRecord record;
    record.width = m_word == "wide" ? 2'000'000'000 : m_word == "flat" ? 0 : 64;
    record.height = m_word == "bomb" ? 200'000 : 10;
    if (m_word == "bomb") record.width = 200'000;
    record.bits = m_word == "deep" ? -1 : 8;
    record.memoryBits = m_word == "depth" ? 77 : 8;
    record.format = m_word == "format" ? -3 : 0;
    record.perspective = m_word == "turn" ? 9 : 0;
    record.delivery = m_word == "delivery" ? static_cast<Delivery>(9) : Delivery::kPixels;
    record.colors = m_word == "colors" ? 5000 : 0;
    if (m_word == "much" || m_word == "less") {
      record.delivery = Delivery::kJpeg;
      record.deliveredBytes = m_word == "much" ? INT64_MAX : -1;
    }
    record.compression.fill(m_word == "name" ? '\x07' : 'x');  // without an end
    return record;
  }

  Decoded Decode(int page, int, const Canvas& canvas) override {
    if (m_stage == "decode" && page == 2) Misbehave(m_word);
    std::memset(canvas.bytes, 100 + page, canvas.size);
    // A second mapping outlives the answer.
    if (m_word == "after" && page == 2)
      g_kept = static_cast<std::uint8_t*>(mremap(canvas.bytes, 0, canvas.size, MREMAP_MAYMOVE));
    if (m_word == "none") return {};
    return {m_word == "rows" ? 1'000'000 : 10, m_word == "damage" ? -1 : 0};
  }

 private:
  std::string m_stage;
  std::string m_word;
};

std::unique_ptr<Document> Open(const Input& input) {
  return std::make_unique<Hostile>(input);
}

}  // namespace
}  // namespace helper

TESSAREL_MODULE(helper::Policy::kCompute, nullptr, helper::Open)
