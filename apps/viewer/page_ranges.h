#pragma once

#include <optional>
#include <string>
#include <vector>

/// Pages from first to last, counted from 1; last 0: to the end.
struct PageRange {
  int first;
  int last;
};
using PageRanges = std::vector<PageRange>;

/// Ranges such as 1-3,7 or 5-; nothing if the text is none.
std::optional<PageRanges> ReadPageRanges(const std::string& text);
/// The ranges within a file of so many pages; all of it if there are none. Throws a FileError if one goes
/// beyond it.
PageRanges RangesWithin(const PageRanges& ranges, int pages);
