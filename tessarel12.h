#pragma once

// All that a host uses of the library.

#include "imagewindow/image_window.h"
#include "library/tessarel_ext.h"
