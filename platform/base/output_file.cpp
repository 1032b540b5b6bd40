#include "platform/base/output_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "platform/base/detail/size_limit_signal.h"

namespace platform {
namespace {

constexpr mode_t kNewFile = 0666;
// Names are tried in their order, so left-overs stand at the front.
constexpr int kMostNames = 1000;
constexpr int kNamesCleaned = 16;
constexpr int kMostLinks = 40;  // as the system has it

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// Where a link leads; the path itself if it is none.
std::string Followed(const std::string& path) {
  std::array<char, PATH_MAX> target;
  const ssize_t size = readlink(path.c_str(), target.data(), target.size());
  if (size < 0) return path;
  const std::string name(target.data(), static_cast<std::size_t>(size));
  return name.front() == '/' ? name : FolderOf(path) + '/' + name;
}

/// Name of the file behind links, of which the last may lead to one that isn't there yet. Links in a circle
/// give one of them.
std::string BehindLinks(const char* path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path, nullptr), std::free);
  if (real != nullptr) return real.get();
  std::string name = path;
  for (int links = 0; links < kMostLinks; ++links) name = Followed(name);
  return name;
}

/// Doesn't hold the target's name, which may be as long as a name can be.
std::string PartName(const std::string& folder, int number) {
  return folder + "/.tessarel12-" + std::to_string(number) + ".part";
}

std::string NameOfDescriptor(int descriptor) {
  return "/proc/self/fd/" + std::to_string(descriptor);
}

bool Lock(int descriptor) {
  return flock(descriptor, LOCK_EX | LOCK_NB) == 0;
}

bool IsStill(int descriptor, const std::string& name) {
  struct stat opened {};
  struct stat named {};
  return fstat(descriptor, &opened) == 0 && lstat(name.c_str(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

/// Whoever writes a file holds its lock, and a process that is killed lets it go.
bool RemoveLeftOver(const std::string& name) {
  const OutputFile file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  struct stat status {};
  return file.Descriptor() >= 0 && fstat(file.Descriptor(), &status) == 0 && S_ISREG(status.st_mode) &&
         Lock(file.Descriptor()) && IsStill(file.Descriptor(), name) && unlink(name.c_str()) == 0;
}

/// -1 with errno. Another process may take the file for a left-over before it is locked; then a new one is
/// made.
int CreateLocked(const std::string& name) {
  for (;;) {
    const int descriptor = open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile);
    if (descriptor < 0) {
      if (errno == EEXIST && RemoveLeftOver(name)) continue;
      return -1;
    }
    // Without locks on this file system others can't take it either.
    if ((!Lock(descriptor) && errno != EWOULDBLOCK) || IsStill(descriptor, name)) return descriptor;
    close(descriptor);
  }
}

}  // namespace

bool OutputFile::Check(bool success) {
  if (!success && m_error == 0) m_error = errno;
  return success;
}

std::size_t OutputFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> target) {
  std::size_t done = 0;
  while (done < target.size()) {
    const ssize_t got = pread(m_descriptor, target.data() + done, target.size() - done,
                              static_cast<off_t>(offset) + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (!Check(got >= 0) || got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

bool OutputFile::WriteAt(std::int64_t offset, std::span<const std::uint8_t> bytes) {
  const SizeLimitSignalHeld held;
  while (!bytes.empty()) {
    const ssize_t put = pwrite(m_descriptor, bytes.data(), bytes.size(), static_cast<off_t>(offset));
    if (put < 0 && errno == EINTR) continue;
    if (!Check(put > 0)) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(put));
    offset += put;
  }
  return true;
}

std::int64_t OutputFile::Size() {
  struct stat status {};
  return Check(fstat(m_descriptor, &status) == 0) ? status.st_size : 0;
}

bool OutputFile::Truncate(std::int64_t size) {
  const SizeLimitSignalHeld held;
  return Check(ftruncate(m_descriptor, static_cast<off_t>(size)) == 0);
}

bool OutputFile::SyncData() {
  return Check(fdatasync(m_descriptor) == 0 || errno == EINVAL);  // EINVAL: a file system that has no sync
}

bool OutputFile::Close() {
  if (m_descriptor < 0) return true;
  const int result = close(m_descriptor);
  m_descriptor = -1;
  return Check(result == 0 || errno == EINTR);
}

NewFile::~NewFile() {
  if (!m_part.empty()) unlink(m_part.c_str());
}

int NewFile::Open(const char* path) {
  m_target = BehindLinks(path);
  m_folder = FolderOf(m_target);
  struct stat status {};
  m_replaces = stat(m_target.c_str(), &status) == 0;
  if (!m_replaces && errno == ELOOP) return errno;
  if (m_replaces && !S_ISREG(status.st_mode)) return S_ISDIR(status.st_mode) ? EISDIR : ENODEV;
  // A replaced file needn't be writable for its name to go to another; who took the right to write away meant
  // the contents to stay.
  if (m_replaces && access(m_target.c_str(), W_OK) != 0) return errno;
  if (const int error = OpenBeside(); error != 0) return error;
  TakePermissions();
  return 0;
}

int NewFile::OpenBeside() {
  for (int number = 0; number < kNamesCleaned; ++number) RemoveLeftOver(PartName(m_folder, number));
  m_file.Take(OpenUnnamedFile(m_folder));
  if (m_file.Descriptor() >= 0) {
    // It will be linked by this name of it, for which the process file system has to be there.
    if (access(NameOfDescriptor(m_file.Descriptor()).c_str(), F_OK) == 0 && Lock(m_file.Descriptor()))
      return 0;
    m_file.Close();
  }
  for (int number = 0; number < kMostNames; ++number) {
    const std::string name = PartName(m_folder, number);
    m_file.Take(CreateLocked(name));
    if (m_file.Descriptor() < 0 && errno == EEXIST) continue;
    if (m_file.Descriptor() < 0) return errno;
    m_part = name;
    return 0;
  }
  return EEXIST;
}

/// As far as the system lets us; a file of our own is better than none. The owner comes first, since changing
/// it may take permissions away.
void NewFile::TakePermissions() {
  struct stat status {};
  if (!m_replaces || stat(m_target.c_str(), &status) != 0) return;
  const bool owned = fchown(m_file.Descriptor(), status.st_uid, status.st_gid) == 0;
  // Rights of a group are only handed on to the same group.
  const mode_t rights = owned ? 0777 : 0707;
  static_cast<void>(fchmod(m_file.Descriptor(), status.st_mode & rights));
}

int NewFile::SetNewPermissions(unsigned permissions) {
  return m_replaces || fchmod(m_file.Descriptor(), permissions & 0777) == 0 ? 0 : errno;
}

int NewFile::Complete(Existing existing) {
  // Without the sync a power cut could leave the new name with no contents and the old ones gone.
  if (m_file.Error() != 0 || !m_file.SyncData()) return m_file.Error();
  m_lock.Take(fcntl(m_file.Descriptor(), F_DUPFD_CLOEXEC, 0));
  if (!m_file.Close()) return m_file.Error();
  const int error = GiveName(existing);
  m_lock.Close();
  return error;
}

int NewFile::GiveName(Existing existing) {
  if (m_part.empty()) {
    const int error = LinkAs(m_target.c_str());
    if (error != EEXIST || existing == Existing::kRefused) return error;
    if (const int failed = LinkBeside(); failed != 0) return failed;  // a rename replaces, a link doesn't
  } else if (existing == Existing::kRefused) {
    if (link(m_part.c_str(), m_target.c_str()) == 0) return 0;
    struct stat other {};
    // File systems without hard links: a look just before has to do.
    if (errno == EEXIST || lstat(m_target.c_str(), &other) == 0) return EEXIST;
  }
  if (std::rename(m_part.c_str(), m_target.c_str()) != 0) return errno;
  m_part.clear();
  return 0;
}

int NewFile::LinkAs(const char* name) const {
  const std::string self = NameOfDescriptor(m_lock.Descriptor());
  return linkat(AT_FDCWD, self.c_str(), AT_FDCWD, name, AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

int NewFile::LinkBeside() {
  for (int number = 0; number < kMostNames; ++number) {
    const std::string name = PartName(m_folder, number);
    const int error = LinkAs(name.c_str());
    if (error == EEXIST) continue;
    if (error == 0) m_part = name;
    return error;
  }
  return EEXIST;
}

int OpenUnnamedFile(const std::string& folder) {
  return open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, kNewFile);
}

std::optional<std::int64_t> RoomFor(const char* path) {
  struct statvfs system {};
  // Some that are a program's have no size.
  if (statvfs(FolderOf(BehindLinks(path)).c_str(), &system) != 0 || system.f_blocks == 0) return std::nullopt;
  return static_cast<std::int64_t>(system.f_bavail) * static_cast<std::int64_t>(system.f_frsize);
}

}  // namespace platform
