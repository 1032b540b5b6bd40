#include "platform/spooler/detail/spool_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "platform/spooler/print_records.h"

namespace platform {
namespace {

constexpr std::size_t kMostHeld = std::size_t{1} << 16;

std::string TemporaryFolder() {
  const char* folder = std::getenv("TMPDIR");
  return folder != nullptr && *folder != 0 ? folder : "/tmp";
}

}  // namespace

int SpoolFile::SpoolError(int error) {
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

int SpoolFile::Open() {
  m_unnamed.Take(OpenUnnamedFile(TemporaryFolder()));
  if (m_unnamed.Descriptor() >= 0) return 0;
  std::string name = TemporaryFolder() + "/print-XXXXXX";
  m_unnamed.Take(::mkostemp(name.data(), O_CLOEXEC));
  if (m_unnamed.Descriptor() < 0) return SpoolError(errno);
  ::unlink(name.c_str());
  return 0;
}

int SpoolFile::OpenFor(const std::string& target) {
  m_isForQueue = false;
  const int error = m_new.Open(target.c_str());
  return error == 0 ? 0 : SpoolError(error);
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
  m_flushed = static_cast<std::int64_t>(size);
  if (!File().Truncate(m_flushed)) Fail();
}

int SpoolFile::Flush() {
  if (m_error != 0) return m_error;
  if (!File().WriteAt(m_flushed, m_held)) Fail();
  m_flushed += static_cast<std::int64_t>(m_held.size());
  m_held.clear();
  return m_error;
}

std::size_t SpoolFile::Read(std::size_t position, std::span<std::uint8_t> buffer) {
  const std::size_t got = File().ReadAt(static_cast<std::int64_t>(position), buffer);
  if (got == 0 && File().Error() != 0) Fail();
  return got;
}

FileDescriptor SpoolFile::Duplicate() {
  return FileDescriptor(::fcntl(File().Descriptor(), F_DUPFD_CLOEXEC, 0));
}

int SpoolFile::Commit() {
  if (Flush() != 0) return m_error;
  const int error = m_new.Complete();
  return error == 0 ? 0 : m_error = SpoolError(error);
}

}  // namespace platform
