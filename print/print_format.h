#pragma once

/// How large a page is printed, in the order of the radio buttons of the print format dialog.
enum PrintFormat : int {
  PrintFormatFitToPage = 0,     ///< as large as the paper allows
  PrintFormatActualSize = 1,    ///< the size in inches that the page's resolution gives
  PrintFormatPixelToPixel = 2,  ///< one page pixel to one device pixel
};
