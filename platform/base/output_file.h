#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "platform/base/export.h"

namespace platform {

/// An open file that is written. A step that fails returns false, and the first system error is kept for the
/// text: the codec libraries are C and must not be left by an exception. A limit on the size of files is such
/// an error too, whatever the process does about its signal.
class PLATFORM_API OutputFile {
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
/// file has the owner and permissions of the one that it replaces. Without Complete nothing is left behind;
/// not even by a killed process where files can do without a name, else until the next NewFile of the folder.
class PLATFORM_API NewFile {
 public:
  enum class Existing { kReplaced, kRefused };

  NewFile() = default;
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// 0 or the system's error, if the path can't become a file. EISDIR tells of a folder, ENODEV of something
  /// else that is no ordinary file.
  int Open(const char* path);
  OutputFile& File() { return m_file; }
  /// Of a file that replaces none, as far as the process' mask lets them. 0 or the system's error.
  int SetNewPermissions(unsigned permissions);
  /// Brings the bytes to the disk and gives the file its name. 0 or the system's error.
  int Complete(Existing existing = Existing::kReplaced);

 private:
  int OpenBeside();
  void TakePermissions();
  int GiveName(Existing existing);
  int LinkAs(const char* name) const;
  int LinkBeside();

  std::string m_target;  ///< behind links
  std::string m_folder;
  std::string m_part;  ///< empty: the file has no name
  OutputFile m_file;
  OutputFile m_lock;  ///< the same open file, whose lock tells others that its name is no left-over
  bool m_replaces = false;
};

/// An open file for reading and writing that never has a name, so that it goes with its last descriptor; -1
/// with errno if the folder can't hold one.
PLATFORM_API int OpenUnnamedFile(const std::string& folder);

/// Bytes that the file system of a path, whose links are followed, has room for. None if it doesn't tell.
PLATFORM_API std::optional<std::int64_t> RoomFor(const char* path);

}  // namespace platform
