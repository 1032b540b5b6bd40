#include "input_file.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

namespace {

/// Throws a FileError.
void WriteAll(int file, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = write(file, bytes, count);
    if (written < 0) throw FileError(std::string("standard input: ") + std::strerror(errno));
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
}

void CopyStandardInput(int target) {
  std::array<char, 65536> block{};
  for (;;) {
    const ssize_t count = read(STDIN_FILENO, block.data(), block.size());
    if (count == 0) return;
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw FileError(std::string("standard input: ") + std::strerror(errno));
    WriteAll(target, block.data(), static_cast<std::size_t>(count));
  }
}

}  // namespace

InputFile::InputFile(const std::string& argument) : m_path(argument), m_name(argument) {
  if (argument != "-") return;
  m_name = "standard input";
  m_memory = memfd_create("standard input", MFD_CLOEXEC);
  if (m_memory < 0) throw FileError(std::string("standard input: ") + std::strerror(errno));
  m_path = "/proc/self/fd/" + std::to_string(m_memory);
  CopyStandardInput(m_memory);
}

InputFile::~InputFile() {
  if (m_memory >= 0) close(m_memory);
}

std::string InputFile::Told(std::string text) const {
  const std::size_t at = text.find(m_path);
  return at == std::string::npos ? m_name + ": " + text : text.replace(at, m_path.size(), m_name);
}

struct_file_information Describe(const InputFile& file) {
  struct_file_information info{};
  Imaging(file,
          [&] { LEADTOOLS::FileInfo(file.Path().c_str(), &info, leadtools12::kInfoCountsPages, nullptr); });
  return info;
}

struct_file_information DescribePage(const InputFile& file, int page) {
  struct_file_information info{};
  Imaging(file, [&] {
    _LOADFILEOPTION options{};
    LEADTOOLS::GetDefaultLoadFileOption(&options);
    options.PageNumber = page;
    LEADTOOLS::FileInfo(file.Path().c_str(), &info, 0, &options);
  });
  return info;
}
