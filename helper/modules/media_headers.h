#pragma once

#include "helper/module.h"

// What the containers say that FFmpeg doesn't pass on.
namespace helper {

/// A part of the file.
struct Range {
  std::int64_t begin = 0;
  std::int64_t size = 0;
};

/// A Photoshop file with its rows unpacked: FFmpeg refuses runs that cross the end of a row, which writers do
/// make.
std::vector<std::uint8_t> LoadPsd(const Input& input);
/// Sets dots per inch and the name of the coding of a Photoshop file.
void ReadPsdHeader(const Input& input, PageRecord& page);

/// The pictures of an IFF file: itself, or the members of a list or catalogue.
std::vector<Range> ListIffForms(const Input& input);
/// Sets code, planes, dots per inch and the name of the coding of a FORM.
void ReadIffForm(const Input& input, const Range& form, PageRecord& page);

/// The numbers of a file; 0 behind its end.
std::uint32_t BigAt(const Input& input, std::int64_t offset, std::size_t bytes);
std::uint32_t LittleAt(const Input& input, std::int64_t offset, std::size_t bytes);

}  // namespace helper
