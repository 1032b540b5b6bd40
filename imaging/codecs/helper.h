#pragma once

#include <memory>
#include <span>
#include <vector>

#include "imaging/codecs/codec.h"

namespace imaging {

/// A family that a module of the helper reads.
struct HelperFamily {
  const char* name;
  const char* module;
  bool (*recognise)(const Candidate& candidate);
  Evidence evidence;
  const char* drawer = nullptr;  ///< the module that draws what this one doesn't read; null none
};

/// Of equally sure ones the first that recognises a file counts.
std::span<const HelperFamily> HelperFamilies();
/// The container of JPEG 2000, or a bare codestream.
bool IsJpeg2000(const Candidate& candidate);

/// Dots per inch at which pages are drawn that have no pixels of their own; 0, as it is at first: as the
/// module likes.
void SetDrawnResolution(int dotsPerInch);

/// A codestream or JP2 file that lies in another file; null if it is none.
std::unique_ptr<Reader> OpenJpeg2000(const Source& block);
/// Throws, with the name of the module, if there is none for these.
void RequireJpeg2000(const Source& file);

bool IsMetafile(const Candidate& candidate);
/// A metafile that lies in another file; null if it is none. Throws as for a file of its own where the module
/// isn't installed.
std::unique_ptr<Reader> OpenMetafile(const Source& block);

/// Null if the module that reads it isn't there.
std::unique_ptr<Reader> OpenTwelveBitJpeg(const Source& source);

/// A kind of files that is read, or would be if its module were there.
struct ReadableKind {
  const char* name;
  const char* module;  ///< of the helper; null: read in process
  bool installed;
};
std::vector<ReadableKind> ListReadableKinds();

}  // namespace imaging
