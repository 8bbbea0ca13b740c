#include "engine/run/SectionRenderer.h"

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"
#include "engine/render/PageFont.h"
#include "engine/render/TextCanvas.h"

#include "core/Format.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

Twips round(float value) { return Twips(std::lround(value)); }

QRgb rgb(const QColor &color) { return color.rgba(); }

TextAlign textAlign(Alignment alignment) {
  switch (alignment) {
  case Alignment::Right: return TextAlign::Right;
  case Alignment::Center: return TextAlign::Center;
  default: return TextAlign::Left;
  }
}

LineStyle lineStyle(int style) { return style == 1 ? LineStyle::Dash : style == 2 ? LineStyle::Dot : LineStyle::Solid; }

bool byTop(const std::shared_ptr<Control> &a, const std::shared_ptr<Control> &b) { return a->top < b->top; }

// A piece moved right by dx, counters and all.
BandPiece shifted(const BandPiece &piece, Twips dx) {
  BandPiece moved;
  moved.content = Page(piece.content.width() + dx, piece.content.height());
  drawPiece(piece, moved.content, dx, 0);
  for (PageCounter counter : piece.counters) {
    counter.box.x += dx;
    moved.counters.push_back(counter);
  }
  return moved;
}

// A value's kind and number as pages keep them beside its printed text. A
// text that a date format shows as a date is a date.
void classify(const Variant &value, const QString &format, ValueSource &source) {
  switch (value.type()) {
  case Variant::Type::Integer:
  case Variant::Type::Long:
  case Variant::Type::Single:
  case Variant::Type::Double:
  case Variant::Type::Byte:
    source.kind = ValueKind::Number;
    source.number = value.toDouble();
    break;
  case Variant::Type::Currency:
    source.kind = ValueKind::Currency;
    source.number = value.toDouble();
    break;
  case Variant::Type::Date:
    source.kind = ValueKind::Date;
    source.number = value.toDate().serial;
    break;
  case Variant::Type::Boolean:
    source.kind = ValueKind::Boolean;
    source.number = value.toBool() ? 1 : 0;
    break;
  default:
    if (const std::optional<Date> date = textDateInFormat(value, format)) {
      source.kind = ValueKind::Date;
      source.number = date->serial;
    }
    break;
  }
}

// Keeps a band showing open in the document while its section is
// formatted, sub reports' bands inside it included.
class OpenBand {
public:
  OpenBand(PageDocument &document, SectionType type, bool repeat)
      : document_(document), index_(document.keepsValues() ? document.beginBand(BandKind(type), repeat) : 0) {}
  ~OpenBand() {
    if (document_.keepsValues())
      document_.endBand();
  }
  OpenBand(const OpenBand &) = delete;
  OpenBand &operator=(const OpenBand &) = delete;
  std::uint32_t index() const { return index_; }

private:
  PageDocument &document_;
  std::uint32_t index_;
};

} // namespace

QString formatFieldText(const Variant &value, const QString &format) {
  if (format.isEmpty() || value.isNull() || value.isEmpty())
    return value.toText();
  return formatValue(value, format);
}

SectionRenderer::SectionRenderer(PageDocument &document, Hooks hooks) : document_(document), hooks_(std::move(hooks)) {}

SectionRenderer::~SectionRenderer() = default;

const SectionRenderer::FontUse &SectionRenderer::fontUse(const FontObject &font) {
  FontUse &use = fonts_[&font];
  if (!use.canvas || use.font != font.font()) {
    use.font = font.font();
    use.canvas = std::make_shared<TextCanvas>();
    use.canvas->setFont(use.font);
    use.index = document_.internFont(PageFont::fromQFont(use.font));
    use.lineHeight = int(std::ceil(use.canvas->lineHeight()));
  }
  return use;
}

std::uint32_t SectionRenderer::controlIndex(const Control &control, const QString &format) {
  // A script may change a field's format between showings.
  auto found = controls_.find(&control);
  if (found == controls_.end() || found->format != format)
    found = controls_.insert(&control, {document_.internControl(control.name, format), format});
  return found->index;
}

Band SectionRenderer::render(const Section &section, bool repeat) {
  const OpenBand showing(document_, section.type(), repeat);
  Band band;
  band.keepTogether = section.keepTogether;
  band.newPage = section.newPage;
  std::vector<std::shared_ptr<Control>> controls;
  std::vector<std::shared_ptr<Control>> subReports;
  for (const auto &control : section.controls()->all()) {
    if (!control->visible)
      continue;
    (control->kind() == ControlKind::SubReport ? subReports : controls).push_back(control);
  }
  std::stable_sort(controls.begin(), controls.end(), byTop);
  std::stable_sort(subReports.begin(), subReports.end(), byTop);

  // Controls above each sub report make a piece; the sub report's bands
  // follow; controls beside or below it come after them.
  float cursor = 0;
  float from = 0;
  for (const auto &control : subReports) {
    auto &subReport = static_cast<SubReport &>(*control);
    std::vector<std::shared_ptr<Control>> above;
    for (const auto &other : controls)
      if (other->top >= from && other->top < subReport.top)
        above.push_back(other);
    const Twips aboveHeight = std::max<Twips>(0, round(subReport.top - cursor));
    if (aboveHeight > 0 || !above.empty())
      band.pieces.push_back(renderPiece(section, showing.index(), above, round(cursor), aboveHeight));
    if (hooks_.subReport)
      for (const Band &inner : hooks_.subReport(subReport, round(subReport.width)))
        for (const BandPiece &piece : inner.pieces)
          band.pieces.push_back(shifted(piece, round(subReport.left)));
    cursor = subReport.top + subReport.height;
    from = subReport.top;
  }
  std::vector<std::shared_ptr<Control>> rest;
  for (const auto &other : controls)
    if (other->top >= from)
      rest.push_back(other);
  const Twips restHeight = std::max<Twips>(0, round(section.height - cursor));
  if (subReports.empty() || restHeight > 0 || !rest.empty())
    band.pieces.push_back(renderPiece(section, showing.index(), rest, round(cursor), restHeight));
  return band;
}

BandPiece SectionRenderer::renderPiece(const Section &section, std::uint32_t showing,
                                       const std::vector<std::shared_ptr<Control>> &controls, Twips top,
                                       Twips minimumHeight) {
  struct Laid {
    const Control *control;
    QStringList lines;
    QString text; // before wrapping
    ValueSource source;
    float height;
    float delta; // growth (or shrinking, below 0) against the designed height
    float shift = 0;
  };
  std::vector<Laid> laid;
  for (const auto &control : controls) {
    Laid item{control.get(), {}, {}, {showing, 0, ValueKind::Text, 0}, control->height, 0};
    if (control->kind() == ControlKind::Label) {
      const auto &label = static_cast<const Label &>(*control);
      if (document_.keepsValues())
        item.source.control = controlIndex(label, {});
      item.text = label.caption;
      item.lines = fontUse(*label.font).canvas->wrap(label.caption, round(label.width));
    } else if (control->kind() == ControlKind::Field) {
      const auto &field = static_cast<const Field &>(*control);
      if (!(hooks_.pageCounter && hooks_.pageCounter(field))) {
        const Variant value = hooks_.value ? hooks_.value(field) : Variant(field.text);
        const QString text = formatFieldText(value, field.outputFormat);
        if (document_.keepsValues()) {
          item.source.control = controlIndex(field, field.outputFormat);
          classify(value, field.outputFormat, item.source);
        }
        const FontUse &font = fontUse(*field.font);
        item.text = text;
        item.lines = font.canvas->wrap(text, round(field.width));
        // Lines are drawn a whole number of twips apart, so a field grows
        // by the same measure.
        const float needed = float(item.lines.size() * font.lineHeight);
        if (field.canGrow && needed > field.height)
          item.height = needed;
        else if (field.canShrink && text.isEmpty())
          item.height = 0;
      }
    }
    item.delta = item.height - control->height;
    laid.push_back(item);
  }
  // A control moves down by the largest growth of the controls that end
  // above it.
  for (Laid &item : laid)
    for (const Laid &other : laid)
      if (&other != &item && other.delta != 0 && other.control->top + other.control->height <= item.control->top)
        item.shift = std::max(item.shift, other.delta);

  float bottom = 0;
  // Within a piece that starts below a sub report, controls beside it
  // begin at the piece's top.
  const auto placedTop = [top](const Control &control) { return std::max(0.0f, control.top - float(top)); };
  for (const Laid &item : laid)
    bottom = std::max(bottom, placedTop(*item.control) + item.shift + item.height);
  Twips height = minimumHeight;
  if (section.canShrink)
    height = std::min(height, Twips(std::ceil(bottom)));
  if (section.canGrow)
    height = std::max(height, Twips(std::ceil(bottom)));

  BandPiece piece;
  piece.content =
      Page(std::max<Twips>(1, round(section.report() ? section.report()->printWidth : 0)), std::max<Twips>(0, height));
  piece.owner = &section;
  if (section.backStyle == 1)
    piece.background = rgb(section.backColor);
  for (const Laid &item : laid) {
    const Twips y = round(placedTop(*item.control) + item.shift);
    if (item.control->kind() == ControlKind::Field && hooks_.pageCounter) {
      const auto &field = static_cast<const Field &>(*item.control);
      if (const auto kind = hooks_.pageCounter(field)) {
        if (field.backStyle == 1)
          piece.content.addRect(RectItem{Box{round(field.left), y, round(field.width), round(field.height)},
                                         rgb(field.backColor), std::nullopt, 0});
        const FontUse &font = fontUse(*field.font);
        piece.counters.push_back(PageCounter{PageCounter::Kind(*kind),
                                             Box{round(field.left), y, round(field.width), font.lineHeight}, font.index,
                                             rgb(field.foreColor), textAlign(field.alignment), field.outputFormat});
        continue;
      }
    }
    drawControl(piece, *item.control, y, round(item.height), item.lines,
                document_.keepsValues() ? &item.source : nullptr, item.text);
  }
  return piece;
}

Page SectionRenderer::renderDesign(const Control &control) {
  BandPiece piece;
  piece.content = Page(std::max<Twips>(1, round(control.left + control.width)),
                       std::max<Twips>(1, round(control.top + control.height)));
  const Twips top = round(control.top);
  const Twips height = round(control.height);
  const auto wrapped = [&](const QString &text) {
    return fontUse(*control.font).canvas->wrap(text, round(control.width));
  };
  switch (control.kind()) {
  case ControlKind::Label:
    drawControl(piece, control, top, height, wrapped(static_cast<const Label &>(control).caption));
    break;
  case ControlKind::Field: {
    // A field without a text of its own shows what it is bound to.
    const auto &field = static_cast<const Field &>(control);
    drawControl(piece, control, top, height, wrapped(field.text.isEmpty() ? field.dataField : field.text));
    break;
  }
  case ControlKind::SubReport: {
    // Drawn as a label would be, framed whatever its border.
    const Box box{round(control.left), top, round(control.width), height};
    const FontUse &use = fontUse(*control.font);
    const QStringList lines = wrapped(static_cast<const SubReport &>(control).reportName);
    if (control.backStyle == 1)
      piece.content.addRect(RectItem{box, rgb(control.backColor), std::nullopt, 0});
    for (int i = 0; i < lines.size(); ++i)
      piece.content.addText(Box{box.x, top + i * use.lineHeight, box.width, use.lineHeight}, lines[i], use.index,
                            rgb(control.foreColor), textAlign(control.alignment));
    piece.content.addRect(RectItem{box, std::nullopt, Stroke{rgb(control.borderColor), 0, LineStyle::Solid}, 0});
    break;
  }
  default: drawControl(piece, control, top, height, {}); break;
  }
  return std::move(piece.content);
}

void SectionRenderer::drawControl(BandPiece &piece, const Control &control, Twips y, Twips height,
                                  const QStringList &lines, const ValueSource *source, const QString &whole) {
  Page &page = piece.content;
  const Box box{round(control.left), y, round(control.width), height};
  switch (control.kind()) {
  case ControlKind::Label:
  case ControlKind::Field: {
    if (control.backStyle == 1)
      page.addRect(RectItem{box, rgb(control.backColor), std::nullopt, 0});
    const FontUse &use = fontUse(*control.font);
    const Twips lineHeight = use.lineHeight;
    const int font = use.index;
    const std::uint32_t mark = page.textMark();
    for (int i = 0; i < lines.size(); ++i) {
      const Twips lineTop = y + i * lineHeight;
      // Lines that do not fit a box that may not grow are cut off; the
      // first line always shows.
      if (i > 0 && lineTop + lineHeight > y + height)
        break;
      page.addText(Box{box.x, lineTop, box.width, lineHeight}, lines[i], font, rgb(control.foreColor),
                   textAlign(control.alignment));
    }
    if (source)
      page.markValue(mark, *source, whole);
    if (control.borderStyle == 1)
      page.addRect(RectItem{box, std::nullopt, Stroke{rgb(control.borderColor), 0, LineStyle::Solid}, 0});
    break;
  }
  case ControlKind::Line: {
    const auto &line = static_cast<const Line &>(control);
    const Twips dy = y - round(control.top);
    page.addLine(LineItem{round(line.x1), round(line.y1) + dy, round(line.x2), round(line.y2) + dy,
                          Stroke{rgb(line.lineColor), round(line.lineWeight), lineStyle(line.lineStyle)}});
    break;
  }
  case ControlKind::Shape: {
    const auto &shape = static_cast<const Shape &>(control);
    const std::optional<QRgb> fill =
        shape.backStyle == 1 ? std::optional<QRgb>(rgb(shape.backColor)) : std::optional<QRgb>();
    const Stroke border{rgb(shape.lineColor), round(shape.lineWeight), LineStyle::Solid};
    if (shape.shape == 1)
      page.addEllipse(EllipseItem{box, fill, border});
    else
      page.addRect(RectItem{box, fill, border, shape.shape == 2 ? std::min(box.width, box.height) / 6 : 0});
    break;
  }
  case ControlKind::Picture: {
    const auto &picture = static_cast<const Picture &>(control);
    if (picture.image.isNull())
      break;
    Box placed = box;
    if (picture.sizeMode == 2) {
      const QSizeF fitted = QSizeF(picture.image.size()).scaled(box.width, box.height, Qt::KeepAspectRatio);
      placed = Box{box.x + Twips((box.width - fitted.width()) / 2), box.y + Twips((box.height - fitted.height()) / 2),
                   Twips(fitted.width()), Twips(fitted.height())};
    } else if (picture.sizeMode == 0) {
      // Its natural size at 96 pixels to the inch, cut to the box.
      placed.width = std::min(box.width, Twips(picture.image.width() * 15));
      placed.height = std::min(box.height, Twips(picture.image.height() * 15));
    }
    page.addImage(placed, document_.internImage(picture.image));
    break;
  }
  case ControlKind::SubReport: break;
  }
}

} // namespace kordel::engine
