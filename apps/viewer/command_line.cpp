#include "command_line.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "windowless.h"

namespace {

/// One option: how it is written, what follows it (null: nothing), what it does, for --help.
struct Option {
  const char* name;
  const char* value;
  const char* help;
  void (*take)(Options& options, const std::string& value);
};

double ReadNumber(const std::string& text, double lowest, double highest, const char* what) {
  char* end = nullptr;
  const double number = std::strtod(text.c_str(), &end);
  if (end == text.c_str() || *end != 0 || !(number >= lowest && number <= highest))
    throw UsageError("'" + text + "' is no " + what);
  return number;
}

void TakeMode(Options& options, Mode mode) {
  if (options.mode != Mode::Window && options.mode != mode)
    throw UsageError("--info, --export, --print and --screenshot exclude each other");
  options.mode = mode;
}

void TakeTarget(Options& options, Mode mode, const std::string& value) {
  TakeMode(options, mode);
  if (value.empty()) throw UsageError("the file to write has no name");
  options.target = value;
}

void TakePage(Options& options, const std::string& value) {
  if (value.find_first_not_of("0123456789") != std::string::npos)
    throw UsageError("'" + value + "' is no page number");
  constexpr double kMostPages = 1e6;
  options.page = static_cast<int>(ReadNumber(value, 1, kMostPages, "page number"));
}

void TakeZoom(Options& options, const std::string& value) {
  if (value == "width") {
    options.zoom = Zoom::Width;
  } else if (value == "height") {
    options.zoom = Zoom::Height;
  } else if (value == "page") {
    options.zoom = Zoom::Page;
  } else {
    options.percent = ReadNumber(value, 1, 1000, "zoom: 1 to 1000, width, height or page");
    options.zoom = Zoom::Percent;
  }
}

void TakeGeometry(Options& options, const std::string& value) {
  Geometry& to = options.geometry;
  int end = 0;
  constexpr int kLargest = 16000;
  if (std::sscanf(value.c_str(), "%5dx%5d%n", &to.width, &to.height, &end) != 2 || to.width < 1 ||
      to.height < 1 || to.width > kLargest || to.height > kLargest)
    throw UsageError("'" + value + "' is no geometry such as 800x600 or 800x600+20+40");
  const std::string place = value.substr(static_cast<std::size_t>(end));
  end = 0;
  if (!place.empty() && (std::sscanf(place.c_str(), "+%5d+%5d%n", &to.x, &to.y, &end) != 2 ||
                         static_cast<std::size_t>(end) != place.size() || to.x < 0 || to.y < 0))
    throw UsageError("'" + value + "' is no geometry such as 800x600 or 800x600+20+40");
}

void TakePages(Options& options, const std::string& value) {
  const auto ranges = ReadPageRanges(value);
  if (!ranges) throw UsageError("'" + value + "' are no pages such as 1-3,7 or 5-");
  options.pages = *ranges;
}

constexpr Option kOptions[] = {
    {"--help", nullptr, "show this text", [](Options& o, const std::string&) { o.mode = Mode::Help; }},
    {"--version", nullptr, "show the version",
     [](Options& o, const std::string&) { o.mode = Mode::Version; }},
    {"--page", "N", "open at this page", &TakePage},
    {"--zoom", "PERCENT|width|height|page", "open at this scale, or fitted", &TakeZoom},
    {"--geometry", "WxH[+X+Y]", "size and place of the window", &TakeGeometry},
    {"--watch", "FOLDER", "tell of new files in this folder, and offer them",
     [](Options& o, const std::string& value) { o.watch = value; }},
    {"--info", nullptr, "tell what the files are, without a window",
     [](Options& o, const std::string&) { TakeMode(o, Mode::Info); }},
    {"--export", "OUT.{tif,pdf,png,jpg}", "write pages into another file, without a window",
     [](Options& o, const std::string& value) { TakeTarget(o, Mode::Export, value); }},
    {"--print", nullptr, "print the files, without a window",
     [](Options& o, const std::string&) { TakeMode(o, Mode::Print); }},
    {"--printer", "NAME", "print on this printer, not on the default one",
     [](Options& o, const std::string& value) { o.printer = value; }},
    {"--pages", "RANGES", "export or print these pages only: 1-3,7 or 5-", &TakePages},
    {"--screenshot", "OUT.png", "write the window as a picture, without showing it",
     [](Options& o, const std::string& value) { TakeTarget(o, Mode::Screenshot, value); }},
};

const Option& Find(const std::string& name) {
  for (const Option& option : kOptions)
    if (name == option.name) return option;
  throw UsageError("there is no option " + name);
}

void CheckTarget(const Options& options) {
  const std::string ending = ExportEnding(options.target);
  const bool known = options.mode == Mode::Export ? !ending.empty() : ending == ".png";
  if (!known) throw UsageError("'" + options.target + "' has no ending of a kind that is written");
}

/// What only the whole line tells.
void Check(const Options& options) {
  const bool writes = options.mode == Mode::Export || options.mode == Mode::Screenshot;
  if (options.mode == Mode::Help || options.mode == Mode::Version) return;
  if (options.mode != Mode::Window && options.files.empty()) throw UsageError("a file is missing");
  if (writes && options.files.size() != 1) throw UsageError("it takes one file at a time");
  if (writes) CheckTarget(options);
  if (!options.watch.empty() && options.mode != Mode::Window) throw UsageError("--watch goes with windows");
  std::error_code ignored;
  if (!options.watch.empty() && !std::filesystem::is_directory(options.watch, ignored))
    throw UsageError("'" + options.watch + "' is no folder");
  if (!options.pages.empty() && options.mode != Mode::Export && options.mode != Mode::Print)
    throw UsageError("--pages goes with --export or --print");
  if (!options.printer.empty() && options.mode != Mode::Print)
    throw UsageError("--printer goes with --print");
}

}  // namespace

Options ReadCommandLine(std::span<const char* const> arguments) {
  Options options;
  bool mayBeOption = true;
  for (std::size_t i = 1; i < arguments.size(); ++i) {
    const std::string word = arguments[i];
    if (!mayBeOption || word.size() < 2 || word[0] != '-') {
      options.files.push_back(word);
      continue;
    }
    if (word == "--") {
      mayBeOption = false;
      continue;
    }
    const std::size_t equals = word.find('=');
    const Option& option = Find(word.substr(0, equals));
    const bool attached = equals != std::string::npos;
    if (option.value == nullptr && attached) throw UsageError(std::string(option.name) + " takes no value");
    if (option.value != nullptr && !attached && i + 1 == arguments.size())
      throw UsageError(std::string(option.name) + " wants a value");
    std::string value;
    if (attached)
      value = word.substr(equals + 1);
    else if (option.value != nullptr)
      value = arguments[++i];
    option.take(options, value);
    if (options.mode == Mode::Help || options.mode == Mode::Version) return options;
  }
  Check(options);
  return options;
}

std::string HelpText() {
  std::string text =
      "Usage: tessarel-viewer [OPTION...] [FILE...]\n"
      "Shows faxes, scans and pictures; each file in a window of its own. The file - is standard input.\n\n";
  constexpr std::size_t kColumn = 36;
  for (const Option& option : kOptions) {
    std::string line = std::string("  ") + option.name;
    if (option.value != nullptr) line += std::string(" ") + option.value;
    line.resize(std::max(line.size() + 1, kColumn), ' ');
    text += line + option.help + "\n";
  }
  return text + "\nExit status: 0 done, 1 a file that can't be read, written or printed, 2 wrong usage.\n";
}
