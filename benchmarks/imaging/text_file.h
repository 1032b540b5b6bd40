#pragma once

#include <tiffio.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "benchmarks/imaging/text_page.h"

// Long TIFF files for measuring.

struct Form {
  int samples;
  int bits;
  int compression;
  int photometric;
};

inline void SetFields(TIFF* tiff, const Form& form) {
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kHeight);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, form.bits);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, form.samples);
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, form.compression);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, form.photometric);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kHeight);
}

/// The page is coded once and its strip repeated.
inline void WritePages(const std::string& path, const Form& form, std::vector<std::uint8_t>& page,
                       int pages) {
  TIFF* tiff = TIFFOpen(path.c_str(), "w");
  SetFields(tiff, form);
  if (TIFFWriteEncodedStrip(tiff, 0, page.data(), static_cast<tmsize_t>(page.size())) < 0) std::abort();
  TIFFClose(tiff);
  tiff = TIFFOpen(path.c_str(), "r");
  std::vector<std::uint8_t> strip(static_cast<std::size_t>(TIFFGetStrileByteCount(tiff, 0)));
  if (TIFFReadRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size())) < 0) std::abort();
  TIFFClose(tiff);
  tiff = TIFFOpen(path.c_str(), "w");
  for (int i = 0; i < pages; ++i) {
    SetFields(tiff, form);
    if (TIFFWriteRawStrip(tiff, 0, strip.data(), static_cast<tmsize_t>(strip.size())) < 0) std::abort();
    TIFFWriteDirectory(tiff);
  }
  TIFFClose(tiff);
}

/// What the codec library alone needs for all pages of such a file.
inline void DecodeAll(const std::string& path, std::vector<std::uint8_t>& page) {
  TIFF* tiff = TIFFOpen(path.c_str(), "r");
  do {
    if (TIFFReadEncodedStrip(tiff, 0, page.data(), -1) < 0) std::abort();
  } while (TIFFReadDirectory(tiff) != 0);
  TIFFClose(tiff);
}
