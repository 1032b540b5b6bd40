#pragma once

#include <string>
#include <vector>

// The files that were opened last, the newest first, kept for the user.

std::vector<std::string> RecentFiles();
/// Puts a file at the head.
void RememberFile(const std::string& path);
/// Takes one out that is gone.
void ForgetFile(const std::string& path);
