#include "cli/PageLayouts.h"

#include "core/Error.h"
#include "xml/XPathLiteral.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <QStringList>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("PageLayouts");

std::shared_ptr<XmlNode> element(XmlDocument &document, const QString &name, const QString &nameAttribute) {
  auto created = document.createElement(name);
  created->setAttribute(QStringLiteral("name"), nameAttribute);
  return created;
}

// Stores a layout as the page's resource, after taking out the one it had.
void putLayout(XmlDocument &document, XmlNode &root, const QString &guid, const QByteArray &layout) {
  auto resources = root.selectSingleNode(QStringLiteral("section[@name='resources']"));
  if (!resources)
    resources = root.appendChild(element(document, QStringLiteral("section"), QStringLiteral("resources")));
  const QString byName = QStringLiteral("property[@name=%1]").arg(xpathLiteral(guid));
  if (const auto old = resources->selectSingleNode(byName))
    resources->removeChild(old);
  const auto property = resources->appendChild(element(document, QStringLiteral("property"), guid));
  property->setDataType(QStringLiteral("bin.base64"));
  property->setNodeTypedValue(Variant(layout));
}

} // namespace

QByteArray withPageLayouts(const QByteArray &document, const QHash<QString, QByteArray> &layouts) {
  const auto xml = XmlDocument::create();
  try {
    xml->load(document);
  } catch (const Error &error) {
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("The report document is not XML: %1").arg(error.description()));
  }
  const auto root = xml->documentElement();
  if (!root || root->nodeName() != QLatin1String("application"))
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("The report document's root element is not \"application\""));

  QStringList pages; // in the document's order, so the same input gives the same bytes
  const auto sections = root->selectNodes(QStringLiteral("section[@name='pages']/section"));
  for (int i = 0; i < sections->length(); ++i) {
    const QString guid = sections->item(i)->getAttribute(QStringLiteral("name")).value_or(QString());
    if (!layouts.contains(guid))
      raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The page %1 has no layout").arg(guid));
    pages << guid;
  }
  for (auto it = layouts.constBegin(); it != layouts.constEnd(); ++it)
    if (!pages.contains(it.key()))
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("There is a layout for the page %1, which the report document lacks").arg(it.key()));

  for (const QString &guid : pages)
    putLayout(*xml, *root, guid, layouts[guid]);
  return xml->xml().toUtf8();
}

} // namespace kordel::host::cli
