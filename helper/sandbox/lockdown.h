#pragma once

#include <string>

namespace helper {

/// Gives up all that the process can do but compute and talk over descriptors that it has: no new files,
/// sockets, programs, processes, threads, no memory that is both new and executable; limits on memory and
/// time. Returns why it failed, empty on success. There is no way back. fontFolders: folders that may still
/// be read, separated by colons; null or a kernel without Landlock: none.
std::string LockDown(const char* fontFolders);

}  // namespace helper
