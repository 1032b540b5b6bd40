#pragma once

#include <functional>

#include "command_line.h"

class InputFile;

// What the program does without a window and without a box. Each throws a FileError.

/// Writes a line for the file and one for each page to standard output.
void ShowInfo(const InputFile& file);
/// The ending of a kind that is written, in small letters; empty for any other.
std::string ExportEnding(const std::string& target);
/// The files that an export of so many pages writes.
std::vector<std::string> ExportTargets(const std::string& target, const PageRanges& ranges);
/// Told before each page how far an export is; false stops it.
using Reach = std::function<bool(int page, int pages)>;
/// Writes pages into the target; one page a file where the kind has no more. Throws Stopped, too, which
/// leaves no file half written.
void ExportPages(const InputFile& file, const Options& options, const Reach& reach);
/// A job for each range of pages. Throws the job's failure, an int, too.
void PrintRanges(const InputFile& file, const std::string& printer, const PageRanges& ranges);
/// The same as the command line says.
void PrintPages(const InputFile& file, const Options& options);
