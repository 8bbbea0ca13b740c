#include "host/ReportDocumentFile.h"

#include "core/Error.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNode.h"
#include "xml/XmlNodeList.h"

#include <QFile>

namespace kordel::host {

namespace {

const QString kSource = QStringLiteral("ReportDocument");

// The value of a setting of a section; "" when it is not there. A carriage
// return stands in a value as a marker, with no escape.
QString property(const XmlNode &section, const QString &key) {
  const auto value = section.selectSingleNode(QStringLiteral("property[@name='%1']/@value").arg(key));
  return value ? value->text().replace(QStringLiteral("\\C013\\"), QStringLiteral("\r")) : QString();
}

// The value of a setting of a top-level section.
QString setting(const XmlNode &root, const QString &section, const QString &key) {
  const auto node = root.selectSingleNode(QStringLiteral("section[@name='%1']").arg(section));
  return node ? property(*node, key) : QString();
}

QList<ReportDocumentPage> pagesOf(const XmlNode &root) {
  const QString topGuid = setting(root, QStringLiteral("settings"), QStringLiteral("toppage"));
  QList<ReportDocumentPage> pages;
  const auto sections = root.selectNodes(QStringLiteral("section[@name='pages']/section"));
  for (int i = 0; i < sections->length(); ++i) {
    const auto section = sections->item(i);
    ReportDocumentPage page;
    page.guid = section->getAttribute(QStringLiteral("name")).value_or(QString());
    page.name = property(*section, QStringLiteral("name"));
    page.source = property(*section, QStringLiteral("source"));
    page.top = page.guid == topGuid;
    pages.append(page);
  }
  return pages;
}

} // namespace

ReportDocumentFile ReportDocumentFile::read(const QString &path) {
  QFile file(path);
  if (!file.exists())
    raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("There is no file %1").arg(path));
  if (!file.open(QIODevice::ReadOnly))
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("The file %1 cannot be read: %2").arg(path, file.errorString()));
  ReportDocumentFile document;
  document.bytes_ = file.readAll();
  const auto xml = XmlDocument::create();
  try {
    xml->load(document.bytes_);
  } catch (const Error &error) {
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("%1 is not a report document: %2").arg(path, error.description()));
  }
  const auto root = xml->documentElement();
  if (!root || root->nodeName() != QStringLiteral("application"))
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("%1 is not a report document: its root element is not \"application\"").arg(path));
  document.name_ = setting(*root, QStringLiteral("system"), QStringLiteral("name"));
  document.reportClass_ = setting(*root, QStringLiteral("settings"), QStringLiteral("source"));
  document.pages_ = pagesOf(*root);
  return document;
}

} // namespace kordel::host
