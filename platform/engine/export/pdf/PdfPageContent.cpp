#include "engine/export/pdf/PdfPageContent.h"

#include "engine/export/pdf/PdfFile.h"
#include "engine/render/TwipsFont.h"

#include <algorithm>
#include <cmath>

namespace kordel::engine::pdf {

namespace {

// The encoded lines kept, by their approximate bytes: enough for the
// labels and repeated values of a report, not for every value of a long one.
constexpr qsizetype kLineCacheBytes = 1024 * 1024;

// Dashes and dots are sized from a unit of at least one screen pixel at
// 96 dots per inch, as on the screen, so that thin dashed lines still show
// their pattern.
constexpr double kMinimumDashUnit = kTwipsPerInch / 96.0;

// A hairline is the thinnest line a page can ask for, one twip, which
// every device shows as its thinnest.
constexpr double kHairlineWidth = 1.0;

// How far the control points of a Bézier curve stand out along the
// tangents for a quarter of an ellipse.
constexpr double kQuarterArc = 0.5522847498;

// A face without a slanted cut of its own leans in its text matrix (by the
// tangent of 12 degrees), and a face without a bold one is drawn with its
// outline stroked this thick, in parts of its size.
constexpr char kSlantedTextMatrix[] = "1 0 .2126 -1 ";
constexpr char kUprightTextMatrix[] = "1 0 0 -1 ";
constexpr double kEmboldening = 1.0 / 24;

// PDF's line caps and joins.
constexpr int kButtCap = 0;
constexpr int kSquareCap = 2;
constexpr int kBevelJoin = 2;

// How far, in thousandths of the size, a glyph may stand from where it was
// placed: a fiftieth of a point at 10 points.
constexpr double kUnseenDrift = 2.5;

// A colour component, 0 to 255, as a fraction with three decimals.
void appendComponent(QByteArray &out, int value) {
  if (value <= 0) {
    out.append('0');
    return;
  }
  if (value >= 255) {
    out.append('1');
    return;
  }
  const int thousandths = (value * 1000 + 127) / 255;
  out.append('.').append(char('0' + thousandths / 100)).append(char('0' + thousandths / 10 % 10));
  if (thousandths % 10 != 0)
    out.append(char('0' + thousandths % 10));
}

void appendColour(QByteArray &out, QRgb colour) {
  appendComponent(out, qRed(colour));
  out.append(' ');
  appendComponent(out, qGreen(colour));
  out.append(' ');
  appendComponent(out, qBlue(colour));
}

qsizetype approximateBytes(const QString &text, std::size_t segments, qsizetype operatorBytes) {
  return text.size() * 2 + qsizetype(segments * 48) + operatorBytes + 64;
}

// Builds the operators that draw a segment's glyphs: glyph arrays whose
// numbers shift the pen to where each glyph was placed, a rise for glyphs
// placed above or below the baseline, and the text of clusters that the
// font's map cannot give back, in a marked span around their glyphs.
class SegmentEncoder {
public:
  SegmentEncoder(EmbeddedFont &font, double size) : font_(font), size_(size) {}

  QByteArray encode(const text::ShapedSegment &segment) {
    origin_ = segment.glyphs.front().x;
    std::size_t glyph = 0;
    qsizetype byte = 0;
    for (const text::ShapedCluster &cluster : segment.clusters) {
      const char *utf8 = segment.utf8.constData() + byte;
      byte += cluster.bytes;
      const std::size_t end = std::min(segment.glyphs.size(), glyph + std::size_t(cluster.glyphs));
      // Most clusters are one glyph for one character of ASCII.
      const bool mapped = cluster.bytes == 1 && end - glyph == 1
                              ? font_.mapsTo(segment.glyphs[glyph].id, char32_t(std::uint8_t(*utf8)))
                              : mapsBack(segment, glyph, end, QString::fromUtf8(utf8, cluster.bytes));
      if (!mapped) {
        closeArray();
        out_.append("/Span<</ActualText").append(textString(QString::fromUtf8(utf8, cluster.bytes))).append(">>BDC\n");
      }
      for (; glyph < end; ++glyph)
        show(segment.glyphs[glyph]);
      if (!mapped) {
        closeArray();
        out_.append("EMC\n");
      }
    }
    closeArray();
    if (rise_ != 0)
      out_.append("0 Ts\n");
    return out_;
  }

private:
  // Whether the font's map gives back the cluster's text from its glyphs:
  // one glyph for the whole text (a ligature too), or a glyph for each
  // character.
  bool mapsBack(const text::ShapedSegment &segment, std::size_t begin, std::size_t end, const QString &text) {
    if (end - begin == 1)
      return font_.mapsTo(segment.glyphs[begin].id, text);
    const QList<uint> characters = text.toUcs4();
    if (std::size_t(characters.size()) != end - begin)
      return false;
    bool mapped = true;
    for (std::size_t i = begin; i < end; ++i) {
      mapped = font_.mapsTo(segment.glyphs[i].id, char32_t(characters[qsizetype(i - begin)])) && mapped;
    }
    return mapped;
  }

  void show(const text::ShapedGlyph &glyph) {
    const int width = font_.use(glyph.id);
    if (glyph.rise != rise_) {
      closeArray();
      rise_ = glyph.rise;
      appendNumber(out_, rise_);
      out_.append(" Ts\n");
    }
    if (!inArray_) {
      out_.append('[');
      inArray_ = true;
    }
    // A number in the array moves the pen left by thousandths of the size.
    // The widths, whole thousandths, leave the pen a little off where the
    // glyphs were placed; a shift puts that right only where it adds up to
    // more than can be seen, so that most words go out in one piece.
    const double offset = (pen_ - (glyph.x - origin_)) * 1000 / size_;
    const std::int64_t shift = std::abs(offset) > kUnseenDrift ? std::llround(offset) : 0;
    if (shift != 0) {
      closeString();
      appendInteger(out_, shift);
      pen_ -= double(shift) * size_ / 1000;
    }
    if (!inString_) {
      out_.append('<');
      inString_ = true;
    }
    appendHex16(out_, glyph.id);
    pen_ += double(width) * size_ / 1000;
  }

  void closeString() {
    if (inString_)
      out_.append('>');
    inString_ = false;
  }

  void closeArray() {
    closeString();
    if (inArray_)
      out_.append("]TJ\n");
    inArray_ = false;
  }

  EmbeddedFont &font_;
  double size_;
  QByteArray out_;
  double origin_ = 0;
  double pen_ = 0; // from the first glyph, where the glyphs shown so far leave it
  double rise_ = 0;
  bool inArray_ = false;
  bool inString_ = false;
};

} // namespace

PdfPageContent::PdfPageContent(const PageDocument &document, text::FontResolver &fonts, PdfResources &resources)
    : document_(document), fonts_(fonts), resources_(resources), shaper_(fonts), lines_(kLineCacheBytes) {}

const PdfPageContent::PreparedFont &PdfPageContent::preparedFont(int index) {
  const PageFont &font = document_.font(index); // raises 9 out of range
  if (preparedFonts_.size() <= std::size_t(index))
    preparedFonts_.resize(std::size_t(index) + 1);
  std::optional<PreparedFont> &prepared = preparedFonts_[std::size_t(index)];
  if (!prepared) {
    // The vertical metrics are those that measured the text for the page.
    const QFontMetricsF metrics = twipsMetrics(twipsFont(font.toQFont()));
    prepared = PreparedFont{fonts_.size(index),  metrics.ascent(), metrics.underlinePos(), metrics.strikeOutPos(),
                            metrics.lineWidth(), font.underline,   font.strikeout};
  }
  return *prepared;
}

PdfPageContent::EncodedSegment PdfPageContent::encodeSegment(const text::ShapedSegment &segment, double size) {
  EmbeddedFont &font = resources_.font(*segment.face);
  return EncodedSegment{&font, segment.glyphs.front().x, SegmentEncoder(font, size).encode(segment)};
}

const PdfPageContent::EncodedLine &PdfPageContent::encoded(int font, const QString &text) {
  const auto key = qMakePair(font, text);
  if (const EncodedLine *cached = lines_.object(key))
    return *cached;
  const text::ShapedLine shaped = shaper_.shape(font, text);
  auto line = std::make_unique<EncodedLine>();
  line->width = shaped.width;
  qsizetype operatorBytes = 0;
  for (const text::ShapedSegment &segment : shaped.segments)
    if (!segment.glyphs.empty()) {
      line->segments.push_back(encodeSegment(segment, fonts_.size(font)));
      operatorBytes += line->segments.back().operators.size();
    }
  const qsizetype cost = approximateBytes(text, line->segments.size(), operatorBytes);
  if (cost > lines_.maxCost()) {
    uncached_ = std::move(*line);
    return *uncached_;
  }
  EncodedLine *kept = line.release();
  lines_.insert(key, kept, cost);
  return *kept;
}

QByteArray PdfPageContent::content(const Page &page) {
  out_.clear();
  state_ = State{};
  // Twips from the top left corner: a twentieth of a point, downwards.
  out_.append(".05 0 0 -.05 0 ");
  number(page.height() / double(kTwipsPerPoint));
  out_.append(" cm\n");
  for (const PageItem &item : page.items()) {
    if (const auto *run = std::get_if<TextRun>(&item)) {
      text(page, *run);
      continue;
    }
    endText();
    if (const auto *lineItem = std::get_if<LineItem>(&item))
      line(*lineItem);
    else if (const auto *rectItem = std::get_if<RectItem>(&item))
      rect(*rectItem);
    else if (const auto *ellipseItem = std::get_if<EllipseItem>(&item))
      ellipse(*ellipseItem);
    else if (const auto *imageItem = std::get_if<ImageItem>(&item))
      image(*imageItem);
  }
  endText();
  return out_;
}

void PdfPageContent::number(double value) { appendNumber(out_, value); }

void PdfPageContent::beginText() {
  if (!state_.inText)
    out_.append("BT\n");
  state_.inText = true;
}

void PdfPageContent::endText() {
  if (state_.inText)
    out_.append("ET\n");
  state_.inText = false;
}

void PdfPageContent::setOpacity(int alpha) {
  if (alpha == state_.alpha)
    return;
  out_.append(resources_.opacity(alpha)).append(" gs\n");
  state_.alpha = alpha;
}

void PdfPageContent::setFill(QRgb colour) {
  setOpacity(qAlpha(colour));
  if ((colour & 0xffffff) == (state_.fill & 0xffffff))
    return;
  appendColour(out_, colour);
  out_.append(" rg\n");
  state_.fill = colour;
}

void PdfPageContent::setStrokeColour(QRgb colour) {
  setOpacity(qAlpha(colour));
  if ((colour & 0xffffff) == (state_.stroke & 0xffffff))
    return;
  appendColour(out_, colour);
  out_.append(" RG\n");
  state_.stroke = colour;
}

void PdfPageContent::setLineWidth(double width) {
  if (width == state_.lineWidth)
    return;
  number(width);
  out_.append(" w\n");
  state_.lineWidth = width;
}

void PdfPageContent::setCapAndJoin(int cap, int join) {
  if (cap != state_.cap) {
    appendInteger(out_, cap);
    out_.append(" J\n");
    state_.cap = cap;
  }
  if (join != state_.join) {
    appendInteger(out_, join);
    out_.append(" j\n");
    state_.join = join;
  }
}

void PdfPageContent::setDash(const QByteArray &dash) {
  if (dash == state_.dash)
    return;
  out_.append(dash.isEmpty() ? QByteArrayLiteral("[]0 d\n") : dash);
  state_.dash = dash;
}

// Solid lines end square and join bevelled; dashes end flat: the ends that
// the other devices draw.
void PdfPageContent::setStroke(const Stroke &stroke) {
  setStrokeColour(stroke.color);
  setLineWidth(stroke.width > 0 ? double(stroke.width) : kHairlineWidth);
  if (stroke.style == LineStyle::Solid) {
    setCapAndJoin(kSquareCap, kBevelJoin);
    setDash({});
    return;
  }
  setCapAndJoin(kButtCap, kBevelJoin);
  const double unit = std::max<double>(stroke.width, kMinimumDashUnit);
  QByteArray dash("[");
  appendNumber(dash, (stroke.style == LineStyle::Dash ? 4 : 1) * unit);
  dash.append(' ');
  appendNumber(dash, 2 * unit);
  dash.append("]0 d\n");
  setDash(dash);
}

void PdfPageContent::text(const Page &page, const TextRun &run) {
  const PreparedFont &font = preparedFont(run.font);
  const EncodedLine &line = encoded(run.font, page.text(run));
  double x = run.box.x;
  if (run.align != TextAlign::Left) {
    const double room = run.box.width - line.width;
    x += run.align == TextAlign::Center ? room / 2 : room;
  }
  const double baseline = run.box.y + font.ascent;
  if (!line.segments.empty()) {
    beginText();
    setFill(run.color);
  }
  for (const EncodedSegment &segment : line.segments) {
    if (segment.font != state_.font || font.size != state_.size) {
      out_.append(segment.font->resourceName()).append(' ');
      number(font.size);
      out_.append(" Tf\n");
      state_.font = segment.font;
      state_.size = font.size;
    }
    const bool embolden = segment.font->face().embolden();
    if (embolden) {
      setStrokeColour(run.color);
      setLineWidth(font.size * kEmboldening);
    }
    if (embolden != state_.emboldened) {
      out_.append(embolden ? "2 Tr\n" : "0 Tr\n");
      state_.emboldened = embolden;
    }
    // Text space: twips, upwards, leaning where the face is slanted.
    out_.append(segment.font->face().slant() ? kSlantedTextMatrix : kUprightTextMatrix);
    number(x + segment.x);
    out_.append(' ');
    number(baseline);
    out_.append(" Tm\n").append(segment.operators);
  }
  if (!(font.underline || font.strikeout) || line.width <= 0)
    return;
  // Lines through the text as wide as it, in its colour.
  endText();
  setStrokeColour(run.color);
  setLineWidth(font.lineWidth);
  setCapAndJoin(kButtCap, state_.join);
  setDash({});
  for (const auto &[drawn, y] : {std::pair{font.underline, baseline + font.underlinePosition},
                                 std::pair{font.strikeout, baseline - font.strikeOutPosition}}) {
    if (!drawn)
      continue;
    number(x);
    out_.append(' ');
    number(y);
    out_.append(" m ");
    number(x + line.width);
    out_.append(' ');
    number(y);
    out_.append(" l S\n");
  }
}

void PdfPageContent::line(const LineItem &line) {
  setStroke(line.stroke);
  appendInteger(out_, line.x1);
  out_.append(' ');
  appendInteger(out_, line.y1);
  out_.append(" m ");
  appendInteger(out_, line.x2);
  out_.append(' ');
  appendInteger(out_, line.y2);
  out_.append(" l S\n");
}

void PdfPageContent::fillAndStroke(const QByteArray &path, const std::optional<QRgb> &fill,
                                   const std::optional<Stroke> &border) {
  // Fill and border go apart, as each may have its own opacity.
  if (fill) {
    setFill(*fill);
    out_.append(path).append("f\n");
  }
  if (border) {
    setStroke(*border);
    out_.append(path).append("S\n");
  }
}

void PdfPageContent::rect(const RectItem &rect) {
  const Box &box = rect.box;
  QByteArray path;
  if (rect.cornerRadius <= 0) {
    for (const Twips value : {box.x, box.y, box.width, box.height}) {
      appendInteger(path, value);
      path.append(' ');
    }
    path.append("re ");
    fillAndStroke(path, rect.fill, rect.border);
    return;
  }
  // Corners as quarter circles of the radius, at most half the width and
  // height.
  const double rx = std::min<double>(rect.cornerRadius, box.width / 2.0);
  const double ry = std::min<double>(rect.cornerRadius, box.height / 2.0);
  const double left = box.x, top = box.y, right = box.x + box.width, bottom = box.y + box.height;
  const double kx = rx * kQuarterArc, ky = ry * kQuarterArc;
  const auto point = [&](double x, double y) {
    appendNumber(path, x);
    path.append(' ');
    appendNumber(path, y);
    path.append(' ');
  };
  const auto curve = [&](double x1, double y1, double x2, double y2, double x3, double y3) {
    point(x1, y1);
    point(x2, y2);
    point(x3, y3);
    path.append("c ");
  };
  point(left + rx, top);
  path.append("m ");
  point(right - rx, top);
  path.append("l ");
  curve(right - rx + kx, top, right, top + ry - ky, right, top + ry);
  point(right, bottom - ry);
  path.append("l ");
  curve(right, bottom - ry + ky, right - rx + kx, bottom, right - rx, bottom);
  point(left + rx, bottom);
  path.append("l ");
  curve(left + rx - kx, bottom, left, bottom - ry + ky, left, bottom - ry);
  point(left, top + ry);
  path.append("l ");
  curve(left, top + ry - ky, left + rx - kx, top, left + rx, top);
  path.append("h ");
  fillAndStroke(path, rect.fill, rect.border);
}

void PdfPageContent::ellipse(const EllipseItem &ellipse) {
  // Four quarter arcs as curves in page units, so that the border keeps
  // its width all round (a scaled circle would stretch it).
  const double rx = ellipse.box.width / 2.0, ry = ellipse.box.height / 2.0;
  const double cx = ellipse.box.x + rx, cy = ellipse.box.y + ry;
  const double kx = rx * kQuarterArc, ky = ry * kQuarterArc;
  QByteArray path;
  const auto point = [&](double x, double y) {
    appendNumber(path, x);
    path.append(' ');
    appendNumber(path, y);
    path.append(' ');
  };
  point(cx + rx, cy);
  path.append("m ");
  const double curves[4][6] = {{cx + rx, cy + ky, cx + kx, cy + ry, cx, cy + ry},
                               {cx - kx, cy + ry, cx - rx, cy + ky, cx - rx, cy},
                               {cx - rx, cy - ky, cx - kx, cy - ry, cx, cy - ry},
                               {cx + kx, cy - ry, cx + rx, cy - ky, cx + rx, cy}};
  for (const auto &c : curves) {
    point(c[0], c[1]);
    point(c[2], c[3]);
    point(c[4], c[5]);
    path.append("c ");
  }
  path.append("h ");
  fillAndStroke(path, ellipse.fill, ellipse.border);
}

void PdfPageContent::image(const ImageItem &image) {
  const QByteArray &name = resources_.image(image.image); // raises 9 out of range
  if (image.box.width <= 0 || image.box.height <= 0)
    return; // nothing of it would show
  // The image's unit square onto its box, its top row at the box's top.
  setOpacity(255);
  out_.append("q ");
  appendInteger(out_, image.box.width);
  out_.append(" 0 0 ");
  appendInteger(out_, -image.box.height);
  out_.append(' ');
  appendInteger(out_, image.box.x);
  out_.append(' ');
  appendInteger(out_, image.box.y + image.box.height);
  out_.append(" cm ").append(name).append(" Do Q\n");
}

} // namespace kordel::engine::pdf
