#pragma once

#include "engine/render/PageDocument.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>

#include <vector>

namespace kordel::engine {

// Paints the pages of a document onto a painter whose units are twips:
// the caller sets up the painter's transform for its device (a PDF writer
// at 1440 dots per inch needs none; a screen or an image scales by its
// resolution over 1440). Text sits in its box as TextCanvas measured it:
// the top of the box is the top of the line, and the alignment uses the
// measured width. Text is not clipped to its box.
class PagePainter {
public:
  explicit PagePainter(const PageDocument &document);

  // Paints for a device of black and white dots only: text, lines and
  // borders in black (in white when they are near white) and at least one
  // device dot wide, so that neither a pale nor a thin one is lost between
  // the dots; fills and images keep their colours for the caller to turn
  // into patterns of dots. Off at first.
  void setMonochrome(bool monochrome) { monochrome_ = monochrome; }

  // Paints the page with that index; raises 9 for an index out of range.
  void paint(QPainter &painter, int pageIndex) const;
  void paint(QPainter &painter, const Page &page) const;

private:
  struct PreparedFont {
    QFont font;
    QFontMetricsF metrics;
  };

  // The font with that index, prepared on first use, so that fonts the
  // document gains after the painter was made paint as well.
  const PreparedFont &preparedFont(int index) const;
  void paintText(QPainter &painter, const Page &page, const TextRun &run) const;
  void paintLine(QPainter &painter, const LineItem &line) const;
  void paintRect(QPainter &painter, const RectItem &rect) const;
  void paintEllipse(QPainter &painter, const EllipseItem &ellipse) const;
  void paintImage(QPainter &painter, const ImageItem &image) const;

  QPen penFor(const Stroke &stroke, const QPainter &painter) const;
  void setShapeStyle(QPainter &painter, const std::optional<QRgb> &fill, const std::optional<Stroke> &border) const;
  QColor inkColor(QRgb color) const;

  const PageDocument &document_;
  bool monochrome_ = false;
  mutable std::vector<PreparedFont> fonts_;
};

} // namespace kordel::engine
