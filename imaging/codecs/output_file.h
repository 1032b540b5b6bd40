#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "platform/base/output_file.h"

namespace imaging {

using platform::OutputFile;

/// A new file that takes its name only when it is whole (platform::NewFile), written through a buffer, with
/// failures thrown.
class TargetFile {
 public:
  /// Throws if the path can't become a file: no such folder, no permission, or something else of that name.
  explicit TargetFile(const char* path);

  OutputFile& File() { return m_new.File(); }
  const char* Path() const { return m_path.c_str(); }
  /// Writes behind what was written so far by this function, through a buffer.
  bool Append(std::span<const std::uint8_t> bytes);
  bool Flush();
  /// Takes away all that was written.
  void Restart();
  /// Brings the bytes to the disk and gives the file its name. Throws.
  void Complete();
  /// Throws with the system's error, or if there was none with the library's text.
  [[noreturn]] void FailWriting(const char* text);

 private:
  std::string m_path;  ///< as given
  platform::NewFile m_new;
  std::vector<std::uint8_t> m_buffer;
  std::int64_t m_written = 0;  ///< by Append, without the buffer
};

/// The text of a failure to write a page of a file.
[[noreturn]] void FailWriting(const char* path, int error, const char* text);

}  // namespace imaging
