#pragma once

#include "tessarel12.h"

// The application's texts in other languages than that of its resources.

platform::Translation AppEnglishTexts();
platform::Translation AppGermanTexts();
