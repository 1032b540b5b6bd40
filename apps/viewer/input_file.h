#pragma once

#include <stdexcept>
#include <string>

#include "tessarel12.h"

/// A file that can't be read, written or printed.
struct FileError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// A file of the command line. Standard input, "-", is read whole into memory that has a path, since pages
/// are decoded one by one and in any order.
class InputFile {
 public:
  /// Throws a FileError.
  explicit InputFile(const std::string& argument);
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;
  ~InputFile();

  const std::string& Path() const { return m_path; }
  /// For messages and titles.
  const std::string& Name() const { return m_name; }
  /// A failure's text with the file's name in it.
  std::string Told(std::string text) const;

 private:
  std::string m_path;
  std::string m_name;
  int m_memory = -1;  ///< file of standard input
};

/// The user has stopped what was being done; nothing of it stays.
struct Stopped {};

/// Calls the imaging service, its exception turned into a FileError, or into Stopped.
template <typename Call>
void Imaging(const InputFile& file, Call call) {
  try {
    call();
  } catch (CLeadtoolsException* exception) {
    const int code = exception->GetLastError();
    const CString text = CLeadtoolsException::GetErrorMessage(code);
    exception->Delete();
    if (code == imaging::kErrorUserAbort) throw Stopped();
    throw FileError(file.Told(static_cast<const char*>(text)));
  }
}

/// What the file says of itself and its first page.
struct_file_information Describe(const InputFile& file);
/// And of another one.
struct_file_information DescribePage(const InputFile& file, int page);
