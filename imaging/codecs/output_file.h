#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace imaging {

/// An open file that is written. A step that fails returns false, and the first system error is kept for the
/// text: the codec libraries are C and must not be left by an exception.
class OutputFile {
 public:
  OutputFile() = default;
  explicit OutputFile(int descriptor) : m_descriptor(descriptor) {}
  ~OutputFile() { Close(); }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  int Descriptor() const { return m_descriptor; }
  void Take(int descriptor) { m_descriptor = descriptor; }
  /// How many bytes there were.
  std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> target);
  bool WriteAt(std::int64_t offset, std::span<const std::uint8_t> bytes);
  std::int64_t Size();
  bool Truncate(std::int64_t size);
  bool SyncData();
  /// Some file systems tell only here that the disk is full. Closing twice is harmless.
  bool Close();
  /// The first system error, 0 if there was none.
  int Error() const { return m_error; }

 private:
  bool Check(bool success);

  int m_descriptor = -1;
  int m_error = 0;
};

/// A new file that takes its name only when it is whole: until then the bytes go into a file beside it, and
/// what was there under the name stays. A link is followed, so that the file behind it is replaced; the new
/// file has the owner and permissions of the one that it replaces. Without Complete nothing is left behind.
class TargetFile {
 public:
  /// Throws if the path can't become a file: no such folder, no permission, or something else of that name.
  explicit TargetFile(const char* path);
  ~TargetFile();
  TargetFile(const TargetFile&) = delete;
  TargetFile& operator=(const TargetFile&) = delete;

  OutputFile& File() { return m_file; }
  const char* Path() const { return m_path.c_str(); }
  /// Writes behind what was written so far by this function, through a buffer.
  bool Append(std::span<const std::uint8_t> bytes);
  bool Flush();
  /// Brings the bytes to the disk and gives the file its name. Throws.
  void Complete();
  /// Throws with the system's error, or if there was none with the library's text.
  [[noreturn]] void FailWriting(const char* text) const;

 private:
  void Open(const char* folder);
  void TakePermissions();

  std::string m_path;    ///< as given
  std::string m_target;  ///< behind links
  std::string m_part;    ///< empty: there is no file to remove
  OutputFile m_file;
  std::vector<std::uint8_t> m_buffer;
  std::int64_t m_written = 0;  ///< by Append, without the buffer
};

/// The text of a failure to write a page of a file.
[[noreturn]] void FailWriting(const char* path, int error, const char* text);

}  // namespace imaging
