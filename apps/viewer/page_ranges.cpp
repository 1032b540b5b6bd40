#include "page_ranges.h"

#include <charconv>

#include "input_file.h"

namespace {

/// A page number at the head of the text, which it is taken from; 0 for none.
int TakeNumber(std::string& text) {
  int number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc() || number < 1) return 0;
  text.erase(0, static_cast<std::size_t>(read.ptr - text.data()));
  return number;
}

std::optional<PageRange> TakeRange(std::string& text) {
  PageRange range{TakeNumber(text), 0};
  if (range.first == 0) return std::nullopt;
  range.last = range.first;
  if (text.empty() || text[0] != '-') return range;
  text.erase(0, 1);
  range.last = TakeNumber(text);
  if (range.last != 0 && range.last < range.first) return std::nullopt;
  return range;
}

}  // namespace

std::optional<PageRanges> ReadPageRanges(const std::string& text) {
  PageRanges ranges;
  std::string rest = text;
  for (;;) {
    const auto range = TakeRange(rest);
    if (!range) return std::nullopt;
    ranges.push_back(*range);
    if (rest.empty()) return ranges;
    if (rest[0] != ',') return std::nullopt;
    rest.erase(0, 1);
  }
}

PageRanges RangesWithin(const PageRanges& ranges, int pages) {
  if (ranges.empty()) return {{1, pages}};
  PageRanges within = ranges;
  for (PageRange& range : within) {
    const int beyond = range.first > pages ? range.first : range.last;
    if (beyond > pages)
      throw FileError("there is no page " + std::to_string(beyond) + ", the file has " +
                      std::to_string(pages));
    if (range.last == 0) range.last = pages;
  }
  return within;
}
