#include "XmlTestSupport.h"
#include "support/TempDir.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <gtest/gtest.h>

namespace kordel {
namespace {

const QString kTemplate = QStringLiteral("<?xml version=\"1.0\" ?><application/>");

std::shared_ptr<XmlDocument> templateDocument() {
  auto doc = XmlDocument::create();
  doc->loadXML(kTemplate);
  return doc;
}

std::shared_ptr<XmlDocument> loadFile(const QString &path) {
  auto doc = XmlDocument::create();
  doc->load(path);
  return doc;
}

// A document with one property per hostile value, the value once as
// attribute and once as element text.
std::shared_ptr<XmlDocument> documentWithHostileValues() {
  auto doc = templateDocument();
  auto section = doc->createElement(QStringLiteral("section"));
  doc->documentElement()->appendChild(section);
  section->setAttribute(QStringLiteral("name"), QStringLiteral("values"));
  const QStringList values = test::hostileValues();
  for (int i = 0; i < values.size(); ++i) {
    auto property = doc->createElement(QStringLiteral("property"));
    section->appendChild(property);
    property->setAttribute(QStringLiteral("name"), QString::number(i));
    property->setAttribute(QStringLiteral("value"), values[i]);
    auto text = doc->createElement(QStringLiteral("text"));
    property->appendChild(text);
    text->setText(values[i]);
  }
  return doc;
}

TEST(XmlRoundTrip, TemplateSerialisesWithPlainDeclarationAndNoIndentation) {
  auto doc = templateDocument();
  EXPECT_EQ(doc->xml(), QStringLiteral("<?xml version=\"1.0\"?>\n<application/>\n"));

  auto section = doc->createElement(QStringLiteral("section"));
  doc->documentElement()->appendChild(section)->setAttribute(QStringLiteral("name"), QStringLiteral("a"));
  section->appendChild(doc->createElement(QStringLiteral("property")));
  EXPECT_EQ(doc->xml(), QStringLiteral("<?xml version=\"1.0\"?>\n"
                                       "<application><section name=\"a\"><property/></section></application>\n"));
}

TEST(XmlRoundTrip, HostileValuesReadBackExactlyFromAttributesAndText) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("values.xml"));
  documentWithHostileValues()->save(path);

  auto loaded = loadFile(path);
  const QStringList values = test::hostileValues();
  auto properties = loaded->selectNodes(QStringLiteral("/application/section/property"));
  ASSERT_EQ(properties->length(), values.size());
  for (int i = 0; i < values.size(); ++i) {
    auto property = properties->item(i);
    EXPECT_EQ(property->getAttribute(QStringLiteral("value")), values[i]) << "attribute of value " << i;
    EXPECT_EQ(property->firstChild()->text(), values[i]) << "text of value " << i;
  }
}

TEST(XmlRoundTrip, FileIsUtf8WithLineBreaksAsCharacterReferences) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("refs.xml"));
  auto doc = templateDocument();
  doc->documentElement()->setAttribute(QStringLiteral("value"), QStringLiteral("a\r\nb\tc åäö 😀"));
  doc->save(path);

  const QByteArray bytes = test::readFile(path);
  EXPECT_EQ(bytes,
            QStringLiteral("<?xml version=\"1.0\"?>\n<application value=\"a&#13;&#10;b&#9;c åäö 😀\"/>\n").toUtf8());
}

TEST(XmlRoundTrip, SavingALoadedFileGivesTheSameBytes) {
  test::TempDir dir;
  const QString first = dir.file(QStringLiteral("first.xml"));
  const QString second = dir.file(QStringLiteral("second.xml"));
  auto doc = documentWithHostileValues();
  auto resource = doc->createElement(QStringLiteral("property"));
  doc->documentElement()->appendChild(resource);
  resource->setDataType(QStringLiteral("bin.base64"));
  resource->setNodeTypedValue(QByteArray(300, '\xE5'));
  doc->save(first);

  loadFile(first)->save(second);
  EXPECT_EQ(test::readFile(second), test::readFile(first));
}

TEST(XmlRoundTrip, AForeignFileSettlesIntoOneStableForm) {
  test::TempDir dir;
  const QString foreign = dir.file(QStringLiteral("foreign.xml"));
  ASSERT_TRUE(test::writeFile(foreign, "<?xml version='1.0' encoding='ISO-8859-1' standalone='yes'?>\r\n"
                                       "<!-- made elsewhere -->\r\n"
                                       "<application a='1' b=\"x&apos;y\">\r\n"
                                       "  <section name='s'></section>\r\n"
                                       "  <script><![CDATA[If a < b Then]]></script>\r\n"
                                       "  <text>caf\xE9</text>\r\n"
                                       "</application>\r\n"));
  const QString first = dir.file(QStringLiteral("first.xml"));
  const QString second = dir.file(QStringLiteral("second.xml"));
  loadFile(foreign)->save(first);
  loadFile(first)->save(second);

  EXPECT_EQ(test::readFile(second), test::readFile(first));
  const QString text = QString::fromUtf8(test::readFile(first));
  EXPECT_TRUE(text.startsWith(QStringLiteral("<?xml version=\"1.0\"?>\n<!-- made elsewhere -->\n<application")));
  EXPECT_TRUE(text.contains(QStringLiteral("<text>café</text>"))) << qPrintable(text);
  EXPECT_TRUE(text.contains(QStringLiteral("<![CDATA[If a < b Then]]>"))) << qPrintable(text);
  EXPECT_FALSE(text.contains(QStringLiteral("encoding")));
}

TEST(XmlRoundTrip, CharactersThatXmlCannotStoreAreRefused) {
  auto doc = templateDocument();
  auto root = doc->documentElement();
  const QString bell = QStringLiteral("bell") + QChar(7);
  const QString loneSurrogate = QStringLiteral("half ") + QChar(0xD800);

  Error error = test::errorOf([&] { root->setAttribute(QStringLiteral("value"), bell); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains(QStringLiteral("U+0007"))) << qPrintable(error.description());
  EXPECT_EQ(test::errorOf([&] { root->setText(loneSurrogate); }).number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { doc->createTextNode(QString(QChar(0))); }).number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(doc->xml(), QStringLiteral("<?xml version=\"1.0\"?>\n<application/>\n"));
}

} // namespace
} // namespace kordel
