#pragma once

#include <QByteArray>
#include <QString>

namespace kordel::host {

// A report document file as the host sees it: the bytes it stores as the
// report's contents, and the two facts it checks before storing them, the
// report's name and the class it is built on. The document format is the
// add-in's published one: root "application", settings in "section" and
// "property" elements.
class ReportDocumentFile {
public:
  // Raises 53 for a missing file and 321, naming line and column, for a
  // file that is not a well-formed report document.
  static ReportDocumentFile read(const QString &path);

  const QByteArray &bytes() const { return bytes_; }
  // "" when the document names none.
  const QString &name() const { return name_; }
  const QString &reportClass() const { return reportClass_; }

private:
  QByteArray bytes_;
  QString name_;
  QString reportClass_;
};

} // namespace kordel::host
