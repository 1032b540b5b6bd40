#pragma once

#include "platform/window/messages.h"

namespace platform {

/// Within a handler of any exception: gives what got out of the handling of a message to the thread's
/// ProcessWndProcException, what the standard library threw (no memory, say) too, since it mustn't go on into
/// a loop that isn't ours. The result is the message's. Exceptions of other kinds go on.
LRESULT TellHandlerFailure(const MSG& message);

}  // namespace platform
