#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::engine {

// Writes the text of a document's pages to a plain text file, UTF-8
// without a byte order mark, each line ended by "\n". Each page gives its
// lines in reading order: top to bottom, runs whose tops lie within 30
// twips counting as one line, and the runs of a line left to right.
//
// Spreadsheet programs open such a file as delimited values, so each run's
// text is written as a field: a text that holds the text delimiter, a
// double quote or a line break stands in double quotes, its double quotes
// doubled; a text that begins like a formula (with =, +, -, @, a tab or a
// carriage return) and is no plain number gets an apostrophe in front and
// double quotes around it, so that it is read as the text it is and never
// run as a formula. Numbers stay as they are.
//
// Settings:
// - text delimiter (default ";"): written between the texts of the runs of
//   one line. Runs without text (empty or only blanks) give no text and no
//   delimiter.
// - page delimiter (default a tab): written as a line of its own between
//   two pages; an empty page delimiter writes no line.
// - suppress empty lines (default false): when true, a line whose runs
//   have no text is left out and the lines follow one another without gaps.
//   When false, such a line is written empty, and one empty line stands for
//   a vertical gap of a line height or more (the height of the line above)
//   between two lines of a page.
//
// Errors: 76 when the target's folder does not exist, 70 when the file
// cannot be written, 5 for a document without pages. A failure leaves any
// earlier file as it was and no partial one.
class TextExporter {
public:
  void setTextDelimiter(const QString &delimiter) { textDelimiter_ = delimiter; }
  const QString &textDelimiter() const { return textDelimiter_; }
  void setPageDelimiter(const QString &delimiter) { pageDelimiter_ = delimiter; }
  const QString &pageDelimiter() const { return pageDelimiter_; }
  void setSuppressEmptyLines(bool suppress) { suppressEmptyLines_ = suppress; }
  bool suppressEmptyLines() const { return suppressEmptyLines_; }

  // The text as the file holds it.
  QString text(const PageDocument &document) const;
  void exportDocument(const PageDocument &document, const QString &path) const;

  // A run's text as the file holds it.
  QString field(const QString &text) const;

private:
  void appendPage(QString &out, const Page &page) const;

  QString textDelimiter_ = QStringLiteral(";");
  QString pageDelimiter_ = QStringLiteral("\t");
  bool suppressEmptyLines_ = false;
};

} // namespace kordel::engine
