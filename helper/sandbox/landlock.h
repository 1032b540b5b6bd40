#pragma once

namespace helper {

/// Takes every access to the file system away, except reading below the folders (separated by colons; may be
/// null). False where the kernel has no Landlock.
bool ForgetFileSystem(const char* readableFolders);

}  // namespace helper
