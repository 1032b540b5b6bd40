#pragma once

#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

/// What became of a program that a test ran.
struct Outcome {
  int status = -1;  ///< -1 if a signal ended it
  std::string out;
  std::string err;
};

inline std::string FileText(const std::filesystem::path& file) {
  std::ostringstream text;
  text << std::ifstream(file).rdbuf();
  return text.str();
}

/// Runs a line of the shell; what it says is left in files of this folder.
inline Outcome RunProgram(const std::string& command, const std::filesystem::path& folder) {
  const std::filesystem::path out = folder / "out";
  const std::filesystem::path err = folder / "err";
  const int status = std::system((command + " >" + out.string() + " 2>" + err.string()).c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, FileText(out), FileText(err)};
}
