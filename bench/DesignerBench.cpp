// designer_bench: how fast the design surface opens, repaints and drags on
// a large layout, against painting the same controls as printed pages with
// the page painter alone in the same run.
//
//   designer_bench [--controls N] [--steps N]
//
// The layout has ten sections sharing N controls (2,000 unless told):
// labels, framed fields, lines and shapes in rows. Prints the time to open
// (load and first paint of the window), a full repaint of the whole
// surface, the mean and worst drag step (a mouse move and the repaint it
// causes), the plain page painting of the same controls, and the ratio of
// the full repaint to it. The aims are under 300 ms to open and under
// 16 ms a drag step.

#include "engine/designer/ControlBox.h"
#include "engine/designer/DesignSurface.h"
#include "engine/designer/DesignView.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"
#include "engine/render/PagePainter.h"
#include "engine/run/SectionRenderer.h"

#include "core/Error.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>

#include <algorithm>
#include <cstdio>

using namespace kordel;
using namespace kordel::engine;

namespace {

constexpr int kSections = 10;
constexpr int kPerRow = 6;
constexpr float kRowHeight = 360;

QByteArray largeLayout(int controls) {
  const auto report = LayoutReport::create();
  const int perSection = (controls + kSections - 1) / kSections;
  int made = 0;
  for (int s = 0; s < kSections; ++s) {
    const int rows = (perSection + kPerRow - 1) / kPerRow;
    const auto section =
        report->sections()->add(QStringLiteral("Section%1").arg(s + 1), s,
                                s == 0 ? SectionType::PageHeader : SectionType::Detail, rows * kRowHeight + 90);
    for (int i = 0; i < perSection && made < controls; ++i, ++made) {
      const QRectF box(90 + (i % kPerRow) * 1530, 90 + (i / kPerRow) * kRowHeight, 1440, 270);
      switch (i % 8) {
      case 6: {
        auto line = std::static_pointer_cast<Line>(section->controls()->add(QStringLiteral("DDActiveReports2.Line")));
        line->x1 = float(box.left());
        line->x2 = float(box.right());
        line->y1 = line->y2 = float(box.center().y());
        setDesignBox(*line, designBox(*line));
        break;
      }
      case 7: setDesignBox(*section->controls()->add(QStringLiteral("DDActiveReports2.Shape")), box); break;
      default: {
        auto control = section->controls()->add(i % 2 ? QStringLiteral("DDActiveReports2.Field")
                                                      : QStringLiteral("DDActiveReports2.Label"));
        setDesignBox(*control, box);
        if (auto *label = dynamic_cast<Label *>(control.get()))
          label->caption = QStringLiteral("Caption of %1").arg(control->name);
        if (auto *field = dynamic_cast<Field *>(control.get())) {
          field->text = QStringLiteral("=Fields(\"%1\")").arg(control->name);
          field->borderStyle = 1;
        }
      }
      }
    }
  }
  return saveLayout(*report);
}

double milliseconds(const QElapsedTimer &timer) { return timer.nsecsElapsed() / 1e6; }

// Counts the paint events a widget gets, to show that a step repainted.
class PaintCounter : public QObject {
public:
  int paints = 0;
  bool eventFilter(QObject *, QEvent *event) override {
    paints += event->type() == QEvent::Paint ? 1 : 0;
    return false;
  }
};

// The same controls printed: each section rendered as a band and painted
// by the page painter at the surface's scale, one below the other.
double paintPlain(const LayoutReport &report, qreal scale, QSize size) {
  QElapsedTimer timer;
  timer.start();
  PageDocument pages;
  SectionRenderer renderer(pages, {});
  QImage image(size, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::white);
  QPainter painter(&image);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::TextAntialiasing);
  painter.scale(scale, scale);
  PagePainter pagePainter(pages);
  for (const auto &section : report.sections()->all()) {
    const Band band = renderer.render(*section);
    for (const BandPiece &piece : band.pieces) {
      pagePainter.paint(painter, piece.content);
      painter.translate(0, piece.height());
    }
  }
  return milliseconds(timer);
}

struct DragTimes {
  double mean = 0;
  double worst = 0;
  int paints = 0;
};

// Presses on the control, moves the mouse right and down a few pixels at a
// time, each move with the repaint it causes, and releases.
DragTimes dragSteps(DesignSurface &surface, const Control &control, int steps) {
  PaintCounter counter;
  surface.installEventFilter(&counter);
  const QPointF from = QRectF(surface.controlRect(control)).center();
  QMouseEvent press(QEvent::MouseButtonPress, from, surface.mapToGlobal(from), Qt::LeftButton, Qt::LeftButton,
                    Qt::NoModifier);
  QApplication::sendEvent(&surface, &press);
  QApplication::processEvents();
  DragTimes times;
  QElapsedTimer timer;
  for (int step = 1; step <= steps; ++step) {
    const QPointF at = from + QPointF(step * 3, step * 2);
    timer.start();
    QMouseEvent move(QEvent::MouseMove, at, surface.mapToGlobal(at), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&surface, &move);
    QApplication::processEvents();
    const double took = milliseconds(timer);
    times.mean += took / steps;
    times.worst = std::max(times.worst, took);
  }
  const QPointF end = from + QPointF(steps * 3, steps * 2);
  QMouseEvent release(QEvent::MouseButtonRelease, end, surface.mapToGlobal(end), Qt::LeftButton, Qt::NoButton,
                      Qt::NoModifier);
  QApplication::sendEvent(&surface, &release);
  QApplication::processEvents();
  surface.removeEventFilter(&counter);
  times.paints = counter.paints;
  return times;
}

} // namespace

int main(int argc, char **argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  int controls = 2000;
  int steps = 60;
  const QStringList args = app.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--controls"))
      controls = args[i + 1].toInt();
    else if (args[i] == QLatin1String("--steps"))
      steps = args[i + 1].toInt();
  }
  try {
    const QByteArray layout = largeLayout(controls);

    QElapsedTimer timer;
    timer.start();
    DesignerDocument document;
    document.load(layout);
    const double load = milliseconds(timer);
    DesignView view(document, nullptr);
    view.resize(1200, 900);
    view.show();
    view.grab();
    const double open = milliseconds(timer);

    DesignSurface &surface = view.surface();
    const QSize opened = surface.size();
    QImage whole(surface.size(), QImage::Format_ARGB32_Premultiplied);
    timer.restart();
    surface.render(&whole);
    const double fullRepaint = milliseconds(timer);
    const double plain = paintPlain(*document.report(), surface.pixelsPerTwip(), opened);

    // A control near the top, dragged right and down in pixel steps; then
    // the same with every control selected, so that each step repaints all
    // that the window shows.
    const auto &first = document.report()->sections()->at(0)->controls()->at(0);
    const float startedAt = first->left;
    const DragTimes one = dragSteps(surface, *first, steps);
    const float endedAt = first->left;
    document.selectAll();
    const DragTimes all = dragSteps(surface, *first, steps);

    std::printf("controls %d, surface %dx%d px at %d %%\n", controls, opened.width(), opened.height(), surface.zoom());
    std::printf("open          %8.1f ms  (aim: under 300; loading the layout %.1f ms of it)\n", open, load);
    std::printf("full repaint  %8.1f ms\n", fullRepaint);
    std::printf("drag step     %8.2f ms mean, %.2f ms worst over %d steps  (aim: under 16; %d repaints, the "
                "control went from %.0f to %.0f twips)\n",
                one.mean, one.worst, steps, one.paints, startedAt, endedAt);
    std::printf("drag all      %8.2f ms mean, %.2f ms worst a step with all %d controls selected\n", all.mean,
                all.worst, controls);
    std::printf("plain paint   %8.1f ms  (the same controls printed and painted by the page painter)\n", plain);
    std::printf("ratio         %8.2f (full repaint / plain paint)\n", fullRepaint / plain);
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "designer_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
