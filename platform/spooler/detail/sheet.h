#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/spooler/detail/queues.h"
#include "platform/spooler/print_records.h"

namespace platform {

/// The sheet that a page is printed on.
struct Sheet {
  Paper paper;  ///< upright, whatever way it is printed
  bool landscape = false;
  int dpiX = 300;
  int dpiY = 300;
};

/// The record's wishes (those that its dmFields name) on a queue's own sheet; null: none. A paper of unknown
/// size, and dots that no printer has, are left as they are.
Sheet SheetOf(const PrintQueue& queue, const DEVMODEA* mode);
/// The record of a queue with its own sheet.
DEVMODEA DevModeOf(const PrintQueue& queue);
/// Puts a paper into the record.
void SetPaper(DEVMODEA& mode, const Paper& paper);
/// How the user knows the paper.
std::string PaperText(const Paper& paper);
/// The sheet as GetDeviceCaps tells it.
std::map<int, int> CapsOf(const Sheet& sheet);
/// Width and height of the sheet as it is printed, in points: whole dots, so that images lie on the grid of
/// the device.
std::pair<double, double> PointsOf(const Sheet& sheet);
/// What printing to a file has in the place of a queue.
PrintQueue FileQueue();

}  // namespace platform
