#include "imaging/codecs/output_file.h"

#include <cerrno>
#include <cstring>

#include "imaging/core/exception.h"
#include "imaging/core/texts.h"
#include "platform/base/aside.h"

namespace imaging {
namespace {

constexpr std::size_t kBuffer = std::size_t{1} << 18;

}  // namespace

void FailWriting(const char* path, int error, const char* text) {
  if (error == EISDIR) Fail(kErrorFileWrite, "%s can't be written: it is a folder", path);
  if (error == ENODEV) Fail(kErrorFileWrite, "%s can't be written: it is not an ordinary file", path);
  Fail(kErrorFileWrite, "%s can't be written: %s", path,
       error != 0 ? static_cast<const char*>(SystemText(error)) : text);
}

TargetFile::TargetFile(const char* path) : m_path(path) {
  m_buffer.reserve(kBuffer);
  if (const int error = m_new.Open(path); error != 0) imaging::FailWriting(path, error, "");
}

/// Takes no memory, since it is called by C code that an exception must not leave.
bool TargetFile::Append(std::span<const std::uint8_t> bytes) {
  if (platform::IsWorkStopped()) return false;
  if (m_buffer.size() + bytes.size() > kBuffer && !Flush()) return false;
  if (bytes.size() < kBuffer) {
    m_buffer.insert(m_buffer.end(), bytes.begin(), bytes.end());
    return true;
  }
  if (!File().WriteAt(m_written, bytes)) return false;
  m_written += static_cast<std::int64_t>(bytes.size());
  return true;
}

bool TargetFile::Flush() {
  if (!File().WriteAt(m_written, m_buffer)) return false;
  m_written += static_cast<std::int64_t>(m_buffer.size());
  m_buffer.clear();
  return true;
}

void TargetFile::Restart() {
  m_buffer.clear();
  m_written = 0;
  if (!File().Truncate(0)) FailWriting("");
}

void TargetFile::Complete() {
  if (!Flush()) FailWriting("");
  if (const int error = m_new.Complete(); error != 0) imaging::FailWriting(Path(), error, "");
}

void TargetFile::FailWriting(const char* text) {
  imaging::FailWriting(Path(), File().Error(), text);
}

}  // namespace imaging
