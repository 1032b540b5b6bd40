#pragma once

/// What the viewers' dialogs offer when they ask for a file to open: pairs of text and pattern.
inline constexpr char kOpenFilter[] =
    "All Supported Image Files|*.tif;*.tiff;*.cgm;*.bmp;*.jpg;*.jpeg|"
    "TIFF Files (*.tif; *.tiff)|*.tif;*.tiff|"
    "Windows Bitmap (*.bmp)|*.bmp|"
    "JPEG Files (*.jpg; *.jpeg)|*.jpg;*.jpeg|"
    "All Files|*.*||";
