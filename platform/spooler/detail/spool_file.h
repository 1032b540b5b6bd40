#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/base/detail/file_descriptor.h"
#include "platform/base/output_file.h"

namespace platform {

/// A temporary file that a document grows in. It vanishes with the object unless it was given its name.
class SpoolFile {
 public:
  SpoolFile() = default;
  SpoolFile(const SpoolFile&) = delete;
  SpoolFile& operator=(const SpoolFile&) = delete;

  /// For a queue: a file without a name in the folder of temporary files. 0, or SP_...
  int Open();
  /// For a file of the user, beside which the temporary one is made. 0, or SP_...
  int OpenFor(const std::string& target);

  /// After a failed write nothing is written any more.
  void Write(std::span<const std::uint8_t> data);
  void Write(std::string_view text) {
    Write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
  }
  /// Takes back all but the first bytes. Failures show in Error.
  void Cut(std::size_t size);
  /// Bytes written so far, those still held included.
  std::size_t Size() const { return m_size; }
  /// 0, or the SP_... of the first write that failed.
  int Error() const { return m_error; }

  /// Writes what is held. 0, or SP_...
  int Flush();
  /// The file's bytes from a position on; none at the end or after an error, which Error tells.
  std::size_t Read(std::size_t position, std::span<std::uint8_t> buffer);
  /// The same file for a reader that may outlive this object.
  FileDescriptor Duplicate();
  /// Puts the finished file in the place of the target. 0, or SP_...
  int Commit();

 private:
  int Fail() { return m_error = SpoolError(File().Error()); }
  static int SpoolError(int error);
  OutputFile& File() { return m_isForQueue ? m_unnamed : m_new.File(); }

  OutputFile m_unnamed;
  NewFile m_new;
  bool m_isForQueue = true;
  std::int64_t m_flushed = 0;
  std::vector<std::uint8_t> m_held;
  std::size_t m_size = 0;
  int m_error = 0;
};

}  // namespace platform
