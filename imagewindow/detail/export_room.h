#pragma once

#include <cstdint>

#include "imagewindow/export_rules.h"
#include "library/report_error.h"
#include "viewing/page_source.h"

// An export writes beside the file that it replaces, so the disk needs room for both. Nothing is lost without
// it, but who exports is told before the work rather than after it.
namespace exporting {

/// Bytes of a file to be written, by what is known of its pages before they are packed.
struct Size {
  std::int64_t least = 0;
  std::int64_t most = 0;
};

/// A page without and with the noise that packs worst among real pages.
Size SizeOf(const struct_file_information& page, const Format& format);
/// All pages as a TIFF. Not told where there is room for more than pages take.
Size SizeOfTif(const PageSource& source, int pages, const CString& target);
/// A copy.
Size SizeOfFile(const CString& file);

/// False if there is no room, which is reported, or if the user doesn't want to try what may not fit.
bool HasRoom(const CString& target, const Size& size, ReportErrorFunction report);

}  // namespace exporting
