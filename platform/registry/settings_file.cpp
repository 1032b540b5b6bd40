#include "platform/registry/detail/settings_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <span>
#include <system_error>

#include "platform/base/output_file.h"

namespace platform::registry {
namespace {

constexpr int kMostSetAside = 1000;
// The coarsest clock of a file system: within one tick of it the times of two contents are the same.
constexpr std::time_t kTick = 2;

std::span<const std::uint8_t> BytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

int Write(const std::string& file, std::string_view text, NewFile::Existing existing) {
  NewFile written;
  if (const int error = written.Open(file.c_str()); error != 0) return error;
  written.File().WriteAt(0, BytesOf(text));
  return written.Complete(existing);
}

// The name beside the file behind links.
std::string Aside(const std::string& file, int number) {
  std::error_code error;
  return std::filesystem::canonical(file, error).string() + ".damaged-" + std::to_string(number);
}

bool MoveAside(const std::string& file) {
  std::error_code error;
  for (int number = 1; number <= kMostSetAside; ++number) {
    const std::string aside = Aside(file, number);
    if (std::filesystem::exists(aside, error)) continue;
    return std::rename(std::filesystem::canonical(file, error).c_str(), aside.c_str()) == 0;
  }
  return false;
}

}  // namespace

std::string StateOf(const std::string& file) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0 || std::time(nullptr) - status.st_ctim.tv_sec <= kTick) return {};
  std::string state;
  for (const auto part :
       {static_cast<std::int64_t>(status.st_dev), static_cast<std::int64_t>(status.st_ino),
        static_cast<std::int64_t>(status.st_size), static_cast<std::int64_t>(status.st_ctim.tv_sec),
        static_cast<std::int64_t>(status.st_ctim.tv_nsec)})
    state += std::to_string(part) + ' ';
  return state;
}

std::optional<std::string> ReadWhole(const std::string& file) {
  OutputFile opened(
      open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));  // a pipe in its place can't hold us
  struct stat status {};
  if (opened.Descriptor() < 0 && (errno == ENOENT || errno == ENOTDIR)) return "";
  if (opened.Descriptor() < 0 || fstat(opened.Descriptor(), &status) != 0 || !S_ISREG(status.st_mode))
    return std::nullopt;
  if (static_cast<std::size_t>(status.st_size) > kMostBytes) {
    if (!MoveAside(file)) return std::nullopt;
    return "";
  }
  std::string text(static_cast<std::size_t>(status.st_size), '\0');
  text.resize(opened.ReadAt(0, {reinterpret_cast<std::uint8_t*>(text.data()), text.size()}));
  if (opened.Error() != 0) return std::nullopt;
  return text;
}

LSTATUS WriteWhole(const std::string& file, std::string_view text) {
  if (text.size() > kMostBytes || Write(file, text, NewFile::Existing::kReplaced) != 0)
    return ERROR_WRITE_FAULT;
  return ERROR_SUCCESS;
}

bool CopyAside(const std::string& file) {
  const std::optional<std::string> text = ReadWhole(file);
  if (!text) return false;
  int error = EEXIST;
  for (int number = 1; error == EEXIST && number <= kMostSetAside; ++number)
    error = Write(Aside(file, number), *text, NewFile::Existing::kRefused);
  return error == 0;
}

}  // namespace platform::registry
