#pragma once

#include "platform/base/translation.h"

// The library's texts in other languages than that of its resources, each in a source of its own.

platform::Translation EnglishTexts();
platform::Translation GermanTexts();
