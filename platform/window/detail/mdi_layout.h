#pragma once

#include <QRect>
#include <QSize>
#include <vector>

// Places of document windows in their client, as arithmetic.

namespace platform {

/// The place of a window in a cascade. Each lies a step further right and down; after a third of the client's
/// height the next begins at the top again. step: height of a title bar.
QRect CascadePlace(int index, QSize client, int step);
/// A grid without gaps, columns from left to right, each from top to bottom. horizontal: with at least as
/// many rows as columns, otherwise the other way round. The last column or columns hold what doesn't divide.
std::vector<QRect> TilePlaces(int count, QSize client, bool horizontal);
/// The place of a minimised window: rows from the bottom left.
QRect IconPlace(int index, QSize client, QSize icon);

}  // namespace platform
