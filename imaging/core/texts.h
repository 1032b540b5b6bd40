#pragma once

#include "platform/base/string.h"

namespace imaging {

/// The text in the language of the program, if one of its string tables has it and its places for values are
/// the same; otherwise the text itself. Valid until the next call.
const char* Translated(const char* text);

/// What the system calls an error.
CString SystemText(int error);

}  // namespace imaging
