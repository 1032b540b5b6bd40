#include "helper/modules/wpg_drawing.h"

#include <algorithm>
#include <cstdio>

namespace helper {
namespace {

using Properties = librevenge::RVNGPropertyList;

constexpr double kUnitsPerInch = 1000;
constexpr double kPointsOfInch = 72;

double Number(const Properties& list, const char* name, double other = 0) {
  return list[name] != nullptr ? list[name]->getDouble() : other;
}
/// A length, as it stands in the drawing.
double Units(const Properties& list, const char* name) {
  return Number(list, name) * kUnitsPerInch;
}
std::string Text(const Properties& list, const char* name, const char* other) {
  return list[name] != nullptr ? list[name]->getStr().cstr() : other;
}

std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char letter : text) {
    if (letter == '&')
      escaped += "&amp;";
    else if (letter == '<')
      escaped += "&lt;";
    else if (letter == '"')
      escaped += "&quot;";
    else
      escaped += letter;
  }
  return escaped;
}

std::string Attribute(const char* name, const std::string& value) {
  return std::string(" ") + name + "=\"" + Escaped(value) + "\"";
}
std::string Attribute(const char* name, double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.3f", value);
  return Attribute(name, std::string(text));
}
std::string Pair(double x, double y) {
  char text[96];
  std::snprintf(text, sizeof text, " %.3f,%.3f", x, y);
  return text;
}
std::string Point(const Properties& list, const char* x, const char* y) {
  return Pair(Units(list, x), Units(list, y));
}

/// One step of a path, in the letters that both sides use.
std::string Step(const Properties& step) {
  const std::string action = Text(step, "librevenge:path-action", "");
  if (action == "Z") return "Z";
  const std::string end = Point(step, "svg:x", "svg:y");
  if (action == "M" || action == "L") return action + end;
  if (action == "C") return "C" + Point(step, "svg:x1", "svg:y1") + Point(step, "svg:x2", "svg:y2") + end;
  if (action == "Q") return "Q" + Point(step, "svg:x1", "svg:y1") + end;
  if (action != "A") return {};
  const auto flag = [&](const char* name) { return Number(step, name) != 0 ? 1.0 : 0.0; };
  return "A" + Point(step, "svg:rx", "svg:ry") + " " + std::to_string(Number(step, "librevenge:rotate")) +
         Pair(flag("librevenge:large-arc"), flag("librevenge:sweep")) + end;
}

}  // namespace

Drawing WpgDrawing::Take() const {
  const bool beside =
      m_isReached && (m_right <= 0 || m_bottom <= 0 || m_left >= m_width || m_top >= m_height);
  const double left = beside ? m_left : 0;
  const double top = beside ? m_top : 0;
  const double width = beside ? m_right - m_left : m_width;
  const double height = beside ? m_bottom - m_top : m_height;
  return {"<svg xmlns=\"http://www.w3.org/2000/svg\" xmlns:xlink=\"http://www.w3.org/1999/xlink\"" +
              Attribute("viewBox", Pair(left * kUnitsPerInch, top * kUnitsPerInch) +
                                       Pair(width * kUnitsPerInch, height * kUnitsPerInch)) +
              Attribute("width", width * kUnitsPerInch) + Attribute("height", height * kUnitsPerInch) + ">" +
              m_svg + "</svg>",
          width * kPointsOfInch, height * kPointsOfInch};
}

void WpgDrawing::Reach(double x, double y) {
  if (m_pagesEnded != 0) return;
  m_left = m_isReached ? std::min(m_left, x) : x;
  m_top = m_isReached ? std::min(m_top, y) : y;
  m_right = m_isReached ? std::max(m_right, x) : x;
  m_bottom = m_isReached ? std::max(m_bottom, y) : y;
  m_isReached = true;
}

void WpgDrawing::ReachBox(const Properties& box) {
  const double x = Number(box, "svg:x");
  const double y = Number(box, "svg:y");
  Reach(x, y);
  Reach(x + Number(box, "svg:width"), y + Number(box, "svg:height"));
}

void WpgDrawing::startPage(const Properties& page) {
  if (m_pagesEnded != 0) return;
  m_width = Number(page, "svg:width");
  m_height = Number(page, "svg:height");
}

void WpgDrawing::setStyle(const Properties& style) {
  const bool filled = Text(style, "draw:fill", "none") != "none";
  const bool lined = Text(style, "draw:stroke", "solid") != "none";
  m_style = Attribute("fill", filled ? Text(style, "draw:fill-color", "#000000") : "none") +
            Attribute("fill-opacity", Number(style, "draw:opacity", 1)) +
            Attribute("stroke", lined ? Text(style, "svg:stroke-color", "#000000") : "none") +
            Attribute("stroke-width", std::max(Units(style, "svg:stroke-width"), 1.0));
}

void WpgDrawing::Add(const std::string& element) {
  if (m_pagesEnded == 0) m_svg += "<" + element + m_style + "/>\n";
}

void WpgDrawing::drawRectangle(const Properties& box) {
  ReachBox(box);
  Add("rect" + Attribute("x", Units(box, "svg:x")) + Attribute("y", Units(box, "svg:y")) +
      Attribute("width", Units(box, "svg:width")) + Attribute("height", Units(box, "svg:height")) +
      Attribute("rx", Units(box, "svg:rx")) + Attribute("ry", Units(box, "svg:ry")));
}

void WpgDrawing::drawEllipse(const Properties& ellipse) {
  const double x = Units(ellipse, "svg:cx");
  const double y = Units(ellipse, "svg:cy");
  Reach(Number(ellipse, "svg:cx") - Number(ellipse, "svg:rx"),
        Number(ellipse, "svg:cy") - Number(ellipse, "svg:ry"));
  Reach(Number(ellipse, "svg:cx") + Number(ellipse, "svg:rx"),
        Number(ellipse, "svg:cy") + Number(ellipse, "svg:ry"));
  Add("ellipse" + Attribute("cx", x) + Attribute("cy", y) + Attribute("rx", Units(ellipse, "svg:rx")) +
      Attribute("ry", Units(ellipse, "svg:ry")) +
      Attribute("transform",
                "rotate(" + std::to_string(-Number(ellipse, "librevenge:rotate")) + Pair(x, y) + ")"));
}

void WpgDrawing::Polyline(const char* element, const Properties& points) {
  const auto* list = points.child("svg:points");
  std::string places;
  for (unsigned long i = 0; list != nullptr && i < list->count(); ++i) {
    places += Point((*list)[i], "svg:x", "svg:y");
    Reach(Number((*list)[i], "svg:x"), Number((*list)[i], "svg:y"));
  }
  Add(element + Attribute("points", places));
}

void WpgDrawing::drawPath(const Properties& path) {
  const auto* list = path.child("svg:d");
  std::string steps;
  for (unsigned long i = 0; list != nullptr && i < list->count(); ++i) {
    steps += Step((*list)[i]);
    if ((*list)[i]["svg:x"] != nullptr) Reach(Number((*list)[i], "svg:x"), Number((*list)[i], "svg:y"));
  }
  Add("path" + Attribute("d", steps));
}

void WpgDrawing::drawGraphicObject(const Properties& picture) {
  const librevenge::RVNGProperty* data = picture["office:binary-data"];
  if (data == nullptr) return;
  ReachBox(picture);
  Add("image" + Attribute("x", Units(picture, "svg:x")) + Attribute("y", Units(picture, "svg:y")) +
      Attribute("width", Units(picture, "svg:width")) + Attribute("height", Units(picture, "svg:height")) +
      Attribute("preserveAspectRatio", std::string("none")) +
      Attribute("xlink:href", "data:" + Text(picture, "librevenge:mime-type", "image/bmp") + ";base64," +
                                  data->getStr().cstr()));
}

void WpgDrawing::startTextObject(const Properties& text) {
  m_textPlace = Attribute("x", Units(text, "svg:x")) + Attribute("y", Units(text, "svg:y"));
}

void WpgDrawing::openSpan(const Properties& span) {
  constexpr double kUsualPoints = 12;
  const double points = span["fo:font-size"] != nullptr ? Number(span, "fo:font-size") : kUsualPoints;
  m_textStyle = Attribute("fill", Text(span, "fo:color", "#000000")) +
                Attribute("font-family", Text(span, "style:font-name", "Times")) +
                Attribute("font-size", points * kUnitsPerInch / kPointsOfInch) +
                Attribute("font-weight", Text(span, "fo:font-weight", "normal"));
}

void WpgDrawing::insertText(const librevenge::RVNGString& text) {
  if (m_pagesEnded == 0)
    m_svg += "<text" + m_textPlace + m_textStyle + ">" + Escaped(text.cstr()) + "</text>\n";
}

}  // namespace helper
