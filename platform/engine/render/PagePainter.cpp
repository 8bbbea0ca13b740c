#include "engine/render/PagePainter.h"

#include "engine/render/TwipsFont.h"

#include "core/Error.h"

#include <QPen>

#include <cmath>

namespace kordel::engine {

namespace {

// Dashes and dots are sized from a unit of at least one screen pixel at
// 96 dots per inch, so that thin dashed lines still show their pattern.
constexpr qreal kMinimumDashUnit = kTwipsPerInch / 96.0;

// Ink at least this light stays white on a black and white device.
constexpr int kWhiteInkFrom = 250;

qreal devicePixelsPerTwip(const QPainter &painter) {
  return std::sqrt(std::abs(painter.deviceTransform().determinant()));
}

} // namespace

PagePainter::PagePainter(const PageDocument &document) : document_(document) {}

QColor PagePainter::inkColor(QRgb color) const {
  if (!monochrome_ || qAlpha(color) == 0)
    return QColor::fromRgba(color);
  return qGray(color) >= kWhiteInkFrom ? QColor(Qt::white) : QColor(Qt::black);
}

// The pen for a stroke on that painter. A hairline is a cosmetic pen, one
// device pixel wide, whose dash pattern counts device pixels; a wider pen's
// pattern counts pen widths. Both patterns come out the same in twips.
QPen PagePainter::penFor(const Stroke &stroke, const QPainter &painter) const {
  const qreal pixelsPerTwip = devicePixelsPerTwip(painter);
  // On a black and white device a stroke thinner than a dot is a hairline.
  const bool hairline = stroke.width == 0 || (monochrome_ && stroke.width * pixelsPerTwip < 1);
  QPen pen(inkColor(stroke.color));
  pen.setWidthF(hairline ? 0 : stroke.width);
  pen.setCosmetic(hairline);
  if (stroke.style == LineStyle::Solid)
    return pen;
  const qreal unit = std::max<qreal>(stroke.width, kMinimumDashUnit);
  const qreal patternUnit = hairline ? unit * pixelsPerTwip : unit / stroke.width;
  pen.setCapStyle(Qt::FlatCap);
  if (stroke.style == LineStyle::Dash)
    pen.setDashPattern({4 * patternUnit, 2 * patternUnit});
  else
    pen.setDashPattern({patternUnit, 2 * patternUnit});
  return pen;
}

// Sets the painter's brush and pen for a shape's fill and border.
void PagePainter::setShapeStyle(QPainter &painter, const std::optional<QRgb> &fill,
                                const std::optional<Stroke> &border) const {
  painter.setBrush(fill ? QBrush(QColor::fromRgba(*fill)) : QBrush(Qt::NoBrush));
  painter.setPen(border ? penFor(*border, painter) : QPen(Qt::NoPen));
}

const PagePainter::PreparedFont &PagePainter::preparedFont(int index) const {
  if (index < 0 || index >= document_.fontCount())
    raiseError(
        ErrorNumber::SubscriptOutOfRange, QStringLiteral("PagePainter"),
        QStringLiteral("The page uses font %1, but the document has %2 fonts").arg(index).arg(document_.fontCount()));
  while (int(fonts_.size()) <= index) {
    const QFont font = twipsFont(document_.font(int(fonts_.size())).toQFont());
    fonts_.push_back(PreparedFont{font, twipsMetrics(font)});
  }
  return fonts_[std::size_t(index)];
}

void PagePainter::paint(QPainter &painter, int pageIndex) const { paint(painter, document_.page(pageIndex)); }

void PagePainter::paint(QPainter &painter, const Page &page) const {
  // The painter's pen, brush and font come back as they were, also when an
  // item raises an error.
  struct StateGuard {
    QPainter &painter;
    explicit StateGuard(QPainter &p) : painter(p) { painter.save(); }
    ~StateGuard() { painter.restore(); }
  } guard(painter);
  for (const PageItem &item : page.items()) {
    if (const auto *run = std::get_if<TextRun>(&item))
      paintText(painter, page, *run);
    else if (const auto *line = std::get_if<LineItem>(&item))
      paintLine(painter, *line);
    else if (const auto *rect = std::get_if<RectItem>(&item))
      paintRect(painter, *rect);
    else if (const auto *ellipse = std::get_if<EllipseItem>(&item))
      paintEllipse(painter, *ellipse);
    else if (const auto *image = std::get_if<ImageItem>(&item))
      paintImage(painter, *image);
  }
}

void PagePainter::paintText(QPainter &painter, const Page &page, const TextRun &run) const {
  const PreparedFont &font = preparedFont(run.font);
  const QString text = page.text(run);
  qreal x = run.box.x;
  if (run.align != TextAlign::Left) {
    const qreal room = run.box.width - font.metrics.horizontalAdvance(text);
    x += run.align == TextAlign::Center ? room / 2 : room;
  }
  painter.setFont(font.font);
  painter.setPen(inkColor(run.color));
  painter.drawText(QPointF(x, run.box.y + font.metrics.ascent()), text);
}

void PagePainter::paintLine(QPainter &painter, const LineItem &line) const {
  painter.setPen(penFor(line.stroke, painter));
  painter.drawLine(QPointF(line.x1, line.y1), QPointF(line.x2, line.y2));
}

void PagePainter::paintRect(QPainter &painter, const RectItem &rect) const {
  setShapeStyle(painter, rect.fill, rect.border);
  if (rect.cornerRadius > 0)
    painter.drawRoundedRect(rect.box.toRectF(), rect.cornerRadius, rect.cornerRadius);
  else
    painter.drawRect(rect.box.toRectF());
}

void PagePainter::paintEllipse(QPainter &painter, const EllipseItem &ellipse) const {
  setShapeStyle(painter, ellipse.fill, ellipse.border);
  painter.drawEllipse(ellipse.box.toRectF());
}

void PagePainter::paintImage(QPainter &painter, const ImageItem &image) const {
  painter.drawImage(image.box.toRectF(), document_.image(image.image));
}

} // namespace kordel::engine
