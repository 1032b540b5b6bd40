#pragma once

#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "page_ranges.h"

/// A command line that makes no sense.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

enum class Mode { Window, Help, Version, Info, Export, Print, Screenshot };
enum class Zoom { Kept, Percent, Width, Height, Page };

/// Where a window goes and how large it is; below 0: the desktop's choice.
struct Geometry {
  int width = -1;
  int height = -1;
  int x = -1;
  int y = -1;
};

struct Options {
  Mode mode = Mode::Window;
  int page = 1;
  Zoom zoom = Zoom::Kept;
  double percent = 100;
  Geometry geometry;
  std::string target;   ///< of an export or a screenshot
  std::string printer;  ///< empty: the default one
  PageRanges pages;     ///< empty: all
  std::string watch;    ///< folder whose new files are told; empty: none
  std::vector<std::string> files;
};

/// Throws a UsageError. The first argument is the program.
Options ReadCommandLine(std::span<const char* const> arguments);
/// What --help shows.
std::string HelpText();
