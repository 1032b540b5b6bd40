#include <algorithm>

#include "platform/window/detail/mdi_layout.h"

namespace platform {

QRect CascadePlace(int index, QSize client, int step) {
  const int steps = std::max(client.height() / 3 / std::max(step, 1), 0);
  const int offset = index % (steps + 1) * step;
  return {offset, offset, std::max(client.width() - steps * step, 0),
          std::max(client.height() - steps * step, 0)};
}

std::vector<QRect> TilePlaces(int count, QSize client, bool horizontal) {
  std::vector<QRect> places;
  if (count < 1) return places;
  int side = 1;
  while ((side + 1) * (side + 1) <= count) ++side;
  const int columns = horizontal ? side : count / side;
  for (int column = 0; column < columns; ++column) {
    // The counts of the columns differ by one at most, the taller ones last.
    const int rows = (column + 1) * count / columns - column * count / columns;
    const int left = column * client.width() / columns;
    const int right = (column + 1) * client.width() / columns;
    for (int row = 0; row < rows; ++row) {
      const int top = row * client.height() / rows;
      places.emplace_back(left, top, right - left, (row + 1) * client.height() / rows - top);
    }
  }
  return places;
}

QRect IconPlace(int index, QSize client, QSize icon) {
  const int perRow = std::max(client.width() / std::max(icon.width(), 1), 1);
  return {QPoint(index % perRow * icon.width(), client.height() - (index / perRow + 1) * icon.height()),
          icon};
}

}  // namespace platform
