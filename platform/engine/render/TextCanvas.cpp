#include "engine/render/TextCanvas.h"

#include "engine/render/PageFont.h"
#include "engine/render/TwipsFont.h"
#include "engine/text/TextMeasurer.h"

#include "core/Error.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>

#include <cmath>

namespace kordel::engine {

namespace {

QFont defaultFont() { return PageFont().toQFont(); }

// The font an object describes, starting from the current one: each of
// the members present changes its part.
QFont fontFromObject(Object &object, QFont font) {
  const auto read = [&object](const char *name) -> std::optional<Variant> {
    const QString member = QString::fromLatin1(name);
    if (!object.hasMember(member))
      return std::nullopt;
    return object.get(member);
  };
  if (const auto name = read("Name"))
    font.setFamily(name->toString());
  if (const auto size = read("Size")) {
    const double points = size->toDouble();
    if (!(points > 0))
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("TextCanvas"),
                 QStringLiteral("A font size must be above 0 points, not %1").arg(points));
    font.setPointSizeF(points);
  }
  if (const auto bold = read("Bold"))
    font.setBold(bold->toBool());
  if (const auto italic = read("Italic"))
    font.setItalic(italic->toBool());
  if (const auto underline = read("Underline"))
    font.setUnderline(underline->toBool());
  if (const auto strikeout = read("Strikethrough"))
    font.setStrikeOut(strikeout->toBool());
  return font;
}

} // namespace

TextCanvas::TextCanvas()
    : font_(defaultFont()), pageFont_(PageFont::fromQFont(font_)), metrics_(twipsMetrics(twipsFont(font_))) {}

void TextCanvas::setFont(const QFont &font) {
  font_ = font;
  pageFont_ = PageFont::fromQFont(font_);
  metrics_ = twipsMetrics(twipsFont(font_));
  measurer_ = nullptr;
}

void TextCanvas::setFontValue(const Variant &value) {
  if (value.isString()) {
    QFont font = font_;
    font.setFamily(value.rawString());
    setFont(font);
    return;
  }
  if (!value.isObject())
    raiseError(ErrorNumber::TypeMismatch, typeName(),
               QStringLiteral("Font takes a font object or a family name, not a %1").arg(value.typeName()));
  const ObjectRef object = value.rawObject();
  if (!object)
    raiseError(ErrorNumber::ObjectNotSet, typeName(), QStringLiteral("Font was given Nothing"));
  setFont(fontFromObject(*object, font_));
}

QStringList TextCanvas::splitLines(const QString &text) {
  if (!text.contains(QLatin1Char('\n')) && !text.contains(QLatin1Char('\r')))
    return {text}; // the common case, without a regular expression
  static const QRegularExpression lineBreak(QStringLiteral("\r\n|\n|\r"));
  return text.split(lineBreak);
}

qreal TextCanvas::lineWidth(const QString &line) const {
  text::TextMeasurer &measurer = text::TextMeasurer::forThisThread();
  if (measurer_ != &measurer) {
    measurer_ = &measurer;
    measuredFont_ = measurer.font(pageFont_);
  }
  return measurer.width(measuredFont_, line);
}

qreal TextCanvas::lineHeight() const { return metrics_.lineSpacing(); }

qreal TextCanvas::ascent() const { return metrics_.ascent(); }

QSizeF TextCanvas::measure(const QString &text) const {
  const QStringList lines = splitLines(text);
  qreal width = 0;
  for (const QString &line : lines)
    width = std::max(width, lineWidth(line));
  return QSizeF(width, lines.size() * lineHeight());
}

QStringList TextCanvas::wrap(const QString &text, int widthTwips) const {
  const QStringList paragraphs = splitLines(text);
  if (widthTwips <= 0)
    return paragraphs;
  QStringList lines;
  for (const QString &paragraph : paragraphs)
    wrapParagraph(paragraph, widthTwips, lines);
  return lines;
}

void TextCanvas::wrapParagraph(const QString &paragraph, qreal width, QStringList &lines) const {
  // Splitting at single spaces keeps runs of spaces inside a line: they
  // come back as empty words, joined with one space each. A paragraph that
  // fits comes back unchanged: most texts fit their boxes, and measuring
  // the whole once spares measuring it word by word.
  if (lineWidth(paragraph) <= width) {
    lines.append(paragraph);
    return;
  }
  const QStringList words = paragraph.split(QLatin1Char(' '));
  const auto startLine = [&](const QString &word) {
    return lineWidth(word) <= width ? word : breakWord(word, width, lines);
  };
  QString line = startLine(words.front());
  bool lineOpen = true; // false after a break, until a word starts the next line
  for (qsizetype i = 1; i < words.size(); ++i) {
    const QString &word = words[i];
    if (!lineOpen) {
      if (word.isEmpty())
        continue; // spaces at a break are dropped
      line = startLine(word);
      lineOpen = true;
      continue;
    }
    const QString candidate = line + QLatin1Char(' ') + word;
    if (lineWidth(candidate) <= width) {
      line = candidate;
      continue;
    }
    if (line.trimmed().isEmpty()) {
      // Only the paragraph's leading spaces so far: they go with the break.
      line = startLine(word);
      continue;
    }
    while (line.endsWith(QLatin1Char(' ')))
      line.chop(1);
    lines.append(line);
    lineOpen = !word.isEmpty();
    if (lineOpen)
      line = startLine(word);
  }
  if (lineOpen)
    lines.append(line);
}

QString TextCanvas::breakWord(const QString &word, qreal width, QStringList &lines) const {
  // Cuts between characters as a reader sees them, so that a surrogate
  // pair or a letter with its combining accent stays whole.
  QTextBoundaryFinder boundaries(QTextBoundaryFinder::Grapheme, word);
  qsizetype start = 0;
  while (true) {
    boundaries.setPosition(start);
    qsizetype end = boundaries.toNextBoundary(); // at least one character per line
    for (qsizetype next = boundaries.toNextBoundary();
         next != -1 && lineWidth(word.sliced(start, next - start)) <= width; next = boundaries.toNextBoundary())
      end = next;
    if (end >= word.size())
      return word.sliced(start);
    lines.append(word.sliced(start, end - start));
    start = end;
  }
}

const MemberTable &TextCanvas::memberTable() const {
  static const MemberTable table{{
      Member{QStringLiteral("Font"),
             [](Object &, Args &) -> Variant {
               raiseError(ErrorNumber::NoSuchMember, QStringLiteral("TextCanvas"),
                          QStringLiteral("Font can be set but not read"));
             },
             [](Object &self, Args &args, const Variant &value) {
               expectArgs(args, 0, 0);
               static_cast<TextCanvas &>(self).setFontValue(value);
             },
             false},
      method<TextCanvas>("MeasureText",
                         [](TextCanvas &canvas, Args &args) {
                           expectArgs(args, 3, 3);
                           const QSizeF size = canvas.measure(args[0].toString());
                           args[1] = int(std::ceil(size.width()));
                           args[2] = int(std::ceil(size.height()));
                           return Variant();
                         }),
  }};
  return table;
}

} // namespace kordel::engine
