#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace kordel::host {

// One page of a report document. The top page's source is the class the
// report is built on; a sub page's source is the path of the relation, from
// that class, whose records the sub page prints.
struct ReportDocumentPage {
  QString guid;
  QString name;
  QString source;
  bool top = false;
};

// A report document file as the host sees it: the bytes it stores as the
// report's contents, and the facts it checks: the report's name, the class
// it is built on, and its pages. The document format is the add-in's
// published one: root "application", settings in "section" and "property"
// elements.
class ReportDocumentFile {
public:
  // Raises 53 for a missing file and 321, naming line and column, for a
  // file that is not a well-formed report document.
  static ReportDocumentFile read(const QString &path);

  const QByteArray &bytes() const { return bytes_; }
  // "" when the document names none.
  const QString &name() const { return name_; }
  const QString &reportClass() const { return reportClass_; }
  // In the document's order.
  const QList<ReportDocumentPage> &pages() const { return pages_; }

private:
  QByteArray bytes_;
  QString name_;
  QString reportClass_;
  QList<ReportDocumentPage> pages_;
};

} // namespace kordel::host
