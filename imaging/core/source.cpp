#include "imaging/core/source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <utility>

#include "imaging/core/exception.h"
#include "imaging/core/texts.h"

namespace imaging {
namespace {

constexpr std::int64_t kNsPerSecond = 1'000'000'000;
// File systems stamp changes by a coarse clock, so two writes within a tick look alike. A file younger than
// this may still change without a trace.
constexpr std::int64_t kStampGrainNs = 100'000'000;

std::int64_t Nanoseconds(const timespec& time) {
  return time.tv_sec * kNsPerSecond + time.tv_nsec;
}

class FileSource final : public Source {
 public:
  FileSource(int descriptor, const char* path) : m_descriptor(descriptor), m_name(path) {}
  ~FileSource() override { close(m_descriptor); }
  FileSource(const FileSource&) = delete;
  FileSource& operator=(const FileSource&) = delete;

  /// Refuses what has no contents to read at a place: folders, pipes, devices, empty files.
  void Examine() {
    struct stat status {};
    if (fstat(m_descriptor, &status) != 0)
      Fail(kErrorFileRead, "%s: %s", m_name.c_str(), static_cast<const char*>(SystemText(errno)));
    if (S_ISDIR(status.st_mode)) Fail(kErrorFileOpen, "%s is a folder, not a file", m_name.c_str());
    if (!S_ISREG(status.st_mode)) Fail(kErrorFileOpen, "%s is not an ordinary file", m_name.c_str());
    if (status.st_size == 0) Fail(kErrorFileFormat, "%s is empty", m_name.c_str());
    m_identity = {status.st_dev, status.st_ino, status.st_size, Nanoseconds(status.st_mtim),
                  Nanoseconds(status.st_ctim)};
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    const std::int64_t newest = std::max(m_identity.modifiedNs, m_identity.changedNs);
    m_settled = Nanoseconds(now) - newest > kStampGrainNs;
  }

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const override {
    std::size_t done = 0;
    while (done < target.size()) {
      const ssize_t got = pread(m_descriptor, target.data() + done, target.size() - done,
                                static_cast<off_t>(offset + static_cast<std::int64_t>(done)));
      if (got < 0 && errno == EINTR) continue;
      if (got <= 0) break;
      done += static_cast<std::size_t>(got);
    }
    return done;
  }
  std::int64_t Size() const override { return m_identity.size; }
  const std::string& Name() const override { return m_name; }
  std::optional<SourceIdentity> Identity() const override {
    return m_settled ? std::optional(m_identity) : std::nullopt;
  }
  SourceIdentity Stamp() const override { return m_identity; }
  int Descriptor() const override { return m_descriptor; }

 private:
  int m_descriptor;
  std::string m_name;
  SourceIdentity m_identity;
  bool m_settled = false;
};

std::size_t Copy(std::span<const std::uint8_t> data, std::int64_t offset, std::span<std::uint8_t> target) {
  if (offset < 0 || offset >= std::ssize(data)) return 0;
  const auto rest = data.subspan(static_cast<std::size_t>(offset));
  const std::size_t count = std::min(rest.size(), target.size());
  std::copy_n(rest.begin(), count, target.begin());
  return count;
}

class MemorySource final : public Source {
 public:
  explicit MemorySource(std::span<const std::uint8_t> data) : m_data(data) {}

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const override {
    return Copy(m_data, offset, target);
  }
  std::int64_t Size() const override { return std::ssize(m_data); }
  const std::string& Name() const override { return m_name; }

 private:
  std::span<const std::uint8_t> m_data;
  std::string m_name = "memory";
};

class BlockSource final : public Source {
 public:
  BlockSource(std::vector<std::uint8_t> bytes, std::string name)
      : m_bytes(std::move(bytes)), m_name(std::move(name)) {}

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const override {
    return Copy(m_bytes, offset, target);
  }
  std::int64_t Size() const override { return std::ssize(m_bytes); }
  const std::string& Name() const override { return m_name; }

 private:
  std::vector<std::uint8_t> m_bytes;
  std::string m_name;
};

class WindowSource final : public Source {
 public:
  WindowSource(const Source& whole, std::int64_t offset, std::int64_t size)
      : m_whole(whole), m_offset(offset), m_size(size) {}

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const override {
    if (offset < 0 || offset >= m_size) return 0;
    const auto count = std::min(target.size(), static_cast<std::size_t>(m_size - offset));
    return m_whole.ReadAt(m_offset + offset, target.first(count));
  }
  std::int64_t Size() const override { return m_size; }
  const std::string& Name() const override { return m_whole.Name(); }

 private:
  const Source& m_whole;
  std::int64_t m_offset;
  std::int64_t m_size;
};

class PrefixedSource final : public Source {
 public:
  PrefixedSource(std::vector<std::uint8_t> prefix, const Source& rest, std::int64_t skip)
      : m_prefix(std::move(prefix)), m_rest(rest), m_skip(skip) {}

  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target) const override {
    if (offset < 0) return 0;
    std::size_t done = 0;
    if (offset < std::ssize(m_prefix)) {
      const auto rest = std::span(m_prefix).subspan(static_cast<std::size_t>(offset));
      done = std::min(rest.size(), target.size());
      std::memcpy(target.data(), rest.data(), done);
    }
    const std::int64_t after = offset + static_cast<std::int64_t>(done) - std::ssize(m_prefix);
    return done + m_rest.ReadAt(m_skip + after, target.subspan(done));
  }
  std::int64_t Size() const override {
    return std::ssize(m_prefix) + std::max<std::int64_t>(m_rest.Size() - m_skip, 0);
  }
  const std::string& Name() const override { return m_rest.Name(); }

 private:
  std::vector<std::uint8_t> m_prefix;
  const Source& m_rest;
  std::int64_t m_skip;
};

}  // namespace

std::unique_ptr<Source> OpenFileSource(const char* path) {
  if (path == nullptr || *path == '\0') Fail(kErrorInvalidParameter, "No file name was given");
  // Without O_NONBLOCK a pipe under that name would hang the open.
  const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor < 0)
    Fail(kErrorFileOpen, "%s can't be opened: %s", path, static_cast<const char*>(SystemText(errno)));
  auto source = std::make_unique<FileSource>(descriptor, path);
  source->Examine();
  return source;
}

std::unique_ptr<Source> OpenMemorySource(const char* data, long size) {
  if (data == nullptr || size <= 0) Fail(kErrorInvalidParameter, "The memory image is empty");
  return std::make_unique<MemorySource>(
      std::span(reinterpret_cast<const std::uint8_t*>(data), static_cast<std::size_t>(size)));
}

std::unique_ptr<Source> OpenBlockSource(std::vector<std::uint8_t> bytes, std::string name) {
  return std::make_unique<BlockSource>(std::move(bytes), std::move(name));
}

std::unique_ptr<Source> OpenWindowSource(const Source& whole, std::int64_t offset, std::int64_t size) {
  const std::int64_t start = std::clamp<std::int64_t>(offset, 0, whole.Size());
  return std::make_unique<WindowSource>(whole, start,
                                        std::clamp<std::int64_t>(size, 0, whole.Size() - start));
}

std::unique_ptr<Source> OpenPrefixedSource(std::vector<std::uint8_t> prefix, const Source& rest,
                                           std::int64_t skip) {
  return std::make_unique<PrefixedSource>(std::move(prefix), rest, skip);
}

bool ByteReader::Refill() {
  m_offset += static_cast<std::int64_t>(m_filled);
  m_next = 0;
  m_filled = m_source.ReadAt(m_offset, m_buffer);
  m_atEnd = m_atEnd || m_filled == 0;
  return m_filled != 0;
}

void ByteReader::Read(std::span<std::uint8_t> target) {
  while (!target.empty()) {
    if (m_next == m_filled && !Refill()) {
      std::fill(target.begin(), target.end(), std::uint8_t{0});
      return;
    }
    const std::size_t count = std::min(target.size(), m_filled - m_next);
    std::memcpy(target.data(), m_buffer.data() + m_next, count);
    m_next += count;
    target = target.subspan(count);
  }
}

void ByteReader::Seek(std::int64_t offset) {
  if (offset >= m_offset && offset <= m_offset + static_cast<std::int64_t>(m_filled)) {
    m_next = static_cast<std::size_t>(offset - m_offset);
    return;
  }
  m_offset = offset;
  m_next = m_filled = 0;
}

}  // namespace imaging
