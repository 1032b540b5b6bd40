#pragma once

#include "platform/base/path.h"
#include "platform/base/string.h"

// Which way an export takes, by the names of source and target.
namespace exporting {

enum class Kind { Unknown, Tif, Bmp, Jpg };

/// How the imaging service writes a page.
struct Format {
  int code;
  int bits;
  int quality;
};

inline constexpr Format kTifBilevel = {27, 1, -1};
inline constexpr Format kTifOther = {87, 0, 0};
inline constexpr Format kBmp = {84, 0, 0};
inline constexpr Format kJpg = {98, 0, 0};

/// What stands behind the last period of the whole path, in lower case; empty without one.
inline CString TargetExtension(const CString& target) {
  const int period = target.ReverseFind('.');
  CString extension = period < 0 ? CString() : target.Mid(period + 1);
  extension.MakeLower();
  return extension;
}

/// What stands behind the last period of the file name, in the case in which it is written.
inline CString SourceExtension(const CString& source) {
  const CString name = platform::SplitPath(static_cast<const char*>(source)).name.c_str();
  const int period = name.ReverseFind('.');
  return period < 0 ? CString() : name.Mid(period + 1);
}

/// Of equal kinds the file is copied as it is. A source in capitals never counts as equal.
inline bool IsPlainCopy(const CString& source, const CString& target) {
  return SourceExtension(source) == TargetExtension(target);
}

/// What the extension of the target asks for.
inline Kind KindOf(const CString& target) {
  const CString extension = TargetExtension(target);
  if (extension == "tif") return Kind::Tif;
  if (extension == "bmp") return Kind::Bmp;
  return extension == "jpg" ? Kind::Jpg : Kind::Unknown;
}

/// A page of a TIFF is written by its own depth.
inline Format TifFormatOf(int bitsPerPixel) {
  return bitsPerPixel == 1 ? kTifBilevel : kTifOther;
}

}  // namespace exporting
