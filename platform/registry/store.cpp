#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

#include "platform/base/detail/file_descriptor.h"
#include "platform/registry/detail/store.h"

namespace platform::registry {
namespace {

namespace fs = std::filesystem;

// Settings are a few kilobytes; a file beyond this is something else.
constexpr off_t kMostBytes = 16 << 20;
constexpr std::chrono::seconds kLongestWait(10);
constexpr int kMostSetAside = 1000;

fs::path ConfigurationFolder() {
  const char* configured = std::getenv("XDG_CONFIG_HOME");
  if (configured != nullptr && configured[0] == '/') return configured;
  const char* home = std::getenv("HOME");
  if (home == nullptr || home[0] == '\0') {
    const passwd* user = ::getpwuid(::getuid());
    home = user == nullptr ? "/" : user->pw_dir;
  }
  return fs::path(home) / ".config";
}

fs::path StoreFolder() {
  return ConfigurationFolder() / "tessarel12";
}
fs::path StoreFile() {
  return StoreFolder() / "registry";
}

// What tells one state of the file from another: a change puts a new file in its place.
struct Stamp {
  dev_t device = 0;
  ino_t file = 0;
  off_t size = -1;  ///< -1: there is no file
  timespec changed = {};
  bool operator==(const Stamp& o) const {
    return device == o.device && file == o.file && size == o.size && changed.tv_sec == o.changed.tv_sec &&
           changed.tv_nsec == o.changed.tv_nsec;
  }
};

// The last state read, so that a row of queries parses the text once. The file stays open: as long as it is,
// no new file can get its number, and the stamps of two states can't be alike by chance.
struct Cache {
  FileDescriptor file;
  bool filled = false;
  fs::path path;
  Stamp stamp;
  Parsed parsed;
};

Cache& TheCache() {
  static Cache cache;
  return cache;
}

bool ReadWhole(int descriptor, std::size_t size, std::string& text) {
  text.resize(size);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::read(descriptor, text.data() + done, size - done);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done == size;
}

LSTATUS Refresh(Cache& cache) {
  const fs::path path = StoreFile();
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat state = {};
  Stamp stamp;
  if (file.IsOpen()) {
    if (::fstat(file.Get(), &state) != 0 || !S_ISREG(state.st_mode)) return ERROR_ACCESS_DENIED;
    stamp = {state.st_dev, state.st_ino, state.st_size, state.st_mtim};
  } else if (errno != ENOENT && errno != ENOTDIR) {
    return ERROR_ACCESS_DENIED;
  }
  if (cache.filled && cache.path == path && cache.stamp == stamp) return ERROR_SUCCESS;
  cache = {};
  if (stamp.size > kMostBytes) {
    cache.parsed.damaged = true;
  } else if (stamp.size > 0) {
    std::string text;
    if (!ReadWhole(file.Get(), static_cast<std::size_t>(stamp.size), text)) return ERROR_ACCESS_DENIED;
    cache.parsed = Parse(text);
  }
  cache.file = std::move(file);
  cache.path = path;
  cache.stamp = stamp;
  cache.filled = true;
  return ERROR_SUCCESS;
}

bool MakeFolder() {
  std::error_code error;
  fs::create_directories(ConfigurationFolder(), error);
  return ::mkdir(StoreFolder().c_str(), 0700) == 0 || errno == EEXIST;
}

// The lock has a file of its own, since the store's file is replaced by each change.
FileDescriptor OpenLock() {
  if (!MakeFolder()) return FileDescriptor();
  return FileDescriptor(
      ::open((StoreFolder() / "registry.lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
}

// Waits for other processes, but not for ever: one that hangs must not hang the user interface.
bool TakeLock(const FileDescriptor& lock) {
  const auto end = std::chrono::steady_clock::now() + kLongestWait;
  while (::flock(lock.Get(), LOCK_EX | LOCK_NB) != 0) {
    if ((errno != EWOULDBLOCK && errno != EINTR) || std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return true;
}

// A damaged file may hold what its owner can still mend, so it is kept under another name.
bool SetAside() {
  for (int number = 1; number <= kMostSetAside; ++number) {
    const fs::path kept = StoreFolder() / ("registry.damaged-" + std::to_string(number));
    if (::link(StoreFile().c_str(), kept.c_str()) == 0) return true;
    if (errno == EEXIST) continue;
    struct stat other = {};
    return ::lstat(kept.c_str(), &other) != 0 && ::rename(StoreFile().c_str(), kept.c_str()) == 0;
  }
  return false;
}

// Either the old text or the new one is there, also after a loss of power.
bool Replace(const std::string& text) {
  std::string temporary = StoreFile().string() + ".XXXXXX";
  FileDescriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
  if (!file.IsOpen()) return false;
  const bool written =
      WriteAll(file.Get(), text.data(), text.size()) && ::fsync(file.Get()) == 0 && file.Close();
  if (!written || ::rename(temporary.c_str(), StoreFile().c_str()) != 0) {
    ::unlink(temporary.c_str());
    return false;
  }
  const FileDescriptor folder(::open(StoreFolder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (folder.IsOpen()) ::fsync(folder.Get());
  return true;
}

}  // namespace

const Keys* Load(LSTATUS& error) {
  error = Refresh(TheCache());
  return error == ERROR_SUCCESS ? &TheCache().parsed.keys : nullptr;
}

bool IsWritable() {
  const FileDescriptor lock = OpenLock();
  // The file is replaced rather than written, yet its own protection counts: it tells what the user wants.
  const bool fileAllows = ::access(StoreFile().c_str(), W_OK) == 0 || errno == ENOENT;
  return lock.IsOpen() && fileAllows && ::access(StoreFolder().c_str(), W_OK | X_OK) == 0;
}

LSTATUS Change(const std::function<LSTATUS(Keys& keys, bool& altered)>& change) {
  if (!IsWritable()) return ERROR_ACCESS_DENIED;
  const FileDescriptor lock = OpenLock();
  if (!lock.IsOpen()) return ERROR_ACCESS_DENIED;
  if (!TakeLock(lock)) return ERROR_LOCK_VIOLATION;
  Cache& cache = TheCache();
  if (const LSTATUS error = Refresh(cache); error != ERROR_SUCCESS) return error;
  Keys keys = cache.parsed.keys;
  bool altered = false;
  if (const LSTATUS error = change(keys, altered); error != ERROR_SUCCESS || !altered) return error;
  if (cache.parsed.damaged && !SetAside()) return ERROR_WRITE_FAULT;
  return Replace(Serialise(keys)) ? ERROR_SUCCESS : ERROR_WRITE_FAULT;
}

}  // namespace platform::registry
