#pragma once

#include <cstdarg>
#include <string>

namespace platform {

/// Fills a message template: %1 to %99 take the arguments by number, as text, or as told between exclamation
/// marks behind it in printf's way (%2!d!, %1!04x!, %3!s!: s for const char*, d i u x X c for int); %n is a
/// line's end, %0 ends the text, %% and any other character stand for that character. An argument counts as
/// often as it is named; every number below the highest must be named at least once, or else is taken for a
/// text.
std::string FormatMessageTemplate(const char* format, va_list arguments);

}  // namespace platform
