#pragma once

#include <string>

namespace imaging::helper_client {

/// Where the helper program lies: at a fixed place beside this library, so that an installed tree can be
/// moved and no setting of the user's points elsewhere. Empty if it isn't installed.
std::string ProgramPath();
/// Whether the helper can read the family of that module.
bool HasModule(const char* module);

}  // namespace imaging::helper_client
