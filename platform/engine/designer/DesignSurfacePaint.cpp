// The design surface's painting: bands with their titles, paper and grid,
// the controls through the renderer that prints them, the selection and
// what a drag shows.

#include "engine/designer/DesignSurface.h"

#include "engine/designer/ControlBox.h"
#include "engine/designer/DesignerText.h"
#include "engine/model/Controls.h"
#include "engine/model/Section.h"
#include "engine/render/Page.h"

#include <QPaintEvent>
#include <QPainter>

#include <cmath>
#include <unordered_set>

namespace kordel::engine {

namespace {

const QColor kTitle(0xe4, 0xe6, 0xea);
const QColor kTitleText(0x30, 0x30, 0x30);
const QColor kTitleRule(0x9a, 0x9e, 0xa6);
const QColor kGridDot(0xa8, 0xae, 0xb8);
const QColor kUnitRule(0xe2, 0xe6, 0xec);
const QColor kOutline(0xb0, 0xb4, 0xba);
const QColor kHiddenHatch(0xb8, 0xbc, 0xc4);
const QColor kPrintEdge(0x50, 0x54, 0x5a);
constexpr qreal kTwipsPerCentimetre = kTwipsPerInch / 2.54;
// Grid dots closer than this many pixels are thinned out.
constexpr qreal kMinimumDotSpacing = 5;
constexpr int kTitlePaddingX = 6;

QString typeText(SectionType type) {
  switch (type) {
  case SectionType::ReportHeader: return designerText("Report header");
  case SectionType::ReportFooter: return designerText("Report footer");
  case SectionType::PageHeader: return designerText("Page header");
  case SectionType::PageFooter: return designerText("Page footer");
  case SectionType::GroupHeader: return designerText("Group header");
  case SectionType::GroupFooter: return designerText("Group footer");
  case SectionType::Detail: return designerText("Detail");
  }
  return QString();
}

QString titleText(const Section &section) {
  QString text = section.name + QStringLiteral(" \u2014 ") + typeText(section.type());
  if (!section.dataField.isEmpty())
    text += QStringLiteral(" (") + section.dataField + QLatin1Char(')');
  if (!section.visible)
    text += QStringLiteral(" \u2014 ") + designerText("hidden");
  return text;
}

} // namespace

void DesignSurface::paintEvent(QPaintEvent *event) {
  QPainter painter(this);
  const QRect dirty = event->rect();
  // Outside the sections the surface is the scroll area's own backdrop.
  painter.fillRect(dirty, palette().color(QPalette::Dark));
  // Whatever fails to paint leaves the surface as far as it got: nothing
  // may leave a paint event, and a message box from here would paint the
  // surface again, to fail again.
  try {
    for (const SurfaceLayout::Band &band : layout_.bands())
      if (QRectF(0, band.title.top(), width(), band.title.height() + band.body.height()).intersects(dirty))
        paintBand(painter, band, dirty);
    if (drag_.kind == Drag::Move)
      for (const SurfaceLayout::Band &band : layout_.bands())
        paintControls(painter, band, dirty, true);
    painter.setPen(QPen(kPrintEdge, 1));
    painter.drawLine(QPointF(layout_.printRight(), 0), QPointF(layout_.printRight(), layout_.bottom()));
    paintSelection(painter, dirty);
    paintDrag(painter);
  } catch (...) {
  }
}

void DesignSurface::paintBand(QPainter &painter, const SurfaceLayout::Band &band, const QRect &dirty) {
  const Section &section = *band.section;
  const QRectF title(0, band.title.top(), width(), band.title.height());
  const bool selected = document_.isSelected(section);
  painter.fillRect(title, selected ? palette().color(QPalette::Highlight) : kTitle);
  painter.setPen(kTitleRule);
  painter.drawLine(title.bottomLeft() - QPointF(0, 0.5), title.bottomRight() - QPointF(0, 0.5));
  painter.setPen(selected ? palette().color(QPalette::HighlightedText) : kTitleText);
  painter.drawText(title.adjusted(kTitlePaddingX, 0, -kTitlePaddingX, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   titleText(section));

  const QRectF body = band.body;
  if (body.isEmpty())
    return;
  painter.fillRect(body, section.backStyle == 1 ? section.backColor : QColor(Qt::white));
  if (!section.visible)
    painter.fillRect(body, QBrush(kHiddenHatch, Qt::BDiagPattern));
  if (grid_.showGrid)
    paintGrid(painter, band, body & QRectF(dirty));
  paintControls(painter, band, dirty, false);
}

void DesignSurface::paintGrid(QPainter &painter, const SurfaceLayout::Band &band, const QRectF &area) const {
  if (area.isEmpty())
    return;
  const qreal scale = layout_.scale();
  const qreal unit = (grid_.rulerUnits == 1 ? kTwipsPerCentimetre : qreal(kTwipsPerInch)) * scale;
  const QPointF origin = band.body.topLeft();
  painter.setPen(QPen(kUnitRule, 0));
  for (qreal x = origin.x() + std::ceil((area.left() - origin.x()) / unit) * unit; x <= area.right(); x += unit)
    painter.drawLine(QPointF(x, area.top()), QPointF(x, area.bottom()));
  for (qreal y = origin.y() + std::ceil((area.top() - origin.y()) / unit) * unit; y <= area.bottom(); y += unit)
    painter.drawLine(QPointF(area.left(), y), QPointF(area.right(), y));

  const QPointF step = gridStep() * scale;
  const qreal dx = step.x() * std::ceil(kMinimumDotSpacing / step.x());
  const qreal dy = step.y() * std::ceil(kMinimumDotSpacing / step.y());
  QPolygonF dots;
  for (qreal y = origin.y() + std::ceil((area.top() - origin.y()) / dy) * dy; y <= area.bottom(); y += dy)
    for (qreal x = origin.x() + std::ceil((area.left() - origin.x()) / dx) * dx; x <= area.right(); x += dx)
      dots << QPointF(x, y);
  painter.setPen(QPen(kGridDot, 0));
  painter.drawPoints(dots);
}

void DesignSurface::paintControls(QPainter &painter, const SurfaceLayout::Band &band, const QRect &dirty,
                                  bool dragged) {
  std::unordered_set<const Control *> moving;
  if (drag_.kind == Drag::Move)
    for (const Origin &origin : drag_.origins)
      moving.insert(origin.control.get());
  const Section &section = *band.section;
  painter.save();
  // A section shows what lies within its height; what a move drags is
  // shown wherever the mouse takes it.
  if (!dragged)
    painter.setClipRect(QRectF(0, band.body.top(), width(), band.body.height()), Qt::IntersectClip);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.translate(band.body.topLeft());
  painter.scale(layout_.scale(), layout_.scale());
  const QRectF shown = painter.transform().inverted().mapRect(QRectF(dirty));
  const QPen outline(kOutline, 0, Qt::DotLine);
  for (const auto &control : section.controls()->all()) {
    if (moving.count(control.get()) != (dragged ? 1u : 0u))
      continue;
    const QRectF box = designBox(*control);
    if (!box.adjusted(-kHandleSize / layout_.scale(), -kHandleSize / layout_.scale(), kHandleSize / layout_.scale(),
                      kHandleSize / layout_.scale())
             .intersects(shown))
      continue;
    renderer_.paint(painter, *control, !control->visible || !section.visible);
    // Where a control without ink of its own stands.
    if (control->kind() != ControlKind::Line) {
      painter.setPen(outline);
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(box);
    }
  }
  painter.restore();
}

void DesignSurface::paintSelection(QPainter &painter, const QRect &dirty) const {
  const QColor highlight = palette().color(QPalette::Highlight);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, false);
  for (const ObjectRef &object : document_.selection()) {
    if (const auto *section = dynamic_cast<const Section *>(object.get())) {
      if (const SurfaceLayout::Band *band = layout_.bandOf(*section)) {
        painter.setPen(QPen(highlight, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(band->body.adjusted(1, 1, -1, -1));
      }
      continue;
    }
    const auto *control = dynamic_cast<const Control *>(object.get());
    if (!control)
      continue;
    const QRectF box = layout_.controlRect(*control);
    if (!box.adjusted(-kHandleSize, -kHandleSize, kHandleSize, kHandleSize).intersects(dirty))
      continue;
    if (control->kind() != ControlKind::Line) {
      painter.setPen(QPen(highlight, 1));
      painter.setBrush(Qt::NoBrush);
      painter.drawRect(box);
    }
    painter.setPen(QPen(Qt::white, 1));
    painter.setBrush(highlight);
    for (const auto &handle : handles(*control))
      painter.drawRect(handle.second);
  }
  painter.restore();
}

void DesignSurface::paintDrag(QPainter &painter) const {
  if (drag_.kind != Drag::RubberBand && drag_.kind != Drag::Draw)
    return;
  const QColor highlight = palette().color(QPalette::Highlight);
  painter.save();
  if (drag_.kind == Drag::RubberBand) {
    QColor fill = highlight;
    fill.setAlpha(40);
    painter.setPen(QPen(highlight, 1));
    painter.setBrush(fill);
    painter.drawRect(QRect(drag_.press, drag_.at).normalized());
  } else {
    painter.setPen(QPen(highlight, 1, Qt::DashLine));
    painter.setBrush(Qt::NoBrush);
    if (tool_ && createControl(*tool_)->kind() == ControlKind::Line)
      painter.drawLine(drag_.press, drag_.at);
    else
      painter.drawRect(QRect(drag_.press, drag_.at).normalized());
  }
  painter.restore();
}

} // namespace kordel::engine
