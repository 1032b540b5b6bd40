#pragma once

namespace helper {

/// From then on DCMTK, which has no reader of JPEG 2000, decodes its frames by OpenJPEG.
void RegisterJpeg2000InDicom();

}  // namespace helper
