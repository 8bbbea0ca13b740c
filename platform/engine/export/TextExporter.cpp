#include "engine/export/TextExporter.h"

#include "engine/export/ExportFile.h"
#include "engine/export/TextLines.h"

#include "core/Error.h"

#include <QRegularExpression>
#include <QStringList>

#include <unordered_set>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("TextExporter");

bool hasText(const QString &text) { return !text.trimmed().isEmpty(); }

// Whether a text is a plain number: a sign, then digits with grouping
// blanks, points, commas or apostrophes, an exponent and a per cent sign.
bool isNumber(const QString &text) {
  static const QRegularExpression number(
      QStringLiteral("^[-+]?[0-9][0-9 .,'\\x{a0}\\x{202f}]*(?:[eE][-+]?[0-9]+)?%?$"));
  return number.match(text).hasMatch();
}

bool startsLikeFormula(const QString &text) {
  static const QString formulaStarts = QStringLiteral("=+-@\t\r");
  return !text.isEmpty() && formulaStarts.contains(text.front()) && !isNumber(text);
}

} // namespace

QString TextExporter::field(const QString &text) const {
  const bool formula = startsLikeFormula(text);
  const bool quoted = formula || text.contains(QLatin1Char('"')) || text.contains(QLatin1Char('\n')) ||
                      text.contains(QLatin1Char('\r')) || (!textDelimiter_.isEmpty() && text.contains(textDelimiter_));
  if (!quoted)
    return text;
  QString out = formula ? QLatin1Char('\'') + text : text;
  out.replace(QLatin1Char('"'), QLatin1String("\"\""));
  return QLatin1Char('"') + out + QLatin1Char('"');
}

QString TextExporter::text(const PageDocument &document) const {
  QString out;
  for (int index = 0; index < document.pageCount(); ++index) {
    if (index > 0 && !pageDelimiter_.isEmpty())
      out += pageDelimiter_ + QLatin1Char('\n');
    appendPage(out, document.page(index));
  }
  return out;
}

void TextExporter::appendPage(QString &out, const Page &page) const {
  const TextLine *previous = nullptr;
  // A value wrapped over lines or cut at its box is written whole, once,
  // where its first line stands; its other lines are left out.
  std::unordered_set<const PrintedValue *> written;
  for (const TextLine &line : textLines(page)) {
    QStringList texts;
    for (const TextRun *run : line.runs) {
      QString text = page.text(*run);
      if (const PrintedValue *whole = page.partialValueOf(*run)) {
        if (written.count(whole))
          continue;
        written.insert(whole);
        text = page.text(*whole);
      }
      if (hasText(text))
        texts += field(text);
    }
    if (texts.isEmpty() && !line.runs.empty() && page.partialValueOf(*line.runs.front()))
      continue; // only lines of a value written above
    if (suppressEmptyLines_) {
      if (!texts.isEmpty())
        out += texts.join(textDelimiter_) + QLatin1Char('\n');
      continue;
    }
    if (previous && line.top - previous->bottom >= previous->bottom - previous->top)
      out += QLatin1Char('\n');
    out += texts.join(textDelimiter_) + QLatin1Char('\n');
    previous = &line;
  }
}

void TextExporter::exportDocument(const PageDocument &document, const QString &path) const {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report has no pages to export"));
  checkExportTarget(path, kSource);
  writeExportFile(path, text(document).toUtf8(), kSource);
}

} // namespace kordel::engine
