#include "imaging/codecs/output_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "imaging/core/exception.h"

namespace imaging {
namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 18;

/// Name of the file behind links; the path itself if there is none yet.
std::string BehindLinks(const char* path) {
  const std::unique_ptr<char, decltype(&std::free)> real(realpath(path, nullptr), std::free);
  return real != nullptr ? real.get() : path;
}

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

/// A replaced file needn't be writable for its name to go to another; who took the right to write away meant
/// the contents to stay.
void RequireReplaceable(const char* path, const std::string& target) {
  struct stat status {};
  if (stat(target.c_str(), &status) != 0) return;
  if (S_ISDIR(status.st_mode)) Fail(kErrorFileWrite, "%s can't be written: it is a folder", path);
  if (!S_ISREG(status.st_mode))
    Fail(kErrorFileWrite, "%s can't be written: it is not an ordinary file", path);
  if (access(target.c_str(), W_OK) != 0) FailWriting(path, errno, "");
}

}  // namespace

void FailWriting(const char* path, int error, const char* text) {
  Fail(kErrorFileWrite, "%s can't be written: %s", path, error != 0 ? std::strerror(error) : text);
}

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

TargetFile::TargetFile(const char* path) : m_path(path), m_target(BehindLinks(path)) {
  m_buffer.reserve(kBuffer);
  RequireReplaceable(path, m_target);
  const std::string folder = FolderOf(m_target);
  Open(folder.c_str());
  TakePermissions();
}

TargetFile::~TargetFile() {
  if (!m_part.empty()) unlink(m_part.c_str());
}

/// The passing name doesn't hold the target's, which may be as long as a name can be.
void TargetFile::Open(const char* folder) {
  static unsigned serial = 0;
  constexpr int kTries = 100;
  for (int i = 0; i < kTries; ++i) {
    const std::string name =
        std::string(folder) + "/.save-" + std::to_string(getpid()) + "-" + std::to_string(++serial) + ".part";
    const int descriptor = open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (descriptor < 0 && errno == EEXIST) continue;  // left by a process that was killed
    if (descriptor < 0) imaging::FailWriting(Path(), errno, "");
    m_file.Take(descriptor);
    m_part = name;
    return;
  }
  imaging::FailWriting(Path(), EEXIST, "");
}

/// As far as the system lets us; a file of our own is better than none. The owner comes first, since changing
/// it may take permissions away.
void TargetFile::TakePermissions() {
  struct stat status {};
  if (stat(m_target.c_str(), &status) != 0) return;
  const bool owned = fchown(m_file.Descriptor(), status.st_uid, status.st_gid) == 0;
  // Rights of a group are only handed on to the same group.
  const mode_t rights = owned ? 0777 : 0707;
  static_cast<void>(fchmod(m_file.Descriptor(), status.st_mode & rights));
}

/// Takes no memory, since it is called by C code that an exception must not leave.
bool TargetFile::Append(std::span<const std::uint8_t> bytes) {
  if (m_buffer.size() + bytes.size() > kBuffer && !Flush()) return false;
  if (bytes.size() < kBuffer) {
    m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
    return true;
  }
  if (!m_file.WriteAt(m_written, bytes)) return false;
  m_written += static_cast<std::int64_t>(bytes.size());
  return true;
}

bool TargetFile::Flush() {
  if (!m_file.WriteAt(m_written, m_buffer)) return false;
  m_written += static_cast<std::int64_t>(m_buffer.size());
  m_buffer.clear();
  return true;
}

void TargetFile::Complete() {
  // Without the sync a power cut could leave the new name with no contents and the old ones gone.
  if (!Flush() || !m_file.SyncData() || !m_file.Close()) FailWriting("");
  if (std::rename(m_part.c_str(), m_target.c_str()) != 0) imaging::FailWriting(Path(), errno, "");
  m_part.clear();
}

void TargetFile::FailWriting(const char* text) const {
  imaging::FailWriting(Path(), m_file.Error(), text);
}

}  // namespace imaging
