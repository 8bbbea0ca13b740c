#include "XmlTestSupport.h"
#include "support/TempDir.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <gtest/gtest.h>

namespace kordel {
namespace {

QByteArray everyByte(int repeat) {
  QByteArray bytes;
  for (int r = 0; r < repeat; ++r) {
    for (int b = 0; b < 256; ++b)
      bytes.append(char(b));
  }
  return bytes;
}

struct Resources {
  std::shared_ptr<XmlDocument> doc = XmlDocument::create();
  std::shared_ptr<XmlNode> section;

  Resources() {
    doc->loadXML(QStringLiteral("<?xml version=\"1.0\" ?><application><section name=\"resources\"/></application>"));
    section = doc->documentElement()->firstChild();
  }

  std::shared_ptr<XmlNode> add(const QString &name) {
    auto property = doc->createElement(QStringLiteral("property"));
    section->appendChild(property);
    property->setAttribute(QStringLiteral("name"), name);
    property->setDataType(QStringLiteral("bin.base64"));
    return property;
  }
};

TEST(XmlTypedValue, Base64TypeDeclaresItsNamespaceOnTheElement) {
  Resources resources;
  auto property = resources.add(QStringLiteral("layout"));
  property->setNodeTypedValue(QByteArray("abc"));

  EXPECT_EQ(property->dataType(), QStringLiteral("bin.base64"));
  EXPECT_EQ(property->xml(),
            QStringLiteral("<property xmlns:dt=\"urn:schemas-microsoft-com:datatypes\" name=\"layout\" "
                           "dt:dt=\"bin.base64\">YWJj</property>"));
  EXPECT_EQ(property->getAttribute(QStringLiteral("dt:dt")), QStringLiteral("bin.base64"));

  // Typing twice adds nothing.
  property->setDataType(QStringLiteral("bin.base64"));
  EXPECT_EQ(property->attributes()->length(), 2);
}

TEST(XmlTypedValue, BytesSurviveAFileRoundTrip) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("resources.xml"));
  Resources resources;
  resources.add(QStringLiteral("all"))->setNodeTypedValue(everyByte(40));
  resources.add(QStringLiteral("empty"))->setNodeTypedValue(QByteArray());
  resources.doc->save(path);

  auto loaded = XmlDocument::create();
  loaded->load(path);
  auto all = loaded->selectSingleNode(QStringLiteral("//property[@name='all']"));
  ASSERT_TRUE(all);
  const Variant value = all->nodeTypedValue();
  ASSERT_TRUE(value.isByteArray());
  EXPECT_EQ(value.rawBytes(), everyByte(40));

  const Variant empty = loaded->selectSingleNode(QStringLiteral("//property[@name='empty']"))->nodeTypedValue();
  ASSERT_TRUE(empty.isByteArray());
  EXPECT_TRUE(empty.rawBytes().isEmpty());
}

TEST(XmlTypedValue, Base64InLinesWithBlanksReadsBack) {
  const QByteArray bytes = everyByte(3);
  const QByteArray base64 = bytes.toBase64();
  QByteArray lines;
  for (qsizetype at = 0; at < base64.size(); at += 76)
    lines += base64.mid(at, 76) + "\r\n";

  // As a foreign writer leaves it in a file: CRLF lines, indentation, a
  // character reference for one carriage return.
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("lines.xml"));
  ASSERT_TRUE(test::writeFile(path, "<application><property xmlns:dt=\"urn:schemas-microsoft-com:datatypes\" "
                                    "dt:dt=\"bin.base64\">\r\n  " +
                                        lines + "&#13;\n\t </property></application>"));
  auto doc = XmlDocument::create();
  doc->load(path);
  EXPECT_EQ(doc->documentElement()->firstChild()->nodeTypedValue().rawBytes(), bytes);

  // And as text set in memory, with the carriage returns kept.
  Resources resources;
  auto property = resources.add(QStringLiteral("lines"));
  property->setText(QString::fromLatin1(" " + lines + "\t"));
  EXPECT_EQ(property->nodeTypedValue().rawBytes(), bytes);
}

TEST(XmlTypedValue, WrongContentAndWrongValuesRaiseTypeMismatch) {
  Resources resources;
  auto property = resources.add(QStringLiteral("bad"));
  property->setText(QStringLiteral("not*base64!"));
  EXPECT_EQ(test::errorOf([&] { property->nodeTypedValue(); }).number(), ErrorNumber::TypeMismatch);
  EXPECT_EQ(test::errorOf([&] { property->setNodeTypedValue(QStringLiteral("text")); }).number(),
            ErrorNumber::TypeMismatch);

  auto plain = resources.doc->createElement(QStringLiteral("plain"));
  EXPECT_EQ(test::errorOf([&] { plain->setNodeTypedValue(QByteArray("x")); }).number(), ErrorNumber::TypeMismatch);
  EXPECT_EQ(test::errorOf([&] { plain->setDataType(QStringLiteral("int")); }).number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(plain->dataType().isEmpty());
}

TEST(XmlTypedValue, UntypedNodesGiveTheirTextAndTheTypeCanBeRemoved) {
  Resources resources;
  auto property = resources.add(QStringLiteral("typed"));
  property->setNodeTypedValue(QByteArray("hello"));
  property->setDataType(QString());

  EXPECT_TRUE(property->dataType().isEmpty());
  const Variant value = property->nodeTypedValue();
  ASSERT_TRUE(value.isString());
  EXPECT_EQ(value.rawString(), QStringLiteral("aGVsbG8="));

  property->setNodeTypedValue(QStringLiteral("plain text"));
  EXPECT_EQ(property->text(), QStringLiteral("plain text"));
}

} // namespace
} // namespace kordel
