#pragma once

#include <QImage>
#include <QPalette>
#include <QStyle>
#include <QStyleOptionSlider>
#include <vector>

class QPainter;
class QWidget;

namespace platform {

/// Pictures of scroll bars and of their thumbs. A theme draws a bar from many gradients, which takes longer
/// than all else that a scroll step does; only the thumb's place changes with a step.
class ScrollBarPictures {
 public:
  /// Draws the bar as the style would. False: it isn't a bar that two pictures make up, and nothing is drawn.
  bool Draw(const QStyle& style, const QStyleOptionSlider& bar, QPainter& painter, const QWidget* widget);

 private:
  /// All that a bar's look depends on but the thumb's place.
  struct Kind {
    const QStyle* style;
    QSize size;
    QSize thumb;
    double scale;
    QStyle::State state;
    QStyle::SubControls active;
    Qt::Orientation orientation;
    Qt::LayoutDirection direction;
    qint64 palette;
    bool upsideDown;
    bool atBegin;
    bool atEnd;
    bool operator==(const Kind&) const = default;
  };
  struct Pictures {
    Kind kind;
    QImage ground;  ///< null: the style's drawing can't be taken apart
    QImage thumb;
    QPointF thumbOffset;  ///< from the corner of the thumb's place
  };
  static bool MakeUp(const Pictures& pictures, const QStyleOptionSlider& bar, const QWidget* widget);
  static void Compose(const Pictures& pictures, const QRect& bar, const QRect& thumb, QPainter& painter);
  const Pictures& PicturesOf(const Kind& kind, const QStyleOptionSlider& bar, const QWidget* widget);

  std::vector<Pictures> m_pictures;  ///< the one made last stands last
};

}  // namespace platform
