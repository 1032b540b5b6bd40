#include "imaging/helper/place.h"

#include <dlfcn.h>
#include <unistd.h>

namespace imaging::helper_client {
namespace {

/// The folder of the binary that this code is part of.
std::string OwnFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&OwnFolder), &info) == 0 || info.dli_fname == nullptr) return {};
  const std::string file = info.dli_fname;
  const std::size_t slash = file.rfind('/');
  return slash == std::string::npos ? "." : file.substr(0, slash);
}

}  // namespace

std::string ProgramPath() {
  // As installed, and as it stands in the build tree.
  for (const char* folder : {TESSAREL_HELPER_FOLDER, "../libexec/tessarel12"}) {
    std::string path = OwnFolder() + "/" + folder + "/image-helper";
    if (access(path.c_str(), X_OK) == 0) return path;
  }
  return {};
}

bool HasModule(const char* module) {
  std::string path = ProgramPath();
  if (path.empty()) return false;
  path.resize(path.rfind('/'));
  return access((path + "/modules/" + module + ".so").c_str(), R_OK) == 0;
}

}  // namespace imaging::helper_client
