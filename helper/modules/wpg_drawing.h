#pragma once

#include <librevenge/librevenge.h>

#include <string>

#include "helper/modules/svg_page.h"

namespace helper {

/// Writes what the reader of WordPerfect graphics tells as SVG, in units of a thousandth of an inch.
class WpgDrawing final : public librevenge::RVNGDrawingInterface {
  using Properties = librevenge::RVNGPropertyList;

 public:
  /// Of the first page; of what is drawn, if all of it lies beside the page.
  Drawing Take() const;

  void startPage(const Properties& page) override;
  void endPage() override { ++m_pagesEnded; }
  void setStyle(const Properties& style) override;
  void drawRectangle(const Properties& box) override;
  void drawEllipse(const Properties& ellipse) override;
  void drawPolygon(const Properties& points) override { Polyline("polygon", points); }
  void drawPolyline(const Properties& points) override { Polyline("polyline", points); }
  void drawPath(const Properties& path) override;
  void drawGraphicObject(const Properties& picture) override;
  void startTextObject(const Properties& text) override;
  void openSpan(const Properties& span) override;
  void insertText(const librevenge::RVNGString& text) override;

  // What such drawings don't have, or what doesn't show.
  void startDocument(const Properties&) override {}
  void endDocument() override {}
  void setDocumentMetaData(const Properties&) override {}
  void defineEmbeddedFont(const Properties&) override {}
  void startMasterPage(const Properties&) override {}
  void endMasterPage() override {}
  void startLayer(const Properties&) override {}
  void endLayer() override {}
  void startEmbeddedGraphics(const Properties&) override {}
  void endEmbeddedGraphics() override {}
  void openGroup(const Properties&) override {}
  void closeGroup() override {}
  void drawConnector(const Properties&) override {}
  void endTextObject() override {}
  void startTableObject(const Properties&) override {}
  void openTableRow(const Properties&) override {}
  void closeTableRow() override {}
  void openTableCell(const Properties&) override {}
  void closeTableCell() override {}
  void insertCoveredTableCell(const Properties&) override {}
  void endTableObject() override {}
  void insertTab() override {}
  void insertSpace() override {}
  void insertLineBreak() override {}
  void insertField(const Properties&) override {}
  void openOrderedListLevel(const Properties&) override {}
  void openUnorderedListLevel(const Properties&) override {}
  void closeOrderedListLevel() override {}
  void closeUnorderedListLevel() override {}
  void openListElement(const Properties&) override {}
  void closeListElement() override {}
  void defineParagraphStyle(const Properties&) override {}
  void openParagraph(const Properties&) override {}
  void closeParagraph() override {}
  void defineCharacterStyle(const Properties&) override {}
  void closeSpan() override {}
  void openLink(const Properties&) override {}
  void closeLink() override {}

 private:
  void Polyline(const char* element, const Properties& points);
  /// An element of the first page, in the style that was set.
  void Add(const std::string& element);

  void Reach(double x, double y);
  void ReachBox(const Properties& box);

  std::string m_svg;
  std::string m_style;
  double m_width = 0;  ///< inches
  double m_height = 0;
  int m_pagesEnded = 0;
  double m_left = 0, m_top = 0, m_right = 0, m_bottom = 0;  ///< of all that is drawn, inches
  bool m_isReached = false;
  std::string m_textPlace;
  std::string m_textStyle;
};

}  // namespace helper
