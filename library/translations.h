#pragma once

#include "platform/base/translation.h"

// The library's texts in other languages than that of its resources, each in a source of its own.

/// All of the library's texts in English.
platform::Translation EnglishTexts();
/// All of the library's texts in German.
platform::Translation GermanTexts();
