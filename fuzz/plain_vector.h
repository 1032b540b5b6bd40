// Before all else in sources with qpdf's headers: clang 14 looks into each constexpr function at once, and a
// vector's of a class that isn't whole yet must not be one.
#pragma once

#include <string>

#undef _GLIBCXX20_CONSTEXPR
#define _GLIBCXX20_CONSTEXPR
#define __fill_a1 __fill_a1_of_bits  // declared otherwise before
#include <vector>
#undef __fill_a1
#undef _GLIBCXX20_CONSTEXPR
#define _GLIBCXX20_CONSTEXPR constexpr
