#pragma once

#include "engine/export/pdf/PdfResources.h"
#include "engine/text/TextShaper.h"
#include "engine/render/PageDocument.h"

#include <QByteArray>
#include <QCache>

#include <optional>
#include <vector>

namespace kordel::engine::pdf {

// Turns the items of pages into PDF content streams, placed as PagePainter
// places them on other devices: the top of a run's box is the top of its
// line and its baseline lies the font's ascent below (the ascent as
// TextCanvas measures it), the alignment uses the shaped width, and text
// is not clipped to its box. The content draws in twips from the page's
// top left corner.
//
// Text goes out glyph by glyph as shaped, each glyph where the shaper put
// it: the widths the document gives its fonts move the pen, and a shift in
// the glyph array makes up the difference (kerning, marks). A cluster whose
// glyphs the font's character map cannot give back as its text carries its
// text beside it. The operators for a line are made once per font and text
// and kept, least recently used first out, as reports print the same
// texts on page after page.
class PdfPageContent {
public:
  PdfPageContent(const PageDocument &document, text::FontResolver &fonts, PdfResources &resources);

  // The content stream of the page. Raises 9 for a page that refers to a
  // font or image the document lacks.
  QByteArray content(const Page &page);

private:
  // A piece of a line in one face: where it starts from the line's start,
  // and the text operators that draw it from there.
  struct EncodedSegment {
    EmbeddedFont *font = nullptr;
    double x = 0;
    QByteArray operators;
  };
  struct EncodedLine {
    std::vector<EncodedSegment> segments;
    double width = 0;
  };
  struct PreparedFont {
    double size = 0;
    double ascent = 0;
    double underlinePosition = 0; // below the baseline
    double strikeOutPosition = 0; // above the baseline
    double lineWidth = 0;
    bool underline = false;
    bool strikeout = false;
  };
  // What the content has set so far, so that it is set again only when it
  // changes.
  struct State {
    QRgb fill = kBlack;
    QRgb stroke = kBlack;
    int alpha = 255;
    double lineWidth = 1;
    int cap = 0;
    int join = 0;
    bool dashed = false;
    QByteArray dash;
    EmbeddedFont *font = nullptr;
    double size = 0;
    bool emboldened = false;
    bool inText = false;
  };

  const PreparedFont &preparedFont(int index);
  const EncodedLine &encoded(int font, const QString &text);
  EncodedSegment encodeSegment(const text::ShapedSegment &segment, double size);

  void text(const Page &page, const TextRun &run);
  void line(const LineItem &line);
  void rect(const RectItem &rect);
  void ellipse(const EllipseItem &ellipse);
  void image(const ImageItem &image);

  void beginText();
  void endText();
  void setFill(QRgb colour);
  void setStroke(const Stroke &stroke);
  void setStrokeColour(QRgb colour);
  void setOpacity(int alpha);
  void setLineWidth(double width);
  void setCapAndJoin(int cap, int join);
  void setDash(const QByteArray &dash);
  void fillAndStroke(const QByteArray &path, const std::optional<QRgb> &fill, const std::optional<Stroke> &border);
  void number(double value);

  const PageDocument &document_;
  text::FontResolver &fonts_;
  PdfResources &resources_;
  text::TextShaper shaper_;
  std::vector<std::optional<PreparedFont>> preparedFonts_; // by font index, on first use
  QCache<QPair<int, QString>, EncodedLine> lines_;
  std::optional<EncodedLine> uncached_; // a line too big for the cache
  QByteArray out_;
  State state_;
};

} // namespace kordel::engine::pdf
