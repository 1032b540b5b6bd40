#include "helper/sandbox/landlock.h"

#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

namespace helper {
namespace {

/// All rights over files that a version of the kernel's interface knows; asking for more would fail.
std::uint64_t FileRights(long version) {
  constexpr int kRightsByVersion[] = {13, 14, 15, 15, 16};
  constexpr long kKnown = std::size(kRightsByVersion);
  return (std::uint64_t{1} << kRightsByVersion[std::min(version, kKnown) - 1]) - 1;
}

void AllowReading(int rules, const std::string& folder) {
  const int descriptor = open(folder.c_str(), O_PATH | O_CLOEXEC);
  if (descriptor < 0) return;
  landlock_path_beneath_attr beneath{};
  beneath.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
  beneath.parent_fd = descriptor;
  syscall(SYS_landlock_add_rule, rules, LANDLOCK_RULE_PATH_BENEATH, &beneath, 0);
  close(descriptor);
}

void AllowFolders(int rules, std::string_view folders) {
  while (!folders.empty()) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    AllowReading(rules, std::string(folders.substr(0, end)));
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
}

}  // namespace

bool ForgetFileSystem(const char* readableFolders) {
  const long version = syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
  if (version < 1) return false;
  std::uint64_t handled = FileRights(version);
  const auto rules = static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0));
  if (rules < 0) return false;
  if (readableFolders != nullptr) AllowFolders(rules, readableFolders);
  const bool restricted = syscall(SYS_landlock_restrict_self, rules, 0) == 0;
  close(rules);
  return restricted;
}

}  // namespace helper
