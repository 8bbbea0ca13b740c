#pragma once

#include "core/Object.h"
#include "engine/render/PageFont.h"

#include <QFont>
#include <QFontMetricsF>
#include <QSizeF>
#include <QStringList>

namespace kordel::engine {

namespace text {
class TextMeasurer;
}

// Measures text in twips with one font, the way pages will show it: widths
// as the text is shaped for drawing, heights from the font's metrics. The
// font starts as DejaVu Sans at 10 points. Texts may hold line breaks (CR
// LF, LF or CR); a text is always at least one line, an empty text one
// empty line.
//
// Late-bound members: Font (write; an object with any of Name, Size,
// Bold, Italic, Underline, Strikethrough, or a family name) and
// MeasureText(text, width, height), which writes the text's width and
// height in whole twips, rounded up, into its second and third arguments.
class TextCanvas : public Object {
public:
  TextCanvas();

  QString typeName() const override { return QStringLiteral("TextCanvas"); }

  void setFont(const QFont &font);
  // The font as given, sized in points.
  const QFont &font() const { return font_; }

  // The width of the widest line and the height of all lines.
  QSizeF measure(const QString &text) const;
  // The width of one line of text.
  qreal lineWidth(const QString &line) const;
  // The distance from the top of one line to the top of the next.
  qreal lineHeight() const;
  // The distance from the top of a line to its baseline.
  qreal ascent() const;

  // The lines the text takes in the given width: breaks at spaces, keeps
  // the text's own line breaks, and breaks a word wider than the width
  // between characters. Spaces at a break are dropped. A width of 0 or
  // less wraps nothing.
  QStringList wrap(const QString &text, int widthTwips) const;

  // The text's own lines, split at CR LF, LF and CR.
  static QStringList splitLines(const QString &text);

protected:
  const MemberTable &memberTable() const override;

private:
  void setFontValue(const Variant &value);
  void wrapParagraph(const QString &paragraph, qreal width, QStringList &lines) const;
  // Cuts a word into pieces that each fit the width, at least one
  // character each; the last piece is returned, the others go to lines.
  QString breakWord(const QString &word, qreal width, QStringList &lines) const;

  QFont font_;
  PageFont pageFont_;
  QFontMetricsF metrics_;
  // The measurer of the thread that measured last, and the font's index
  // there.
  mutable text::TextMeasurer *measurer_ = nullptr;
  mutable int measuredFont_ = 0;
};

} // namespace kordel::engine
