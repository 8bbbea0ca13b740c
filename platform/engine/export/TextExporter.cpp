#include "engine/export/TextExporter.h"

#include "engine/export/ExportFile.h"
#include "engine/export/TextLines.h"

#include "core/Error.h"

#include <QStringList>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("TextExporter");

bool hasText(const QString &text) { return !text.trimmed().isEmpty(); }

} // namespace

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
  for (const TextLine &line : textLines(page)) {
    QStringList texts;
    for (const TextRun *run : line.runs) {
      const QString text = page.text(*run);
      if (hasText(text))
        texts += text;
    }
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
