#pragma once

#include <QtGui/QImage>

#include "platform/graphics/image_list.h"

namespace platform {

/// One picture of a list with its transparent pixels, its device pixel ratio set; a null image if there is
/// none of that index.
QImage PictureOf(HIMAGELIST list, int index);

}  // namespace platform
