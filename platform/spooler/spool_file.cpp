#include "platform/spooler/detail/spool_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "platform/spooler/print_records.h"

namespace platform {
namespace {

constexpr std::size_t kMostHeld = std::size_t{1} << 16;

int SpoolError(int error) {
  switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return SP_OUTOFDISK;
    case ENOMEM:
      return SP_OUTOFMEMORY;
    default:
      return SP_ERROR;
  }
}

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != 0 ? folder : "/tmp";
}

// A new file beside the target, with the permissions that any new file of this process gets.
int CreateBeside(const std::string& target, std::string& name) {
  constexpr int kMostNames = 1000;
  for (int i = 0; i < kMostNames; ++i) {
    name = target + "." + std::to_string(::getpid()) + "-" + std::to_string(i) + ".part";
    const int file = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (file >= 0 || errno != EEXIST) return file;
  }
  return -1;
}

}  // namespace

SpoolFile::~SpoolFile() {
  if (!m_temporary.empty()) ::unlink(m_temporary.c_str());
}

int SpoolFile::Open() {
  std::string name = TemporaryFolder() + "/print-XXXXXX";
  m_file = FileDescriptor(::mkostemp(name.data(), O_CLOEXEC));
  if (!m_file.IsOpen()) return SpoolError(errno);
  ::unlink(name.c_str());
  return 0;
}

int SpoolFile::OpenFor(const std::string& target) {
  struct stat status = {};
  const bool exists = ::stat(target.c_str(), &status) == 0;
  if (exists && (!S_ISREG(status.st_mode) || ::access(target.c_str(), W_OK) != 0)) return SP_ERROR;
  std::string name;
  m_file = FileDescriptor(CreateBeside(target, name));
  if (!m_file.IsOpen()) return SpoolError(errno);
  m_target = target;
  m_temporary = name;
  if (exists) ::fchmod(m_file.Get(), status.st_mode & 07777);
  return 0;
}

void SpoolFile::Write(std::span<const std::uint8_t> data) {
  m_size += data.size();
  if (m_error != 0) return;
  if (m_held.capacity() == 0) m_held.reserve(kMostHeld);
  while (!data.empty()) {
    const auto piece = data.first(std::min(data.size(), kMostHeld - m_held.size()));
    m_held.insert(m_held.end(), piece.begin(), piece.end());
    data = data.subspan(piece.size());
    if (m_held.size() == kMostHeld && Flush() != 0) return;
  }
}

void SpoolFile::Cut(std::size_t size) {
  if (Flush() != 0) return;
  m_size = size;
  const auto end = static_cast<off_t>(size);
  if (::ftruncate(m_file.Get(), end) != 0 || ::lseek(m_file.Get(), end, SEEK_SET) < 0)
    m_error = SpoolError(errno);
}

int SpoolFile::Flush() {
  if (m_error != 0) return m_error;
  if (!WriteAll(m_file.Get(), reinterpret_cast<const char*>(m_held.data()), m_held.size()))
    m_error = SpoolError(errno);
  m_held.clear();
  return m_error;
}

std::size_t SpoolFile::Read(std::size_t position, std::span<std::uint8_t> buffer) {
  ssize_t got = 0;
  do got = ::pread(m_file.Get(), buffer.data(), buffer.size(), static_cast<off_t>(position));
  while (got < 0 && errno == EINTR);
  if (got < 0) m_error = SpoolError(errno);
  return got < 0 ? 0 : static_cast<std::size_t>(got);
}

FileDescriptor SpoolFile::Duplicate() const {
  return FileDescriptor(::fcntl(m_file.Get(), F_DUPFD_CLOEXEC, 0));
}

int SpoolFile::Commit() {
  if (Flush() != 0) return m_error;
  // Some file systems tell of a full disk only here.
  if (::fsync(m_file.Get()) != 0 && errno != EINVAL) return m_error = SpoolError(errno);
  if (!m_file.Close()) return m_error = SpoolError(errno);
  if (::rename(m_temporary.c_str(), m_target.c_str()) != 0) return m_error = SpoolError(errno);
  m_temporary.clear();
  return 0;
}

}  // namespace platform
