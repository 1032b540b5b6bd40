#pragma once

#include <string>

#include "helper/module.h"

namespace helper {

/// A drawing that was turned into SVG.
struct Drawing {
  std::string svg;
  double widthPoints = 0;
  double heightPoints = 0;
};

/// Before the lock-down: the toolkit that draws, and its fonts.
void PrepareDrawing();

/// A document of one drawing, on white. code: of the kind, which goes by name, too.
std::unique_ptr<Document> DrawnDocument(const Drawing& drawing, int code, const char* name);

}  // namespace helper
